#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "format/SerializeToZel.h"
#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "model/CylinderShape.h"
#include "model/RandomShapes.h"
#include "support/FakeHost.h"

using halCore::kPi;
using halCore::kTwoPi;
using halCore::Vec3;
using OverlayEditor::CylinderShape;
using OverlayEditor::PointConverter;
using OverlayEditor::Preferences;
using OverlayEditor::RandomShapes;
using OverlayEditor::SerializeToZel;

namespace {

Vec3 degrees(double lat, double lon, double alt = 0.0) {
    return {lat * halCore::kRadiansPerDegree, lon * halCore::kRadiansPerDegree, alt};
}

double distance(const Vec3& a, const Vec3& b) {
    return halCore::Sodano::inverse(a, b).distance;
}

class CylinderShapeTest : public ::testing::Test {
  protected:
    std::unique_ptr<CylinderShape> make(CylinderShape::Subtype subtype) const {
        auto shape = std::make_unique<CylinderShape>(preferences, subtype);
        shape->setCenter(degrees(21.3, -158.0, 100.0));
        return shape;
    }
    /// The text of the file with this shape alone, empty when it is not written.
    static std::string textOf(CylinderShape& shape, PointConverter* converter = nullptr) {
        SerializeToZel zel;
        zel.setPointConverter(converter);
        if (shape.serialize(zel) != 0) return {};
        std::ostringstream out;
        out.precision(15);
        zel.writeTo(out, 2);
        return out.str();
    }

