#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/ShapeKinds.h"
#include "model/ShapeRegistry.h"
#include "model/WholeShape.h"

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
                             {"beside the pole", degrees(89.99, 30.0, 2e4), false, 0.0},
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
            if (&setting == kSettings && !waits) {
                EXPECT_EQ(placesOf(shape).front(), at(420, 320)) << "exactly";
            }
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

            Shape& lost = begin(*kind, setting);
            mouse.press().moveToPixel(520, 250).frame().moveOffTheEarth().release().frame();
            const bool goesOn = dynamic_cast<const FreeDrawShape*>(&lost);
            EXPECT_EQ(placesOf(lost).empty(), !goesOn) << "released off the earth";
            EXPECT_EQ(mouse.result, goesOn ? 1 : 0);

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

/// What is flat stays so, and what is carried keeps what it is about.
TEST_F(Placing, APointIsLiftedAndDraggedAloneOrWithTheWholeShape) {
    const double altitude = 0.01 * 1.25 * 1.25;
    for (const Setting& setting : {kSettings[0], kSettings[4]})
        for (const Shape* const kind : registry.getShapes())
            for (std::size_t i = 0, count = 1; i < count; ++i) {
                SCOPED_TRACE(kind->name() + ", " + setting.name + ", point " + std::to_string(i));
                Shape& shape = begin(*kind, setting);
                mouse.press().moveToPixel(520, 250).frame().release().frame();
                if (stateOf(shape) == Tool::Placing)
                    mouse.moveToPixel(300, 380).press().moveToPixel(385, 180).frame().release();
                const std::vector<Vec3> before = placesOf(shape);
                count = before.size();
                mouse.moveToPixel(30, 30).frame().move(before[i]);
                if (dynamic_cast<const FreeDrawShape*>(&shape)) continue;
                ASSERT_EQ(stateOf(shape), Tool::Hovering);
                mouse.wheel(120).wheel(240);
                const std::vector<Vec3> after = placesOf(shape);
                ASSERT_EQ(after.size(), count);
                const bool isAlone = dynamic_cast<const PolygonShape*>(&shape);
                for (std::size_t k = 0; k < count; ++k) {
                    EXPECT_EQ(after[k].alt(), k == i || !isAlone ? altitude : 0.0);
                    EXPECT_LT(geodesic(before[k], after[k]).meters, 1e-6);
                }
                mouse.frame().press().moveToPixel(460, 350).frame().release();
                const std::vector<Vec3> moved = placesOf(shape);
                const Vec3 cursor = at(460, 350);
                const double pixel = view.projection().metersPerPixel(halCore::toEcef(cursor));
                if (!dynamic_cast<const CylinderShape*>(&shape)) {
                    for (std::size_t k = 0; k < count; ++k)
                        EXPECT_LT(geodesic(moved[k], k == i ? cursor : after[k]).meters,
                                  k == i ? pixel : 1e-6);
                } else if (i < 2 || (kind->name() != "Arc" && kind->name() != "Wedge")) {
                    // What lies about a centre keeps to its axis.
                    EXPECT_NEAR(geodesic(moved[0], moved[i]).meters,
                                i == 0 ? 0.0 : geodesic(moved[0], cursor).meters, pixel);
                    EXPECT_TRUE(isPlaced(shape, cursor));
                }
            }
}

