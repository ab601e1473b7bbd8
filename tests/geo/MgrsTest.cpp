#include <algorithm>
#include <cmath>
#include <random>
#include <string>

#include <GeographicLib/MGRS.hpp>
#include <GeographicLib/UTMUPS.hpp>
#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/Mgrs.h"
#include "support/Rows.h"

namespace {

using namespace halCore;
using GeographicLib::MGRS;
using GeographicLib::UTMUPS;

/// What GeographicLib makes of a reference's south-west corner, in degrees; NaN when it refuses it.
struct Degrees {
    double lat = std::nan("");
    double lon = std::nan("");
};

Degrees judge(const std::string& mgrs) {
    Degrees result;
    try {
        int zone, digits;
        bool north;
        double easting, northing;
        MGRS::Reverse(mgrs, zone, north, easting, northing, digits, false);
        if (digits >= 0) UTMUPS::Reverse(zone, north, easting, northing, result.lat, result.lon);
    } catch (const std::exception&) {
    }
    return result;
}

/// The larger difference in degrees between our reader and GeographicLib's; negative when ours refuses.
double difference(const std::string& mgrs, const Degrees& expected) {
    double lat = 0.0;
    double lon = 0.0;
    if (Mgrs::convertMgrsToGeodetic(mgrs, lat, lon) != 0) return -1.0;
    return std::max(std::abs(lat * kDegreesPerRadian - expected.lat),
                    std::abs(std::remainder(lon * kDegreesPerRadian - expected.lon, 360.0)));
}

std::string messageOf(std::string_view mgrs) {
    std::string err;
    double lat = 42.0;
    double lon = 43.0;
    EXPECT_NE(Mgrs::convertMgrsToGeodetic(mgrs, lat, lon, &err), 0) << mgrs;
    EXPECT_NE(Mgrs::convertMgrsToGeodetic(mgrs, lat, lon), 0) << mgrs;
    EXPECT_EQ(lat, 42.0);
    EXPECT_EQ(lon, 43.0);
    return err;
}

TEST(Mgrs, BreaksAReferenceIntoItsParts) {
    int zone;
    std::string letters;
    double easting, northing;
    ASSERT_EQ(Mgrs::breakMgrsString(" '\"4qfj 12345 67890\" ", zone, letters, easting, northing), 1);
    ASSERT_EQ(Mgrs::breakMgrsString(" \"4q\"fj'12345'67890\" ", zone, letters, easting, northing), 0);
    EXPECT_EQ(zone, 4);
    EXPECT_EQ(letters, "QFJ");
    EXPECT_EQ(easting, 12345.0);
    EXPECT_EQ(northing, 67890.0);
    ASSERT_EQ(Mgrs::breakMgrsString("ZAH12345699", zone, letters, easting, northing), 0);
    EXPECT_EQ(zone, 0);
    EXPECT_EQ(easting, 12340.0);
    EXPECT_EQ(northing, 56990.0);
}

TEST(Mgrs, TellsWhatIsWrongWithAText) {
    for (const auto& row : test::rows(R"(
Invalid MGRS string: Missing grid zone designator. | ; "" ;12
Invalid MGRS string: zone number out of range (0-60). | 61QFJ;004QFJ
Invalid MGRS string: GZD or Grid Sqare ID is too large. | 4QFJX12
Invalid MGRS string: GZD or Grid Sqare ID missing. | 4Q;4QF12
Invalid MGRS string: Invalid character found. | 4Q FJ12;-4QFJ;4QÄJ
Invalid MGRS string: expected zone number. | QFJ12;INV;0QFJ;0ZAH
Invalid MGRS string: Numeric easting and northing location are different length. | 4QFJ123
Invalid MGRS string: Numeric easting location is not a valid number. | 4QFJ1x34;4QFJ111111111111111111111111
Invalid MGRS string: Numeric northing location is not a valid number. | 4QFJ12-4
Invalid MGRS coordinate: Latitude band letter is invalid. | 4AFJ;4IFJ
Invalid MGRS coordinate: Zones 32X, 34X, and 36X do not exist. | 32XMH;34XDP;36XVP
Invalid MGRS coordinate: Zone 31V must have grid column letter D or lower. | 31VEH;31VJH
Invalid MGRS coordinate: Grid column letter is out of range. | 4QJJ;31NJH
Invalid MGRS coordinate: Grid row letter is out of range. | 4QFW;4QFO
Invalid MGRS coordinate: Northing is out of range. | 31NEV
Grid column letter is not valid for provided GZD. | AAA;YAA
Grid row letter is outside of the range of possible values. | ZAQ;BAO
)",
                                      2))
        for (const std::string& text : test::split(row[1], ";")) EXPECT_EQ(messageOf(text), row[0]) << text;
    EXPECT_EQ(messageOf(std::string(100000, '9')), messageOf("61QFJ"));
    EXPECT_EQ(messageOf(std::string(100000, 'A')), messageOf("4QFJX12"));
}