    FakeHost host;
    Preferences preferences;
};

TEST_F(CylinderShapeTest, IsWrittenOnceItHasTheRadiiOfItsKind) {
    using C = CylinderShape;
    for (int kind = C::Circle; kind < C::NoSubtype; ++kind) {
        const auto shape = make(static_cast<C::Subtype>(kind));
        SCOPED_TRACE(shape->name());
        EXPECT_EQ(textOf(*shape), "");
        shape->setMajorRadius(10.0);
        const bool one = kind == C::Circle || kind == C::Sphere || kind == C::Hemisphere || kind == C::Cone;
        EXPECT_EQ(shape->isComplete(), one);
        shape->setMinorRadius(5.0);
        EXPECT_TRUE(shape->isComplete());
        EXPECT_NE(textOf(*shape), "");
        shape->setMajorRadius(0.0);
        EXPECT_FALSE(shape->isComplete());
    }
    const auto circle = make(C::Circle);
    circle->setMajorRadius(1000);
    EXPECT_EQ(textOf(*circle),
              "version 2\n\n"
              "start\ncircle\nlinewidth 2\nlinecolor hex 0xff00ff00\nfillcolor hex 0xa0ff00ff\n"
              "centerlla 21.3 -158 100\nradius 1000\n"
              "3d name Circle\naltitudeunits m\nangleunits deg\nrangeunits m\nend\n\n");
    circle->setRequiresAllPoints(false);
    circle->setMajorRadius(0.0);
    EXPECT_THAT(textOf(*circle), ::testing::Not(::testing::HasSubstr("radius"))) << "as a file may have it";
    circle->clear();
    EXPECT_EQ(textOf(*circle), "");
}

TEST_F(CylinderShapeTest, NumbersStayAsSetUntilTheirPointOrTheCentreMoves) {
    const auto wedge = make(CylinderShape::Wedge);
    wedge->setMajorRadius(1234.5678);
    wedge->setStartAngle(0.25);
    wedge->setEndAngle(1.75);
    wedge->setHeight(500.1);
    EXPECT_EQ(wedge->majorAxis(), 1234.5678);
    EXPECT_EQ(wedge->startAngle(), 0.25);
    EXPECT_EQ(wedge->height(), 500.1);
    // The centre alone: the other points stand, but for the height point.
    wedge->setCenter(degrees(21.31, -158.0, 200.0));
    EXPECT_EQ(wedge->majorAxis(), distance(*wedge->centerPt(), *wedge->majorAxisPt()));
    EXPECT_GT(wedge->majorAxis(), 1300.0);
    EXPECT_NE(wedge->startAngle(), 0.25);
    EXPECT_EQ(wedge->height(), 500.1);
    EXPECT_DOUBLE_EQ(wedge->heightPt()->alt(), 700.1);

    // If only along a parallel, or along a meridian.
    wedge->setMajorRadius(1000.0);
    const Vec3 east = *wedge->majorAxisPt();
    for (const Vec3& moved :
         {Vec3(east.lat(), east.lon() + 1e-3, 0), Vec3(east.lat() + 1e-3, east.lon(), 0)}) {
        wedge->setMajorRadius(1000.0);
        wedge->setMajorRadius(moved);
        EXPECT_EQ(wedge->majorAxis(), distance(*wedge->centerPt(), moved));
    }
}

TEST_F(CylinderShapeTest, PointsStandEastNorthAndOnTheRim) {
    const auto arc = make(CylinderShape::Arc);
    arc->setMajorRadius(3000.0);
    arc->setMinorRadius(1000.0);
    arc->setStartAngle(0.0);
    arc->setEndAngle(kPi / 2);
    const Vec3 center = *arc->centerPt();
    const auto stand = [&](double east, double north) {
        const auto major = halCore::Sodano::inverse(center, *arc->majorAxisPt());
        const auto minor = halCore::Sodano::inverse(center, *arc->minorAxisPt());
        EXPECT_NEAR(major.distance, east, 1e-6);
        EXPECT_NEAR(major.azimuth1, kPi / 2, 1e-9);
        EXPECT_NEAR(minor.distance, north, 1e-6);
        EXPECT_NEAR(minor.azimuth1, 0.0, 1e-9);
        EXPECT_EQ(arc->minorAxisPt()->alt(), 100.0);
        EXPECT_NEAR(distance(center, *arc->startAnglePt()), north, 1e-6);
        EXPECT_NEAR(distance(center, *arc->endAnglePt()), east, 1e-6);
        EXPECT_EQ(arc->endAngle(), kPi / 2);
    };
    stand(3000, 1000);
    arc->setMajorRadius(halCore::Sodano::direct(center, 1.0, 700.0));
    arc->setMinorRadius(halCore::Sodano::direct(center, 1.0, 600.0));
    arc->updatePoints();
    stand(700, 600);
}

TEST_F(CylinderShapeTest, AnglesAreNormalizedAndEqualBoundsAreAFullTurn) {
    const auto arc = make(CylinderShape::Arc);
    EXPECT_EQ(arc->startAngle(), 0.0);
    EXPECT_EQ(arc->endAngle(), 0.0);
    arc->setInnerRadius(1000.0);
    for (const auto& [set, expected] :
         {std::pair{-1e-11, 0.0}, {-0.5, kTwoPi - 0.5}, {kTwoPi, 0.0}, {3 * kTwoPi + 1.0, 1.0}, {6.0, 6.0}}) {
        arc->setStartAngle(set);
        EXPECT_NEAR(arc->startAngle(), expected, 1e-14) << set;
        EXPECT_LT(arc->startAngle(), kTwoPi);
        EXPECT_GE(arc->startAngle(), 0.0);
    }
    for (const double start : {0.1, 1.1, 3.3, 5.5}) {  // in sums with a full turn they lose a last digit
        arc->setStartAngle(start);
        arc->setEndAngle(start + kTwoPi);
        EXPECT_EQ(arc->endAngle(), start + kTwoPi);
        arc->updatePoints();
        EXPECT_EQ(arc->endAngle(), start + kTwoPi);
        arc->moveCenter(degrees(10, 20));
        EXPECT_EQ(arc->endAngle(), start + kTwoPi);
        arc->setStartAngle(start + 0.5);
        EXPECT_EQ(arc->endAngle(), start);
    }
    arc->setEndAngle(arc->startAngle() + 1e-11);
    EXPECT_LT(arc->endAngle(), arc->startAngle() + 1e-10) << "a small sector is no full turn";
    // By points: the same azimuth twice.
    const Vec3 there = halCore::Sodano::direct(*arc->centerPt(), 2.0, 1000.0);
    arc->setStartAnglePt(there);
    arc->setEndAnglePt(there);
    EXPECT_NEAR(arc->startAngle(), 2.0, 1e-9);
    EXPECT_EQ(arc->endAngle(), arc->startAngle() + kTwoPi);
}

TEST_F(CylinderShapeTest, Heights) {
    const auto ellipsoid = make(CylinderShape::Ellipsoid);
    for (const double flat : {0.0, -3.0}) {
        ellipsoid->setHeight(flat);
        EXPECT_EQ(ellipsoid->height(), 1.0);
    }
    const auto cylinder = make(CylinderShape::Cylinder);
    cylinder->setHeight(0.0);
    EXPECT_EQ(cylinder->height(), 0.0);
    using Point = CylinderShape::EditPoint;
    EXPECT_FALSE(cylinder->isEditPointShown(Point::Height));
    cylinder->setEditPointsShown(true, false);
    EXPECT_TRUE(cylinder->isEditPointShown(Point::Center) && !cylinder->isEditPointShown(Point::Height));
    const auto sphere = make(CylinderShape::Sphere);
    sphere->setMajorRadius(250.0);
    sphere->setHeight(17.0);
    EXPECT_EQ(sphere->height(), 250.0);
    // No centre, no geometry; values that are no numbers change nothing.
    CylinderShape empty(preferences, CylinderShape::Cylinder);
    empty.setHeight(5.0);
    empty.setMajorRadius(5.0);
    EXPECT_EQ(empty.height(), 0.0);
    EXPECT_FALSE(empty.majorAxisPt());
    cylinder->setMajorRadius(std::nan(""));
    EXPECT_EQ(cylinder->majorAxis(), 0.0);
}

// As the globe draws it, and as files are read: see the tests of both.
TEST_F(CylinderShapeTest, AnEllipsoidWithoutAHeightIsAsHighAsItsLongerRadius) {
    RandomShapes random(preferences);
    const auto ellipsoid = make(CylinderShape::Ellipsoid);
    for (int round = 0; round < 200; ++round) {
        const double length = random.length();
        const auto center = ellipsoid->centerPt();
        const Vec3 near = random.position(&*center);
        const std::function<void()> changes[] = {
            [&] { ellipsoid->setMajorRadius(length); }, [&] { ellipsoid->setMinorRadius(length); },
            [&] { ellipsoid->setMajorRadius(near); },   [&] { ellipsoid->setMinorRadius(near); },
            [&] { ellipsoid->moveCenter(near); },       [&] { ellipsoid->setCenter(near); },
            [&] { ellipsoid->updatePoints(); }};
        changes[round < 2 ? round : random.integer(0, 6)]();
        const double height = std::max(ellipsoid->majorAxis(), ellipsoid->minorAxis());
        EXPECT_EQ(ellipsoid->height(), height);
        EXPECT_EQ(ellipsoid->boundingBox().first.alt(), ellipsoid->centerPt()->alt() - height);
        EXPECT_EQ(ellipsoid->boundingBox().second.alt(), ellipsoid->centerPt()->alt() + height);
        if (round > 0) {
            EXPECT_THAT(textOf(*ellipsoid),
                        ::testing::HasSubstr("\nheight " + UTILS::writeNumber(height) + "\n"));
        }
    }
    ellipsoid->setHeight(5.5);
    ellipsoid->setInnerRadius(7000.0);
    EXPECT_EQ(ellipsoid->height(), 5.5) << "once it is given one";
}

TEST_F(CylinderShapeTest, IsAttachedToOnePlatformAtATime) {
    PointConverter platform, other;
    platform.setReferenceLla(degrees(10.0, 20.0, 300.0), 7);
    other.setReferenceLla(degrees(-10.0, 20.0, 300.0), 9);
    const auto circle = make(CylinderShape::Circle);
    circle->setMajorRadius(1000.25);
    circle->setAttachedPlatformId(7, &platform, false);
    EXPECT_EQ(*circle->centerPt(), degrees(21.3, -158.0, 100.0));
    circle->setAttachedPlatformId(9, &other, true);
    EXPECT_EQ(circle->attachedPlatformId(), 7U);  // never straight to another platform
    circle->setAttachedPlatformId(0, nullptr, false);
    circle->setAttachedPlatformId(9, &other, true);
    EXPECT_EQ(*circle->centerPt(), degrees(-10.0, 20.0, 300.0));
    EXPECT_THAT(textOf(*circle, &other), ::testing::HasSubstr("centerxyz 0 0 0\n"));
    // Without a converter there is nothing to write, and no crash.
    testing::internal::CaptureStderr();
    SerializeToZel zel;
    circle->serialize(zel);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), ::testing::HasSubstr("cannot be written"));
    EXPECT_FALSE(zel.hasShapes());
}

}  // namespace
