#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/Mgrs.h"
#include "geo/MgrsConvert.h"
#include "support/CommaLocale.h"
#include "support/Rows.h"

namespace {

using halCore::kDegreesPerRadian;
using halCore::kRadiansPerDegree;
using UTILS::MgrsConvert;

TEST(MgrsConvert, WritesWhatHoldsThePosition) {
    const test::CommaLocale locale;
    std::string mgrs;
    EXPECT_EQ(MgrsConvert::geodeticToMgrs(0.0, 3.0 * kRadiansPerDegree, mgrs), 0);
    EXPECT_EQ(mgrs, "31NEA0000000000");
    EXPECT_EQ(MgrsConvert::geodeticToMgrs(0.0, 3.0 * kRadiansPerDegree, 0, mgrs), 0);
    EXPECT_EQ(mgrs, "31NEA");
    EXPECT_EQ(MgrsConvert::geodeticToMgrs(0.0, 3.0 * kRadiansPerDegree, 99, mgrs), 0);
    EXPECT_EQ(mgrs, "31NEA" + std::string(22, '0'));
    EXPECT_EQ(MgrsConvert::geodeticToMgrs(halCore::kHalfPi, 0.0, mgrs), 0);
    EXPECT_EQ(mgrs, "ZAH0000000000");

    std::string err;
    for (const double bad : {std::nan(""), HUGE_VAL, 1.6}) {
        EXPECT_NE(MgrsConvert::geodeticToMgrs(bad, 0.0, mgrs, &err), 0);
        EXPECT_EQ(err, "The position is no latitude and longitude.");
    }
    EXPECT_NE(MgrsConvert::geodeticToMgrs(0.0, std::nan(""), mgrs), 0);
    EXPECT_EQ(mgrs, "ZAH0000000000") << "left alone";
}

TEST(MgrsConvert, DividesWhatPeopleType) {
    for (const auto& row : test::rows(R"(
4QFJ1234567890 | 4Q;FJ;12345;67890
 "4q fj 12345 67890"  | 4Q;FJ;12345;67890
4 Q FJ 12 34 | 4Q;FJ;12;34
04QFJ1234 | 04Q;FJ;12;34
4QFJ | 4Q;FJ;;
'zah 1234' | Z;AH;12;34
z ah | Z;AH;;
ZAH1111111111111111111111 | Z;AH;11111111111;11111111111
)",
                                      2)) {
        const std::string& text = row[0];
        const std::vector<std::string> parts = test::split(row[1], ";");
        std::string gzd, square, easting, northing, mgrs;
        ASSERT_EQ(MgrsConvert::divideMgrs(text, gzd, square, easting, northing), 0) << text;
        EXPECT_EQ((std::vector<std::string>{gzd, square, easting, northing}), parts) << text;
        EXPECT_EQ(MgrsConvert::combineMgrs(gzd, square, easting, northing, mgrs), 0);
        EXPECT_EQ(mgrs, gzd + square + easting + northing);
        EXPECT_TRUE(MgrsConvert::isValidMgrs(text)) << text;
        EXPECT_TRUE(MgrsConvert::isValidMgrs(gzd, square, easting, northing)) << text;
    }
}

