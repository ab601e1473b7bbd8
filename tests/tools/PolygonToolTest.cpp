#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/Overlay.h"
#include "tools/PolygonMouseTool.h"

namespace {

using OverlayEditor::BaseMouseTool;
using OverlayEditor::MouseManager;
using OverlayEditor::Overlay;
using OverlayEditor::PolygonMouseTool;
using OverlayEditor::PolygonShape;
using OverlayEditor::Preferences;

struct PolygonTool : testing::Test {
    PolygonShape& start(PolygonShape::Subtype subtype = PolygonShape::Line) {
        auto* const shape = new PolygonShape(preferences, subtype);
        overlay.addShape(shape);
        manager.setCurrentMouseTool(shape->mouseTool(), true);
        mouse.frame();
        return *shape;
    }
    void click(const std::string& where) { mouse.from(where).to(where); }
    static int stateOf(const PolygonShape& shape) {
        return static_cast<const BaseMouseTool&>(*shape.mouseTool()).state();
    }

    FakeHost host;
    TestView view{degrees(21.0, -158.0, 2e5)};
    Preferences preferences;
    ToolEquipment equipment;
    MouseManager manager;
    Mouse mouse{host, view, manager};
    Overlay overlay;
};

TEST_F(PolygonTool, EachClickAppendsAPointUntilTheRightClick) {
    for (const auto subtype : {PolygonShape::Line, PolygonShape::Polygon}) {
        auto& shape = start(subtype);
        for (const char* where : {"21.0N 158.0W", "21.1N 158.0W", "21.1N 157.9W"}) click(where);
        ASSERT_EQ(shape.getNumPoints(), 3u);
        EXPECT_EQ(shape.pointAtIndex(2), place("21.1N 157.9W"));
        EXPECT_EQ(stateOf(shape), BaseMouseTool::Placing) << "it can always be continued";
        mouse.frame();
        EXPECT_EQ(std::ranges::count_if(view.painted, &TestView::Painted::highlighted), 1);
        mouse.rightPress();
        EXPECT_EQ(mouse.result, 0);
        EXPECT_EQ(host.grabs, 0);
        EXPECT_EQ(host.overlays.size(), 1u);
        overlay.clearShapes(false);
    }
}

TEST_F(PolygonTool, ADragDrawsTheFirstSegmentAndAnAbortLeavesNothing) {
    auto& shape = start();
    mouse.from("21.0N 158.0W").move("21.1N 158.0W").frame();
    EXPECT_EQ(host.overlays.size(), 1u) << "the rubber band";
    mouse.to("21.1N 158.0W");
    EXPECT_EQ(shape.getNumPoints(), 2u);
    EXPECT_EQ(host.overlays.size(), 1u) << "the line alone";

    auto& aborted = start();
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
    auto& shape = start();
    for (const char* where : {"21.0N 158.0W", "21.1N 158.0W", "21.1N 157.9W"}) click(where);
    mouse.from("21.1N 158.0W").move("21.15N 158.0W");
    ASSERT_EQ(stateOf(shape), BaseMouseTool::Dragging);
    const int loads = host.loads;
    converter.setReferenceLla(place("20.8N 158.0W"), 7);
    overlay.carry(OverlayEditor::ReferenceMove(place("21.0N 158.0W"), converter));
    mouse.frame();
    EXPECT_EQ(host.loads, loads) << "the host carries what it displays itself";
    EXPECT_EQ(stateOf(shape), BaseMouseTool::Dragging);
    EXPECT_EQ(static_cast<const BaseMouseTool&>(*shape.mouseTool()).nearPoint()->getPosition(),
              shape.pointAtIndex(1));
    EXPECT_NEAR(geodesic(shape.pointAtIndex(0), place("20.8N 158.0W")).meters, 0.0, 1e-6);

    mouse.to("21.2N 158.1W");
    EXPECT_NEAR(geodesic(shape.pointAtIndex(1), place("21.2N 158.1W")).meters, 0.0, 1.0)
        << "at the cursor, wherever the shape went";
    EXPECT_NEAR(geodesic(shape.pointAtIndex(0), place("20.8N 158.0W")).meters, 0.0, 1e-6);
}

TEST_F(PolygonTool, TheOnlyPointClickedAgainIsRemoved) {
    auto& shape = start();
    for (const bool motion : {true, false}) {
        click("21.0N 158.0W");
        ASSERT_EQ(shape.getNumPoints(), 1u);
        if (motion) mouse.move("21.0N 158.0W").frame();
        mouse.press().release();
        EXPECT_EQ(shape.getNumPoints(), 0u);
        mouse.move("20.9N 158.2W").frame();
    }
    click("21.0N 158.0W");
    click("21.1N 158.0W");
    mouse.press().release();
    mouse.from("21.0N 158.0W").to("21.0N 158.0W");
    EXPECT_EQ(shape.getNumPoints(), 2u) << "only an only point";
}

TEST_F(PolygonTool, TheOnlyPointGoesWithPointsHiddenAndAfterItsAltitudeWasSetToo) {
    auto& shape = start();
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
    auto& shape = start();
    click("21.0N 158.0W");
    click("21.1N 158.0W");
    shape.setPointAtIndex(0, halCore::Vec3(shape.pointAtIndex(0).lat(), shape.pointAtIndex(0).lon(), 500.0));
    mouse.move("20.9N 158.2W").frame().press().move("21.0N 158.0W").release().wheel(120);
    EXPECT_EQ(shape.pointAtIndex(0).alt(), 625.0);
}

TEST_F(PolygonTool, PointsAreDraggedAndLifted) {
    auto& shape = start();
    for (const char* where : {"21.0N 158.0W", "21.1N 158.0W", "21.1N 157.9W"}) click(where);
    mouse.from("21.1N 158.0W");
    EXPECT_EQ(stateOf(shape), BaseMouseTool::Dragging);
    mouse.to("21.2N 158.1W");
    EXPECT_NEAR(geodesic(shape.pointAtIndex(1), place("21.2N 158.1W")).meters, 0.0, 1.0);
    EXPECT_EQ(shape.pointAtIndex(0), place("21.0N 158.0W"));
    mouse.wheel(120).wheel(240);
    EXPECT_EQ(shape.pointAtIndex(1).alt(), 0.01 * 1.25 * 1.25);
    mouse.move("20.9N 158.2W").frame().rightPress();

    // Typed while the tool rests: grabbed where it stands now.
    shape.setPointAtIndex(0, place("20.95N 158.1W"));
    manager.setCurrentMouseTool(shape.mouseTool(), true);
    mouse.frame().move("20.95N 158.1W");
    EXPECT_EQ(stateOf(shape), BaseMouseTool::Hovering);
}

TEST_F(PolygonTool, APointThatGoesWhileItIsDraggedIsLetGo) {
    auto& shape = start();
    for (const char* where : {"21.0N 158.0W", "21.1N 158.0W"}) click(where);
    mouse.from("21.1N 158.0W").move("21.15N 158.0W");
    shape.deletePointAtIndex(1);
    mouse.move("21.2N 158.0W").frame().wheel(120).release().frame();
    EXPECT_EQ(shape.getNumPoints(), 1u);
    EXPECT_EQ(shape.pointAtIndex(0), place("21.0N 158.0W"));

    mouse.from("21.0N 158.0W");
    overlay.clearShapes(false);
    EXPECT_FALSE(manager.isValid());
    mouse.move("21.2N 158.0W").frame().release().rightPress();
    EXPECT_TRUE(host.overlays.empty());
    EXPECT_EQ(host.grabs, 0);
}

TEST_F(PolygonTool, LabelsTellTheWayFromThePointBefore) {
    preferences.setGeodeticUnits(UTILS::UnitType_t::Degrees);
    preferences.setRangeUnits(UTILS::UnitType_t::Kilometers);
    start();
    click("21.0N 158.0W");
    mouse.move("20.9N 158.0W").frame();
    ASSERT_FALSE(view.painted.empty());
    // A tenth of a degree of the meridian at 21 degrees is 11.07 km.
    EXPECT_EQ(view.painted.back().label, "LLA: 20.90 -158.00 0.00 m Dist: 11.07 T: 180.00");
}

}  // namespace
