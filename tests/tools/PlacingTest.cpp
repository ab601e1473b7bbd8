#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/ShapeKinds.h"
#include "model/ShapeRegistry.h"

namespace {

using namespace OverlayEditor;
using halCore::Vec3;

/// Where a view is from, how high the hand works, and how far what the shapes are attached to goes on between
/// two events: as far as a jet in a second, which is a dozen pixels.
struct Setting {
    const char* name;
    Vec3 eye;
    bool high;
    double driftRadians;
};

const Setting kSettings[] = {{"on the ground", degrees(21.0, -158.0, 2e4), false, 0.0},
                             {"4 km up", degrees(21.0, -158.0, 2e4), true, 0.0},
                             {"above the eye", degrees(21.0, -158.0, 3e3), true, 0.0},
                             {"about the pole", degrees(89.99, 30.0, 2e4), true, 0.0},
                             {"on a jet", degrees(64.0, 179.97, 2e4), false, 300.0 / 6.4e6},
                             {"on a jet, 4 km up", degrees(64.0, 179.97, 2e4), true, 300.0 / 6.4e6}};

std::vector<Vec3> placesOf(const Shape& shape) {
    std::vector<Vec3> places;
    const auto add = [&](const std::optional<Vec3>& place) {
        if (place) places.push_back(*place);
    };
    if (const auto* const round = dynamic_cast<const CylinderShape*>(&shape)) {
        using Point = CylinderShape::EditPoint;
        for (const Point point :
             {Point::Center, Point::MajorAxis, Point::MinorAxis, Point::StartAngle, Point::EndAngle})
            add(round->editPoint(point));
    } else if (const auto* const rectangle = dynamic_cast<const RectangleShape*>(&shape)) {
        add(rectangle->firstCorner());
        add(rectangle->lastCorner());
    } else if (const auto* const points = dynamic_cast<const PointsContainer*>(&shape)) {
        for (std::size_t i = 0; i < points->getNumPoints(); ++i) places.push_back(points->pointAtIndex(i));
    } else if (const auto* const label = dynamic_cast<const AnnotationShape*>(&shape); label->hasPoint()) {
        add(label->position());
    }
    return places;
}

struct Placing : DrawingTest {
    Placing() { addAllKinds(registry, preferences); }
    ~Placing() override { overlay.setAttachedPlatformId(0, nullptr, false); }

    Shape& begin(const Shape& kind, const Setting& setting) {
        overlay.setAttachedPlatformId(0, nullptr, false);
        overlay.clearShapes(false);
        view.look(setting.eye);
        converter.setReferenceLla(setting.eye, 7);
        if (setting.driftRadians != 0.0) overlay.setAttachedPlatformId(7, &converter, false);
        mouse.beforeEvent = [this, drift = setting.driftRadians] {
            Vec3 at;
            converter.getReferenceLla(at);
            if (drift != 0.0) converter.setReferenceLla({at.lat() + drift, at.lon(), at.alt()}, 7);
        };
        Shape& shape = start(kind.clone());
        mouse.moveToPixel(420, 320).frame();
        if (setting.high) mouse.wheel(120).wheel(58 * 120);
        return shape;
    }
    /// Whether the shape has a point there, or, as the axes of an ellipse have, one as far from its centre.
    bool isPlaced(const Shape& shape, const Vec3& cursor) const {
        const double pixel = view.projection().metersPerPixel(halCore::toEcef(cursor));
        const auto places = placesOf(shape);
        return std::ranges::any_of(places, [&](const Vec3& place) {
            const double away = geodesic(places.front(), cursor).meters;
            return geodesic(place, cursor).meters < pixel ||
                   (dynamic_cast<const CylinderShape*>(&shape) && away > 0.0 &&
                    std::abs(geodesic(places.front(), place).meters - away) < pixel);
        });
    }
    Vec3 at(double x, double y) const { return *view.pick(x, y); }

