#include <algorithm>
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "geo/AngleText.h"
#include "support/Rows.h"

namespace {

using namespace halCore;

constexpr double kDegree = 0.017453292519943295;
constexpr AngleReadOptions kLatitude{AngleKind::Latitude, true};
constexpr AngleReadOptions kLongitude{AngleKind::Longitude, true};

/// Degrees, or 9999 when the text is refused.
double read(std::string_view text, AngleReadOptions options = {}) {
    double radians = 0.0;
    return readAngle(text, radians, options) == 0 ? radians / kDegree : 9999.0;
}

TEST(ReadAngle, TakesEveryForm) {
    for (const auto& row : test::rows(R"(
21.3 | 21.3; +21.3	;21.3°;21.3d;21.3 deg;21.3N;N21.3
-21.3 | -21.3;21.3 s;21.3 deg S;S21.3
-158.05 | -158.05;158 3 w;w158:03;158:3:0W
158 | 158E;e 158
0.00001 | 1e-05
200 | 2e2
-0.5 | 0°30'S;-0 30
21.5 | 21 30;21:30;21D30;N 21deg30min
-21.5 | −21°30';21d30S;21d30ms;S 21:30
21.31 | 21 18.6;21 18 36;21:18:36.0;21 : 18 : 36;21°18'36";21° 18' 36";21°18′36″;21º18’36”;21°18'36'';21˚18'36
21.31 | 21d18m36s;21D18M36;21 Degrees 18 minutes 36 SEC;21D18M36SN
-21.31 | -21:18:36;S 21 18 36;21d18m36S;21d18m36sS;21 18 36 s;21°18'36s;S21D18M36S
)",
                                      2))
        for (const std::string& text : test::split(row[1], ";"))
            EXPECT_NEAR(read(text), std::stod(row[0]), 1e-13) << text;
    EXPECT_NEAR(read("21\xB0 30'"), 21.5, 1e-13) << "Latin-1";
    EXPECT_NEAR(read("21D18M36S", {AngleKind::Longitude}), 21.31, 1e-13) << "no longitude is south";
    EXPECT_DOUBLE_EQ(read("90", kLatitude), 90.0);
    EXPECT_DOUBLE_EQ(read("180 W", kLongitude), -180.0);
    EXPECT_DOUBLE_EQ(read("1000"), 1000.0) << "a range is checked only when asked";
}

TEST(ReadAngle, RefusesWithTheReason) {
    const std::pair<std::string, AngleReadOptions> kinds[] = {
        {"any", {}}, {"circle", {AngleKind::Any, true}}, {"latitude", kLatitude}, {"longitude", kLongitude}};
    for (const auto& row : test::rows(R"(
any | no text | ;	
any | a number is missing | abc;N;-;.;nan;inf;--21
any | unexpected text behind the angle | 0x10;21 -5;21 18 30 5;21:18:30:5;21' 18;21";21.3 degs;21.3 min;158 West
any | unexpected text behind the angle | 21.3N junk;2E 2
any | minutes of 60 or more | 21 60
any | seconds of 60 or more | 21 59 60;21 0 75.5
any | a sign and a hemisphere together | -21 N;N -21;+N21
any | more than one hemisphere | N21S
any | a fraction before the last part | 21.5 30;21 5.5 30
any | no number behind the colon | 21:;21:N
any | a number with two points | 21.3.4
any | S could mean seconds or south | 21D18M36S;21d30s
latitude | S could mean seconds or south | 21D30 S
latitude | unexpected text behind the angle | 21.3 degN
latitude | a latitude is N or S | W 10
longitude | a longitude is E or W | 10 N
latitude | a latitude beyond 90 degrees | 90.0001;90 0 1 S
longitude | a longitude beyond 180 degrees | -180.5
circle | a longitude beyond 180 degrees | 181 E
circle | an angle beyond 360 degrees | 361
)",
                                      3)) {
        const auto* const kind =
            std::find_if(kinds, std::end(kinds), [&](auto& k) { return k.first == row[0]; });
        for (const std::string& text : test::split(row[2], ";")) {
            double radians = 42.0;
            std::string error;
            EXPECT_NE(readAngle(text, radians, kind->second, &error), 0) << text;
            EXPECT_EQ(radians, 42.0) << "left alone for " << text;
            EXPECT_TRUE(error.ends_with("\": " + row[1])) << text << ": " << error;
        }
    }
    EXPECT_EQ(read("21.3\xFF"), 9999.0);
    EXPECT_EQ(read(std::string(400, '9') + "N"), 9999.0);
}

