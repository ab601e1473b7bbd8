#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "common/NumberText.h"
#include "geo/Angles.h"
#include "geo/CoordinateConverter.h"
#include "geo/OffsetGrid.h"
#include "geo/PointConverter.h"

namespace {

using namespace halCore;
using OverlayEditor::PointConverter;

Vec3 lla(double latDegrees, double lonDegrees, double alt) {
    return Vec3(latDegrees * kRadiansPerDegree, lonDegrees * kRadiansPerDegree, alt);
}

TEST(Angles, WrapIntoTheirRange) {
    EXPECT_EQ(wrapToPi(kPi), kPi);
    EXPECT_EQ(wrapToPi(-kPi), kPi);
    EXPECT_EQ(wrapToPi(-0.1), -0.1);
    EXPECT_NEAR(wrapToPi(3.5), 3.5 - kTwoPi, 1e-15);
    EXPECT_NEAR(wrapToPi(-100.0 * kTwoPi + 0.25), 0.25, 1e-13);
    EXPECT_EQ(wrapToTwoPi(kTwoPi), 0.0);
    EXPECT_EQ(wrapToTwoPi(-1e-30), 0.0);
    EXPECT_NEAR(wrapToTwoPi(-0.5), kTwoPi - 0.5, 1e-15);
    EXPECT_FALSE(std::signbit(wrapToTwoPi(-kTwoPi)));
    for (const double bad : {std::nan(""), HUGE_VAL}) {
        EXPECT_TRUE(std::isnan(wrapToPi(bad)));
        EXPECT_TRUE(std::isnan(wrapToTwoPi(bad)));
    }
}

TEST(PointConverter, KeepsItsReference) {
    PointConverter converter;
    Vec3 out(1.0, 1.0, 1.0);
    converter.getReferenceLla(out);
    EXPECT_EQ(out, Vec3());
    EXPECT_EQ(converter.refPlatformId(), 0UL);
    const Vec3 reference = lla(21.3, -158.05, 120.0);
    converter.setReferenceLla(reference, 77);
    EXPECT_EQ(converter.refPlatformId(), 77UL);
    EXPECT_EQ(converter.convertLlaToXyz(reference, out), 0);
    EXPECT_EQ(out, Vec3());
    EXPECT_EQ(converter.convertXyzToLla(Vec3(), out), 0);
    EXPECT_EQ(out, reference);
}

// Radii of curvature of WGS-84, from published tables: at the equator M = 6335439.327 and N = 6378137; at
// 45 degrees M = 6367381.816 and N = 6388838.290.
TEST(PointConverter, UsesTheRadiiOfCurvatureAtTheReference) {
    PointConverter converter;
    Vec3 out;
    ASSERT_EQ(converter.convertLlaToXyz(lla(1.0, 1.0, 5.0), out), 0);
    EXPECT_NEAR(out.x(), 6378137.0 * kRadiansPerDegree, 1e-6);
    EXPECT_NEAR(out.y(), 6335439.327 * kRadiansPerDegree, 1e-4);
    EXPECT_EQ(out.z(), 5.0);

    converter.setReferenceLla(lla(45.0, 10.0, 1000.0), 0);
    ASSERT_EQ(converter.convertLlaToXyz(lla(46.0, 9.0, 1000.0), out), 0);
    EXPECT_NEAR(out.x(), -(6388838.290 + 1000.0) * std::sqrt(0.5) * kRadiansPerDegree, 1e-4);
    EXPECT_NEAR(out.y(), (6367381.816 + 1000.0) * kRadiansPerDegree, 1e-4);
    EXPECT_EQ(out.z(), 0.0);

    converter.setReferenceLla(lla(0.0, 179.0, 0.0), 0);
    ASSERT_EQ(converter.convertLlaToXyz(lla(0.0, -179.0, 0.0), out), 0);
    EXPECT_NEAR(out.x(), 2.0 * 6378137.0 * kRadiansPerDegree, 1e-6) << "across the date line";
}

TEST(PointConverter, FailsAtThePolesAndForWhatIsNoNumberButWrites) {
    PointConverter converter;
    Vec3 out(42.0, 42.0, 42.0);
    EXPECT_NE(converter.convertXyzToLla(Vec3(0.0, 1.1e7, 3.0), out), 0);
    EXPECT_EQ(out.z(), 3.0);
    EXPECT_EQ(converter.convertXyzToLla(Vec3(0.0, 6335439.0 * kHalfPi, 0.0), out), 0);
    EXPECT_NE(converter.convertLlaToXyz(Vec3(1.6, 0.0, 0.0), out), 0);
    EXPECT_NE(converter.convertLlaToXyz(Vec3(std::nan(""), 0.0, 0.0), out), 0);
    EXPECT_NE(converter.convertXyzToLla(Vec3(0.0, 0.0, HUGE_VAL), out), 0);

    // Two ways of stating the pole: only one of them comes back.
    ASSERT_EQ(converter.convertLlaToXyz(Vec3(kHalfPi, 0.0, 0.0), out), 0);
    Vec3 pole;
    EXPECT_EQ(converter.convertXyzToLla(out, pole), 0);
    EXPECT_EQ(pole.lat(), kHalfPi);
    EXPECT_NE(converter.convertXyzToLla(Vec3(0.0, out.y() + 1e-7, 0.0), pole), 0);
    EXPECT_NE(converter.convertLlaToXyz(Vec3(kHalfPi + 1e-14, 0.0, 0.0), out), 0);

    constexpr double metersPerRadian = 6399593.6;
    for (const double sign : {-1.0, 1.0}) {
        out = Vec3(42.0, 42.0, 42.0);
        converter.setReferenceLla(Vec3(sign * (kHalfPi - 0.0009 / metersPerRadian), 0.0, 0.0), 0);
        EXPECT_NE(converter.convertXyzToLla(Vec3(0.0, 0.0, 5.0), out), 0);
        EXPECT_EQ(out.z(), 5.0);
        EXPECT_NE(converter.convertLlaToXyz(Vec3(), out), 0);
        converter.setReferenceLla(Vec3(sign * (kHalfPi - 0.0011 / metersPerRadian), 0.0, 0.0), 0);
        EXPECT_EQ(converter.convertLlaToXyz(Vec3(), out), 0);
    }
}

TEST(CoordinateConverter, LeavesAPositionInItsOwnSystemAlone) {
    CoordinateConverter converter;
    converter.setReferenceOrigin(0.5, 0.5, 10.0);
    EXPECT_EQ(converter.referenceOrigin(), Vec3(0.5, 0.5, 10.0));
    Coordinate out;
    EXPECT_EQ(converter.convert(Coordinate(CoordinateSystem::FlatEnu, Vec3(1e9, 2.0, 3.0)), out,
                                CoordinateSystem::FlatEnu),
              0);
    EXPECT_EQ(out.position(), Vec3(1e9, 2.0, 3.0));
    EXPECT_EQ(out.coordinateSystem(), CoordinateSystem::FlatEnu);
}

/// What succeeds comes back the same, on every part of the earth and in both directions; a box of equal
/// sides stays one to the last bit. What leads beyond a pole or round more than half of the parallel fails.
TEST(PointConverterProperty, WhatSucceedsComesBack) {
    std::mt19937_64 random(23);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    PointConverter converter;
    for (int i = 0; i < 20000; ++i) {
        // Many close to a pole, or half way round.
        const double latitude =
            90.0 * std::copysign(1.0 - std::pow(10.0, -6.0 * std::abs(unit(random))), unit(random));
        const Vec3 origin = lla(latitude, 180.0 * unit(random), 1e4 * unit(random));
        converter.setReferenceLla(origin, 1);
        const double lat = i % 8 == 0 ? std::copysign(kHalfPi, unit(random)) : kHalfPi * unit(random);
        const double lon =
            i % 5 == 0 ? wrapToPi(origin.lon() + kPi + 1e-15 * (i % 3 - 1)) : kPi * unit(random);
        const double alt = 1e4 * unit(random);
        Vec3 corners[2];
        ASSERT_EQ(converter.convertLlaToXyz(Vec3(lat, lon, alt), corners[0]), 0);
        ASSERT_EQ(converter.convertLlaToXyz(Vec3(lat, 0.5 * lon, alt), corners[1]), 0);
        ASSERT_EQ(corners[0].y(), corners[1].y());
        Vec3 back[2];
        ASSERT_EQ(converter.convertXyzToLla(corners[0], back[0]), 0);
        ASSERT_EQ(converter.convertXyzToLla(corners[1], back[1]), 0);
        ASSERT_EQ(back[0].lat(), back[1].lat());
        ASSERT_NEAR(back[0].lat(), lat, 1e-15);
        ASSERT_NEAR(wrapToPi(back[0].lon() - lon), 0.0, 1.1e-14);
        ASSERT_NEAR(back[0].alt(), alt, 1e-11);

        // From a metre to beyond the earth.
        const double reach = std::pow(10.0, 8.0 * std::abs(unit(random)));
        const Vec3 offset(reach * unit(random), reach * unit(random), 100.0);
        Vec3 place;
        Vec3 again;
        if (converter.convertXyzToLla(offset, place) != 0) {
            constexpr double quarter = 10e6;
            ASSERT_GT(std::hypot(offset.x() / std::cos(origin.lat()), offset.y()),
                      quarter * (1.0 - std::abs(latitude) / 90.0) * 0.98);
            continue;
        }
        ASSERT_EQ(converter.convertLlaToXyz(place, again), 0);
        ASSERT_NEAR(again.x(), offset.x(), 1e-7);
        ASSERT_NEAR(again.y(), offset.y(), 1e-7);
    }

    // Half of the parallel at 60 degrees: pi times 3,197,104.587 m.
    converter.setReferenceLla(lla(60.0, 0.0, 0.0), 0);
    Vec3 out;
    EXPECT_EQ(converter.convertXyzToLla(Vec3(kPi * 3197104.58, 0.0, 0.0), out), 0);
    EXPECT_NE(converter.convertXyzToLla(Vec3(kPi * 3197104.6, 0.0, 0.0), out), 0);
    EXPECT_NE(converter.convertXyzToLla(Vec3(kPi * -3197104.6, 0.0, 0.0), out), 0);
}

TEST(OffsetGrid, LeadsToThePolesAndNotBeyond) {
    std::mt19937_64 chance(1);
    for (int i = 0; i < 2000; ++i) {
        const double lat = std::uniform_real_distribution(-1.57, 1.57)(chance);
        for (const double pole : {-kHalfPi, kHalfPi}) {
            PointConverter frame;
            frame.setReferenceLla({lat, 0.1, 0}, 0);
            const auto offset = OverlayEditor::offsetOf(frame, {pole, 0.1, 0});
            ASSERT_TRUE(offset) << lat;
            // As files have it.
            const double written = *UTILS::readNumber(UTILS::writeNumber(offset->y()));
            ASSERT_TRUE(OverlayEditor::placeOf(frame, {offset->x(), written, 0})) << lat;
        }
    }
}

}  // namespace
