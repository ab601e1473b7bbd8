#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <GeographicLib/MGRS.hpp>
#include <GeographicLib/UTMUPS.hpp>
#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "geo/Mgrs.h"

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

TEST(Mgrs, ReadsPublishedReferences) {
    // Corners of zone 31N, square 31NEA: 500 km east on the equator is its central meridian, 3 E.
    EXPECT_LT(difference("31NEA0000000000", {0.0, 3.0}), 1e-12);
    EXPECT_LT(difference("31NEA", {0.0, 3.0}), 1e-12);
    // The poles are the corner of four squares each.
    double lat, lon;
    ASSERT_EQ(Mgrs::convertMgrsToGeodetic("ZAH", lat, lon), 0);
    EXPECT_NEAR(lat, kHalfPi, 1e-15);
    ASSERT_EQ(Mgrs::convertMgrsToGeodetic("ban0000000000", lat, lon), 0);
    EXPECT_NEAR(lat, -kHalfPi, 1e-15);
}

TEST(Mgrs, BreaksAReferenceIntoItsParts) {
    int zone;
    std::string letters;
    double easting, northing;
    ASSERT_EQ(Mgrs::breakMgrsString(" '\"4qfj 12345 67890\" ", zone, letters, easting, northing), 1);
    ASSERT_EQ(Mgrs::breakMgrsString(" \"4qfj1234567890\" ", zone, letters, easting, northing), 0);
    EXPECT_EQ(zone, 4);
    EXPECT_EQ(letters, "QFJ");
    EXPECT_EQ(easting, 12345.0);
    EXPECT_EQ(northing, 67890.0);
    const std::vector<std::tuple<std::string, double, double>> precisions = {
        {"", 0.0, 0.0},
        {"19", 10000.0, 90000.0},
        {"1298", 12000.0, 98000.0},
        {"123987", 12300.0, 98700.0},
        {"12345699", 12340.0, 56990.0},
        {"123456987654", 12345.6, 98765.4},
        {"1234567890198765432109", 12345.678901, 98765.432109}};
    for (const auto& [digits, east, north] : precisions) {
        ASSERT_EQ(Mgrs::breakMgrsString("ZAH" + digits, zone, letters, easting, northing), 0) << digits;
        EXPECT_EQ(zone, 0);
        EXPECT_DOUBLE_EQ(easting, east) << digits;
        EXPECT_DOUBLE_EQ(northing, north) << digits;
    }
}

TEST(Mgrs, TellsWhatIsWrongWithAText) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "Invalid MGRS string: Missing grid zone designator."},
        {" \"\" ", "Invalid MGRS string: Missing grid zone designator."},
        {"12", "Invalid MGRS string: Missing grid zone designator."},
        {"61QFJ", "Invalid MGRS string: zone number out of range (0-60)."},
        {"004QFJ", "Invalid MGRS string: zone number out of range (0-60)."},
        {std::string(100000, '9'), "Invalid MGRS string: zone number out of range (0-60)."},
        {"4QFJX12", "Invalid MGRS string: GZD or Grid Sqare ID is too large."},
        {std::string(100000, 'A'), "Invalid MGRS string: GZD or Grid Sqare ID is too large."},
        {"4Q", "Invalid MGRS string: GZD or Grid Sqare ID missing."},
        {"4QF12", "Invalid MGRS string: GZD or Grid Sqare ID missing."},
        {"4Q FJ12", "Invalid MGRS string: Invalid character found."},
        {"-4QFJ", "Invalid MGRS string: Invalid character found."},
        {"4Q\xC3\x84J", "Invalid MGRS string: Invalid character found."},
        {"QFJ12", "Invalid MGRS string: expected zone number."},
        {"INV", "Invalid MGRS string: expected zone number."},
        {"0QFJ", "Invalid MGRS string: expected zone number."},
        {"0ZAH", "Invalid MGRS string: expected zone number."},
        {"4QFJ123", "Invalid MGRS string: Numeric easting and northing location are different length."},
        {"4QFJ12-4", "Invalid MGRS string: Numeric northing location is not a valid number."},
        {"4QFJ1x34", "Invalid MGRS string: Numeric easting location is not a valid number."},
        {"4QFJ" + std::string(24, '1'),
         "Invalid MGRS string: Numeric easting location is not a valid number."},
        {"4AFJ", "Invalid MGRS coordinate: Latitude band letter is invalid."},
        {"4IFJ", "Invalid MGRS coordinate: Latitude band letter is invalid."},
        {"32XMH", "Invalid MGRS coordinate: Zones 32X, 34X, and 36X do not exist."},
        {"34XDP", "Invalid MGRS coordinate: Zones 32X, 34X, and 36X do not exist."},
        {"36XVP", "Invalid MGRS coordinate: Zones 32X, 34X, and 36X do not exist."},
        {"31VEH", "Invalid MGRS coordinate: Zone 31V must have grid column letter D or lower."},
        {"4QJJ", "Invalid MGRS coordinate: Grid column letter is out of range."},
        {"31VJH", "Invalid MGRS coordinate: Grid column letter is out of range."},
        {"4QFW", "Invalid MGRS coordinate: Grid row letter is out of range."},
        {"4QFO", "Invalid MGRS coordinate: Grid row letter is out of range."},
        {"31NEV", "Invalid MGRS coordinate: Northing is out of range."},
        {"AAA", "Grid column letter is not valid for provided GZD."},
        {"YAA", "Grid column letter is not valid for provided GZD."},
        {"ZAQ", "Grid row letter is outside of the range of possible values."},
        {"BAO", "Grid row letter is outside of the range of possible values."},
    };
    for (const auto& [text, message] : cases) EXPECT_EQ(messageOf(text), message) << text.substr(0, 40);
}

