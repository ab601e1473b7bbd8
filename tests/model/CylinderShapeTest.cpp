#include <cmath>
#include <memory>
#include <sstream>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "format/SerializeToZel.h"
#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "model/CylinderShape.h"
#include "support/FakeHost.h"

using halCore::kPi;
using halCore::kTwoPi;
using halCore::Vec3;
using OverlayEditor::CylinderShape;
using OverlayEditor::PointConverter;
using OverlayEditor::Preferences;
using OverlayEditor::SerializeToZel;

namespace {

Vec3 degrees(double lat, double lon, double alt = 0.0) {
    return {lat * halCore::kRadiansPerDegree, lon * halCore::kRadiansPerDegree, alt};
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

TEST_F(CylinderShapeTest, CircleIsWrittenOnceItHasARadius) {
    const auto circle = make(CylinderShape::Circle);
    EXPECT_FALSE(circle->isComplete());
    EXPECT_EQ(textOf(*circle), "");

    circle->setMajorRadius(1000);
    EXPECT_TRUE(circle->isComplete());
    EXPECT_EQ(textOf(*circle),
              "version 2\n\n"
              "start\ncircle\nlinewidth 2\nlinecolor hex 0xff00ff00\nfillcolor hex 0xa0ff00ff\n"
              "centerlla 21.3 -158 100\nradius 1000\n"
              "3d name Circle\naltitudeunits m\nangleunits deg\nrangeunits m\nend\n\n");

    circle->setRequiresAllPoints(false);
    circle->clear();
    EXPECT_EQ(textOf(*circle), "");
}

TEST_F(CylinderShapeTest, CompletenessNeedsTheRadiiOfTheKind) {
    struct Case {
        CylinderShape::Subtype subtype;
        bool oneRadiusIsEnough;
    };
    for (const Case& c : {Case{CylinderShape::Circle, true}, Case{CylinderShape::Ellipse, false},
                          Case{CylinderShape::Arc, false}, Case{CylinderShape::Cylinder, false},
                          Case{CylinderShape::Wedge, false}, Case{CylinderShape::Sphere, true},
                          Case{CylinderShape::Hemisphere, true}, Case{CylinderShape::Ellipsoid, false},
                          Case{CylinderShape::Cone, true}}) {
        const auto shape = make(c.subtype);
        SCOPED_TRACE(shape->name());
        shape->setMajorRadius(10.0);
        EXPECT_EQ(shape->isComplete(), c.oneRadiusIsEnough);
        shape->setMinorRadius(5.0);
        EXPECT_TRUE(shape->isComplete());
        EXPECT_NE(textOf(*shape), "");
        shape->setMajorRadius(0.0);
        EXPECT_FALSE(shape->isComplete());
    }
}

TEST_F(CylinderShapeTest, NumbersStayAsSetUntilTheirPointOrTheCentreMoves) {
    const auto wedge = make(CylinderShape::Wedge);
    wedge->setMajorRadius(1234.5678);
    wedge->setMinorRadius(777.125);
    wedge->setStartAngle(0.25);
    wedge->setEndAngle(1.75);
    wedge->setHeight(500.1);
    EXPECT_EQ(wedge->majorAxis(), 1234.5678);
    EXPECT_EQ(wedge->minorAxis(), 777.125);
    EXPECT_EQ(wedge->startAngle(), 0.25);
    EXPECT_EQ(wedge->endAngle(), 1.75);
    EXPECT_EQ(wedge->height(), 500.1);

    const std::unique_ptr<CylinderShape> copy(static_cast<CylinderShape*>(wedge->clone()));
    copy->moveCenter(degrees(60.0, 179.999, 30.0));
    EXPECT_EQ(copy->majorAxis(), 1234.5678);
    EXPECT_EQ(copy->startAngle(), 0.25);
    EXPECT_EQ(copy->endAngle(), 1.75);
    EXPECT_EQ(copy->height(), 500.1);
    EXPECT_DOUBLE_EQ(copy->heightPt()->alt(), 530.1);

    // The centre alone: the other points stand, the radii are measured from the new place.
    wedge->setCenter(degrees(21.31, -158.0, 200.0));
    const double measured = halCore::Sodano::inverse(*wedge->centerPt(), *wedge->majorAxisPt()).distance;
    EXPECT_EQ(wedge->majorAxis(), measured);
    EXPECT_GT(measured, 1300.0);
    EXPECT_NE(wedge->startAngle(), 0.25);
    // The height point goes with the centre.
    EXPECT_EQ(wedge->height(), 500.1);
    EXPECT_DOUBLE_EQ(wedge->heightPt()->alt(), 700.1);

    // A tool may move a point without asking the shape.
    const auto circle = make(CylinderShape::Circle);
    circle->setMajorRadius(1000.0);
    circle->setMajorRadius(halCore::Sodano::direct(*circle->centerPt(), 1.0, 2000));
    EXPECT_NEAR(circle->majorAxis(), 2000.0, 1e-6);
}

TEST_F(CylinderShapeTest, AxisPointsStandEastAndNorthAtTheCentresAltitude) {
    const auto ellipse = make(CylinderShape::Ellipse);
    ellipse->setMajorRadius(5000.0);
    ellipse->setMinorRadius(2000.0);
    const Vec3 center = *ellipse->centerPt();
    const auto east = halCore::Sodano::inverse(center, *ellipse->majorAxisPt());
    const auto north = halCore::Sodano::inverse(center, *ellipse->minorAxisPt());
    EXPECT_NEAR(east.distance, 5000.0, 1e-6);
    EXPECT_NEAR(east.azimuth1, kPi / 2, 1e-9);
    EXPECT_NEAR(north.distance, 2000.0, 1e-6);
    EXPECT_NEAR(north.azimuth1, 0.0, 1e-9);
    EXPECT_EQ(ellipse->minorAxisPt()->alt(), 100.0);
}

TEST_F(CylinderShapeTest, AnglesAreNormalizedAndEqualBoundsAreAFullTurn) {
    const auto arc = make(CylinderShape::Arc);
    EXPECT_EQ(arc->startAngle(), 0.0);
    EXPECT_EQ(arc->endAngle(), 0.0);
    arc->setInnerRadius(1000.0);
    struct Case {
        double set, expected;
    };
    for (const Case& c : {Case{-1e-11, 0.0}, Case{-0.5, kTwoPi - 0.5}, Case{kTwoPi, 0.0},
                          Case{3 * kTwoPi + 1.0, 1.0}, Case{6.0, 6.0}, Case{0.0, 0.0}}) {
        arc->setStartAngle(c.set);
        EXPECT_NEAR(arc->startAngle(), c.expected, 1e-14) << c.set;
        EXPECT_LT(arc->startAngle(), kTwoPi);
        EXPECT_GE(arc->startAngle(), 0.0);
    }
    arc->setStartAngle(5.5);
    arc->setEndAngle(5.5 + kTwoPi);
    EXPECT_EQ(arc->endAngle(), 5.5 + kTwoPi);
    for (const double start : {0.1, 1.1, 3.3}) {  // in sums with a full turn they lose a last digit
        arc->setStartAngle(start);
        arc->setEndAngle(start + kTwoPi);
        arc->updatePoints();
        EXPECT_EQ(arc->endAngle(), start + kTwoPi);
    }
    arc->setStartAngle(5.5);
    arc->setEndAngle(0.5);
    EXPECT_EQ(arc->endAngle(), 0.5);

    // By points: the same azimuth twice.
    const Vec3 there = halCore::Sodano::direct(*arc->centerPt(), 2.0, 1000.0);
    arc->setStartAnglePt(there);
    arc->setEndAnglePt(there);
    EXPECT_NEAR(arc->startAngle(), 2.0, 1e-9);
    EXPECT_EQ(arc->endAngle(), arc->startAngle() + kTwoPi);
}

TEST_F(CylinderShapeTest, AnglePointsStandOnTheRim) {
    const auto arc = make(CylinderShape::Arc);
    arc->setMajorRadius(3000.0);
    arc->setMinorRadius(1000.0);
    arc->setStartAngle(0.0);
    arc->setEndAngle(kPi / 2);
    const auto distance = [&](const std::optional<Vec3>& point) {
        return halCore::Sodano::inverse(*arc->centerPt(), *point).distance;
    };
    EXPECT_NEAR(distance(arc->startAnglePt()), 1000.0, 1e-6);
    EXPECT_NEAR(distance(arc->endAnglePt()), 3000.0, 1e-6);
    arc->setInnerRadius(2000.0);
    arc->updatePoints();
    EXPECT_NEAR(distance(arc->startAnglePt()), 2000.0, 1e-6);
    EXPECT_NEAR(distance(arc->endAnglePt()), 2000.0, 1e-6);
    EXPECT_EQ(arc->endAngle(), kPi / 2);
}

TEST_F(CylinderShapeTest, Heights) {
    const auto ellipsoid = make(CylinderShape::Ellipsoid);
    ellipsoid->setHeight(0.0);
    EXPECT_EQ(ellipsoid->height(), 1.0);
    ellipsoid->setHeight(-3.0);
    EXPECT_EQ(ellipsoid->height(), 1.0);
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

TEST_F(CylinderShapeTest, WritesTwoRadiusKindsWithWholeAxes) {
    const auto wedge = make(CylinderShape::Wedge);
    wedge->setMajorRadius(500.0);
    wedge->setMinorRadius(1000);
    wedge->setStartAngle(350.0 * halCore::kRadiansPerDegree);
    wedge->setEndAngle(20.0 * halCore::kRadiansPerDegree);
    wedge->setHeight(0.0);
    wedge->setFilled(true);
    EXPECT_EQ(textOf(*wedge),
              "version 2\n\n"
              "start\ncylinder\nlinewidth 2\nlinecolor hex 0xff00ff00\nfilled\nfillcolor hex 0xa0ff00ff\n"
              "centerlla 21.3 -158 100\nanglestart 350\nangledeg 30\n"
              "majoraxis 1000\nminoraxis 2000\nheight 0\n3d name Wedge\naltitudeunits m\nangleunits "
              "deg\nrangeunits m\nend\n\n");
    const auto ellipsoid = make(CylinderShape::Ellipsoid);
    ellipsoid->setMajorRadius(500.0);
    ellipsoid->setMinorRadius(1000);
    ellipsoid->setHeight(0.0);
    EXPECT_THAT(textOf(*ellipsoid), ::testing::HasSubstr("height 1\nmajoraxis 1000\nminoraxis 2000\n"));
}

TEST_F(CylinderShapeTest, BoundingBoxIsTheExtent) {
    const auto box = [](const CylinderShape& shape) {
        auto [low, high] = shape.boundingBox();
        return std::pair(
            Vec3(low.x() / halCore::kRadiansPerDegree, low.y() / halCore::kRadiansPerDegree, low.z()),
            Vec3(high.x() / halCore::kRadiansPerDegree, high.y() / halCore::kRadiansPerDegree, high.z()));
    };
    // 100 km about 0N 180E: 0.898315 degrees along the equator, 0.904366 along the meridian (GeographicLib).
    CylinderShape circle(preferences, CylinderShape::Circle);
    EXPECT_GT(circle.boundingBox().first.x(), circle.boundingBox().second.x());
    circle.setCenter(degrees(0.0, 180.0, 50.0));
    circle.setMajorRadius(100000.0);
    auto [low, high] = box(circle);
    EXPECT_NEAR(low.x(), -0.904366, 1e-4);
    EXPECT_NEAR(high.x(), 0.904366, 1e-4);
    EXPECT_NEAR(low.y(), 179.101685, 1e-4);
    EXPECT_NEAR(high.y(), 180.898315, 1e-4);
    EXPECT_EQ(low.z(), 50.0);
    EXPECT_EQ(high.z(), 50.0);
    EXPECT_NEAR(circle.centerPoint().lon(), kPi, 1e-6);

    // Around a pole: every longitude, and the middle lies inside of the circle.
    circle.setCenter(degrees(89.5, 30.0));
    circle.setMajorRadius(200000.0);
    std::tie(low, high) = box(circle);
    EXPECT_EQ(high.x(), 90.0);
    EXPECT_NEAR(high.y() - low.y(), 360.0, 1e-9);
    EXPECT_LT(halCore::Sodano::inverse(*circle.centerPt(), circle.centerPoint()).distance, 200000.0);

    // A wedge to the north-east has nothing in the south or west; its height is above.
    CylinderShape wedge(preferences, CylinderShape::Wedge);
    wedge.setCenter(degrees(0.0, 10.0, 5.0));
    wedge.setInnerRadius(100000.0);
    wedge.setStartAngle(0.0);
    wedge.setEndAngle(kPi / 2);
    wedge.setHeight(1000.0);
    std::tie(low, high) = box(wedge);
    EXPECT_NEAR(low.x(), 0.0, 1e-9);
    EXPECT_NEAR(low.y(), 10.0, 1e-9);
    EXPECT_NEAR(high.x(), 0.904366, 1e-4);
    EXPECT_NEAR(high.y(), 10.898315, 1e-4);
    EXPECT_EQ(low.z(), 5.0);
    EXPECT_EQ(high.z(), 1005.0);
}

TEST_F(CylinderShapeTest, AttachingKeepsRadiiAndAngles) {
    PointConverter platform;
    platform.setReferenceLla(degrees(10.0, 20.0, 300.0), 7);
    PointConverter other;
    other.setReferenceLla(degrees(-10.0, 20.0, 300.0), 9);

    const auto arc = make(CylinderShape::Arc);
    arc->setMajorRadius(1000.25);
    arc->setMinorRadius(500.75);
    arc->setStartAngle(0.3);
    arc->setEndAngle(0.9);
    arc->setAttachedPlatformId(7, &platform, false);
    EXPECT_EQ(arc->attachedPlatformId(), 7U);
    EXPECT_EQ(*arc->centerPt(), degrees(21.3, -158.0, 100.0));

    arc->setAttachedPlatformId(9, &other, true);
    EXPECT_EQ(arc->attachedPlatformId(), 7U);  // never straight to another platform
    arc->setAttachedPlatformId(0, nullptr, false);
    EXPECT_EQ(arc->attachedPlatformId(), 0U);

    arc->setAttachedPlatformId(9, &other, true);
    EXPECT_EQ(*arc->centerPt(), degrees(-10.0, 20.0, 300.0));
    EXPECT_EQ(arc->majorAxis(), 1000.25);
    EXPECT_EQ(arc->minorAxis(), 500.75);
    EXPECT_EQ(arc->startAngle(), 0.3);
    EXPECT_EQ(arc->endAngle(), 0.9);
    EXPECT_THAT(textOf(*arc, &other), ::testing::HasSubstr("centerxyz 0 0 0\n"));
    // Without a converter there is nothing to write, and no crash.
    SerializeToZel zel;
    testing::internal::CaptureStderr();
    arc->serialize(zel);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), ::testing::HasSubstr("cannot be written"));
    EXPECT_FALSE(zel.hasShapes());
}

}  // namespace
