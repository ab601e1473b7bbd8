#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "tools/CylinderMouseTool.h"

namespace {

using halCore::Vec3;
using OverlayEditor::CylinderMouseTool;
using OverlayEditor::CylinderShape;

constexpr double kMillimeter = 1e-3;

struct CylinderTools : DrawingTest {
    CylinderShape& start(CylinderShape::Subtype subtype) {
        return DrawingTest::start(new CylinderShape(preferences, subtype));
    }
    /// A finished circle about 21N 158W with its radius point in the north.
    CylinderShape& drawnCircle(CylinderShape::Subtype subtype = CylinderShape::Circle) {
        auto& shape = start(subtype);
        mouse.from("21.0N 158.0W").to("21.1N 158.0W");
        return shape;
    }
    std::size_t shownOverlays() const { return host.overlays.size(); }
};

TEST_F(CylinderTools, TheRubberBandFollowsTheCursorOnlyWhenItMoves) {
    auto& shape = start(CylinderShape::Circle);
    mouse.from("21.0N 158.0W").move("21.05N 158.0W").frame();
    EXPECT_TRUE(rubberBandShown());
    EXPECT_EQ(shownOverlays(), 1u) << "the shape itself is not complete yet";
    const int loads = host.loads;
    mouse.frame().frame();
    EXPECT_EQ(host.loads, loads);
    mouse.move("21.06N 158.0W").frame();
    EXPECT_EQ(host.loads, loads + 1);
    mouse.moveOffTheEarth().frame();
    EXPECT_FALSE(rubberBandShown());
    mouse.move("21.06N 158.0W").frame();
    EXPECT_TRUE(rubberBandShown());
    EXPECT_EQ(shape.lineColor(), 0x00FF00FFu) << "only the copy is orange";
    mouse.to("21.06N 158.0W");
    EXPECT_FALSE(rubberBandShown());
    EXPECT_EQ(shownOverlays(), 1u);
}

TEST_F(CylinderTools, DraggingACirclesCentreLeavesItsRadiusPoint) {
    auto& shape = drawnCircle();
    mouse.from("21.0N 158.0W").to("21.05N 158.1W");
    EXPECT_NEAR(shape.centerPt()->lat(), 21.05 * kDegree, 1e-5);
    EXPECT_EQ(*shape.majorAxisPt(), place("21.1N 158.0W"));
    EXPECT_NEAR(shape.majorAxis(), geodesic(*shape.centerPt(), place("21.1N 158.0W")).meters, kMillimeter);
    EXPECT_EQ(stateOf(shape), Tool::Complete);

    mouse.from("21.1N 158.0W").to("21.2N 157.9W");
    EXPECT_NEAR(shape.majorAxis(), geodesic(*shape.centerPt(), *shape.majorAxisPt()).meters, kMillimeter);
    EXPECT_NEAR(shape.majorAxisPt()->lat(), 21.2 * kDegree, 1e-5);
    EXPECT_EQ(shownOverlays(), 1u);

    // Within a pixel of 222 m of a centre that no pixel's middle is, it is on it.
    const double radius = shape.majorAxis();
    mouse.from("21.2N 157.9W").to("21.0505N 158.1W");
    EXPECT_EQ(shape.majorAxis(), radius);
    mouse.from("21.2N 157.9W").to("21.06N 158.1W");
    EXPECT_NEAR(shape.majorAxis(), 1107.0, 60.0);
}

TEST_F(CylinderTools, WhatIsLiftedInMidPressIsFlat) {
    for (const auto subtype : {CylinderShape::Circle, CylinderShape::Arc, CylinderShape::Ellipsoid}) {
        auto& lifted = start(subtype);
        mouse.from("21.0N 158.0W").move("21.0N 157.8W").wheel(120).wheel(120).release();
        if (!lifted.isComplete()) mouse.from("21.05N 158.0W").to("21.2N 158.0W");
        EXPECT_EQ(lifted.centerPt()->alt(), 0.01 * 1.25);
        EXPECT_EQ(lifted.majorAxisPt()->alt(), 0.01 * 1.25);
    }
}

TEST_F(CylinderTools, AnArcIsCentreStartAndEnd) {
    for (const auto subtype : {CylinderShape::Arc, CylinderShape::Wedge}) {
        SCOPED_TRACE(subtype);
        auto& shape = start(subtype);
        const Vec3 center = place("21.0N 158.0W");
        const auto toStart = geodesic(center, place("21.2N 158.0W"));
        const auto toEnd = geodesic(center, place("20.9N 157.85W"));
        mouse.from("21.0N 158.0W").move("21.1N 158.0W").frame();
        EXPECT_TRUE(rubberBandShown());
        mouse.to("21.2N 158.0W");
        EXPECT_EQ(stateOf(shape), Tool::Placing);
        EXPECT_FALSE(shape.isComplete()) << "half an arc is none";
        EXPECT_EQ(shownOverlays(), 0u);
        EXPECT_NEAR(shape.majorAxis(), toStart.meters, kMillimeter);

        // Released on the start: nothing happens, what is there stays.
        mouse.from("20.9N 158.1W").to("21.2N 158.0W");
        EXPECT_EQ(stateOf(shape), Tool::Placing);
        EXPECT_FALSE(shape.endAnglePt());
        EXPECT_TRUE(shape.centerPt());

        mouse.move("21.0N 158.2W").frame().from("20.8N 158.0W").frame();
        EXPECT_TRUE(rubberBandShown());
        EXPECT_NE(host.lastText.find("\nangledeg 180\n"), std::string::npos) << host.lastText;
        mouse.to("20.9N 157.85W");
        EXPECT_EQ(stateOf(shape), Tool::Complete);
        EXPECT_NEAR(shape.startAngle(), toStart.bearing, 1e-9);
        EXPECT_NEAR(shape.endAngle(), toEnd.bearing, 1e-9);
        EXPECT_NEAR(shape.majorAxis(), toEnd.meters, kMillimeter) << "the radius follows the last point";
        EXPECT_NEAR(shape.minorAxis(), toEnd.meters, kMillimeter);
        EXPECT_EQ(shape.height(), subtype == CylinderShape::Wedge ? 500.0 : 0.0);
        EXPECT_EQ(shownOverlays(), 1u);
        overlay.clearShapes(false);
    }
}

TEST_F(CylinderTools, AnArcsPointsAreDraggedApart) {
    auto& shape = start(CylinderShape::Arc);
    mouse.from("21.0N 158.0W").to("21.2N 158.0W").from("21.0N 157.9W").to("21.0N 157.8W");
    const double radius = shape.majorAxis();
    const double end = shape.endAngle();
    mouse.from("21.0N 158.0W").to("20.95N 158.1W");
    EXPECT_NEAR(shape.majorAxis(), radius, kMillimeter) << "the centre carries the whole arc";
    EXPECT_EQ(shape.endAngle(), end);

    const Vec3 center = *shape.centerPt();
    mouse.move(*shape.startAnglePt()).frame().press().to("20.95N 158.3W");
    EXPECT_NEAR(shape.startAngle(), geodesic(center, place("20.95N 158.3W")).bearing, 1e-3);
    EXPECT_EQ(shape.endAngle(), end);
    EXPECT_NEAR(shape.majorAxis(), radius, kMillimeter) << "an angle point changes the angle alone";
    EXPECT_NEAR(geodesic(center, *shape.startAnglePt()).meters, radius, 1.0) << "back on the arc";
    mouse.move(*shape.endAnglePt()).frame().press().to("20.85N 158.0W");
    EXPECT_NEAR(shape.endAngle(), geodesic(center, place("20.85N 158.0W")).bearing, 1e-3);
    // Across the centre, where there is no radius.
    mouse.move("20.7N 158.2W").frame().move(*shape.majorAxisPt()).frame().press().move(center).release();
    EXPECT_GT(shape.majorAxis(), 0.0);
    mouse.move(*shape.majorAxisPt()).frame().press().to("20.95N 157.7W");
    EXPECT_NEAR(shape.majorAxis(), geodesic(center, place("20.95N 157.7W")).meters, 100.0);
    EXPECT_NEAR(shape.minorAxis(), radius, kMillimeter);
    const double major = shape.majorAxis();
    mouse.move(*shape.minorAxisPt()).frame().press().to("21.15N 158.1W");
    EXPECT_NEAR(shape.minorAxis(), geodesic(center, place("21.15N 158.1W")).meters, 100.0);
    EXPECT_EQ(shape.majorAxis(), major);
}

TEST_F(CylinderTools, TwoRadiiAreCentreXAndY) {
    for (const auto& [subtype, height] : {std::pair{CylinderShape::Ellipse, 0.0},
                                          {CylinderShape::Cylinder, 0.0},
                                          {CylinderShape::Ellipsoid, 1.0}}) {
        SCOPED_TRACE(subtype);
        auto& shape = start(subtype);
        mouse.from("21.0N 158.0W").to("21.0N 157.8W").from("21.02N 158.0W").move("21.05N 158.0W").frame();
        EXPECT_TRUE(rubberBandShown());
        mouse.to("21.1N 158.05W");
        EXPECT_EQ(shape.height(), height * shape.majorAxis());
        EXPECT_EQ(shape.heightPt().has_value(), subtype != CylinderShape::Cylinder);
        // Across the centre, where there is no radius.
        mouse.move(*shape.minorAxisPt()).frame().press().move(*shape.centerPt());
        EXPECT_TRUE(shape.isComplete());
        mouse.to("20.9N 158.0W");
        EXPECT_NEAR(shape.minorAxis(), geodesic(*shape.centerPt(), place("20.9N 158.0W")).meters, 100.0);
        overlay.clearShapes(false);
    }
}

TEST_F(CylinderTools, TheHeightHasAHandleBesideTheCentre) {
    for (const auto subtype :
         {CylinderShape::Cylinder, CylinderShape::Wedge, CylinderShape::Ellipsoid, CylinderShape::Cone}) {
        SCOPED_TRACE(subtype);
        view.density = subtype == CylinderShape::Wedge ? 2.0 : 1.0;
        auto& shape = start(subtype);
        mouse.from("21.0N 158.0W").to("21.0N 157.8W");
        if (!shape.isComplete()) mouse.from("21.05N 158.0W").to("21.2N 158.0W");
        ASSERT_EQ(stateOf(shape), Tool::Complete);
        const double before = shape.height();
        mouse.frame().moveToPixel(400, 300 - 28 * view.density);
        ASSERT_EQ(stateOf(shape), Tool::Hovering);
        const auto& tool = static_cast<const CylinderMouseTool&>(*shape.mouseTool());
        EXPECT_EQ(tool.grabbed(), CylinderMouseTool::Height);
        mouse.wheel(120);
        EXPECT_DOUBLE_EQ(shape.height(), before > 0.0 ? before * 1.25 : 2000.0)
            << "near a tenth of the radius";
        EXPECT_EQ(shape.centerPt()->alt(), 0.0) << "the base stays";
        const double height = shape.height();
        mouse.frame().press().moveToPixel(450, 300 - 28 * view.density).release();
        EXPECT_EQ(shape.height(), height);
        EXPECT_GT(shape.centerPt()->lon(), -158.0 * kDegree) << "carried along";
        overlay.clearShapes(false);
    }
    auto& sphere = drawnCircle(CylinderShape::Sphere);
    mouse.frame().moveToPixel(400, 300 - 28);
    EXPECT_EQ(stateOf(sphere), Tool::Complete) << "a sphere has no height of its own";
}

TEST_F(CylinderTools, PointsAreShownOnlyWhenWanted) {
    auto& shape = drawnCircle();
    mouse.move("20.8N 158.2W").frame();
    EXPECT_EQ(view.painted.size(), 3u);
    shape.setShowPoints(false);
    mouse.frame();
    EXPECT_TRUE(view.painted.empty());
    mouse.move("21.0N 158.0W");
    EXPECT_EQ(stateOf(shape), Tool::Complete) << "and cannot be hovered";
    shape.setShowPoints(true);
    mouse.frame().move("21.0N 158.0W").frame();
    EXPECT_EQ(view.painted.size(), 3u);
    EXPECT_EQ(stateOf(shape), Tool::Hovering);
    shape.setShowPoints(false);
    EXPECT_EQ(stateOf(shape), Tool::Complete);
    shape.setShowPoints(true);
    mouse.frame();
    EXPECT_TRUE(shape.isEditPointShown(CylinderShape::EditPoint::Center));
    shape.setShown(false);
    EXPECT_EQ(stateOf(shape), Tool::Inactive);
    EXPECT_FALSE(shape.isEditPointShown(CylinderShape::EditPoint::Center));
}

TEST_F(CylinderTools, PointsThatGoWhileTheyAreDraggedAreForgotten) {
    auto& shape = drawnCircle();
    mouse.from("21.0N 158.0W");
    EXPECT_EQ(stateOf(shape), Tool::Dragging);
    shape.clear();
    mouse.move("21.05N 158.0W").frame().wheel(120).release().frame();
    EXPECT_FALSE(shape.centerPt() || shape.majorAxisPt());
    EXPECT_EQ(stateOf(shape), Tool::Placing) << "to be drawn afresh";
    mouse.from("21.0N 158.0W").to("21.1N 158.0W");
    EXPECT_EQ(stateOf(shape), Tool::Complete);
}

}  // namespace