TEST(Mgrs, TellsWhatIsWrongWithNumbers) {
    bool north;
    double e, n, lat, lon;
    std::string err;
    const auto utm = [&](int zone, const char* letters, double easting, double northing) {
        err.clear();
        return Mgrs::convertMgrsToUtm(zone, letters, easting, northing, north, e, n, &err) == 0 ? "" : err;
    };
    EXPECT_EQ(utm(0, "QFJ", 0, 0), "Invalid MGRS coordinate: Zone is not in range 1-60");
    EXPECT_EQ(utm(61, "QFJ", 0, 0), "Invalid MGRS coordinate: Zone is not in range 1-60");
    EXPECT_EQ(utm(4, "", 0, 0), "Invalid MGRS coordinate: Latitude band letter is invalid.");
    EXPECT_EQ(utm(4, "Q", 0, 0), "Invalid MGRS coordinate: Grid column letter is out of range.");
    EXPECT_EQ(utm(4, "QF", 0, 0), "Invalid MGRS coordinate: Grid row letter is out of range.");
    EXPECT_EQ(utm(4, "QFJJ", 0, 0), "Invalid MGRS coordinate: Grid row letter is out of range.");
    EXPECT_EQ(utm(4, "QFJ", 1e5, 0), "Invalid MGRS coordinate: Easting is out of range.");
    EXPECT_EQ(utm(4, "QFJ", std::nan(""), 0), "Invalid MGRS coordinate: Easting is out of range.");
    EXPECT_EQ(utm(4, "QFJ", 0, -1), "Invalid MGRS coordinate: Northing is out of range.");
    EXPECT_EQ(utm(4, "qfj", 12345, 67890), "");
    EXPECT_EQ(e, 612345.0);
    EXPECT_EQ(n, 2367890.0);
    EXPECT_TRUE(north);
    EXPECT_EQ(utm(56, "HLH", 0, 0), "");
    EXPECT_FALSE(north);
    EXPECT_EQ(n, 6200000.0);

    const auto geodetic = [&](int zone, bool isNorth, double easting, double northing) {
        err.clear();
        return Mgrs::convertUtmToGeodetic(zone, isNorth, easting, northing, lat, lon, &err) == 0 ? "" : err;
    };
    EXPECT_EQ(geodetic(0, true, 5e5, 0), "Invalid UTM coordinate: Zone is not in range 1-60.");
    EXPECT_EQ(geodetic(1, true, 99999, 0), "Invalid UTM coordinate: Easting is not within expected range.");
    EXPECT_EQ(geodetic(1, true, std::nan(""), 0),
              "Invalid UTM coordinate: Easting is not within expected range.");
    EXPECT_EQ(geodetic(1, false, 5e5, 1.1e7),
              "Invalid UTM coordinate: Northing is not within expected range.");
    EXPECT_EQ(geodetic(1, true, 5e5, 9999000),
              "UTM to geodetic conversion resulted in position outside valid range.");
    EXPECT_EQ(geodetic(1, true, 5e5, 0), "");
    EXPECT_NEAR(lon, -177.0 * kRadiansPerDegree, 1e-15);

    const auto ups = [&](const char* letters, double easting, double northing) {
        err.clear();
        return Mgrs::convertMgrsToUps(letters, easting, northing, north, e, n, &err) == 0 ? "" : err;
    };
    EXPECT_EQ(ups("ZA", 0, 0), "Invalid UPS coordinate: GZD string must be 3 characters.");
    EXPECT_EQ(ups("QAH", 0, 0), "Invalid UPS coordinate: First letter of GZD must be A, B, Y, or Z.");
    EXPECT_EQ(ups("ZAH", -1, 0), "Invalid MGRS coordinate: Easting is out of range.");
    EXPECT_EQ(ups("ZAH", 0, 1e5), "Invalid MGRS coordinate: Northing is out of range.");
    EXPECT_EQ(ups("ZAH", 1, 2), "");
    EXPECT_EQ(e, 2000001.0);
    EXPECT_EQ(n, 2000002.0);
    const auto polar = [&](double easting, double northing) {
        err.clear();
        return Mgrs::convertUpsToGeodetic(true, easting, northing, lat, lon, &err) == 0 ? "" : err;
    };
    EXPECT_EQ(polar(4000000.5, 0), "Easting (4000000.5) is not within the range of UPS: [4000000, 0].");
    EXPECT_EQ(polar(0, -12), "Northing (-12) is not within the range of UPS: [4000000, 0].");
    EXPECT_EQ(polar(std::nan(""), 0), "Easting (nan) is not within the range of UPS: [4000000, 0].");
    EXPECT_EQ(polar(2e6, 1e6), "");
    EXPECT_NEAR(lon, 0.0, 1e-15);
}

