#include <cmath>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Drawing.h"
#include "geo/PathMeasure.h"
#include "model/CylinderShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"

namespace {

using namespace OverlayEditor;
using halCore::Vec3;
using PIGUI::PIModifierControl;
using PIGUI::PIModifierShift;
using testing::HasSubstr;

struct Constraining : DrawingTest {
    Constraining() {
        manager.setHintListener([this](std::string_view text) { hint = text; });
    }
    ~Constraining() override { manager.setHintListener({}); }
    /// With these modifiers, to somewhere in the view.
    Mouse& move(unsigned modifiers) {
        mouse.modifiers = modifiers;
        return mouse.moveToPixel(x(random), y(random)).frame();
    }
    /// How far a bearing is from a step, in radians.
    static double besideStep(const Vec3& from, const Vec3& to) {
        return std::remainder(geodesic(from, to).bearing, 15.0 * kDegree);
    }

    std::mt19937 random{3};
    std::uniform_real_distribution<double> x{60.0, 740.0}, y{60.0, 540.0};
    std::string hint;
};

/// Across the date line and beside the pole as elsewhere.
TEST_F(Constraining, LegsKeepToStepsAndToTheirLength) {
    for (const Vec3& eye :
         {degrees(21.0, -158.0, 2e5), degrees(-40.0, 180.0, 2e6), degrees(89.9, 10.0, 2e4)}) {
        view.look(eye);
        auto& line = start(new PolygonShape(preferences, PolygonShape::Line));
        move(0).press().release();
        for (int i = 0; i < 20; ++i) {
            move(PIModifierShift).press().release();
            const std::size_t last = line.getNumPoints() - 1;
            if (last == 0) continue;
            const Vec3 from = line.pointAtIndex(last - 1), to = line.pointAtIndex(last);
            EXPECT_NEAR(besideStep(from, to), 0.0, 1e-9);
        }
        const std::size_t count = line.getNumPoints();
        ASSERT_GT(count, 10u);
        const double length = geodesic(line.pointAtIndex(count - 2), line.pointAtIndex(count - 1)).meters;
        move(PIModifierControl);
        EXPECT_THAT(hint, HasSubstr("Shift: 15° steps, Control: same length"));
        mouse.press().release();
        ASSERT_EQ(line.getNumPoints(), count + 1);
        EXPECT_NEAR(geodesic(line.pointAtIndex(count - 1), line.pointAtIndex(count)).meters, length, 1e-3);
        // A point that is dragged stays as far from the one before as it was.
        mouse.modifiers = 0;
        mouse.move(line.pointAtIndex(count)).press();
        move(PIModifierControl | PIModifierShift).release();
        EXPECT_NEAR(geodesic(line.pointAtIndex(count - 1), line.pointAtIndex(count)).meters, length, 1e-3);
        EXPECT_NEAR(besideStep(line.pointAtIndex(count - 1), line.pointAtIndex(count)), 0.0, 1e-9);
        mouse.modifiers = 0;
        mouse.rightPress();
    }
}

TEST_F(Constraining, RadiiTurnInStepsAndRectanglesBecomeSquares) {
    for (int i = 0; i < 10; ++i) {
        auto& circle = start(new CylinderShape(preferences, CylinderShape::Circle));
        move(0).press();
        move(PIModifierShift).release();
        if (circle.isComplete()) {
            EXPECT_NEAR(besideStep(*circle.centerPt(), *circle.majorAxisPt()), 0.0, 1e-9);
        }
        auto& square = start(new RectangleShape(preferences, RectangleShape::Rectangle));
        move(0).press();
        move(PIModifierShift);
        EXPECT_THAT(hint, HasSubstr("Shift: as wide as high"));
        mouse.release();
        if (square.isComplete()) {
            EXPECT_NEAR(std::abs(square.width()), std::abs(square.height()), 1e-2);
        }
    }
}

TEST_F(Constraining, LabelsSumUp) {
    preferences.setRangeUnits(UTILS::UnitType_t::Kilometers);
    start(new PolygonShape(preferences, PolygonShape::Polygon));
    mouse.move("21.0N 158.0W").press().release().move("21.1N 158.0W").press().release();
    mouse.move("21.1N 157.9W");
    // Half of 11.07 km by 10.39 km; legs of 11.07 and 10.39 km.
    EXPECT_THAT(label(), HasSubstr("Dist: 10.39 km T: 89.98 deg Sum: 21.46 km Area: 57.5"));
    // Pi times 11.07 km by 5.54 km; a quarter of pi times 10.395 km squared.
    start(new CylinderShape(preferences, CylinderShape::Ellipse));
    mouse.from("21.0N 158.0W").to("20.9N 158.0W").from("20.95N 158.1W").move("21.05N 158.0W");
    EXPECT_THAT(label(), HasSubstr("YRad: 5.54 km Area: 192.5"));
    start(new CylinderShape(preferences, CylinderShape::Arc));
    mouse.from("21.0N 158.0W").to("21.1N 158.0W").from("20.95N 158.1W").move("21.0N 157.9W");
    EXPECT_THAT(label(), HasSubstr("T: 89.98 deg Area: 84.8"));
    EXPECT_THAT(label(), HasSubstr(" km²"));
}

/// A degree of latitude and longitude at the equator, an octant, and the whole earth by known numbers.
TEST(PathMeasure, IsThatOfTheEllipsoid) {
    halCore::PathMeasure octant;
    octant.add(degrees(0.0, 0.0));
    octant.add(degrees(0.0, 90.0));
    EXPECT_NEAR(octant.areaTo(degrees(90.0, 0.0)), 510065621724088.44 / 8.0, 1.0);
    EXPECT_NEAR(octant.lengthTo(degrees(90.0, 0.0)), 6378137.0 * kDegree * 90.0 + 10001965.729, 1e-3);
    EXPECT_NEAR(halCore::areaOfDisc(degrees(90.0, 0.0), 10001965.729), 510065621724088.44 / 2.0,
                510065621724088.44 * 1e-6);
    EXPECT_NEAR(halCore::areaOfDisc(degrees(21.0, -180.0), 1000.0), std::numbers::pi * 1e6, 10.0);
}

}  // namespace
