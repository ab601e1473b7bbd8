#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "model/RandomShapes.h"
#include "model/ShapeKinds.h"
#include "support/FakeHost.h"

using halCore::kPi;
using halCore::kTwoPi;
using halCore::Vec3;
using namespace OverlayEditor;

namespace {

using Box = std::pair<Vec3, Vec3>;

double distance(const Vec3& a, const Vec3& b) {
    return halCore::Sodano::inverse(a, b).distance;
}

class ShapeGeometryTest : public ::testing::Test {
  protected:
    FakeHost host;
    Preferences preferences;
    RandomShapes random{preferences};
};

/// The same box half a turn further east, in one piece.
void expectTurned(const Box& here, const Box& there) {
    const double shift = there.first.lon() - here.first.lon();
    EXPECT_NEAR(std::remainder(shift - kPi, kTwoPi), 0.0, 1e-9);
    EXPECT_NEAR(there.second.lon() - here.second.lon(), shift, 1e-9);
    EXPECT_NEAR(here.first.lat(), there.first.lat(), 1e-9);
    EXPECT_NEAR(here.second.lat(), there.second.lat(), 1e-9);
    EXPECT_NEAR(here.first.alt(), there.first.alt(), 1e-3);
    EXPECT_NEAR(here.second.alt(), there.second.alt(), 1e-3);
}

/// What is done to a shape across 180 degrees has the same result as at Greenwich.
TEST_F(ShapeGeometryTest, NoMeridianIsSpecial) {
    RandomShapes other(preferences);
    for (int round = 0; round < 20 * RandomShapes::kKinds && !HasFailure(); ++round) {
        struct Half {
            std::unique_ptr<Shape> shape;
            PointConverter platform;
            double turn;

            Vec3 place(double lat, double lon) const { return {lat, halCore::wrapToPi(lon + turn), 50.0}; }
        };
        const Vec3 greenwich(0.3, 0.0, 0.0);
        const Vec3 opposite(0.3, kPi, 0.0);
        const int kind = round % RandomShapes::kKinds;
        Half halves[] = {{random.make(kind, &greenwich), {}, 0.0}, {other.make(kind, &opposite), {}, kPi}};
        SCOPED_TRACE(halves[0].shape->name() + " of kind " + std::to_string(kind));
        const bool anchored = round / RandomShapes::kKinds % 2 == 0;
        const std::vector<std::function<void(Half&)>> steps = {
            // Where it was, until it is to stand about the platform.
            [](Half& half) {
                half.platform.setReferenceLla(half.place(0.6, 0.2), 7);
                const Box before = half.shape->boundingBox();
                half.shape->setAttachedPlatformId(7, &half.platform, false);
                EXPECT_EQ(half.shape->boundingBox(), before);
                half.shape->setAttachedPlatformId(0, nullptr, false);
            },
            [&](Half& half) {
                half.platform.setReferenceLla(half.place(-0.2, 0.001), 7);
                half.shape->setAnchorCenter(anchored);
                half.shape->setAttachedPlatformId(7, &half.platform, true);
            },
            [](Half& half) { half.platform.setReferenceLla(half.place(0.1, -0.001), 7); },
            // On a pole there is no east, and no place; it comes back from there as it was.
            [](Half& half) {
                const Box before = half.shape->boundingBox();
                half.platform.setReferenceLla(half.place(0.5 * kPi, 0.0), 7);
                const Box nowhere = half.shape->boundingBox();
                EXPECT_EQ(nowhere.first.lat() <= nowhere.second.lat(), !half.shape->canAttach());
                half.platform.setReferenceLla(half.place(0.1, -0.001), 7);
                EXPECT_EQ(half.shape->boundingBox(), before);
            }};
        for (std::size_t step = 0; step < steps.size(); ++step) {
            SCOPED_TRACE(step);
            for (Half& half : halves) steps[step](half);
            expectTurned(halves[0].shape->boundingBox(), halves[1].shape->boundingBox());
            if (const auto* const box = dynamic_cast<RectangleShape*>(halves[1].shape.get())) {
                EXPECT_LE(std::abs(box->center().lon()), kPi);
            }
        }
    }
}

/// The box about points on rims, worked out here; a rim about a pole has every longitude.
struct Extent {
    explicit Extent(const Vec3& middle) : middle_(middle), box{{9, 99, 0}, {-9, -99, 0}} {}

