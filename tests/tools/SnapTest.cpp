#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/PolygonShape.h"
#include "tools/OverlaySnap.h"

namespace {

using namespace OverlayEditor;
using halCore::Vec3;
using testing::HasSubstr;

/// A hand over a view of Oahu, and other things to put points onto.
struct Snapping : DrawingTest {
    Snapping() {
        SnapSource::install(&source);
        manager.setHintListener([this](std::string_view text) { hint = text; });
    }
    ~Snapping() override {
        manager.setHintListener({});
        SnapSource::install(nullptr);
    }
    PolygonShape& line(const std::vector<Vec3>& points, const std::string& name) {
        auto* const shape = new PolygonShape(preferences, PolygonShape::Line);
        for (const Vec3& point : points) shape->addPoint(point);
        shape->setName(name);
        shape->setShown(true);
        overlay.addShape(shape);
        return *shape;
    }
    Pixel pixelOf(const Vec3& place) const { return *view.projection().pixel(halCore::toEcef(place)); }
    Mouse& moveBeside(const Vec3& place, double right) {
        return mouse.moveToPixel(pixelOf(place).x + right, pixelOf(place).y).frame();
    }
    std::optional<Snap> find(const Pixel& cursor) {
        return source.find({.view = projection, .cursor = cursor});
    }