    ShapeRegistry registry;
    PointConverter converter;
};

/// At any altitude, on whatever moves, anywhere: what is placed lies where the cursor was.
TEST_F(Placing, PutsPointsWhereTheCursorWas) {
    for (const Setting& setting : kSettings)
        for (const Shape* const kind : registry.getShapes()) {
            SCOPED_TRACE(kind->name() + ", " + setting.name);
            Shape& shape = begin(*kind, setting);
            const bool waits = dynamic_cast<const AnnotationShape*>(&shape);
            mouse.press();
            EXPECT_TRUE(waits || isPlaced(shape, at(420, 320)));
            mouse.frame().moveToPixel(520, 250).frame().release();
            EXPECT_TRUE(isPlaced(shape, at(520, 250)));
            mouse.frame();
            if (stateOf(shape) == Tool::Placing) {
                mouse.moveToPixel(300, 380).frame().press().moveToPixel(385, 180).frame().release();
                // An orbit's rim has a point where it passes.
                EXPECT_TRUE(isPlaced(shape, at(385, 180)));
            }
            const double altitude = setting.high ? 0.01 * std::pow(1.25, 58) : 0.0;
            for (const Vec3& place : placesOf(shape)) EXPECT_NEAR(place.alt(), altitude, 0.5);
        }
}

TEST_F(Placing, AClickIsOnePointAndTakesAPointWithoutMovingIt) {
    for (const Setting& setting : kSettings)
        for (const Shape* const kind : registry.getShapes()) {
            SCOPED_TRACE(kind->name() + ", " + setting.name);
            Shape& shape = begin(*kind, setting);
            const bool stays =
                dynamic_cast<const PolygonShape*>(&shape) || dynamic_cast<const AnnotationShape*>(&shape);
            mouse.press().frame().release().frame();
            EXPECT_EQ(placesOf(shape).size(), stays ? 1U : 0U);

            Shape& drawn = begin(*kind, setting);
            mouse.press().moveToPixel(520, 250).frame().release().frame();
            if (stateOf(drawn) == Tool::Placing)
                mouse.moveToPixel(300, 380).press().moveToPixel(385, 180).frame().release();
            mouse.moveToPixel(30, 30).frame();
            mouse.beforeEvent = nullptr;
            const auto before = drawn.state();
            auto points = view.painted;
            // The cursor's is none of the shape's.
            const auto& tool = static_cast<const Tool&>(*drawn.mouseTool());
            const auto cursor = tool.cursorPoint()->isShown()
                                    ? view.projection().pixel(tool.cursorPoint()->ecef())
                                    : std::nullopt;
            std::erase_if(points, [&](const auto& point) { return point.pixel == cursor; });
            for (const auto& point : points) {
                const bool seen = point.pixel.x > 0 && point.pixel.x < TestView::kWidth &&
                                  point.pixel.y > 0 && point.pixel.y < TestView::kHeight;
                if (!seen || !view.pick(point.pixel.x, point.pixel.y)) continue;
                mouse.moveToPixel(point.pixel.x, point.pixel.y);
                EXPECT_EQ(stateOf(drawn), Tool::Hovering);
                mouse.press().release().frame();
                EXPECT_TRUE(*drawn.state() == *before);
            }
        }
}

TEST_F(Placing, ATypedAltitudeIsTheTools) {
    for (const Shape* const kind : registry.getShapes()) {
        SCOPED_TRACE(kind->name());
        Shape& shape = begin(*kind, kSettings[0]);
        const Vec3 typed(at(420, 320).lat(), at(420, 320).lon(), 4000.0);
        if (auto* const round = dynamic_cast<CylinderShape*>(&shape))
            round->setCenter(typed);
        else if (auto* const rectangle = dynamic_cast<RectangleShape*>(&shape))
            rectangle->setFirstCorner(typed);
        else if (auto* const polygon = dynamic_cast<PolygonShape*>(&shape))
            polygon->setPointAtIndex(0, typed);
        else
            continue;
        mouse.frame().moveToPixel(300, 380).press().moveToPixel(520, 200).frame().release().frame();
        for (const Vec3& place : placesOf(shape)) EXPECT_NEAR(place.alt(), 4000.0, 1e-6);
        EXPECT_EQ(placesOf(shape).front(), typed);
    }
}

TEST_F(Placing, WhatTheHostCannotShowYetIsDrawn) {
    auto& polygon = dynamic_cast<PolygonShape&>(begin(*registry.getShapeByName("Polygon"), kSettings[0]));
    polygon.setShowPoints(false);
    mouse.press().release().moveToPixel(500, 250).frame();
    EXPECT_EQ(view.painted.size(), 2u) << "the first point, though points are hidden, and the cursor's";
    ASSERT_EQ(view.lines.size(), 1u);
    EXPECT_EQ(view.lines[0], std::pair(polygon.pointAtIndex(0), at(500, 250)));
    mouse.press().release().moveToPixel(450, 200).frame();
    using Sides = std::vector<std::pair<Vec3, Vec3>>;
    const Vec3 first = polygon.pointAtIndex(0), second = polygon.pointAtIndex(1);
    EXPECT_EQ(view.lines, (Sides{{first, second}, {second, at(450, 200)}, {first, at(450, 200)}}));
    mouse.press().release().moveToPixel(440, 240).frame();
    EXPECT_EQ(view.lines.size(), 2u) << "the host shows the sides";
    EXPECT_EQ(view.painted.size(), 1u);
}

TEST_F(Placing, ALabelGoesOnMeasuringWhenThePointIsLetGo) {
    Shape& line = begin(*registry.getShapeByName("Line"), kSettings[4]);
    mouse.press().release().moveToPixel(520, 250).press().release().frame();
    const auto meters = [&] { return geodesic(placesOf(line)[0], placesOf(line)[1]).meters; };
    preferences.setRangeUnits(UTILS::UnitType_t::Meters);
    const auto text = [&] { return "Dist: " + preferences.unitsProvider()->formatRange(meters()) + " m"; };
    EXPECT_NE(label().find(text()), std::string::npos) << label();
    mouse.beforeEvent();
    EXPECT_NE(label().find(text()), std::string::npos) << label();
}

TEST_F(Placing, HeightsEndWhereThePanelDoes) {
    auto& cone = dynamic_cast<CylinderShape&>(begin(*registry.getShapeByName("Cone"), kSettings[1]));
    mouse.press().moveToPixel(520, 250).release().moveToPixel(30, 30).frame();
    const auto center = *view.projection().pixel(halCore::toEcef(*cone.centerPt()));
    mouse.moveToPixel(center.x, center.y - 28.0).wheel(120).wheel(120 * 200);
    EXPECT_NEAR(cone.height() + cone.centerPt()->alt(), 1e9, 1.0);
}

}  // namespace