    void add(const Vec3& point) {
        const double lon = middle_.lon() + std::remainder(point.lon() - middle_.lon(), kTwoPi);
        box.first.set(std::min(box.first.lat(), point.lat()), std::min(box.first.lon(), lon), 0);
        box.second.set(std::max(box.second.lat(), point.lat()), std::max(box.second.lon(), lon), 0);
    }
    void addRim(const Vec3& center, double east, double north, double start, double end, bool filled = true) {
        if (filled && end - start < kTwoPi)
            for (int i = 0; i <= 1440; ++i) {
                const double azimuth = i % 2 == 0 ? start : end;
                const double rim =
                    east * north / std::hypot(north * std::sin(azimuth), east * std::cos(azimuth));
                add(halCore::Sodano::direct(center, azimuth, rim * (i / 2) / 720));
            }
        for (int i = 0; i <= 720; ++i) {
            const double azimuth = start + (end - start) * i / 720;
            add(halCore::Sodano::direct(
                center, azimuth,
                east * north / std::hypot(north * std::sin(azimuth), east * std::cos(azimuth))));
        }
        for (const double pole : {-0.5 * kPi, 0.5 * kPi}) {
            const double past = std::fmod((pole > 0 ? 0.0 : kPi) - start + 2 * kTwoPi, kTwoPi);
            if (past > end - start || distance(center, {pole, 0, 0}) > north) continue;
            if (filled) add({pole, middle_.lon(), 0});
            box.first.setLon(center.lon() - kPi);
            box.second.setLon(center.lon() + kPi);
        }
    }