/// Every zone, band, column and row there could be: the same squares exist, in the same places.
TEST(MgrsProperty, KnowsTheSquaresThatGeographicLibKnows) {
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
                for (const int zone : {1, 2, 3, 4, 5, 6, 31, 32, 33, 34, 35, 36, 37, 60, 61})
                    check(std::to_string(zone) + letters);
            }
        }
    }
    EXPECT_GT(accepted, 20000);
    EXPECT_EQ(ownRefusals, 3 * (6 * 16 + 2 * 15) + 9 + 3 * 10);
}

/// 200,000 positions over the whole globe, each as references of 0 to 11 digits.
TEST(MgrsProperty, ReadsWhatGeographicLibWrites) {
    std::mt19937_64 random(31);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const auto between = [&](double low, double high) {
        return low + (high - low) * 0.5 * (unit(random) + 1.0);
    };
    std::set<int> zones;
    double worst = 0.0;
    for (int i = 0; i < 200000; ++i) {
        double lat = std::asin(unit(random)) * kDegreesPerRadian;
        double lon = 180.0 * unit(random);
        switch (i % 10) {
            case 0:  // polar areas
                lat = std::copysign(between(79.0, 90.0), lat);
                break;
            case 1:  // Norway and Svalbard
                lat = between(56.0, 84.0);
                lon = between(0.0, 42.0);
                break;
            default:
                break;
        }
        int zone;
        bool north;
        double easting, northing;
        std::string mgrs;
        UTMUPS::Forward(lat, lon, zone, north, easting, northing);
        zones.insert(zone);
        for (int digits = 0; digits <= 11; ++digits) {
            MGRS::Forward(zone, north, easting, northing, lat, digits, mgrs);
            const double apart = difference(mgrs, judge(mgrs));
            ASSERT_GE(apart, 0.0) << mgrs;
            worst = std::max(worst, apart);
        }
    }
    EXPECT_EQ(zones.size(), 61U);
    EXPECT_LT(worst, 1e-9);
}

/// Texts put together from what references are made of: ours refuses whatever GeographicLib refuses.
TEST(MgrsProperty, RefusesWhatGeographicLibRefuses) {
    const std::string_view pieces[] = {"4", "31", "60", "61",  "0", "Q", "FJ", "QFJ", "V",    "X",  "ZAH",
                                       "i", "o",  "12", "345", "1", " ", ".",  "-",   "\xFF", "INV"};
    std::mt19937_64 random(37);
    int accepted = 0;
    for (int i = 0; i < 300000; ++i) {
        std::string mgrs;
        for (auto count = 1 + random() % 6; count > 0; --count) mgrs += pieces[random() % std::size(pieces)];
        std::string err;
        double lat, lon;
        if (Mgrs::convertMgrsToGeodetic(mgrs, lat, lon, &err) != 0) {
            ASSERT_FALSE(err.empty()) << mgrs;
            continue;
        }
        ++accepted;
        const std::size_t first = mgrs.find_first_not_of(' ');
        const std::string trimmed = mgrs.substr(first, mgrs.find_last_not_of(' ') + 1 - first);
        ASSERT_FALSE(std::isnan(judge(trimmed).lat)) << mgrs;
        ASSERT_LT(difference(mgrs, judge(trimmed)), 1e-9) << mgrs;
    }
    EXPECT_GT(accepted, 1000);
}

}  // namespace