/// The steps by themselves, and what they give.
TEST(Mgrs, TellsWhatIsWrongWithNumbers) {
    for (const auto& row : test::rows(R"(
square 0 QFJ 0 0 | Invalid MGRS coordinate: Zone is not in range 1-60
square 61 QFJ 0 0 | Invalid MGRS coordinate: Zone is not in range 1-60
square 4 - 0 0 | Invalid MGRS coordinate: Latitude band letter is invalid.
square 4 Q 0 0 | Invalid MGRS coordinate: Grid column letter is out of range.
square 4 QF 0 0 | Invalid MGRS coordinate: Grid row letter is out of range.
square 4 QFJJ 0 0 | Invalid MGRS coordinate: Grid row letter is out of range.
square 4 QFJ 1e5 0 | Invalid MGRS coordinate: Easting is out of range.
square 4 QFJ nan 0 | Invalid MGRS coordinate: Easting is out of range.
square 4 QFJ 0 -1 | Invalid MGRS coordinate: Northing is out of range.
square 4 qfj 12345 67890 | north 612345 2367890
square 56 HLH 0 0 | south 300000 6200000
utm 0 N 5e5 0 | Invalid UTM coordinate: Zone is not in range 1-60.
utm 1 N 99999 0 | Invalid UTM coordinate: Easting is not within expected range.
utm 1 N nan 0 | Invalid UTM coordinate: Easting is not within expected range.
utm 1 S 5e5 1.1e7 | Invalid UTM coordinate: Northing is not within expected range.
utm 1 N 5e5 9999000 | UTM to geodetic conversion resulted in position outside valid range.
utm 1 N 5e5 0 | north 0 -177
polar 0 ZA 0 0 | Invalid UPS coordinate: GZD string must be 3 characters.
polar 0 QAH 0 0 | Invalid UPS coordinate: First letter of GZD must be A, B, Y, or Z.
polar 0 ZAH -1 0 | Invalid MGRS coordinate: Easting is out of range.
polar 0 ZAH 0 1e5 | Invalid MGRS coordinate: Northing is out of range.
polar 0 ZAH 1 2 | north 2000001 2000002
ups 0 N 4000000.5 0 | Easting (4000000.5) is not within the range of UPS: [4000000, 0].
ups 0 N 0 -12 | Northing (-12) is not within the range of UPS: [4000000, 0].
ups 0 N nan 0 | Easting (nan) is not within the range of UPS: [4000000, 0].
)",
                                      2)) {
        const auto words = test::split(row[0], " ");
        const int zone = std::stoi(words[1]);
        const std::string letters = words[2] == "-" ? "" : words[2];
        const double easting = std::stod(words[3]), northing = std::stod(words[4]);
        bool north = letters == "N";
        double first = 0.0, second = 0.0;
        std::string outcome;
        int code = 0;
        if (words[0] == "square")
            code = Mgrs::convertMgrsToUtm(zone, letters, easting, northing, north, first, second, &outcome);
        else if (words[0] == "polar")
            code = Mgrs::convertMgrsToUps(letters, easting, northing, north, first, second, &outcome);
        else if (words[0] == "utm")
            code = Mgrs::convertUtmToGeodetic(zone, north, easting, northing, first, second, &outcome);
        else
            code = Mgrs::convertUpsToGeodetic(north, easting, northing, first, second, &outcome);
        const double unit = words[0] == "utm" ? kDegreesPerRadian : 1.0;
        if (code == 0)
            outcome = (north ? "north " : "south ") + std::to_string(std::lround(first * unit)) + " " +
                      std::to_string(std::lround(second * unit));
        EXPECT_EQ(outcome, row[1]) << row[0];
    }
}

/// Every zone, band, column and row there could be: the same squares exist, in the same places.
TEST(MgrsProperty, KnowsTheSquaresThatGeographicLibKnows) {
    std::mt19937_64 random(31);
    int accepted = 0;
    int ownRefusals = 0;
    const auto check = [&](const std::string& mgrs) {
        const Degrees expected = judge(mgrs);
        const double apart = difference(mgrs, expected);
        if (std::isnan(expected.lat)) {
            EXPECT_LT(apart, 0.0) << mgrs << " is refused by GeographicLib";
        } else if (apart < 0.0) {
            // GeographicLib lets references of the irregular zones pass that nobody would write.
            EXPECT_TRUE(mgrs.starts_with("32X") || mgrs.starts_with("34X") || mgrs.starts_with("36X") ||
                        mgrs.starts_with("31V"))
                << mgrs;
            ++ownRefusals;
        } else {
            EXPECT_LT(apart, 1e-9) << mgrs;
            ++accepted;
        }
    };
    for (char band = 'A'; band <= 'Z'; ++band) {
        for (char column = 'A'; column <= 'Z'; ++column) {
            for (char row = 'A'; row <= 'Z'; ++row) {
                const std::string letters{band, column, row};
                check(letters);
                // The lettering repeats after six zones; 61 and the irregular zones beside them.
                for (const int zone : {1, 2, 3, 4, 5, 6, 31, 32, 33, 34, 35, 36, 37, 60, 61}) {
                    check(std::to_string(zone) + letters);
                    const std::string number = std::to_string(100000 + random() % 100000).substr(1);
                    check(std::to_string(zone) + letters + number + number);
                }
            }
        }
    }
    EXPECT_GT(accepted, 20000);
    EXPECT_EQ(ownRefusals, 2 * (3 * (6 * 16 + 2 * 15) + 9 + 3 * 10));
}

}  // namespace