    const Vec3& middle_;
    Box box;
};

TEST_F(ShapeGeometryTest, TheBoxIsTheExtent) {
    const auto size = [&] { return random.number(20e3, 100e3); };
    for (int round = 0; round < 600 && !HasFailure(); ++round) {
        const int kind = round % 10;
        // In the last third a pole is near: within every radius, or beyond it.
        const bool polar = round >= 400 && kind != CylinderShape::NoSubtype;
        const double colat = round < 500 ? 0.002 : 0.04;
        const double lat = polar ? (random.maybe() ? 1 : -1) * (0.5 * kPi - colat) : random.number(-1.4, 1.4);
        const Vec3 center(lat, random.number(-kPi, kPi), 100.0);
        const double height = random.number(-2000, 2000);
        double low = 0.0, high = 0.0;
        Extent extent(center);
        std::unique_ptr<CylinderShape> shape;
        SCOPED_TRACE(testing::Message() << "round " << round << " at " << lat);
        if (kind == CylinderShape::NoSubtype) {
            shape = std::make_unique<OrbitShape>(preferences);
            auto& orbit = static_cast<OrbitShape&>(*shape);
            EXPECT_GT(shape->boundingBox().first.lat(), shape->boundingBox().second.lat());
            orbit.setCenter(center);
            const Vec3 second = halCore::Sodano::direct(center, random.number(0, 3), 20e3);
            orbit.setCenter2(second);
            const bool typed = random.maybe();
            const double radius = typed ? size() : 50.0;
            if (typed) orbit.setMinorRadius(radius);
            extent.addRim(center, radius, radius, 0, kTwoPi);
            extent.addRim(second, radius, radius, 0, kTwoPi);
        } else {
            const auto subtype = static_cast<CylinderShape::Subtype>(kind);
            shape = std::make_unique<CylinderShape>(preferences, subtype);
            const bool oneRadius = shape->kind().radii == ShapeKind::Radii::One;
            const double east = size();
            const double north = oneRadius ? east : size();
            double start = 0.0, end = kTwoPi;
            shape->setCenter(center);
            shape->setMajorRadius(east);
            if (!oneRadius) shape->setMinorRadius(north);
            shape->setHeight(height);
            bool filled = true;
            if (shape->kind().sector == ShapeKind::Sector::Drawn && random.maybe()) {
                start = random.number(0, kTwoPi);
                end = start + random.number(0.01, 6.0) * (round % 3 == 0 ? 0.01 : 1.0);
                shape->setStartAngle(start);
                shape->setEndAngle(end);
                shape->setFilled(random.maybe());
                filled = subtype == CylinderShape::Wedge || shape->filled();
            } else if (random.maybe()) {
                // An ellipse keeps what its file says, and is whole.
                if (subtype == CylinderShape::Ellipse) shape->setStartAngle(1.0), shape->setEndAngle(2.0);
            }
            extent.addRim(center, east, north, start, end, filled);
            using C = CylinderShape;
            if (subtype == C::Cylinder || subtype == C::Wedge || subtype == C::Cone)
                low = std::min(height, 0.0), high = std::max(height, 0.0);
            if (subtype == C::Ellipsoid) high = height > 0 ? height : 1.0;
            if (subtype == C::Sphere || subtype == C::Hemisphere) high = east;
            if (subtype == C::Ellipsoid || subtype == C::Sphere) low = -high;
        }
        // The shape looks at the rim every three degrees. Near a pole an ellipse is lean between them.
        const double near = (polar ? 4 : 1) * 100e3 / 6.3e6 * 1e-3;
        const double nearLon = near / std::cos(lat);
        const Box box = shape->boundingBox();
        EXPECT_NEAR(box.first.lat(), extent.box.first.lat(), near);
        EXPECT_NEAR(box.second.lat(), extent.box.second.lat(), near);
        EXPECT_NEAR(box.first.lon(), extent.box.first.lon(), nearLon);
        EXPECT_NEAR(box.second.lon(), extent.box.second.lon(), nearLon);
        EXPECT_DOUBLE_EQ(box.first.alt(), 100.0 + low);
        EXPECT_DOUBLE_EQ(box.second.alt(), 100.0 + high);
    }
}

/// What a rectangle's panel says is what spans it, to the corners of a file and back, and moving it keeps its
/// numbers.
TEST_F(ShapeGeometryTest, ARectanglesNumbersAreTheInverseOfItsRule) {
    for (int round = 0; round < 4000 && !HasFailure(); ++round) {
        const bool centered = round % 2 == 0;
        const auto length = [&] { return (random.maybe() ? 1 : -1) * std::pow(10.0, random.number(0, 6)); };
        const auto make = [&] {
            auto made = std::make_unique<RectangleShape>(preferences, RectangleShape::Rectangle);
            made->setAnchorCenter(centered);
            return made;
        };
        const auto span = [&](RectangleShape& box, const Vec3& anchor, double width, double height) {
            centered ? box.setFromCenter(anchor, width, height) : box.setFromCorner(anchor, width, height);
        };
        const auto fromFile = [&](const RectangleShape& box) {
            const auto read = [](const Vec3& corner) {
                const auto digits = [](double angle) {
                    return std::round(angle * halCore::kDegreesPerRadian * 1e12) * 1e-12 *
                           halCore::kRadiansPerDegree;
                };
                return Vec3(digits(corner.lat()), digits(corner.lon()), corner.alt());
            };
            auto back = make();
            back->setFirstCorner(read(*box.firstCorner()));
            back->setLastCorner(read(*box.lastCorner()));
            return back;
        };
        const Vec3 anchor(random.number(-1.3, 1.3), random.number(-kPi, kPi), 100.0);
        const double width = length(), height = length();
        constexpr double near = 1e-6;
        SCOPED_TRACE(testing::Message() << width << " x " << height << " at " << anchor.lat());
        const auto typed = make();
        span(*typed, anchor, width, height);
        const auto read = fromFile(*typed);
        EXPECT_NEAR(read->width(), width, near);
        EXPECT_NEAR(read->height(), height, near);
        EXPECT_LT(distance(centered ? read->center() : *read->firstCorner(), anchor), near);
        const Vec3 moved = halCore::Sodano::direct(anchor, random.number(0, 7), random.number(1, 1e5));
        span(*read, moved, read->width(), read->height());
        EXPECT_NEAR(fromFile(*read)->width(), width, 3 * near);
        EXPECT_NEAR(fromFile(*read)->height(), height, 3 * near);
        // One that was drawn.
        const Vec3 drawn = halCore::Sodano::direct(anchor, random.number(0, 7), random.number(1, 1e6));
        read->setFirstCorner(anchor);
        read->setLastCorner(drawn);
        span(*read, centered ? read->center() : anchor, read->width(), read->height());
        EXPECT_LT(distance(*read->firstCorner(), anchor), near);
        EXPECT_LT(distance(*read->lastCorner(), drawn), near);
    }
}

/// Numbers that were typed, and those measured from points that were dragged about, are the same at every
/// place; the points stand where they say.
TEST_F(ShapeGeometryTest, MovingKeepsNumbersAndForm) {
    const Vec3 start(0.3, 3.1, 10.0);
    for (int round = 0; round < 1000 && !HasFailure(); ++round) {
        const std::unique_ptr<Shape> made = random.make(round % 10, &start);
        auto& shape = dynamic_cast<CylinderShape&>(*made);
        auto* const orbit = dynamic_cast<OrbitShape*>(made.get());
        SCOPED_TRACE(testing::Message() << shape.name() << " in round " << round);
        if (!orbit && random.maybe()) shape.setMajorRadius(random.position(&start));
        if (!orbit && random.maybe()) shape.setMinorRadius(random.position(&start));
        if (!orbit && random.maybe()) shape.setStartAnglePt(random.position(&start));
        if (!orbit && random.maybe()) shape.setEndAnglePt(random.position(&start));
        const auto numbers = [&] {
            std::vector<double> all{shape.minorAxis(), shape.startAngle(), shape.endAngle(), shape.height()};
            if (!orbit) all.push_back(shape.majorAxis());
            return all;
        };
        const auto form = [&] {
            std::vector<double> all;
            for (const auto& point :
                 {shape.majorAxisPt(), shape.minorAxisPt(), shape.startAnglePt(), shape.endAnglePt()})
                if (point) all.push_back(point->alt() - shape.centerPt()->alt());
            return all;
        };
        const auto kept = numbers();
        const auto altitudes = form();
        PointConverter platform;
        const auto place = [&] {
            return Vec3(random.number(-1.2, 1.2), random.number(-kPi, kPi), random.number(0, 9000));
        };
        platform.setReferenceLla(start, 7);
        shape.setAttachedPlatformId(7, &platform, false);
        for (int step = 0; step < 6; ++step) {
            Vec3 from;
            platform.getReferenceLla(from);
            if (step == 1) shape.setAttachedPlatformId(0, nullptr, false);
            if (step < 3) platform.setReferenceLla(place(), 7);
            if (step == 1)
                shape.setAttachedPlatformId(7, &platform, true);
            else if (step < 3)
                shape.fillGui();
            else if (!orbit)
                shape.moveCenter(place());
            else if (const Vec3 near = random.position(&from); step == 3)
                orbit->moveFirstCenter(near);
            else
                orbit->setCenter2(near);
            EXPECT_EQ(numbers(), kept) << step;
            for (std::size_t i = 0; !orbit && i < altitudes.size(); ++i)
                EXPECT_NEAR(form()[i], altitudes[i], 1e-6);
            if (shape.majorAxisPt() && !orbit) {
                EXPECT_NEAR(distance(*shape.centerPt(), *shape.majorAxisPt()), shape.majorAxis(),
                            1e-6 + 1e-9 * shape.majorAxis());
            }
            if (shape.minorAxisPt()) {
                double off = std::abs(distance(*shape.centerPt(), *shape.minorAxisPt()) - kept[0]);
                if (orbit)
                    off = std::min(off,
                                   std::abs(distance(*orbit->centerPt2(), *shape.minorAxisPt()) - kept[0]));
                EXPECT_LT(off, 0.01 + 1e-5 * kept[0]);
            }
        }
    }
}

}  // namespace