TEST_F(Placing, ATypedAltitudeIsTheTools) {
    for (const Shape* const kind : registry.getShapes()) {
        SCOPED_TRACE(kind->name());
        if (dynamic_cast<const FreeDrawShape*>(kind)) continue;
        // Before there is a place, as with one.
        Shape& ahead = begin(*kind, kSettings[0]);
        ahead.setAltitudeAhead(4000.0);
        mouse.frame().moveToPixel(300, 380).press().moveToPixel(520, 200).release().frame();
        for (const Vec3& place : placesOf(ahead)) EXPECT_EQ(place.alt(), 4000.0);
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
    Shape& line = begin(*registry.getShapeByName("Line"), kSettings[5]);
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

/// One drag of the green point, which is below the centre of what is round.
TEST_F(Placing, TheGreenPointCarriesTheWholeShape) {
    for (const Setting& setting : kSettings)
        for (const Shape* const kind : registry.getShapes()) {
            SCOPED_TRACE(kind->name() + ", " + setting.name);
            Shape& shape = begin(*kind, setting);
            mouse.press().moveToPixel(460, 290).frame().release().frame();
            if (stateOf(shape) == Tool::Placing)
                mouse.moveToPixel(390, 350).press().moveToPixel(400, 270).frame().release();
            const bool isLabel = dynamic_cast<const AnnotationShape*>(&shape);
            const auto handle = [&]() -> std::optional<Pixel> {
                mouse.frame();
                const auto green = std::ranges::find(view.painted, 0x30E060FFU, &TestView::Painted::color);
                return green == view.painted.end() ? std::nullopt : std::optional(green->pixel);
            };
            mouse.rightPress();
            manager.setCurrentMouseTool(shape.mouseTool(), true);
            mouse.beforeEvent = nullptr;
            const auto held = handle();
            const auto middle = WholeShape::middleOf(shape);
            ASSERT_EQ(middle.has_value(), !isLabel);
            // A drawing that is above the eye is behind it.
            if (isLabel || !view.projection().pixel(halCore::toEcef(*middle))) continue;
            ASSERT_TRUE(held);
            const auto foot = [&] {
                const Vec3 middle = *WholeShape::middleOf(shape);
                return *view.projection().pixel(halCore::toEcef({middle.lat(), middle.lon(), 0.0}));
            };
            const Pixel before = foot();
            const double altitude = WholeShape::middleOf(shape)->alt();
            mouse.moveToPixel(held->x, held->y)
                .press()
                .moveToPixel(held->x + 40, held->y - 30)
                .frame()
                .release();
            EXPECT_NEAR(foot().x - before.x, 40.0, 1.5);
            EXPECT_NEAR(foot().y - before.y, -30.0, 1.5);
            EXPECT_NEAR(WholeShape::middleOf(shape)->alt(), altitude, 1e-3);
            mouse.wheel(120);
            EXPECT_NEAR(WholeShape::middleOf(shape)->alt(), altitude > 0.0 ? altitude * 1.25 : 0.01, 1e-3);
        }
}

TEST_F(Placing, ControlTurnsItAboutItsMiddle) {
    auto& arc = dynamic_cast<CylinderShape&>(begin(*registry.getShapeByName("Arc"), kSettings[0]));
    std::string hint;
    manager.setHintListener([&](std::string_view text) { hint = text; });
    mouse.press().moveToPixel(420, 220).release().moveToPixel(500, 320).press().release().frame();
    const double start = arc.startAngle();
    mouse.moveToPixel(420, 320 + 28).frame();
    EXPECT_THAT(hint, testing::HasSubstr("with Control to turn it"));
    mouse.modifiers = PIGUI::PIModifierControl;
    mouse.press().moveToPixel(420 - 60, 320).frame();
    EXPECT_THAT(hint, testing::HasSubstr("Control: turns it"));
    EXPECT_THAT(label(), testing::HasSubstr(" Turn: 90.0"));
    const auto turned = [&] {
        return std::remainder(arc.startAngle() - start, 2 * std::numbers::pi) / kDegree;
    };
    EXPECT_NEAR(turned(), 90.0, 0.05);
    mouse.modifiers |= PIGUI::PIModifierShift;
    mouse.moveToPixel(420 - 60, 320 - 37);
    EXPECT_NEAR(turned(), 120.0, 1e-6) << "in steps";
    // Let go of, the key has it move on from where it is.
    const Vec3 center = *arc.centerPt();
    mouse.modifiers = 0;
    mouse.moveToPixel(420 - 60, 320 - 37);
    EXPECT_EQ(*arc.centerPt(), center);
    mouse.moveToPixel(420 - 60 + 25, 320 - 37).release();
    EXPECT_NEAR(turned(), 120.0, 1e-6);
    EXPECT_NEAR(view.projection().pixel(halCore::toEcef(*arc.centerPt()))->x, 420.0 + 25.0, 1.0);
    manager.setHintListener({});
}

}  // namespace
