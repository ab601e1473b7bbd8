#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/PolygonShape.h"

namespace {

using OverlayEditor::PolygonShape;

struct PolygonTool : DrawingTest {
    PolygonShape& begin(PolygonShape::Subtype subtype = PolygonShape::Line) {
        return start(new PolygonShape(preferences, subtype));
    }
    /// A line of three points, the last one under the mouse.
    PolygonShape& drawn(PolygonShape::Subtype subtype = PolygonShape::Line) {
        auto& shape = begin(subtype);
        for (const char* where : {"21.0N 158.0W", "21.1N 158.0W", "21.1N 157.9W"}) click(where);
        return shape;
    }
};

TEST_F(PolygonTool, ADragDrawsTheFirstSegmentAndAnAbortLeavesNothing) {
    auto& shape = begin();
    mouse.from("21.0N 158.0W").move("21.1N 158.0W").frame();
    EXPECT_EQ(host.overlays.size(), 1u) << "the rubber band";
    mouse.to("21.1N 158.0W");
    EXPECT_EQ(shape.getNumPoints(), 2u);
    EXPECT_EQ(host.overlays.size(), 1u) << "the line alone";
    mouse.from("21.1N 157.9W");
    EXPECT_NE(host.lastText.find("lla 21.1 -158 0\nlla 21.1 -157.9 0\n"), std::string::npos) << host.lastText;
    mouse.to("21.1N 158.0W");

    auto& aborted = begin();
    mouse.from("21.0N 158.0W").moveOffTheEarth().release();
    EXPECT_EQ(mouse.result, 0);
    EXPECT_EQ(aborted.getNumPoints(), 0u);
    mouse.from("21.0N 158.0W").move("21.1N 158.0W").frame().rightPress();
    EXPECT_EQ(aborted.getNumPoints(), 0u);
    EXPECT_EQ(host.overlays.size(), 1u) << "only the first line";
}

TEST_F(PolygonTool, ADragGoesOnWhenThePlatformCarriesTheShape) {
    OverlayEditor::PointConverter converter;
    converter.setReferenceLla(place("21.0N 158.0W"), 7);
    overlay.setAttachedPlatformId(7, &converter, false);
    auto& shape = drawn();
    mouse.from("21.1N 158.0W").move("21.15N 158.0W");
    ASSERT_EQ(stateOf(shape), Tool::Dragging);
    const int loads = host.loads;
    converter.setReferenceLla(place("20.8N 158.0W"), 7);
    mouse.frame();
    EXPECT_EQ(host.loads, loads) << "the host carries what it displays itself";
    EXPECT_EQ(stateOf(shape), Tool::Dragging);
    EXPECT_EQ(static_cast<const Tool&>(*shape.mouseTool()).nearPoint()->getPosition(), shape.pointAtIndex(1));
    EXPECT_NEAR(geodesic(shape.pointAtIndex(0), place("20.8N 158.0W")).meters, 0.0, 1e-6);

    mouse.to("21.2N 158.1W");
    EXPECT_NEAR(geodesic(shape.pointAtIndex(1), place("21.2N 158.1W")).meters, 0.0, 1.0)
        << "at the cursor, wherever the shape went";
    EXPECT_NEAR(geodesic(shape.pointAtIndex(0), place("20.8N 158.0W")).meters, 0.0, 1e-6);
    // The converter goes before the shape does.
    overlay.setAttachedPlatformId(0, nullptr, false);
}

TEST_F(PolygonTool, TheOnlyPointGoesWithPointsHiddenAndAfterItsAltitudeWasSetToo) {
    auto& shape = begin();
    click("21.0N 158.0W");
    mouse.move("21.0N 158.0W").frame().wheel(120).press().release();
    EXPECT_EQ(shape.getNumPoints(), 0u) << "lifted before";
    mouse.move("20.9N 158.2W").frame();
    shape.setShowPoints(false);
    click("21.0N 158.0W");
    ASSERT_EQ(shape.getNumPoints(), 1u);
    mouse.press().release();
    EXPECT_EQ(shape.getNumPoints(), 0u) << "hidden";
}

TEST_F(PolygonTool, AReleaseOnAPointTakesItsAltitudeForTheWheel) {
    auto& shape = begin();
    click("21.0N 158.0W");
    click("21.1N 158.0W");
    shape.setPointAtIndex(0, halCore::Vec3(shape.pointAtIndex(0).lat(), shape.pointAtIndex(0).lon(), 500.0));
    mouse.move("20.9N 158.2W").frame().press().move("21.0N 158.0W").release().wheel(120);
    EXPECT_EQ(shape.pointAtIndex(0).alt(), 625.0);
}

TEST_F(PolygonTool, PointsAreDraggedAndLifted) {
    auto& shape = drawn();
    mouse.frame();
    EXPECT_EQ(std::ranges::count_if(view.painted, &TestView::Painted::highlighted), 1);
    mouse.from("21.1N 158.0W");
    EXPECT_EQ(stateOf(shape), Tool::Dragging);
    mouse.to("21.2N 158.1W").press();
    EXPECT_EQ(stateOf(shape), Tool::Dragging) << "again, without a motion in between";
    mouse.release().frame();
    EXPECT_EQ(view.painted.size(), 3u) << "no cursor point over it";
    EXPECT_NEAR(geodesic(shape.pointAtIndex(1), place("21.2N 158.1W")).meters, 0.0, 1.0);
    EXPECT_EQ(shape.pointAtIndex(0), place("21.0N 158.0W"));
    mouse.wheel(120).wheel(240);
    EXPECT_EQ(shape.pointAtIndex(1).alt(), 0.01 * 1.25 * 1.25);
    mouse.move("20.9N 158.2W").frame().rightPress();

    // Typed while the tool rests: grabbed where it stands now.
    shape.setPointAtIndex(0, place("20.95N 158.1W"));
    manager.setCurrentMouseTool(shape.mouseTool(), true);
    mouse.frame().move("20.95N 158.1W");
    EXPECT_EQ(stateOf(shape), Tool::Hovering);
}

TEST_F(PolygonTool, APointThatGoesWhileItIsDraggedIsLetGo) {
    auto& shape = begin();
    for (const char* where : {"21.0N 158.0W", "21.1N 158.0W"}) click(where);
    mouse.from("21.1N 158.0W").move("21.15N 158.0W");
    shape.deletePointAtIndex(1);
    mouse.move("21.2N 158.0W").frame().wheel(120).release().frame();
    EXPECT_EQ(shape.getNumPoints(), 1u);
    EXPECT_EQ(shape.pointAtIndex(0), place("21.0N 158.0W"));

    // Dragged, not clicked: the only point stays, too.
    mouse.from("21.0N 158.0W").to("21.05N 158.05W");
    ASSERT_EQ(shape.getNumPoints(), 1u);
    EXPECT_EQ(shape.pointAtIndex(0), place("21.05N 158.05W"));
    auto& fresh = begin();
    click("21.0N 158.0W");
    mouse.move("20.9N 158.2W").frame().from("21.0N 158.0W").to("21.05N 158.1W");
    EXPECT_EQ(fresh.getNumPoints(), 1u) << "of a fresh line as well";
}

}  // namespace