TEST(MgrsConvert, TellsWhyATextHasNotTheForm) {
    const std::string invalid = "MGRS string is invalid, ";
    const std::string gzdSize = invalid + "incorrect number of characters in GZD.";
    const std::string noLetter = invalid + "expected non-numeric character in the first 3 positions.";
    const std::string unequal = invalid + "easting and northing are not the same length.";
    const std::string square = invalid + "expected two letters of a 100 km square.";
    const std::string digits = invalid + "easting and northing must have 0 to 11 digits.";
    std::string gzd = "a", squareId = "b", easting = "c", northing = "d", err;
    for (const auto& [texts, message] : {std::pair{std::string(";\"\";-QFJ;4\xC3\x84"), gzdSize},
                                         {"4;1234567;123QFJ", noLetter},
                                         {"4Q;4QF12;4QFJX", square},
                                         {"4QFJ123;4QFJ 12 345", unequal},
                                         {"4QFJ 12x4;4QFJ 12 34 56;4QFJ" + std::string(24, '1'), digits},
                                         {"ZAH" + std::string(1000000, '1'), digits}})
        for (const std::string& text : test::split(texts, ";")) {
            EXPECT_NE(MgrsConvert::divideMgrs(text, gzd, squareId, easting, northing, &err), 0) << text;
            EXPECT_EQ(err, message) << text.substr(0, 40);
            EXPECT_FALSE(MgrsConvert::isValidMgrs(text));
        }
    EXPECT_EQ(gzd + squareId + easting + northing, "abcd") << "left alone";
    double lat = 42.0, lon = 43.0;
    for (const char* text : {"61QFJ", "4QAA", "31NEV", "QFJ"}) {
        EXPECT_NE(MgrsConvert::mgrsToGeodetic(text, lat, lon, &err), 0) << text;
        EXPECT_TRUE(err.starts_with("MGRS string is invalid: ") && lat == 42.0 && lon == 43.0) << err;
    }

    std::string mgrs = "old";
    for (const auto& [parts, message] : {std::pair{"123Q;FJ;;", gzdSize},
                                         {"12;FJ;;", noLetter},
                                         {"4Q;F1;;", square},
                                         {"4Q;FJ;1;12", unequal},
                                         {"4Q;FJ;1.5;123", digits}}) {
        const auto part = test::split(parts, ";");
        EXPECT_NE(MgrsConvert::combineMgrs(part[0], part[1], part[2], part[3], mgrs, &err), 0) << parts;
        EXPECT_EQ(err, message);
    }
    EXPECT_EQ(mgrs, "old");
    EXPECT_EQ(MgrsConvert::combineMgrs(" 4q ", "fj", " 12", "34 ", mgrs), 0);
    EXPECT_EQ(mgrs, "4QFJ1234");
}

// 3 E is the edge of 31V although it is the middle of zone 31; GeographicLib gives 32VJM6564066593 for it.
TEST(MgrsConvert, GivesTheWesternEdgeOf32VToIt) {
    std::string mgrs;
    for (const double degrees : {3.0, 3.0 - 1e-15, 3.0 - 1e-12}) {
        EXPECT_EQ(MgrsConvert::geodeticToMgrs(60.0 * kRadiansPerDegree, degrees * kRadiansPerDegree, mgrs),
                  0);
        EXPECT_EQ(mgrs, "32VJM6564066593") << degrees;
    }
    EXPECT_EQ(MgrsConvert::geodeticToMgrs(60.0 * kRadiansPerDegree, 2.99999 * kRadiansPerDegree, mgrs), 0);
    EXPECT_EQ(mgrs, "31VDG9999951411");
}

/// A reference is shown again as it was typed, at every precision, and our reader puts it to the same place.
TEST(MgrsConvertProperty, RoundTrips) {
    std::mt19937_64 random(41);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int i = 0; i < 20000; ++i) {
        const int digits = i % 12;
        const double lat =
            i % 5 == 0 ? std::copysign(1.5 + 0.07 * unit(random), unit(random)) : std::asin(unit(random));
        const double lon = halCore::kPi * unit(random);
        std::string mgrs, again;
        ASSERT_EQ(MgrsConvert::geodeticToMgrs(lat, lon, digits, mgrs), 0);
        double latCorner, lonCorner, latOwn, lonOwn;
        ASSERT_EQ(MgrsConvert::mgrsToGeodetic(mgrs, latCorner, lonCorner), 0) << mgrs;
        ASSERT_EQ(halCore::Mgrs::convertMgrsToGeodetic(mgrs, latOwn, lonOwn), 0) << mgrs;
        ASSERT_NEAR(latOwn, latCorner, 1e-13) << mgrs;
        // Coarse corners may lie in the neighbouring zone, band or polar area; fine ones hardly ever do.
        ASSERT_EQ(MgrsConvert::geodeticToMgrs(latCorner, lonCorner, digits, again), 0);
        if (digits >= 5) {
            ASSERT_EQ(again, mgrs);
        }
    }
}

}  // namespace