TEST(ReadAngle, BearsLongTextsAndQuotesThemInPart) {
    double radians = 0.0;
    std::string error;
    EXPECT_NE(readAngle(std::string(1000000, 'x'), radians, {}, &error), 0);
    EXPECT_EQ(error, "Invalid angle \"" + std::string(40, 'x') + "...\": a number is missing");
    EXPECT_NE(readAngle(std::string(1000000, '1'), radians), 0);
    EXPECT_EQ(read("21" + std::string(1000000, ' ') + "30"), 21.5);
}

TEST(WriteAngle, WritesEveryForm) {
    const double angle = -21.31 * kDegree;
    EXPECT_EQ(writeAngle(angle, AngleFormat::Decimal, 3), "-21.310");
    EXPECT_EQ(writeAngle(angle, AngleFormat::Degrees, 2), "-21.31\u00B0");
    EXPECT_EQ(writeAngle(angle, AngleFormat::DegreesMinutes, 2), "-21\u00B018.60'");
    EXPECT_EQ(writeAngle(angle, AngleFormat::DegreesMinutesSeconds, 1), "-21\u00B018'36.0\"");
    EXPECT_EQ(writeAngle(angle, AngleFormat::DegreesMinutesSeconds, 0, AngleKind::Latitude),
              "21\u00B018'36\"S");
    EXPECT_EQ(writeAngle(-angle, AngleFormat::DegreesMinutes, 0, AngleKind::Longitude), "21\u00B019'E");
    EXPECT_EQ(writeAngle(5.5 / 3600.0 * kDegree, AngleFormat::DegreesMinutesSeconds, 2), "0\u00B000'05.50\"");
}

TEST(WriteAngle, CarriesAndHasNoNegativeZero) {
    EXPECT_EQ(writeAngle(21.99999 * kDegree, AngleFormat::DegreesMinutesSeconds, 0), "22\u00B000'00\"");
    EXPECT_EQ(writeAngle(59.9999 / 60.0 * kDegree, AngleFormat::DegreesMinutes, 2), "1\u00B000.00'");
    EXPECT_EQ(writeAngle(-1e-9, AngleFormat::DegreesMinutesSeconds, 2), "0\u00B000'00.00\"");
    EXPECT_EQ(writeAngle(-1e-9, AngleFormat::Decimal, 2), "0.00");
    EXPECT_EQ(writeAngle(-1e-9, AngleFormat::Degrees, 2, AngleKind::Longitude), "0.00\u00B0E");
    EXPECT_EQ(writeAngle(-0.0, AngleFormat::Decimal, 0), "0");
}

TEST(WriteAngle, BearsAnyValueAndPrecision) {
    EXPECT_EQ(writeAngle(std::nan(""), AngleFormat::Decimal, 2), "");
    EXPECT_EQ(writeAngle(HUGE_VAL, AngleFormat::DegreesMinutesSeconds, 2), "");
    EXPECT_EQ(writeAngle(kDegree, AngleFormat::DegreesMinutesSeconds, -5), "1\u00B000'00\"");
    EXPECT_EQ(writeAngle(0.0, AngleFormat::DegreesMinutes, 99), "0\u00B000.00000000000'");
    EXPECT_FALSE(writeAngle(1e300, AngleFormat::DegreesMinutesSeconds, 12).empty());
    for (const auto format :
         {AngleFormat::Decimal, AngleFormat::DegreesMinutes, AngleFormat::DegreesMinutesSeconds})
        EXPECT_EQ(writeAngle(1.7e308, format, 1, AngleKind::Latitude), "") << "too large in degrees";
}

}  // namespace
