#include <algorithm>
#include <cmath>
#include <memory>

#include <GeographicLib/Ellipsoid.hpp>
#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <GeographicLib/Rhumb.hpp>
#include <gtest/gtest.h>

#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "globe/DrawingOrder.h"
#include "globe/ShapeGeometry.h"

namespace sandbox {
namespace {

namespace ZEL = halCore::ZEL;
using GeographicLib::Geodesic;
using halCore::Ecef;
using halCore::kRadiansPerDegree;
using halCore::localFrame;
using halCore::Vec3;

Vec3 at(double lat, double lon, double alt = 0.0) {
    return {lat * kRadiansPerDegree, lon * kRadiansPerDegree, alt};
}

double distanceTo(const Vec3& from, const Ecef& position, double* azimuth = nullptr) {
    const Vec3 to = toGeodetic(position);
    double meters = 0.0, start = 0.0, end = 0.0;
    Geodesic::WGS84().Inverse(from.lat() / kRadiansPerDegree, from.lon() / kRadiansPerDegree,
                              to.lat() / kRadiansPerDegree, to.lon() / kRadiansPerDegree, meters, start, end);
    if (azimuth) *azimuth = start;
    return meters;
}

DrawList geometry(const ZEL::ZelShape& shape, double tolerance = 0.0,
                  const std::optional<OverlayReference>& reference = std::nullopt) {
    DrawList list;
    appendGeometry(shape, reference, tolerance, list);
    return list;
}

/// The area of a mesh in the plane of its triangles, square metres.
double areaOf(const DrawList::Mesh& mesh) {
    double sum = 0.0;
    for (std::size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
        const Ecef& a = mesh.vertices[mesh.triangles[i]];
        sum += 0.5 * length(cross(mesh.vertices[mesh.triangles[i + 1]] - a,
                                  mesh.vertices[mesh.triangles[i + 2]] - a));
    }
    return sum;
}

struct CircleCase {
    double lat, lon, radius;
};

class Circles : public testing::TestWithParam<CircleCase> {};

TEST_P(Circles, EveryPointIsAtTheGeodesicRadius) {
    const auto [lat, lon, radius] = GetParam();
    ZEL::Circle circle(false);
    circle.setCenterPosition(at(lat, lon));
    circle.setRadius(radius);
    circle.setFilled(true);
    const DrawList list = geometry(circle);
    ASSERT_EQ(list.lines.size(), 1U);
    const DrawList::Line& line = list.lines.front();
    EXPECT_TRUE(line.closed);
    double longest = 0.0;
    for (std::size_t i = 0; i < line.points.size(); ++i) {
        EXPECT_NEAR(distanceTo(at(lat, lon), line.points[i]), radius, 1e-6);
        EXPECT_NEAR(toGeodetic(line.points[i]).alt(), 0.0, 1e-6);
        longest = std::max(longest, length(line.points[i] - line.points[(i + 1) % line.points.size()]));
    }
    // Sideways the straight pieces are within a centimetre, or 2e-6 of the radius.
    EXPECT_LT(longest * longest / (8.0 * radius), std::max(0.0101, 2.02e-6 * radius));

    // The fill covers the circle once: area of a geodesic circle, less what chords lose.
    ASSERT_EQ(list.meshes.size(), 1U);
    const GeographicLib::PolygonArea ring(Geodesic::WGS84());
    GeographicLib::PolygonArea polygon(Geodesic::WGS84());
    for (const Ecef& p : line.points) {
        const Vec3 g = toGeodetic(p);
        polygon.AddPoint(g.lat() / kRadiansPerDegree, g.lon() / kRadiansPerDegree);
    }
    double perimeter = 0.0, area = 0.0;
    polygon.Compute(true, true, perimeter, area);
    EXPECT_NEAR(areaOf(list.meshes.front()) / std::abs(area), 1.0, 2e-3);
}

INSTANTIATE_TEST_SUITE_P(Places, Circles,
                         testing::Values(CircleCase{21.3, -158, 50.0e3}, CircleCase{0, 0, 10.0},
                                         CircleCase{89.9, 20, 300.0e3}, CircleCase{-90, 0, 2.0e6},
                                         CircleCase{-17, 179.9, 100.0e3}, CircleCase{35, -180, 5.0e6},
                                         CircleCase{10, 10, 9.0e6}));

TEST(DrawingOrder, GathersOnlyWhatLooksAlike) {
    OverlayScene::Shapes shapes;
    for (const double lon : {5.0, 95.0, 6.0, 96.0}) {
        auto line = std::make_shared<ZEL::Line>(false);
        line->addPoint(at(1, lon));
        line->addPoint(at(2, lon));
        line->setLineColor(ZEL::Color(9, 9, 9, 100));
        shapes.push_back(line);
    }
    shapes.insert(shapes.begin() + 1, nullptr);
    using Order = std::vector<std::size_t>;
    EXPECT_EQ(drawingOrder(shapes), (Order{0, 3, 2, 4}));
    // One that looks otherwise, or is no line, keeps all in their order.
    static_cast<ZEL::Line&>(*shapes[3]).setLineWidth(2);
    EXPECT_EQ(drawingOrder(shapes), (Order{0, 2, 3, 4}));
    static_cast<ZEL::Line&>(*shapes[3]).setLineWidth(1);
    shapes[1] = std::make_shared<ZEL::Annotation>(false);
    EXPECT_EQ(drawingOrder(shapes), (Order{0, 1, 2, 3, 4}));
    EXPECT_TRUE(drawingOrder({}).empty());
}

TEST(ShapeGeometry, OutlinedPointsHaveARim) {
    ZEL::Points points(false);
    points.addPoint(at(1, 2));
    points.setPointSize(7);
    points.setColor(ZEL::Color(255, 255, 0, 200));
    EXPECT_EQ(geometry(points).lines.size(), 1U);
    points.setOutlined(true);
    const DrawList list = geometry(points);
    ASSERT_EQ(list.lines.size(), 2U);
    EXPECT_EQ(list.lines[0].width, 9.0F);
    EXPECT_EQ(list.lines[0].color, (Rgba{0, 0, 0, 200}));
    EXPECT_EQ(list.lines[1].width, 7.0F);
}

TEST(ShapeGeometry, CoarseCirclesStayWithinTheirTolerance) {
    ZEL::Circle circle(false);
    circle.setCenterPosition(at(50, 8));
    circle.setRadius(50.0e3);
    std::size_t before = 100000;
    for (const double tolerance : {0.0, 2.0, 50.0}) {
        const auto points = geometry(circle, tolerance).lines.front().points;
        EXPECT_LT(points.size(), before);
        before = points.size();
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Ecef middle = (points[i] + points[(i + 1) % points.size()]) * 0.5;
            EXPECT_NEAR(distanceTo(at(50, 8), middle), 50.0e3, tolerance + 0.11);
        }
    }
}

TEST(ShapeGeometry, LinesFollowGeodesicsAndRhumbLines) {
    const Vec3 from = at(37.8, -122.4, 0);
    const Vec3 to = at(35.6, 139.7, 1000);
    ZEL::Line line(false);
    line.addPoint(from);
    line.addPoint(to);
    double total = 0.0, azimuth = 0.0, end = 0.0;
    Geodesic::WGS84().Inverse(37.8, -122.4, 35.6, 139.7, total, azimuth, end);
    const auto points = geometry(line).lines.front().points;
    EXPECT_LT(length(points.front() - toEcef(from)), 1e-6);
    EXPECT_LT(length(points.back() - toEcef(to)), 1e-6);
    for (std::size_t i = 1; i < points.size(); ++i) {
        double here = 0.0;
        const double along = distanceTo(from, points[i], &here);
        EXPECT_NEAR(here, azimuth, 1e-6);
        EXPECT_NEAR(toGeodetic(points[i]).alt(), 1000.0 * along / total, 1e-3);
        EXPECT_LT(length(points[i] - points[i - 1]), 2001.0);
    }

    line.setTessellation(ZEL::TessellationStyle::RhumbLine);
    const GeographicLib::Rhumb& rhumb = GeographicLib::Rhumb::WGS84();
    double bearing = 0.0;
    rhumb.Inverse(37.8, -122.4, 35.6, 139.7, total, bearing);
    const auto loxodrome = geometry(line).lines.front().points;
    const Vec3 half = toGeodetic(loxodrome[loxodrome.size() / 2]);
    double there = 0.0;
    rhumb.Inverse(37.8, -122.4, half.lat() / kRadiansPerDegree, half.lon() / kRadiansPerDegree, total, there);
    EXPECT_NEAR(there, bearing, 1e-6);
}

TEST(ShapeGeometry, LineSegmentsArePairs) {
    ZEL::LineSegs segments(false);
    for (int i = 0; i < 5; ++i) segments.addPoint(at(0, i));
    const DrawList list = geometry(segments);
    ASSERT_EQ(list.lines.size(), 2U);
    EXPECT_NEAR(toGeodetic(list.lines[1].points.front()).lon(), 2 * kRadiansPerDegree, 1e-12);
    EXPECT_NEAR(toGeodetic(list.lines[1].points.back()).lon(), 3 * kRadiansPerDegree, 1e-12);
}

struct PolygonCase {
    const char* what;
    std::vector<std::pair<double, double>> corners;
};

class Polygons : public testing::TestWithParam<PolygonCase> {};

TEST_P(Polygons, AreFilledExactly) {
    ZEL::Polygon polygon(false);
    GeographicLib::PolygonArea expected(Geodesic::WGS84());
    for (const auto& [lat, lon] : GetParam().corners) {
        polygon.addPoint(at(lat, lon));
        expected.AddPoint(lat, lon);
    }
    polygon.setFilled(true);
    double perimeter = 0.0, area = 0.0;
    expected.Compute(false, true, perimeter, area);
    for (const double tolerance : {0.0, 2.0}) {
        const DrawList list = geometry(polygon, tolerance);
        ASSERT_EQ(list.meshes.size(), 1U);
        EXPECT_NEAR(areaOf(list.meshes.front()) / std::abs(area), 1.0, 1e-3) << GetParam().what;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, Polygons,
    testing::Values(PolygonCase{"convex", {{0, 0}, {0, 10}, {10, 10}, {10, 0}}},
                    PolygonCase{"concave", {{40, 0}, {40, 20}, {45, 10}, {50, 20}, {50, 0}}},
                    PolygonCase{"across 180°", {{60, 170}, {60, -170}, {70, -170}, {65, 180}, {70, 170}}},
                    PolygonCase{"around the pole", {{-70, 0}, {-75, 90}, {-70, 180}, {-80, -90}}},
                    PolygonCase{"clockwise and tiny", {{21, -158}, {21.0001, -158}, {21.0001, -157.9999}}},
                    PolygonCase{"large", {{0, -60}, {0, 60}, {70, 0}}}),
    [](const auto& info) { return "Case" + std::to_string(info.index); });

/// The ring that the world's borders give for Antarctica: down to the pole along 180° and back.
TEST(ShapeGeometry, ARingThatRunsThroughThePoleIsFilled) {
    ZEL::Polygon polygon(false);
    GeographicLib::PolygonArea expected(Geodesic::WGS84());
    for (int lon = -180; lon <= 180; lon += 5) {
        polygon.addPoint(at(-70, lon));
        if (lon < 180) expected.AddPoint(-70, lon);
    }
    polygon.addPoint(at(-90, 180));
    polygon.addPoint(at(-90, -180));
    polygon.setFilled(true);
    double perimeter = 0.0, area = 0.0;
    expected.Compute(false, true, perimeter, area);
    EXPECT_NEAR(areaOf(geometry(polygon).meshes.front()) / std::abs(area), 1.0, 1e-3);
}

TEST(ShapeGeometry, BoxesOfAnyWidthAreFilledOnTheirOwnSide) {
    struct Case {
        double north, south, west, east, span;
        std::size_t lines;
    };
    const GeographicLib::Ellipsoid& earth = GeographicLib::Ellipsoid::WGS84();
    const auto sine = [&](double lat) { return std::sin(earth.AuthalicLatitude(lat) * kRadiansPerDegree); };
    for (const Case& c :
         {Case{20, 10, 170, -170, 20, 1}, Case{60, -60, -120, 120, 240, 1}, Case{30, 0, 10, 0, 350, 1},
          Case{60, -30, 20, 20, 360, 2}, Case{90, -90, -180, 180, 360, 2}}) {
        ZEL::LatLonAltBox box(false);
        box.setNorth(c.north * kRadiansPerDegree);
        box.setSouth(c.south * kRadiansPerDegree);
        box.setWest(c.west * kRadiansPerDegree);
        box.setEast(c.east * kRadiansPerDegree);
        box.setFilled(true);
        const DrawList list = geometry(box);
        ASSERT_EQ(list.meshes.size(), 1U);
        const double area = earth.Area() / 2 * (sine(c.north) - sine(c.south)) * c.span / 360;
        EXPECT_NEAR(areaOf(list.meshes.front()) / area, 1.0, 1e-3) << c.span << " degrees wide";
        EXPECT_EQ(list.lines.size(), c.lines) << "no seam where it meets itself";
    }
}

TEST(ShapeGeometry, AreasTakeTheColourOfTheirLine) {
    ZEL::Circle circle(false);
    circle.setCenterPosition(at(1, 2));
    circle.setRadius(100);
    circle.setFilled(true);
    const auto fill = [&] { return geometry(circle).meshes.front().color; };
    EXPECT_EQ(fill(), (Rgba{255, 0, 0, 255}));
    circle.setLineColor(ZEL::Color(1, 2, 3, 200));
    EXPECT_EQ(fill(), (Rgba{1, 2, 3, 200}));
    circle.setFillColor(ZEL::Color(4, 5, 6, 100));
    EXPECT_EQ(fill(), (Rgba{4, 5, 6, 100}));
}

TEST(ShapeGeometry, EllipsesHaveTheirMajorAxisEastWest) {
    ZEL::Ellipse ellipse(false);
    ellipse.setCenterPosition(at(10, 20));
    ellipse.setMajorAxis(40.0e3);
    ellipse.setMinorAxis(10.0e3);
    const auto radiusTowards = [&](double wanted) {
        double best = 1e9, radius = 0.0;
        const DrawList list = geometry(ellipse);
        for (const Ecef& p : list.lines.front().points) {
            double azimuth = 0.0;
            const double meters = distanceTo(at(10, 20), p, &azimuth);
            const double off = std::abs(std::remainder(azimuth - wanted, 360.0));
            if (off < best) {
                best = off;
                radius = meters;
            }
        }
        return radius;
    };
    EXPECT_NEAR(radiusTowards(90), 20.0e3, 1.0);
    EXPECT_NEAR(radiusTowards(0), 5.0e3, 1.0);
    ellipse.setYawOffset(30 * kRadiansPerDegree);  // clockwise
    EXPECT_NEAR(radiusTowards(120), 20.0e3, 1.0);
    EXPECT_NEAR(radiusTowards(30), 5.0e3, 1.0);

    // An axis that is missing is as long as the other one, unless there is a radius.
    ZEL::Ellipse round(false);
    round.setCenterPosition(at(10, 20));
    round.setMinorAxis(10.0e3);
    const auto longest = [&] {
        double most = 0.0;
        const DrawList list = geometry(round);
        for (const Ecef& p : list.lines.front().points) most = std::max(most, distanceTo(at(10, 20), p));
        return most;
    };
    EXPECT_NEAR(longest(), 5.0e3, 1.0);
    round.setMinorAxis(-10.0e3);
    EXPECT_NEAR(longest(), 5.0e3, 1.0) << "without its sign";
    round.setRadius(-7.0e3);
    EXPECT_NEAR(longest(), 7.0e3, 1.0);
}

TEST(ShapeGeometry, ArcsRunOverTheirSweepOnly) {
    struct Case {
        double start, sweep, major, minor;
    };
    for (const Case& c :
         {Case{30, 100, 0, 0}, Case{300, 120, 0, 0}, Case{90, -45, 0, 0}, Case{10, 200, 60e3, 20e3}}) {
        ZEL::Arc arc(false);
        arc.setCenterPosition(at(-33, 18));
        arc.setRadius(20.0e3);
        if (c.major > 0.0) arc.setMajorAxis(c.major);
        if (c.minor > 0.0) arc.setMinorAxis(c.minor);
        arc.setAngleStart(c.start * kRadiansPerDegree);
        arc.setAngleSweep(c.sweep * kRadiansPerDegree);
        const DrawList list = geometry(arc);
        ASSERT_EQ(list.lines.size(), 1U);
        EXPECT_FALSE(list.lines.front().closed);
        const auto& points = list.lines.front().points;
        double first = 0.0, last = 0.0;
        distanceTo(at(-33, 18), points.front(), &first);
        distanceTo(at(-33, 18), points.back(), &last);
        EXPECT_NEAR(std::remainder(first - c.start, 360.0), 0.0, 1e-6);
        EXPECT_NEAR(std::remainder(last - c.start - c.sweep, 360.0), 0.0, 1e-6);
        EXPECT_TRUE(list.meshes.empty());
    }
}

TEST(ShapeGeometry, OrbitsKeepTheirRadiusFromTheLeg) {
    const Vec3 first = at(20, -157.5);
    const Vec3 second = at(20.2, -156.2);
    ZEL::Orbit orbit(false);
    orbit.setCenterPosition(first);
    orbit.setCenterPosition2(second);
    orbit.setRadius(12.0e3);
    const auto points = geometry(orbit).lines.front().points;
    double widest = 0.0, nearest = 1e9;
    for (const Ecef& p : points) {
        const double meters = std::min(distanceTo(first, p), distanceTo(second, p));
        nearest = std::min(nearest, meters);
        widest = std::max(widest, meters);
    }
    EXPECT_NEAR(nearest, 12.0e3, 1e-3);
    // The middle of a side, give or take half a piece of it.
    double leg = 0.0, unused = 0.0, unused2 = 0.0;
    Geodesic::WGS84().Inverse(20, -157.5, 20.2, -156.2, leg, unused, unused2);
    EXPECT_LT(widest, std::hypot(leg / 2, 12.0e3) + 1.0);
    EXPECT_GT(widest, std::hypot(leg / 2 - 1001.0, 12.0e3) - 1.0);
}

/// x east, y north of the flat frame: at 60° N a degree of longitude is N cos 60° long.
TEST(ShapeGeometry, RelativeShapesStandAboutTheirReference) {
    const OverlayReference ship{at(60, 10, 5), 90 * kRadiansPerDegree, 0, 0};
    ZEL::Points points(true);
    points.addPoint({1000, 0, 0});
    points.addPoint({0, 1000, 20});
    ASSERT_TRUE(geometry(points).lines.empty()) << "nothing to stand about";
    const DrawList list = geometry(points, 0.0, ship);
    ASSERT_EQ(list.lines.size(), 2U);
    // The radii of curvature at 60°, by their closed formulas.
    const double e2 = (1 / 298.257223563) * (2 - 1 / 298.257223563);
    const double w = std::sqrt(1 - e2 * 0.75);
    const double n = 6378137.0 / w + 5.0;
    const double m = 6378137.0 * (1 - e2) / (w * w * w) + 5.0;
    const Vec3 east = toGeodetic(list.lines[0].points.front());
    EXPECT_NEAR(east.lat(), 60 * kRadiansPerDegree, 1e-12);
    EXPECT_NEAR(east.lon(), 10 * kRadiansPerDegree + 1000.0 / (n * 0.5), 1e-12);
    const Vec3 north = toGeodetic(list.lines[1].points.front());
    EXPECT_NEAR(north.lat(), 60 * kRadiansPerDegree + 1000.0 / m, 1e-12);
    EXPECT_NEAR(north.alt(), 25.0, 1e-6);

    // A shape's own reference point goes before the platform; following turns with the heading.
    points.setReferencePosition(at(0, 0));
    EXPECT_NEAR(toGeodetic(geometry(points, 0.0, ship).lines[0].points.front()).lat(), 0.0, 1e-12);
    points.setFollowYaw(true);
    const Vec3 turned = toGeodetic(geometry(points, 0.0, ship).lines[1].points.front());
    EXPECT_NEAR(turned.lat(), 0.0, 1e-12);
    EXPECT_NEAR(turned.lon(), 1000.0 / 6378137.0, 1e-12);
}

TEST(ShapeGeometry, SolidsHaveTheirSizes) {
    const Vec3 center = at(30, 40, 100);
    const Ecef up = localFrame(30 * kRadiansPerDegree, 40 * kRadiansPerDegree).up;
    const auto heights = [&](const ZEL::ZelShape& shape) {
        double low = 1e9, high = -1e9;
        for (const DrawList::Mesh& mesh : geometry(shape).meshes) {
            EXPECT_TRUE(mesh.solid);
            for (const Ecef& p : mesh.vertices) {
                const double height = dot(p - toEcef(center), up);
                low = std::min(low, height);
                high = std::max(high, height);
            }
        }
        return std::pair(low, high);
    };
    const auto expect = [&](const char* what, const ZEL::ZelShape& shape, double low, double high) {
        const auto [l, h] = heights(shape);
        EXPECT_NEAR(l, low, 0.05) << what;
        EXPECT_NEAR(h, high, 0.05) << what;
    };
    const auto prepare = [&](ZEL::CircularShape& shape) {
        shape.setCenterPosition(center);
        shape.setRadius(500.0);
        shape.setFilled(true);
    };
    ZEL::Sphere sphere(false);
    prepare(sphere);
    expect("sphere", sphere, -500, 500);
    ZEL::Hemisphere hemisphere(false);
    prepare(hemisphere);
    expect("hemisphere", hemisphere, 0, 500);
    ZEL::Ellipsoid ellipsoid(false);
    prepare(ellipsoid);
    ellipsoid.setMajorAxis(3000);
    ellipsoid.setMinorAxis(1000);
    ellipsoid.setHeight(200);
    expect("ellipsoid", ellipsoid, -200, 200);
    ZEL::Cylinder cylinder(false);
    prepare(cylinder);
    cylinder.setHeight(300);
    expect("cylinder", cylinder, -0.02, 300);
    ZEL::Cone cone(false);
    prepare(cone);
    cone.setHeight(700);
    expect("cone", cone, -0.02, 700);
}

/// Outer faces are drawn only: each must run counter-clockwise as seen from outside.
TEST(ShapeGeometry, SolidsFaceOutwards) {
    std::vector<std::unique_ptr<ZEL::ZelShape>> shapes;
    const auto add = [&](auto shape) {
        shape->setCenterPosition(at(-20, 179.95, 1000));
        shape->setRadius(5000.0);
        shape->setFilled(true);
        shapes.push_back(std::move(shape));
    };
    for (const Vec3& scale : {Vec3(1, 1, 1), Vec3(-1, 1, 1), Vec3(1, 1, -1)}) {
        add(std::make_unique<ZEL::Sphere>(false));
        shapes.back()->setScale(scale);
        add(std::make_unique<ZEL::Hemisphere>(false));
        shapes.back()->setScale(scale);
    }
    for (const double height : {4000.0, -4000.0}) {
        auto cylinder = std::make_unique<ZEL::Cylinder>(false);
        cylinder->setHeight(height);
        add(std::move(cylinder));
        auto cone = std::make_unique<ZEL::Cone>(false);
        cone->setHeight(height);
        add(std::move(cone));
        auto wedge = std::make_unique<ZEL::Cylinder>(false);
        wedge->setHeight(height);
        wedge->setAngleStart(0.3);
        wedge->setAngleSweep(height > 0.0 ? 1.2 : -1.2);
        add(std::move(wedge));
        auto box = std::make_unique<ZEL::LatLonAltBox>(false);
        box->setNorth(0.1);
        box->setSouth(0.09);
        box->setWest(3.14);
        box->setEast(-3.13);
        box->setAltitude(5000);
        box->setHeight(height);
        box->setFilled(true);
        shapes.push_back(std::move(box));
    }
    for (const auto& shape : shapes) {
        // The volume by the divergence theorem: positive and of one closed surface.
        const DrawList list = geometry(*shape);
        ASSERT_FALSE(list.meshes.empty());
        const Ecef origin = list.meshes.front().vertices.front();
        double volume = 0.0;
        Ecef open;
        for (const DrawList::Mesh& mesh : list.meshes) {
            for (std::size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
                const Ecef a = mesh.vertices[mesh.triangles[i]] - origin;
                const Ecef b = mesh.vertices[mesh.triangles[i + 1]] - origin;
                const Ecef c = mesh.vertices[mesh.triangles[i + 2]] - origin;
                volume += dot(a, cross(b, c)) / 6.0;
                open = open + cross(b - a, c - a) * 0.5;
            }
        }
        EXPECT_GT(volume, 0.0) << int(shape->shapeType());
        EXPECT_LT(length(open), 0.01 * std::pow(volume, 2.0 / 3.0)) << int(shape->shapeType());
    }
}

/// The lowest and the highest altitude of everything drawn, metres.
std::pair<double, double> altitudes(const DrawList& list) {
    std::pair<double, double> range(1e9, -1e9);
    const auto take = [&range](const std::vector<Ecef>& points) {
        for (const Ecef& p : points) {
            const double altitude = toGeodetic(p).alt();
            range = {std::min(range.first, altitude), std::max(range.second, altitude)};
        }
    };
    for (const DrawList::Mesh& mesh : list.meshes) take(mesh.vertices);
    for (const DrawList::Line& line : list.lines) take(line.points);
    return range;
}

void expectAltitudes(const char* what, const ZEL::ZelShape& shape, double low, double high) {
    const auto [l, h] = altitudes(geometry(shape));
    EXPECT_NEAR(l, low, 0.05) << what;
    EXPECT_NEAR(h, high, 0.05) << what;
}

TEST(ShapeGeometry, AltitudeModesMoveBodiesButKeepTheirHeight) {
    ZEL::Cylinder cylinder(false);
    cylinder.setCenterPosition(at(30, 40, 100));
    cylinder.setRadius(500.0);
    cylinder.setHeight(300.0);
    cylinder.setAltitudeOffset(50.0);
    ZEL::LatLonAltBox box(false);
    box.setNorth(0.101);
    box.setSouth(0.1);
    box.setEast(0.201);
    box.setWest(0.2);
    box.setAltitude(100.0);
    box.setHeight(300.0);
    box.setAltitudeOffset(50.0);
    for (ZEL::ZelShape* shape : {static_cast<ZEL::ZelShape*>(&cylinder), static_cast<ZEL::ZelShape*>(&box)}) {
        expectAltitudes("offset", *shape, 150, 450);
        shape->setAltitudeMode(ZEL::AltitudeMode::ClampToGround);
        expectAltitudes("clamped", *shape, 0, 300);
    }
}

TEST(ShapeGeometry, ExtrusionReachesTheGroundOrItsHeightWithALid) {
    ZEL::Polygon polygon(false);
    for (const Vec3& corner : {at(10, 20, 200), at(10, 20.01, 300), at(10.01, 20, 400)})
        polygon.addPoint(corner);
    ZEL::Arc arc(false);
    arc.setCenterPosition(at(10, 20, 200));
    arc.setRadius(300.0);
    arc.setAngleSweep(1.0);
    ZEL::Points points(false);
    points.addPoint(at(10, 20, 200));
    polygon.setFilled(true);
    polygon.setAltitudeMode(ZEL::AltitudeMode::Extrude);
    arc.setAltitudeMode(ZEL::AltitudeMode::Extrude);
    points.setAltitudeMode(ZEL::AltitudeMode::Extrude);
    expectAltitudes("polygon to the ground", polygon, 0, 400);
    expectAltitudes("arc to the ground", arc, 0, 200);
    expectAltitudes("point to the ground", points, 0, 200);
    EXPECT_EQ(geometry(polygon).meshes.size(), 2U) << "area and curtain";

    polygon.setExtrudeHeight(1000.0);
    arc.setExtrudeHeight(1000.0);
    points.setExtrudeHeight(1000.0);
    expectAltitudes("polygon", polygon, 200, 1400);
    expectAltitudes("arc", arc, 200, 1200);
    expectAltitudes("point", points, 200, 1200);
    const DrawList list = geometry(polygon);
    EXPECT_EQ(list.meshes.size(), 3U) << "area, curtain and lid";
    EXPECT_EQ(list.lines.size(), 2U);
    arc.setFilled(true);
    EXPECT_EQ(geometry(arc).lines.size(), 2U) << "filled, the arc is drawn at both ends too";
}

TEST(ShapeGeometry, PitchAndRollLeanRoundShapes) {
    const auto expectLean = [](ZEL::CircularShape& shape, const char* what) {
        const Vec3 center = at(0, 0, 5000);
        shape.setCenterPosition(center);
        shape.setRadius(1000.0);
        // Heading east: ahead is y, the right side -z, up x.
        shape.setYawOffset(90 * kRadiansPerDegree);
        const auto heightOf = [&](double ahead, double right) {
            double best = 1e9, height = 0.0;
            const DrawList list = geometry(shape);
            for (const Ecef& p : list.lines.front().points) {
                const Ecef v = p - toEcef(center);
                const double off = std::hypot(v.y - ahead, v.z + right);
                if (off < best) best = off, height = v.x;
            }
            EXPECT_LT(best, 20.0) << what;
            return height;
        };
        const double less = 1000.0 * std::cos(30 * kRadiansPerDegree);
        shape.setPitchOffset(30 * kRadiansPerDegree);
        EXPECT_NEAR(heightOf(less, 0), 500.0, 2.0) << what;
        EXPECT_NEAR(heightOf(-less, 0), -500.0, 2.0) << what;
        EXPECT_NEAR(heightOf(0, 1000), 0.0, 12.0) << what;
        shape.setPitchOffset(0.0);
        shape.setRollOffset(30 * kRadiansPerDegree);
        EXPECT_NEAR(heightOf(0, less), -500.0, 2.0) << what;
        EXPECT_NEAR(heightOf(0, -less), 500.0, 2.0) << what;
        shape.setAltitudeMode(ZEL::AltitudeMode::ClampToGround);
        expectAltitudes(what, shape, 0, 0);
    };
    ZEL::Circle circle(false);
    expectLean(circle, "circle");
    ZEL::Ellipse ellipse(false);
    ellipse.setMajorAxis(2000.0);
    ellipse.setMinorAxis(2000.0);
    expectLean(ellipse, "ellipse");
    ZEL::Cylinder cylinder(false);
    expectLean(cylinder, "cylinder");
}

TEST(ShapeGeometry, WhatIsOffOrIncompleteIsNotDrawn) {
    ZEL::Circle off(false);
    off.setCenterPosition(at(0, 0));
    off.setRadius(1000);
    off.setDrawn(false);
    EXPECT_TRUE(geometry(off).lines.empty());
    ZEL::Circle noCenter(false);
    noCenter.setRadius(1000);
    EXPECT_TRUE(geometry(noCenter).lines.empty());
    ZEL::Orbit oneCenter(false);
    oneCenter.setCenterPosition(at(0, 0));
    oneCenter.setRadius(1000);
    EXPECT_TRUE(geometry(oneCenter).lines.empty());
    ZEL::Circle wild(false);
    wild.setCenterPosition({NAN, 0, 0});
    wild.setRadius(INFINITY);
    EXPECT_TRUE(geometry(wild).lines.empty());
    ZEL::Circle fillOnly(false);
    fillOnly.setCenterPosition(at(0, 0));
    fillOnly.setRadius(1000);
    fillOnly.setFilled(true);
    fillOnly.setOutlined(false);
    EXPECT_TRUE(geometry(fillOnly).lines.empty());
    EXPECT_EQ(geometry(fillOnly).meshes.size(), 1U);
}

TEST(OverlayScene, ReportsRealChangesOnly) {
    OverlayScene scene;
    int reports = 0;
    scene.setChangeCallback([&] { ++reports; });
    const auto id = scene.add({});
    EXPECT_EQ(reports, 1);
    scene.setShown(id, true);
    scene.setReference(id, std::nullopt);
    scene.remove(id + 1);
    scene.replace(id + 1, {});
    EXPECT_EQ(reports, 1);
    const auto revision = scene.find(id)->revision;
    scene.setShown(id, false);
    EXPECT_EQ(scene.find(id)->revision, revision) << "hiding rebuilds nothing";
    scene.setReference(id, OverlayReference{at(1, 2), 0, 0, 0});
    EXPECT_GT(scene.find(id)->revision, revision);
    scene.remove(id);
    EXPECT_EQ(reports, 4);
    EXPECT_NE(scene.add({}), id) << "an id is never given twice";
}

}  // namespace
}  // namespace sandbox
