#include <cmath>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "model/AnnotationShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/Overlay.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using ::testing::HasSubstr;
using namespace OverlayEditor;

namespace {

Vec3 degrees(double lat, double lon, double alt = 0.0) {
    return {lat * halCore::kRadiansPerDegree, lon * halCore::kRadiansPerDegree, alt};
}

double distance(const Vec3& a, const Vec3& b) {
    return halCore::Sodano::inverse(a, b).distance;
}

/// An overlay that shows what it is given, and a platform at 10N 20E.
class PointShapesTest : public ::testing::Test {
  protected:
    PointShapesTest() { platform.setReferenceLla(degrees(10, 20, 300), 7); }

    template <typename Concrete>
    Concrete& add(std::unique_ptr<Concrete> shape) {
        overlay.addShape(shape.get());
        return *shape.release();
    }
    PolygonShape& polygon(PolygonShape::Subtype subtype) {
        return add(std::make_unique<PolygonShape>(preferences, subtype));
    }

    FakeHost host;
    Preferences preferences;
    PointConverter platform;
    Overlay overlay;
};

TEST_F(PointShapesTest, LineAndPolygonAreShownFromTheirLeastPointsOn) {
    for (const auto subtype : {PolygonShape::Line, PolygonShape::Polygon}) {
        auto& shape = polygon(subtype);
        const std::size_t least = subtype == PolygonShape::Line ? 2 : 3;
        for (std::size_t i = 0; i < least; ++i) {
            EXPECT_TRUE(host.overlays.empty());
            shape.insertPointAtIndex(i, degrees(1.0 + static_cast<double>(i), 2.0, 3.0));
        }
        EXPECT_EQ(host.overlays.size(), 1U);
        shape.clear();
        EXPECT_TRUE(host.overlays.empty());
        overlay.clearShapes(false);
    }
    auto& line = polygon(PolygonShape::Line);
    line.addPoint(degrees(1, 2));
    line.insertPointAtIndex(99, degrees(3, 4, 100));
    EXPECT_EQ(
        host.lastText,
        "version 2\n\nstart\nline\nlla 1 2 0\nlla 3 4 100\nlinewidth 2\nlinecolor hex 0xff00ff00\n"
        "fillcolor hex 0xa0ff00ff\n3d name Line\naltitudeunits m\nangleunits deg\nrangeunits m\nend\n\n");
    // What is no number has no text.
    line.insertPointAtIndex(1, Vec3(0.1, std::nan(""), 0.0));
    EXPECT_TRUE(host.overlays.empty());
}

TEST_F(PointShapesTest, PointsBehindTheLastAreAppendedOrIgnored) {
    auto& line = polygon(PolygonShape::Line);
    line.setPointAtIndex(99, degrees(1, 1));
    line.mouseSetPointAtIndex(99, degrees(3, 3));
    line.insertPointAtIndex(1, degrees(2, 2));
    ASSERT_EQ(line.getNumPoints(), 3U);
    EXPECT_EQ(line.pointAtIndex(1), degrees(2, 2));
    EXPECT_EQ(line.pointAtIndex(5), Vec3());
    line.deletePointAtIndex(3);
    EXPECT_EQ(line.getNumPoints(), 3U);
    line.deletePointAtIndex(0);
    EXPECT_EQ(line.pointAtIndex(0), degrees(2, 2));
    overlay.setAttachedPlatformId(7, &platform, false);
    EXPECT_EQ(line.pointAtIndex(5), degrees(10, 20, 300));
}

TEST_F(PointShapesTest, CenteringMovesTheForm) {
    PointConverter other;
    other.setReferenceLla(degrees(-10, 20), 9);
    auto& line = polygon(PolygonShape::Line);
    line.addPoint(degrees(50, 179, 100));
    line.addPoint(degrees(50, -179, 300));
    const int loads = host.loads;
    line.setAttachedPlatformId(9, &other, true);
    EXPECT_EQ(host.loads, loads + 1);
    // As far apart in metres as at 50N: 2 degrees there are 143,391 m along the parallel (N cos(lat) dlon).
    const Vec3 west = line.pointAtIndex(0);
    const Vec3 east = line.pointAtIndex(1);
    EXPECT_NEAR(west.lat(), -10 * halCore::kRadiansPerDegree, 1e-12);
    EXPECT_NEAR(0.5 * (west.lon() + east.lon()), 20 * halCore::kRadiansPerDegree, 1e-12);
    EXPECT_NEAR(distance(west, east), 143391.0, 100.0);
    EXPECT_DOUBLE_EQ(west.alt(), -100.0);
}

TEST_F(PointShapesTest, LabelIsShownOnceItHasAPosition) {
    auto& label = add(std::make_unique<AnnotationShape>(preferences));
    EXPECT_EQ(label.name(), "Text");
    EXPECT_TRUE(host.overlays.empty());
    label.mouseSetPosition(degrees(1, 2));
    EXPECT_EQ(host.lastText,
              "version 2\n\nstart\nannotation Text\nlla 1 2 0\nfontname arialbd.ttf\nfontsize 8\n"
              "linecolor hex 0xff0000ff\naltitudeunits m\nangleunits deg\nrangeunits m\nend\n\n");
    label.setColor(0x11223344);
    EXPECT_THAT(host.lastText, HasSubstr("0xff0000ff"));
    label.setName("Two\nlines");
    EXPECT_THAT(host.lastText, HasSubstr("annotation Two\\nlines\n"));
    EXPECT_THAT(host.lastText, HasSubstr("0x44332211"));
    overlay.setAttachedPlatformId(7, &platform, true);
    EXPECT_EQ(label.position(), degrees(10, 20, 300));
    testing::internal::CaptureStderr();
    label.setName("");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("it has no text"));
    EXPECT_TRUE(host.overlays.empty());
}