    OverlaySnap source{preferences, overlay};
    ViewProjection projection = view.projection();
    std::string hint;
};

TEST_F(Snapping, APointHasExactlyTheOthersNumbers) {
    const Vec3 other(degrees(21.0312345678901, -158.0123456789012).lat(), -2.7577123456789012,
                     1234.567890123);
    line({degrees(20.98, -158.1), other}, "Route");
    auto& drawn = start(new PolygonShape(preferences, PolygonShape::Line));
    moveBeside(other, 6.0);
    EXPECT_THAT(hint, HasSubstr("On point 2 of \"Route\". Alt: beside it"));
    mouse.press().release();
    EXPECT_EQ(drawn.pointAtIndex(0), other);
    mouse.modifiers = PIGUI::PIModifierAlt;
    moveBeside(degrees(20.98, -158.1), 5.0).press().release();
    EXPECT_NE(drawn.pointAtIndex(1), degrees(20.98, -158.1));
    EXPECT_THAT(hint, testing::Not(HasSubstr("On point")));
    mouse.modifiers = 0;
    moveBeside(other, -12.0).press().release();
    EXPECT_NE(drawn.pointAtIndex(2), other) << "too far";

    // Dragged, and only once it moves: onto another point of its own line, too.
    moveBeside(drawn.pointAtIndex(2), 0.0).press();
    moveBeside(drawn.pointAtIndex(1), 3.0).release();
    EXPECT_EQ(drawn.pointAtIndex(2), drawn.pointAtIndex(1));
    mouse.rightPress();

    // What is flat keeps its altitude; its first point has that of the other.
    auto& circle = start(new CylinderShape(preferences, CylinderShape::Circle));
    moveBeside(degrees(20.98, -158.1), 2.0).press();
    moveBeside(other, 4.0).release();
    EXPECT_EQ(*circle.centerPt(), degrees(20.98, -158.1));
    EXPECT_EQ(*circle.majorAxisPt(), Vec3(other.lat(), other.lon(), 0.0));
}

TEST_F(Snapping, PlatformsAndTheHostsFilesCount) {
    host.platforms[7].header.name = "Ship";
    host.platforms[7].point.latRad = degrees(21.02, 0.0).lat();
    host.platforms[7].point.lonRad = degrees(0.0, -158.02).lon();
    host.overlays[&host] = {
        .text = "start\nline\naltitudeunits m\nxyz 20000 0 0\nxyz 20000 9000 0\n3d name Wake\nend\n",
        .path = "/wake.zel",
        .platform = 7};
    const Vec3 ship(host.platforms[7].point.latRad, host.platforms[7].point.lonRad, 0.0);
    EXPECT_EQ(find(pixelOf(ship)).value().name, "the platform Ship");
    EXPECT_EQ(find(pixelOf(ship)).value().place, ship);
    PointConverter converter;
    converter.setReferenceLla(ship, 7);
    Vec3 wake;
    converter.convertXyzToLla({20000.0, 0.0, 0.0}, wake);
    EXPECT_EQ(find(pixelOf(wake)).value().name, "point 1 of \"Wake\"");
    host.platforms[7].point.latRad += 0.001;
    EXPECT_NE(find(pixelOf(wake)).value_or(Snap()).name, "point 1 of \"Wake\"")
        << "it has gone with the ship";
    // The host loads the file anew, under the same handle.
    std::string& text = host.overlays[&host].text;
    text.replace(text.find("Wake"), 4, "Foam");
    std::this_thread::sleep_for(std::chrono::milliseconds(450));
    host.platforms[7].point.latRad -= 0.001;
    EXPECT_EQ(find(pixelOf(wake)).value().name, "point 1 of \"Foam\"");
    // What is edited is not in view as a file.
    overlay.setZelId(&host);
    OverlaySnap fresh(preferences, overlay);
    EXPECT_FALSE(fresh.find({.view = projection, .cursor = pixelOf(wake)}));
}

/// The same as a walk over all of them, wherever the cursor is: near many points, sides and edges of the
/// view.
TEST_F(Snapping, FindsWhatAWalkOverAllFinds) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> x(-40.0, TestView::kWidth + 40.0),
        y(-40.0, TestView::kHeight + 40.0);
    std::vector<Vec3> points;
    for (int i = 0; i < 400; ++i)
        if (const auto place = view.pick(x(random), y(random)))
            points.emplace_back(place->lat(), place->lon(), i % 3 * 2000.0);
    auto& shape = line(points, "Many");
    int onPoints = 0, onSides = 0, nothing = 0;
    for (int i = 0; i < 4000; ++i) {
        const Pixel cursor{std::clamp(x(random), 0.0, double{TestView::kWidth}),
                           std::clamp(y(random), 0.0, double{TestView::kHeight})};
        double nearest = 8.0;
        std::optional<Vec3> expected;
        for (const Vec3& point : points)
            if (const double away = distance(pixelOf(point), cursor); away < nearest) {
                nearest = away;
                expected = point;
            }
        const auto found = find(cursor);
        // What has changed is looked up anew.
        if (i % 1000 == 999) {
            shape.deletePointAtIndex(0);
            points.erase(points.begin());
            continue;
        }
        if (expected) {
            ASSERT_EQ(found.value_or(Snap()).place, *expected) << cursor.x << ", " << cursor.y;
            ++onPoints;
            continue;
        }
        // From the chord, from which ways of this length are a pixel off.
        double side = 1e9;
        for (std::size_t k = 0; k + 1 < points.size() && side > 0.01; ++k) {
            const auto a = pixelOf(points[k]), b = pixelOf(points[k + 1]);
            const double dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
            const double t = std::clamp(((cursor.x - a.x) * dx + (cursor.y - a.y) * dy) / square, 0.0, 1.0);
            side = std::min(side, std::hypot(a.x + t * dx - cursor.x, a.y + t * dy - cursor.y));
        }
        if (std::abs(side - 8.0) < 1.5) continue;
        ASSERT_EQ(found.has_value(), side < 8.0) << cursor.x << ", " << cursor.y << ": " << side;
        if (found) {
            ASSERT_NEAR(distance(pixelOf(found->place), cursor), side, 1.5);
        }
        ++(found ? onSides : nothing);
    }
    EXPECT_GT(onPoints, 100);
    EXPECT_GT(onSides, 100);
}

TEST_F(Snapping, ALongSideIsTheShortestWay) {
    view.look(degrees(50.0, 0.0, 4e6));
    projection = view.projection();
    const Vec3 from = degrees(50.0, -12.0), to = degrees(50.0, 12.0, 1000.0);
    line({from, to}, "Far");
    // The middle of the way by GeographicLib, far north of the parallel.
    const auto way = geodesic(from, to);
    double lat = 0.0, lon = 0.0;
    GeographicLib::Geodesic::WGS84().Direct(50.0, -12.0, way.bearing / kDegree, way.meters / 2.0, lat, lon);
    const Vec3 middle = degrees(lat, lon, 500.0);
    const auto found = find(pixelOf(middle));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "a side of \"Far\"");
    EXPECT_LT(geodesic(found->place, middle).meters, 20.0);
    EXPECT_NEAR(found->place.alt(), 500.0, 0.1);
}

}  // namespace
