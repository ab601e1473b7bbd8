#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/CoordinateConverter.h"
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

    // Offsets are kept in texts to a tenth of a micrometre; the pole is still the pole then.
    ASSERT_EQ(converter.convertLlaToXyz(Vec3(kHalfPi, 0.0, 0.0), out), 0);
    Vec3 pole;
    EXPECT_EQ(converter.convertXyzToLla(Vec3(0.0, out.y() + 1e-7, 0.0), pole), 0);
    EXPECT_EQ(pole.lat(), kHalfPi);
    EXPECT_NE(converter.convertXyzToLla(Vec3(0.0, out.y() + 1e-6, 0.0), pole), 0);

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

/// Points within a few thousand kilometres come back, and a box of equal sides stays one to the last bit.
TEST(PointConverterProperty, RoundTrips) {
    std::mt19937_64 random(23);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    PointConverter converter;
    for (int i = 0; i < 20000; ++i) {
        converter.setReferenceLla(lla(85.0 * unit(random), 180.0 * unit(random), 1e4 * unit(random)), 1);
        // The poles among them, which rounding must not lead beyond themselves.
        const double lat = i % 8 == 0 ? std::copysign(kHalfPi, unit(random)) : kHalfPi * unit(random);
        const double lon = kPi * unit(random);
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
        ASSERT_NEAR(wrapToPi(back[0].lon() - lon), 0.0, 2e-15);
        ASSERT_NEAR(back[0].alt(), alt, 1e-11);
    }
}

}  // namespace