TEST_F(PointShapesTest, OrbitMeasuresItsRadiusFromTheNearerCentre) {
    auto& orbit = add(std::make_unique<OrbitShape>(preferences));
    orbit.setCenter(degrees(0, 0));
    orbit.setMinorRadius(degrees(0, 1));
    EXPECT_FALSE(orbit.minorAxisPt());
    EXPECT_TRUE(host.overlays.empty());
    orbit.setCenter2(degrees(0, 2));
    EXPECT_THAT(host.lastText, HasSubstr("radius 50\n"));
    EXPECT_THAT(host.lastText, HasSubstr("centerll2 0 2 0\n"));

    const Vec3 nearSecond = halCore::Sodano::direct(degrees(0, 2), 0.0, 1000.0);
    orbit.setMinorRadius(nearSecond);
    EXPECT_NEAR(orbit.minorAxis(), 1000.0, 1e-6);
    EXPECT_EQ(*orbit.minorAxisPt(), nearSecond);

    // Due north of the first centre, but nearer the second: the number that was set decides.
    orbit.setCenter2(degrees(0.5, 0));
    orbit.setMinorRadius(50000.0);
    EXPECT_EQ(orbit.minorAxis(), 50000.0);
    EXPECT_LT(orbit.getShortestDistance_(*orbit.minorAxisPt()), 10000.0);

    overlay.setAttachedPlatformId(7, &platform, true);
    EXPECT_EQ(orbit.minorAxis(), 50000.0);
    EXPECT_NEAR(orbit.centerPt()->lon(), 20 * halCore::kRadiansPerDegree, 1e-12);
    EXPECT_LT(distance(orbit.centerPoint(), degrees(10, 20)), 10.0);
    EXPECT_NEAR(distance(*orbit.centerPt(), *orbit.centerPt2()), 55290.0, 300.0);
}

TEST_F(PointShapesTest, RectangleIsWrittenAsItsCorners) {
    auto& rectangle = add(std::make_unique<RectangleShape>(preferences, RectangleShape::Rectangle));
    rectangle.setFirstCorner(degrees(1, 2, 5));
    EXPECT_TRUE(host.overlays.empty());
    rectangle.setLastCorner(degrees(3, 4, 100));
    EXPECT_THAT(host.lastText, HasSubstr("polygon\nlla 1 2 100\nlla 1 4 100\nlla 3 4 100\nlla 3 2 100\n"));
    rectangle.setFirstCorner(degrees(1, 2, 7));
    EXPECT_EQ(rectangle.boundingBox().second, degrees(3, 4, 7));

    auto& triangle = add(std::make_unique<RectangleShape>(preferences, RectangleShape::Triangle));
    triangle.setFirstCorner(degrees(3, -177));
    triangle.setLastCorner(degrees(1, 179));
    EXPECT_THAT(host.lastText, HasSubstr("polygon\nlla 1 -177 0\nlla 1 179 0\nlla 3 -179 0\n"));
}

