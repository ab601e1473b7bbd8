#include <algorithm>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "geo/GeodesicPath.h"
#include "model/RandomShapes.h"
#include "model/ShapeMiddle.h"
#include "model/ShapeState.h"
#include "model/WholeShape.h"
#include "support/FakeHost.h"

namespace OverlayEditor {
namespace {

using halCore::geodesicBetween;
using halCore::Vec3;

struct WholeShapeTest : ::testing::Test {
    FakeHost host;
    Preferences preferences;
    RandomShapes random{preferences};
    PointConverter ship;

    /// Anywhere, within sight of a pole, or at the date line.
    Vec3 somewhere() {
        const double lon = random.integer(0, 2) == 0 ? 3.1415 : random.number(-3.1415, 3.1415);
        const double lat = random.number(-1.4, 1.4);
        return {random.integer(0, 2) == 0 ? std::copysign(1.5695, lat) : lat, lon, 0.0};
    }
    bool stays(Shape& shape, const ShapeState& before) const { return *shape.state() == before; }
};

/// What is known of a line's points is used only as long as they lie there.
TEST_F(WholeShapeTest, TheMiddleFollowsEveryPoint) {
    PolygonShape line(preferences, PolygonShape::Polygon);
    ShapeMiddle known;
    for (int round = 0; round < 300; ++round) {
        const auto count = static_cast<int>(line.getNumPoints());
        const auto at = static_cast<unsigned long>(random.integer(0, std::max(count - 1, 0)));
        const int change = count < 4 ? 0 : random.integer(0, 3);
        if (change == 0)
            line.insertPointAtIndex(at, somewhere());
        else if (change == 1)
            line.deletePointAtIndex(at);
        else
            line.setPointAtIndex(at, change == 2 ? somewhere() : Vec3());
        EXPECT_EQ(known.of(line), WholeShape::middleOf(line)) << round;
    }
}

/// Within 1 mm at 100 km, wherever it lies and whatever it counts from.
TEST_F(WholeShapeTest, APointKeepsItsWayFromTheMiddle) {
    for (int round = 0; round < 600; ++round) {
        SCOPED_TRACE(round);
        const Vec3 about = somewhere();
        PolygonShape line(preferences, round % 2 ? PolygonShape::Line : PolygonShape::Polygon);
        ship.setReferenceLla(about, 7);
        if (round % 3 == 0) line.setAttachedPlatformId(7, &ship, false);
        const double far = std::pow(10.0, random.number(0, 5));
        for (int i = 0; i < 5; ++i) {
            Vec3 point = halCore::geodesicFrom(about, random.number(0, 7), random.number(0, far));
            point.setAlt(random.number(0, 9000));
            line.addPoint(point);
        }
        const auto before = line.state();
        const std::vector<Vec3> points = line.points();
        WholeShape whole(line);
        const Vec3 middle = whole.middle();
        const bool turnsOnly = round % 4 == 0;
        Vec3 target =
            turnsOnly ? middle : halCore::geodesicFrom(middle, random.number(0, 7), random.number(0, 5e6));
        if (!turnsOnly) target.setAlt(random.number(0, 9000));
        const double turn = random.number(-7, 7);
        if (!whole.lay(target, turn)) {
            EXPECT_NE(line.placed().frame(), nullptr);
            EXPECT_TRUE(stays(line, *before));
            continue;
        }
        // Derived anew from what is given.
        ship.setReferenceLla(about, 7);
        const double most = 1e-3 + 1e-8 * far;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const auto was = geodesicBetween(middle, points[i]);
            const Vec3& point = line.points()[i];
            const Vec3 meant = halCore::geodesicFrom(target, was.azimuthAtStart + turn, was.meters);
            EXPECT_LT(geodesicBetween(meant, point).meters, most);
            EXPECT_NEAR(point.alt() - target.alt(), points[i].alt() - middle.alt(), 1e-3);
            for (std::size_t k = 0; turnsOnly && k < i; ++k)
                EXPECT_NEAR(geodesicBetween(line.points()[k], point).meters,
                            geodesicBetween(points[k], points[i]).meters, 1e-3);
        }
        EXPECT_LT(geodesicBetween(*WholeShape::middleOf(line), target).meters, 1.0);
        if (line.placed().frame()) continue;
        EXPECT_TRUE(whole.lay(middle, 0.0));
        EXPECT_TRUE(stays(line, *before)) << "what lies where it lay has the same digits";
    }
}

/// Of every kind: what was set stays set; what has a direction turns, and comes back.
TEST_F(WholeShapeTest, NumbersStay) {
    for (int round = 0; round < 1500; ++round) {
        SCOPED_TRACE(round);
        const Vec3 about = somewhere();
        ship.setReferenceLla(about, 7);
        const auto shape = random.make(round % 15, &about);
        if (round % 2) shape->setAttachedPlatformId(7, &ship, false);
        shape->setActive(true);
        shape->setShown(true);
        if (!WholeShape::middleOf(*shape)) continue;
        const auto before = shape->state();
        const std::string text = host.lastText;
        WholeShape whole(*shape);
        Vec3 target = halCore::geodesicFrom(whole.middle(), random.number(0, 7), random.number(0, 3e5));
        target.setAlt(whole.middle().alt() + random.number(0, 500));
        const double turn = WholeShape::canTurn(*shape) ? random.number(-3, 3) : 0.0;
        const auto* const round_ = dynamic_cast<const CylinderShape*>(shape.get());
        const auto* const rectangle = dynamic_cast<const RectangleShape*>(shape.get());
        const auto numbers = [&] {
            return round_      ? std::vector{round_->majorAxis(), round_->minorAxis(), round_->height()}
                   : rectangle ? std::vector{rectangle->width(), rectangle->height()}
                               : std::vector<double>();
        };
        const auto direction = [&] { return round_ ? round_->startAngle() + round_->heading() : 0.0; };
        const auto sizes = numbers();
        const double heading = direction();
        if (!whole.lay(target, turn)) {
            EXPECT_TRUE(stays(*shape, *before));
            continue;
        }
        EXPECT_LT(geodesicBetween(*WholeShape::middleOf(*shape), target).meters, 5.0);
        const bool isOrbit = dynamic_cast<const OrbitShape*>(shape.get());
        EXPECT_TRUE(isOrbit || numbers() == sizes);
        const double left = std::remainder(direction() - heading - turn, halCore::kTwoPi);
        EXPECT_NEAR(round_ && !isOrbit ? left : 0.0, 0.0, 1e-9);
        ASSERT_TRUE(whole.lay(whole.middle(), 0.0));
        EXPECT_EQ(host.lastText, text);
    }
}

}  // namespace
}  // namespace OverlayEditor
