#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <GeographicLib/Ellipsoid.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <GeographicLib/Rhumb.hpp>
#include <gtest/gtest.h>

#include "geo/Ecef.h"
#include "geo/Sodano.h"
#include "globe/DetailBudget.h"
#include "globe/ShapeGeometry.h"
#include "globe/ShapeText.h"

namespace sandbox {
namespace {

using halCore::Ecef;
using halCore::Vec3;
using halCore::Sodano::inverse;

DrawList drawn(const OverlayScene::Shapes& shapes, double tolerance = 0.0,
               const std::optional<OverlayReference>& reference = std::nullopt) {
    DrawList list;
    for (const auto& shape : shapes) appendGeometry(*shape, reference, tolerance, list);
    return list;
}
DrawList drawn(std::string_view text, double tolerance = 0.0) {
    return drawn(shapesOf(text), tolerance);
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

/// All that is drawn, but for areas.
std::vector<Ecef> placesOf(const DrawList& list) {
    std::vector<Ecef> result;
    const auto take = [&](const auto& places) { result.insert(result.end(), places.begin(), places.end()); };
    for (const DrawList::Line& line : list.lines) take(line.points);
    for (const DrawList::Picture& picture : list.pictures) take(picture.vertices);
    for (const DrawList::Label& label : list.labels) result.push_back(label.position);
    return result;
}

/// The smaller area that a ring cuts off the ellipsoid, by GeographicLib.
double areaWithin(const std::vector<Ecef>& ring) {
    GeographicLib::PolygonArea polygon(GeographicLib::Geodesic::WGS84());
    for (const Ecef& p : ring) {
        const Vec3 place = toGeodetic(p);
        polygon.AddPoint(place.lat() / kRadiansPerDegree, place.lon() / kRadiansPerDegree);
    }
    double perimeter = 0.0, area = 0.0;
    polygon.Compute(false, true, perimeter, area);
    return std::abs(area);
}

/// Every kind of shape, with its longitudes behind an @ each.
const char* const kShapes[] = {
    "points; ll 1 @20; ll 2 @19.9; pointsize 7 | linesegs; ll 0 @18; ll 0 @21; ll 1 @20; ll 3 @20",
    "line; ll 10 @15; lla 40 @25 5000; ll 41 @24.5 | annotation A; ll 30 @20",
    "line; ll 10 @15; ll 40 @25; tessellate true; lineprojection rhumbline",
    "polygon; ll 60 @10; ll 60 @30; ll 70 @30; ll 65 @20; ll 70 @10; filled",
    "polygon; ll -70 @0; ll -75 @90; ll -70 @180; ll -80 @-90; filled",
    "polygon; lla 5 @20 900; lla 6 @20 900; lla 6 @21 900; filled; extrude true 500",
    "circle; centerll 89.9 @20; radius 300000; filled",
    "ellipse; centerll 10 @20; majoraxis 400000; minoraxis 100000; orient 30 0 0; filled",
    "arc; centerll -33 @20; radius 20000; anglestart 300; angledeg 120; filled",
    "orbit; centerll 20 @19.5; centerll2 20.2 @20.8; radius 12000; filled",
    "latlonaltbox 20.1 10 @15 @25.1 0; filled | latlonaltbox 20.1 -10 @-110.1 @130 100 5000; filled",
    "latlonaltbox 60 -30 @20 @20 0; filled | cylinder; centerlla 30 @20 100; radius 5000; height 300; filled",
    "cylinder; centerll 30 @20; radius 5000; anglestart 20; angledeg -100; height -300; filled",
    "cone; centerll 30 @20; radius 5000; height 300; orient 10 20 30; filled",
    "sphere; centerll 30 @20; radius 5000; filled | hemisphere; centerll 30 @20; radius 5000",
    "ellipsoid; centerll 30 @20; majoraxis 3000; minoraxis 1000; height 200; orient 20 30 40; filled",
    "# kml_groundoverlay; # kml_icon a.png; # kml_latlonbox 61 59 @21 @19 30",
    "line; xyz 5000 -200 7; xyz -9000 100 -7; ref 60 @20; orient 30 0 0",
};

/// A text whose longitudes are turned eastwards by so many degrees.
std::string turned(std::string text, double degrees = 0.0) {
    for (std::size_t i = text.find('@'); i != std::string::npos; i = text.find('@')) {
        std::size_t size = 0;
        const double lon = std::stod(text.substr(i + 1), &size);
        text.replace(i, size + 1, std::to_string(std::remainder(lon + degrees, 360.0)));
    }
    return text;
}

/// The same everywhere: also where the shape lies across 180°.
TEST(ShapeGeometry, AnyMeridianIsAsGoodAsAnother) {
    for (const char* text : kShapes) {
        const DrawList here = drawn(turned(text));
        const std::vector<Ecef> places = placesOf(here);
        EXPECT_FALSE(places.empty());
        for (const double degrees : {159.75, 160.0, 180.0, -20.0}) {
            SCOPED_TRACE(turned(text, degrees));
            const DrawList there = drawn(turned(text, degrees));
            const std::vector<Ecef> others = placesOf(there);
            ASSERT_EQ(others.size(), places.size());
            const double sine = std::sin(degrees * kRadiansPerDegree);
            const double cosine = std::cos(degrees * kRadiansPerDegree);
            double off = 0.0;
            for (std::size_t i = 0; i < places.size(); ++i) {
                const Ecef& p = places[i];
                off = std::max(
                    off, length(others[i] - Ecef{p.x * cosine - p.y * sine, p.x * sine + p.y * cosine, p.z}));
            }
            EXPECT_LT(off, 1e-3);
            ASSERT_EQ(there.meshes.size(), here.meshes.size());
            for (std::size_t i = 0; i < here.meshes.size(); ++i)
                EXPECT_NEAR(areaOf(there.meshes[i]) / areaOf(here.meshes[i]), 1.0, 2e-4);
        }
    }
}

/// What is drawn coarsely is off by about its tolerance at most, and saves points.
TEST(ShapeGeometry, CoarseLinesStayWithinTheirTolerance) {
    for (const char* text : kShapes) {
        const DrawList fine = drawn(turned(text));
        std::size_t before = 1'000'000;
        for (const double tolerance : {0.0, 2.0, 50.0, 1250.0}) {
            const DrawList coarse = drawn(turned(text), tolerance);
            ASSERT_EQ(coarse.lines.size(), fine.lines.size());
            std::size_t points = 0;
            double off = 0.0;
            for (std::size_t k = 0; k < fine.lines.size(); ++k) {
                std::vector<Ecef> line = coarse.lines[k].points;
                points += line.size();
                if (coarse.lines[k].closed) line.push_back(Ecef(line.front()));
                const std::vector<Ecef>& all = fine.lines[k].points;
                for (std::size_t n = 0; n < all.size(); n += 1 + all.size() / 60) {
                    double nearest = length(all[n] - line.front());
                    for (std::size_t i = 1; i < line.size(); ++i) {
                        const Ecef v = line[i] - line[i - 1], w = all[n] - line[i - 1];
                        nearest =
                            std::min(nearest, length(w - v * std::clamp(dot(w, v) / dot(v, v), 0.0, 1.0)));
                    }
                    off = std::max(off, nearest);
                }
            }
            EXPECT_LT(off, tolerance * 1.5 + 0.2) << text << " within " << tolerance;
            EXPECT_LE(points, before) << text;
            before = points;
        }
    }
}

/// Every point is where its azimuth tells, in pieces as short as need be.
TEST(ShapeGeometry, RoundShapesAreRound) {
    const std::string wide = "ellipse; majoraxis 40000; minoraxis 10000; centerll 10 20";
    const struct {
        std::string text;
        double east, north, turn = 0, start = 0, sweep = 360;
    } cases[] = {
        {"circle; radius 50000; centerll 21.3 -158", 50e3, 50e3},
        {"circle; radius -10; centerll 0 0", 10, 10},
        {"circle; radius 2000000; centerll -90 0", 2e6, 2e6},
        {"circle; radius 9000000; centerll 10 10", 9e6, 9e6},
        {"circle; radius 7000; scale 2 2 1; centerll 1 1", 14e3, 14e3},
        {"circle; radius 7000; scale 3 1 1; orient 9 0 0; centerll 1 1", 21e3, 7e3, 9},
        {wide, 20e3, 5e3},
        {wide + "; orient 30 0 0; scale 1 2 1", 20e3, 10e3, 30},
        // An axis that is missing is as long as the other one, unless there is a radius.
        {"ellipse; minoraxis -10000; centerll 10 20", 5e3, 5e3},
        {"ellipse; minoraxis 10000; radius -7000; centerll 10 20", 7e3, 5e3},
        {"arc; radius 20000; anglestart 30; angledeg 100; centerll -33 18", 20e3, 20e3, 0, 30, 100},
        {"arc; radius 20000; anglestart 90; angledeg -45; centerll -33 18", 20e3, 20e3, 0, 90, -45},
        {"arc" + wide.substr(7) + "; anglestart 10; angledeg 200; orient 50 0 0", 20e3, 5e3, 50, 60, 200}};
    for (const auto& c : cases) {
        const auto shape = shapesOf(c.text).front();
        Vec3 center;
        dynamic_cast<halCore::ZEL::CircularShape&>(*shape).getCenterPosition(center);
        SCOPED_TRACE(c.text);
        const DrawList list = drawn({shape});
        ASSERT_TRUE(list.lines.size() == 1 && list.lines.front().closed == (c.sweep == 360.0));
        const std::vector<Ecef>& points = list.lines.front().points;
        double passed = 0.0, before = c.start, longest = 0.0;
        for (const Ecef& p : points) {
            const auto way = inverse(center, toGeodetic(p));
            const double seen = way.azimuth1 - c.turn * kRadiansPerDegree;
            EXPECT_NEAR(std::hypot(std::sin(seen) / c.east, std::cos(seen) / c.north) * way.distance, 1.0,
                        1e-7);
            EXPECT_NEAR(toGeodetic(p).alt(), 0.0, 1e-6);
            const double azimuth = way.azimuth1 / kRadiansPerDegree;
            passed += std::remainder(azimuth - before, 360.0);
            before = azimuth;
            if (&p != &points.front()) longest = std::max(longest, length(p - *(&p - 1)));
        }
        // Sideways the straight pieces are within a centimetre, or 2e-6 of the radius.
        const double most = std::max(c.east, c.north);
        EXPECT_LT(longest * longest / (8.0 * most), std::max(0.0101, 2.02e-6 * most));
        EXPECT_NEAR(std::abs(passed), std::abs(c.sweep), c.sweep == 360.0 ? 60.0 : 1e-6);
        EXPECT_TRUE(passed * c.sweep > 0.0 || c.sweep == 360.0) << "the way round";
    }
}

TEST(ShapeGeometry, LinesFollowGeodesicsAndRhumbLines) {
    const Vec3 from = at(37.8, -122.4);
    const std::string text = "line; ll 37.8 -122.4; lla 35.6 139.7 1000";
    const auto whole = inverse(from, at(35.6, 139.7));
    const auto points = drawn(text).lines.front().points;
    EXPECT_LT(length(points.front() - toEcef(from)), 1e-6);
    EXPECT_LT(length(points.back() - toEcef(at(35.6, 139.7, 1000))), 1e-6);
    for (std::size_t i = 1; i < points.size(); ++i) {
        const auto here = inverse(from, toGeodetic(points[i]));
        EXPECT_NEAR(here.azimuth1, whole.azimuth1, 1e-8);
        EXPECT_NEAR(toGeodetic(points[i]).alt(), 1000.0 * here.distance / whole.distance, 1e-3);
        EXPECT_LT(length(points[i] - points[i - 1]), 2001.0);
    }
    const GeographicLib::Rhumb& rhumb = GeographicLib::Rhumb::WGS84();
    double meters = 0.0, bearing = 0.0, there = 0.0;
    rhumb.Inverse(37.8, -122.4, 35.6, 139.7, meters, bearing);
    const auto loxodrome = drawn(text + "; tessellate true; lineprojection rhumbline").lines.front().points;
    const Vec3 half = toGeodetic(loxodrome[loxodrome.size() / 2]);
    rhumb.Inverse(37.8, -122.4, half.lat() / kRadiansPerDegree, half.lon() / kRadiansPerDegree, meters,
                  there);
    EXPECT_NEAR(there, bearing, 1e-6);
    const DrawList pairs = drawn("linesegs; ll 0 0; ll 0 1; ll 0 2; ll 0 3; ll 0 4");
    ASSERT_EQ(pairs.lines.size(), 2U);
    EXPECT_LT(length(pairs.lines[1].points.front() - toEcef(at(0, 2))), 1e-6);
    EXPECT_LT(length(pairs.lines[1].points.back() - toEcef(at(0, 3))), 1e-6);
}

/// Areas cover what is within their outline, once: wide boxes, rings across 180° and around a pole, and all
/// countries.
TEST(ShapeGeometry, AreasAreFilledExactly) {
    OverlayScene::Shapes shapes = shapesOf(
        "polygon; ll 0 0; ll 0 10; ll 10 10; ll 10 0; filled | polygon; ll 0 -60; ll 0 60; ll 70 0; filled"
        " | polygon; ll 60 170; ll 60 -170; ll 70 -170; ll 65 180; ll 70 170; filled"
        " | polygon; ll -70 0; ll -75 90; ll -70 180; ll -80 -90; filled | circle; centerll 10 10; radius 9e6"
        "; filled | circle; centerll 1 2; radius 9999; scale 3 1 1; filled | circle; centerll -90 0; radius "
        "2e6"
        "; filled | latlonaltbox 20 10 170 -170 0; filled | latlonaltbox 20 -30 -120 120 0; filled"
        " | latlonaltbox 30 0 10 0 0; filled | orbit; centerll 20 1; centerll2 20 1; radius 12000; filled"
        " | orbit; centerll 20 179.5; centerll2 20.2 -179; radius 12000; filled");
    const double leg = inverse(at(20, 179.5), at(20.2, -179)).distance;
    EXPECT_NEAR(
        areaWithin(drawn({shapes.back()}).lines.front().points) / (12e3 * (halCore::kPi * 12e3 + 2.0 * leg)),
        1.0, 1e-4);
    for (const auto& country : halCore::ZEL::parsed(halCore::ZEL::sample("countries-110m.zel")).shapes) {
        dynamic_cast<halCore::ZEL::Polygon&>(*country).setFilled(true);
        shapes.push_back(country);
    }
    for (const auto& shape : shapes)
        for (const double tolerance : {0.0, 2.0, 1250.0}) {
            const DrawList list = drawn({shape}, tolerance);
            ASSERT_TRUE(list.lines.size() == 1 && list.lines.front().closed && list.meshes.size() == 1);
            const double area = areaWithin(list.lines.front().points);
            EXPECT_NEAR(areaOf(list.meshes.front()), area, 1.0 + area * (tolerance > 2.0 ? 1e-2 : 2e-3))
                << halCore::ZEL::written(*shape).substr(0, 200);
        }
    // All around, without a seam where they meet themselves.
    const GeographicLib::Ellipsoid& earth = GeographicLib::Ellipsoid::WGS84();
    EXPECT_NEAR(areaOf(drawn("latlonaltbox 90 0 20 20 0; filled").meshes.front()) * 2.0 / earth.Area(), 1.0,
                1e-3);
    EXPECT_EQ(drawn("latlonaltbox 90 0 -180 180 0; filled").lines.size(), 2U);
}

/// A ring with more crossings than anybody can see is filled by the same rule, for a price that does not grow
/// with them. Held against a count of places.
TEST(ShapeGeometry, TangledAreasAreFilledInRows) {
    for (const int points : {41, 1001}) {
        // Each corner joined with the one that lies almost opposite, on a circle of 0.2 degrees.
        std::vector<std::pair<double, double>> corners;
        std::string text = "polygon; filled";
        for (int i = 0; i <= points; ++i) {
            const double turn = halCore::kTwoPi * (i * (points / 2) % points) / points;
            corners.emplace_back(0.2 * std::cos(turn), 0.2 * std::sin(turn));
            if (i < points)
                text += "; ll " + std::to_string(corners.back().first) + " " +
                        std::to_string(corners.back().second);
        }
        const DrawList list = drawn(text);
        EXPECT_LT(list.meshes.at(0).triangles.size(), 200000U) << points;
        // Very many together cost little more than many.
        DetailBudget budget;
        std::size_t made[2] = {};
        const OverlayScene::Shapes shapes = shapesOf(text);
        const halCore::ZEL::ZelShape& shape = *shapes.front();
        for (int i = 0; i < 80; ++i) {
            DrawList more;
            appendGeometry(shape, std::nullopt, 1250.0, more, budget.shares());
            EXPECT_GT(areaOf(more.meshes.at(0)), 1e8) << i;
            const DetailCount count = detailOf(shape, more.meshes, more.lines);
            budget.spend(count);
            made[i / 40] += count.triangles;
        }
        EXPECT_LT(10 * made[1], 9 * made[0]) << points;
        budget.giveBack({.triangles = made[0] + made[1]});
        EXPECT_EQ(budget.shares().rows, 1.0);
        int inside = 0;
        constexpr int kSide = 100;
        for (int place = 0; place < kSide * kSide; ++place) {
            const double x = 0.4 * (place % kSide + 0.5) / kSide - 0.2;
            const double y = 0.4 * (place / kSide + 0.5) / kSide - 0.2;
            bool odd = false;
            for (std::size_t i = 1; i < corners.size(); ++i) {
                const auto [ax, ay] = corners[i - 1];
                const auto [bx, by] = corners[i];
                if ((ay <= y) != (by <= y) && ax + (bx - ax) * (y - ay) / (by - ay) > x) odd = !odd;
            }
            inside += odd ? 1 : 0;
        }
        const double degree = 110.9e3;
        const double expected = 0.16 * degree * degree * inside / (kSide * kSide);
        EXPECT_NEAR(areaOf(list.meshes.at(0)) / expected, 1.0, 0.05) << points;
    }
}

/// Lines that leap about the earth, beyond what is spent on each: with less and less between their points.
TEST(ShapeGeometry, VeryManyLinesSharePieces) {
    const OverlayScene::Shapes shapes = shapesOf("line; ll 0 0; ll 10 90; ll -20 -150; ll 60 10; ll 0 0");
    constexpr double kTolerance = 50.0;
    const std::size_t alone = drawn(shapes, kTolerance).lines.at(0).points.size();
    DetailBudget budget(10.0 * static_cast<double>(alone));
    std::size_t spent = 0;
    for (int i = 0; i < 1000; ++i) {
        DrawList list;
        appendGeometry(*shapes.front(), std::nullopt, kTolerance, list, budget.shares());
        const std::vector<Ecef>& points = list.lines.at(0).points;
        ASSERT_TRUE(i >= 10 || points.size() == alone) << i;
        for (const Ecef& corner : {points.front(), points.back()})
            ASSERT_LT(length(corner - halCore::toEcef({0.0, 0.0, 0.0})), 1e-3);
        const DetailCount count = detailOf(*shapes.front(), list.meshes, list.lines);
        ASSERT_EQ(count.pieces, points.size() - 5);
        budget.spend(count);
        spent += count.pieces;
    }
    EXPECT_LT(spent, 50 * alone);
    budget.giveBack({.pieces = spent});
    EXPECT_EQ(budget.shares().pieces, 1.0);
}

/// Shapes of very many points, which would take long in one piece: tangled and plain areas, on the ground and
/// above it, lines, pairs and dots.
OverlayScene::Shapes largeShapes(int points) {
    OverlayScene::Shapes shapes;
    std::mt19937 random(5);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    for (const std::string kind : {"polygon", "tangle", "line", "linesegs", "points",
                                   "rhumb; tessellate true; lineprojection rhumbline"})
        for (const char* more : {"", "; filled; depthbuffer false; extrude true 500"}) {
            const bool tangled = kind == "tangle";
            shapes.push_back(shapesOf((tangled          ? "polygon"
                                       : kind[0] == 'r' ? "line" + kind.substr(5)
                                                        : kind) +
                                      more + "; ll 0 0; ll 0 1; ll 1 1")
                                 .front());
            std::vector<Vec3> given;
            for (int i = 0; i < points; ++i) {
                const double turn = halCore::kTwoPi * i / points;
                const double out = 1.0 + 0.3 * std::cos(40.0 * turn) + 0.2 / points * any(random);
                given.push_back(tangled
                                    ? at(0.003 * any(random), 0.003 * any(random), 9.0)
                                    : at(0.003 * out * std::sin(turn), 0.003 * out * std::cos(turn), 9.0));
            }
            if (auto* dots = dynamic_cast<halCore::ZEL::Points*>(shapes.back().get()))
                dots->points() = given;
            else
                dynamic_cast<halCore::ZEL::PointBasedShape&>(*shapes.back()).points() = given;
        }
    return shapes;
}

/// The work is laid aside as often as others ask for it, and nothing comes out otherwise.
TEST(ShapeGeometry, SlicesMakeTheSame) {
    std::mt19937 random(11);
    OverlayScene::Shapes shapes = largeShapes(9000);
    // Longer than can be told.
    for (const auto& shape : shapesOf("line; lla 0 0 1e300; lla 1 1 -1e300")) shapes.push_back(shape);
    for (const char* text : kShapes)
        for (const auto& shape : shapesOf(turned(text))) shapes.push_back(shape);
    for (const auto& shape : shapes)
        for (const double tolerance : {0.0, 2.0, 1250.0}) {
            const std::optional<OverlayReference> none;
            const DrawList whole = drawn({shape}, tolerance);
            DrawList list;
            Work work = workOutGeometry(*shape, none, tolerance, {}, list);
            for (bool done = false; !done;) {
                Slice slice(random() % 400, std::chrono::milliseconds(0));
                done = work.goOn(slice);
            }
            ASSERT_TRUE(placesOf(list) == placesOf(whole) && list.meshes.size() == whole.meshes.size());
            for (std::size_t i = 0; i < list.meshes.size(); ++i)
                ASSERT_TRUE(list.meshes[i].vertices == whole.meshes[i].vertices &&
                            list.meshes[i].triangles == whole.meshes[i].triangles);
            for (std::size_t i = 0; i < list.lines.size(); ++i)
                ASSERT_EQ(list.lines[i].overBodies, whole.lines[i].overBodies);
        }
}

/// Points lie in pieces of about a thousand, those of an area also in each of its rows and cells: so many
/// slices there are at least.
TEST(ShapeGeometry, LargeShapesAreDoneInManySlices) {
    constexpr int kSlices[] = {90, 19000, 90, 3200, 90, 160, 200, 160000, 160, 160, 90, 160};
    const OverlayScene::Shapes shapes = largeShapes(80000);
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        DrawList list;
        const std::optional<OverlayReference> none;
        Work work = workOutGeometry(*shapes[i], none, 0.0, {}, list);
        int slices = 0;
        for (bool done = false; !done; ++slices) {
            Slice over(0, std::chrono::milliseconds(0));
            done = work.goOn(over);
        }
        EXPECT_GT(slices, kSlices[i]) << i;
    }
}

/// A shape's own reference point goes before the platform; following turns with the heading.
TEST(ShapeGeometry, RelativeShapesStandAboutTheirReference) {
    const OverlayReference ship{at(60, 10, 5), 90 * kRadiansPerDegree, 0, 0};
    ASSERT_TRUE(drawn("points; xyz 1000 0 0").lines.empty()) << "nothing to stand about";
    const struct {
        const char* text;
        Vec3 about;
        double azimuth;
    } cases[] = {{"points; xyz 1000 0 20", at(60, 10, 25), 90},
                 {"points; xyz 0 1000 0; 3d follow c", at(60, 10, 5), 90},
                 {"points; xyz 0 -1000 0; ref 50 7", at(50, 7), 180},
                 {"points; xyz 1000 0 0; ref 50 7; 3d offsetcourse -30", at(50, 7), 60}};
    for (const auto& c : cases) {
        const Vec3 place = toGeodetic(drawn(shapesOf(c.text), 0.0, ship).lines.at(0).points.front());
        EXPECT_NEAR(inverse(c.about, place).distance, 1000.0, 0.1) << c.text;
        EXPECT_NEAR(inverse(c.about, place).azimuth1 / kRadiansPerDegree, c.azimuth, 0.01) << c.text;
        EXPECT_NEAR(place.alt(), c.about.alt(), 1e-3) << c.text;
    }
}

/// Altitudes of all that is drawn, and how many lines and areas.
TEST(ShapeGeometry, ShapesHaveTheirHeights) {
    const std::string body = "; centerlla 30 40 100; radius 500; filled";
    const std::string box = "latlonaltbox 30.01 30 40.01 40 100 300; 3d offsetalt 50";
    const std::string polygon = "polygon; lla 10 20 200; lla 10 20.01 300; lla 10.01 20 400; filled";
    const std::string arc = "arc; centerlla 10 20 200; radius 300; angledeg 60";
    const struct {
        std::string text;
        double low, high;
        std::size_t lines, meshes;
    } cases[] = {{"sphere" + body, -400, 600, 1, 1},
                 {"sphere; centerlla 30 40 100; radius 500", -400, 600, 18, 0},
                 {"hemisphere" + body, 100, 600, 1, 2},
                 {"ellipsoid; majoraxis 3000; minoraxis 1000; height 200" + body, -100, 300, 1, 1},
                 // Without a height as high as the longer half axis.
                 {"ellipsoid; majoraxis 3000; minoraxis 1000" + body, -1400, 1600, 1, 1},
                 {"ellipsoid; minoraxis 3000; height 0; centerlla 30 40 100; filled", -1400, 1600, 1, 1},
                 {"ellipsoid; majoraxis 600; height -7" + body, -400, 600, 1, 1},
                 {"cylinder; height 300" + body, 100, 400, 14, 3},
                 {"cylinder; height -300" + body, -200, 100, 14, 3},
                 {"cone; height 700" + body, 100, 800, 13, 2},
                 // Altitude modes move bodies, but they keep their height.
                 {"cylinder; height 300; 3d offsetalt 50" + body, 150, 450, 14, 3},
                 {"cylinder; height 300; altitudemode clamptoground" + body, 0, 300, 14, 3},
                 {box, 150, 450, 6, 0},
                 {box + "; altitudemode clamptoground", 0, 300, 6, 0},
                 // Down to the ground with a curtain, or up to a height with a lid and a second line.
                 {polygon + "; extrude true", 0, 400, 1, 2},
                 {polygon + "; extrude true 1000", 200, 1400, 2, 3},
                 {arc + "; extrude true", 0, 200, 1, 1},
                 {arc + "; extrude true 1000", 200, 1200, 2, 1},
                 {arc + "; extrude true 1000; filled", 200, 1200, 2, 3},
                 {"points; lla 10 20 200; extrude true", 0, 200, 2, 0},
                 {"points; lla 10 20 200; extrude true 1000", 200, 1200, 2, 0},
                 {"annotation A; lla 10 20 200; extrude true", 0, 200, 1, 0},
                 // What lies on the ground does not lean.
                 {"circle; orient 0 30 0; altitudemode clamptoground" + body, 0, 0, 1, 1}};
    for (const auto& c : cases) {
        const DrawList list = drawn(c.text);
        std::vector<Ecef> places = placesOf(list);
        for (const DrawList::Mesh& mesh : list.meshes)
            places.insert(places.end(), mesh.vertices.begin(), mesh.vertices.end());
        const auto height = [](const Ecef& p) { return toGeodetic(p).alt(); };
        EXPECT_NEAR(height(std::ranges::min(places, {}, height)), c.low, 0.05) << c.text;
        EXPECT_NEAR(height(std::ranges::max(places, {}, height)), c.high, 0.05) << c.text;
        EXPECT_TRUE(list.lines.size() == c.lines && list.meshes.size() == c.meshes) << c.text;
    }
}

/// Outer faces are drawn only: each must run counter-clockwise as seen from outside.
TEST(ShapeGeometry, SolidsFaceOutwards) {
    const std::string round = "; centerlla -20 179.95 6000; radius 5000; filled";
    std::vector<std::string> texts;
    for (const char* more : {"", "; scale -1 1 1", "; scale 1 1 -1", "; orient 30 40 50"})
        for (const char* kind : {"sphere", "hemisphere", "ellipsoid; height 300"})
            texts.push_back(kind + round + more);
    for (const std::string height : {"4000", "-4000"}) {
        for (const char* kind : {"cylinder", "cone", "cylinder; anglestart 20; angledeg 70",
                                 "cylinder; angledeg -70", "cylinder; majoraxis 3000; orient 10 20 30"})
            texts.push_back(kind + round + "; height " + height);
        texts.push_back("latlonaltbox 6 5 179.8 -179.8 5000 " + height + "; filled");
    }
    for (const std::string& text : texts) {
        // The volume by the divergence theorem: positive and of one closed surface.
        const DrawList list = drawn(text);
        ASSERT_FALSE(list.meshes.empty());
        const Ecef origin = list.meshes.front().vertices.front();
        double volume = 0.0;
        Ecef open;
        for (const DrawList::Mesh& mesh : list.meshes) {
            EXPECT_TRUE(mesh.solid);
            for (std::size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
                const Ecef a = mesh.vertices[mesh.triangles[i]] - origin;
                const Ecef b = mesh.vertices[mesh.triangles[i + 1]] - origin;
                const Ecef c = mesh.vertices[mesh.triangles[i + 2]] - origin;
                volume += dot(a, cross(b, c)) / 6.0;
                open = open + cross(b - a, c - a) * 0.5;
                const Ecef normal = mesh.normals.empty() ? Ecef() : mesh.normals[mesh.triangles[i]];
                EXPECT_GT(dot(normal, cross(b - a, c - a)), -1e-6) << text;
            }
        }
        EXPECT_GT(volume, 0.0) << text;
        EXPECT_LT(length(open), 0.01 * std::pow(volume, 2.0 / 3.0)) << text;
    }
}

TEST(ShapeGeometry, PitchAndRollLeanRoundShapes) {
    for (const std::string kind : {"circle", "ellipse", "cylinder"})
        for (const bool pitched : {true, false}) {
            const DrawList list =
                drawn(kind + "; centerlla 0 0 5000; radius 1000; orient 90 " + (pitched ? "30 0" : "0 30"));
            for (const Ecef& p : list.lines.front().points) {
                // Heading east: up is x, ahead is y, the left side z. The nose points up, the right side
                // down.
                const Ecef v = p - toEcef(at(0, 0, 5000));
                EXPECT_NEAR(v.x, (pitched ? v.y : v.z) * std::tan(30 * kRadiansPerDegree), 2.0) << kind;
                EXPECT_NEAR(length(v), 1000.0, 1.0) << kind;
            }
        }
}

/// What is not worked out is left out of frames, and of what is under the mouse, by that place.
TEST(ShapeGeometry, ShapesLieWithinTheirRoughPlace) {
    constexpr const char* kKinds[] = {"circle",
                                      "circle; filled",
                                      "polygon; filled",
                                      "line",
                                      "line; tessellate true; lineprojection rhumbline",
                                      "points; outline true"};
    std::mt19937 random(7);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    int placed = 0;
    for (int i = 0; i < 600; ++i) {
        const bool round = i % 6 < 2;
        std::ostringstream text;
        text << kKinds[i % 6];
        const double lat = 90.0 * std::cbrt(any(random));
        const double lon = 180.0 * any(random);
        const double high = std::max(0.0, 1e6 * any(random));
        const double reach = std::pow(10.0, 3.5 + (round ? 3.7 : 2.6) * any(random));
        if (round)
            text << "; centerlla " << lat << ' ' << lon << ' ' << high << "; radius " << reach << "; scale "
                 << 1.5 + any(random) << ' ' << 1.5 + any(random) << " 1";
        for (int points = round ? 0 : 3 + i % 5; points > 0; --points) {
            const double off = 1e-5 * reach;
            text << "; lla " << std::clamp(lat + off * any(random), -90.0, 90.0) << ' '
                 << lon + off / std::cos(lat * kRadiansPerDegree) * any(random) << ' '
                 << high + reach * any(random);
        }
        const auto shapes = shapesOf(text.str());
        const auto place = (round ? roughPlace : placeByPoints)(*shapes.at(0), std::nullopt);
        ASSERT_TRUE(place || !round) << text.str();
        if (!place) continue;
        ++placed;
        const DrawList list = drawn(shapes);
        std::vector<Ecef> vertices = placesOf(list);
        for (const DrawList::Mesh& mesh : list.meshes)
            vertices.insert(vertices.end(), mesh.vertices.begin(), mesh.vertices.end());
        ASSERT_FALSE(vertices.empty()) << text.str();
        for (const Ecef& p : vertices) ASSERT_LE(length(p - place->center), place->radius) << text.str();
    }
    EXPECT_GT(placed, 400);
}

TEST(ShapeGeometry, WhatIsOffOrIncompleteIsNotDrawn) {
    for (const char* text :
         {"circle; centerll 0 0; radius 1000; off", "circle; radius 1000", "circle; centerll 0 0",
          "sphere; centerll 0 0", "points; xy 1 2", "circle; centerxy 0 2e7; ref 0 0; radius 9"})
        EXPECT_TRUE(drawn(text).lines.empty()) << text;
}

TEST(ShapeGeometry, LinesAndAreasHaveTheirLooks) {
    const std::string circle = "circle; centerll 1 2; radius 100; filled";
    const auto fill = [&](const std::string& more) { return drawn(circle + more).meshes.front().color; };
    EXPECT_EQ(fill(""), (Rgba{255, 0, 0, 255}));
    EXPECT_EQ(fill("; linecolor hex c8030201"), (Rgba{1, 2, 3, 200})) << "that of the line";
    EXPECT_EQ(fill("; linecolor hex c8030201; fillcolor hex 64060504"), (Rgba{4, 5, 6, 100}));
    EXPECT_TRUE(drawn(circle + "; outline false").lines.empty());
    const DrawList over = drawn(circle + "; linewidth 3; linestyle dashed; depthbuffer false");
    EXPECT_TRUE(over.meshes.front().overBodies && over.lines.front().overBodies);
    EXPECT_TRUE(over.lines.front().width == 3.0F && over.lines.front().stroke == Stroke::Dashed);
    EXPECT_FALSE(drawn(circle).lines.front().overBodies);
    const DrawList rims =
        drawn("points; ll 1 2; pointsize 7; linecolor hex c800ffff; outline true | points; ll 1 2");
    ASSERT_EQ(rims.lines.size(), 3U) << "no rim without a word about it";
    EXPECT_TRUE(rims.lines[0].width == 9.0F && rims.lines[1].width == 7.0F);
    EXPECT_EQ(rims.lines[0].color, (Rgba{0, 0, 0, 200}));
    const DrawList::Label label =
        drawn(
            "annotation A_b; ll 1 2; linecolor hex c8030201; textoutlinethickness thin"
            "; textoutlinecolor white; fontsize 20; priority 3")
            .labels.front();
    EXPECT_TRUE(label.color == (Rgba{1, 2, 3, 200}) && label.outlineColor == (Rgba{255, 255, 255, 255}));
    EXPECT_TRUE(label.text == "A b" && label.outlineWidth == 1 && label.pixelSize == 20 &&
                label.priority == 3.0);
    const auto border =
        drawn("# kml_groundoverlay; # kml_icon a.png; # kml_latlonbox 2 1 4 3 0").pictures.front().border;
    EXPECT_NEAR(areaWithin(border.points), 111.2e3 * 110.6e3, 1e8);
    EXPECT_TRUE(border.closed);
    const DrawList stem = drawn("line; lla 1 2 9; lla 1 3 9; extrude true; linecolor hex c8030201");
    EXPECT_EQ(stem.meshes.front().color, (Rgba{1, 2, 3, 66})) << "a curtain of a line is thin";
}

}  // namespace
}  // namespace sandbox