TEST_F(PointShapesTest, RectangleKeepsTheSizeThatWasSet) {
    RectangleShape rectangle(preferences, RectangleShape::Rectangle);
    rectangle.setFromCenter(degrees(20, 30, 7), 3000.0, 1500.5);
    EXPECT_EQ(rectangle.width(), 3000.0);
    EXPECT_EQ(rectangle.height(), 1500.5);
    EXPECT_EQ(rectangle.center(), degrees(20, 30, 7));
    // 1,500 m along the parallel, 750.25 m along the meridian from the centre.
    EXPECT_NEAR(distance(*rectangle.firstCorner(), degrees(20, 30)), std::hypot(1500.0, 750.25), 1e-6);
    EXPECT_LT(rectangle.firstCorner()->lat(), rectangle.lastCorner()->lat());
    EXPECT_LT(rectangle.firstCorner()->lon(), rectangle.lastCorner()->lon());

    rectangle.setAttachedPlatformId(7, &platform, true);
    EXPECT_EQ(rectangle.width(), 3000.0);
    EXPECT_LT(distance(rectangle.center(), degrees(10, 20)), 1e-3);
    rectangle.setAttachedPlatformId(0, nullptr, true);
    rectangle.setAnchorCenter(false);
    rectangle.setAttachedPlatformId(7, &platform, true);
    EXPECT_LT(distance(*rectangle.firstCorner(), degrees(10, 20)), 1e-3);

    rectangle.setLastCorner(degrees(10.1, 20.2));
    const auto measured = [&] {
        return RectangleGeometry::calcWidthHeight(*rectangle.firstCorner(), *rectangle.lastCorner());
    };
    EXPECT_EQ(rectangle.width(), measured().width);
    EXPECT_EQ(rectangle.getShortPointText_(*rectangle.lastCorner(), false).substr(0, 11), " Width: 219");

    // The numbers that were typed count until a corner moves, if only along a meridian or a parallel.
    for (const Vec3& moved : {degrees(20, 31), degrees(21, 30)}) {
        rectangle.setFromCorner(degrees(20, 30), 3000.0, 1500.5);
        EXPECT_EQ(rectangle.width(), 3000.0);
        EXPECT_EQ(rectangle.height(), 1500.5);
        rectangle.setFirstCorner(moved);
        EXPECT_EQ(rectangle.width(), measured().width);
        EXPECT_EQ(rectangle.height(), measured().height);
    }
}

TEST_F(PointShapesTest, CornerFormulas) {
    using namespace RectangleGeometry;
    struct Case {
        double width, height, azimuth, distance;
    };
    const double pi = halCore::kPi;
    for (const Case& c :
         {Case{3000, 4000, std::atan(0.75), 5000}, Case{-3000, 4000, -std::atan(0.75), 5000},
          Case{3000, -4000, pi - std::atan(0.75), 5000}, Case{-3000, -4000, pi + std::atan(0.75), 5000},
          Case{3000, 0, std::atan(3000.0), 3000}}) {
        const auto way =
            halCore::Sodano::inverse(degrees(20, 30), calcCornerPoint(degrees(20, 30), c.width, c.height));
        EXPECT_NEAR(way.distance, c.distance, 1e-6);
        EXPECT_NEAR(std::remainder(way.azimuth1 - c.azimuth, 2 * pi), 0.0, 1e-9);
    }
    const auto flat = cornersAbout(degrees(20, 30), {2000, 0});
    EXPECT_NEAR(calcWidthHeight(degrees(20, 30), flat.first).height, -1.0, 1e-3);
}

TEST_F(PointShapesTest, FreeDrawIsLinesInARow) {
    auto& drawing = add(std::make_unique<FreeDrawShape>(preferences));
    EXPECT_FALSE(drawing.canAttach());
    drawing.startLine(degrees(1, 1));
    EXPECT_TRUE(host.overlays.empty());
    drawing.addPoint(degrees(1, 2));
    drawing.startLine(degrees(5, 1));
    drawing.startLine(degrees(7, 1));
    drawing.addPoint(degrees(7, 2));
    EXPECT_EQ(host.overlays.size(), 1U);
    EXPECT_EQ(drawing.getNumPoints(), 5U);
    EXPECT_EQ(drawing.pointAtIndex(3), degrees(7, 1));
    drawing.insertPointAtIndex(3, degrees(6, 1));
    drawing.deletePointAtIndex(2);  // the only point of its line
    EXPECT_EQ(drawing.lines().size(), 2U);
    EXPECT_EQ(drawing.lines()[1].size(), 3U);

    overlay.setAttachedPlatformId(7, &platform, true);
    EXPECT_EQ(drawing.attachedPlatformId(), 0U);
    EXPECT_EQ(drawing.pointAtIndex(99), degrees(10, 20, 300));
    drawing.setPointAtIndex(0, degrees(0, 0));
    const auto points = [](const char* line) {
        return HasSubstr(std::string("line\n") + line + "linewidth");
    };
    EXPECT_THAT(host.lastText, points("lla 0 0 0\nlla 1 2 0\n"));
    EXPECT_THAT(host.lastText, points("lla 6 1 0\nlla 7 1 0\nlla 7 2 0\n"));
    drawing.startLine(degrees(8, 1));
    drawing.setPointAtIndex(0, degrees(0, 1));
    EXPECT_EQ(host.lastText.find("lla 8"), std::string::npos) << "a point is no line";
}

}  // namespace
