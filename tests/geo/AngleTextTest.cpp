#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "geo/AngleText.h"

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

std::string refusal(std::string_view text, AngleReadOptions options = {}) {
    double radians = 42.0;
    std::string error;
    EXPECT_NE(readAngle(text, radians, options, &error), 0) << text;
    EXPECT_EQ(radians, 42.0) << "left alone for " << text;
    const std::size_t reason = error.rfind("\": ");
    return reason == std::string::npos ? error : error.substr(reason + 3);
}

TEST(ReadAngle, TakesEveryForm) {
    const std::vector<std::pair<std::string, double>> cases = {
        {"21.3", 21.3},
        {"-158.05", -158.05},
        {"+7", 7.0},
        {" 1e-05\t", 1e-5},
        {"21.3\u00B0", 21.3},
        {"21.3d", 21.3},
        {"21 30", 21.5},
        {"21:30", 21.5},
        {"21 18.6", 21.31},
        {"21 18 36", 21.31},
        {"21:18:36.0", 21.31},
        {"21 : 18 : 36", 21.31},
        {"-21:18:36", -21.31},
        {"21\u00B018'36\"", 21.31},
        {"21\u00B0 18' 36\"", 21.31},
        {"21\u00B018\u203236\u2033", 21.31},
        {"21\u00BA18\u201936\u201D", 21.31},
        {"21\u00B018'36''", 21.31},
        {"21\xB0 30'", 21.5},
        {"21d18m36s", 21.31},
        {"21D18M36", 21.31},
        {"21.3 deg", 21.3},
        {"21 Degrees 18 minutes 36 SEC", 21.31},
        {"\u221221\u00B030'", -21.5},
        {"0\u00B030'S", -0.5},
        {"-0 30", -0.5},
    };
    for (const auto& [text, degrees] : cases) EXPECT_NEAR(read(text), degrees, 1e-13) << text;
}

TEST(ReadAngle, TakesHemispheresOnEitherSide) {
    const std::vector<std::pair<std::string, double>> cases = {{"21.3N", 21.3},
                                                               {"N21.3", 21.3},
                                                               {"21.3 s", -21.3},
                                                               {"S 21 18 36", -21.31},
                                                               {"158 3 w", -158.05},
                                                               {"w158:03", -158.05},
                                                               {"21d18m36s", 21.31},
                                                               {"21d18m36S", -21.31},
                                                               {"21d18m36sS", -21.31},
                                                               {"21 18 36 s", -21.31},
                                                               {"21\u00B018'36s", -21.31},
                                                               {"21D18M36SN", 21.31},
                                                               {"S21D18M36S", -21.31},
                                                               {"21d30S", -21.5},
                                                               {"21d30ms", -21.5},
                                                               {"158E", 158.0},
                                                               {"21.3 deg S", -21.3},
                                                               {"N 21deg30min", 21.5},
                                                               {"2e2", 200.0},
                                                               {"2E 2", 9999.0}};
    for (const auto& [text, degrees] : cases) EXPECT_NEAR(read(text), degrees, 1e-13) << text;
    EXPECT_NEAR(read("21D18M36S", {AngleKind::Longitude}), 21.31, 1e-13) << "no longitude is south";
}

TEST(ReadAngle, RefusesWithTheReason) {
    const std::vector<std::tuple<std::string, AngleReadOptions, std::string>> cases = {
        {"", {}, "no text"},
        {" \n", {}, "no text"},
        {"abc", {}, "a number is missing"},
        {"N", {}, "a number is missing"},
        {"-", {}, "a number is missing"},
        {".", {}, "a number is missing"},
        {"nan", {}, "a number is missing"},
        {"inf", {}, "a number is missing"},
        {"0x10", {}, "unexpected text behind the angle"},
        {"21 60", {}, "minutes of 60 or more"},
        {"21 59 60", {}, "seconds of 60 or more"},
        {"21 0 75.5", {}, "seconds of 60 or more"},
        {"-21 N", {}, "a sign and a hemisphere together"},
        {"N -21", {}, "a sign and a hemisphere together"},
        {"+N21", {}, "a sign and a hemisphere together"},
        {"N21S", {}, "more than one hemisphere"},
        {"21.5 30", {}, "a fraction before the last part"},
        {"21 5.5 30", {}, "a fraction before the last part"},
        {"21 -5", {}, "unexpected text behind the angle"},
        {"--21", {}, "a number is missing"},
        {"21:", {}, "no number behind the colon"},
        {"21:N", {}, "no number behind the colon"},
        {"21 18 30 5", {}, "unexpected text behind the angle"},
        {"21:18:30:5", {}, "unexpected text behind the angle"},
        {"21' 18", {}, "unexpected text behind the angle"},
        {"21\"", {}, "unexpected text behind the angle"},
        {"21.3 degN", kLatitude, "unexpected text behind the angle"},
        {"21.3 degs", {}, "unexpected text behind the angle"},
        {"21.3 min", {}, "unexpected text behind the angle"},
        {"158 West", {}, "unexpected text behind the angle"},
        {"21.3.4", {}, "a number with two points"},
        {"21.3N junk", {}, "unexpected text behind the angle"},
        {"21D18M36S", {}, "S could mean seconds or south"},
        {"21d30s", {}, "S could mean seconds or south"},
        {"21D30 S", kLatitude, "S could mean seconds or south"},
        {"21.3\xFF", {}, "unexpected text behind the angle"},
        {"10 N", {AngleKind::Longitude}, "a longitude is E or W"},
        {"W 10", {AngleKind::Latitude}, "a latitude is N or S"},
        {"90.0001", kLatitude, "a latitude beyond 90 degrees"},
        {"90 0 1 S", kLatitude, "a latitude beyond 90 degrees"},
        {"-180.5", kLongitude, "a longitude beyond 180 degrees"},
        {"181 E", {AngleKind::Any, true}, "a longitude beyond 180 degrees"},
        {"361", {AngleKind::Any, true}, "an angle beyond 360 degrees"},
        {std::string(400, '9') + "N", {}, "a number is too large or too small"},
    };
    for (const auto& [text, options, reason] : cases) EXPECT_EQ(refusal(text, options), reason) << text;
    EXPECT_DOUBLE_EQ(read("90", kLatitude), 90.0);
    EXPECT_DOUBLE_EQ(read("180 W", kLongitude), -180.0);
    EXPECT_DOUBLE_EQ(read("1000"), 1000.0) << "a range is checked only when asked";
}

TEST(ReadAngle, QuotesLongTextsInPart) {
    double radians = 0.0;
    std::string error;
    ASSERT_NE(
        readAngle(std::string(38, 'x') + "\u00B0\u00B0" + std::string(1000000, 'x'), radians, {}, &error), 0);
    EXPECT_EQ(error, "Invalid angle \"" + std::string(38, 'x') + "\u00B0...\": a number is missing");
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
    EXPECT_EQ(writeAngle(0.0, AngleFormat::DegreesMinutes, 99), "0\u00B000.000000000000'");
    EXPECT_FALSE(writeAngle(1e300, AngleFormat::DegreesMinutesSeconds, 12).empty());
    for (const auto format :
         {AngleFormat::Decimal, AngleFormat::DegreesMinutes, AngleFormat::DegreesMinutesSeconds})
        EXPECT_EQ(writeAngle(1.7e308, format, 1, AngleKind::Latitude), "") << "too large in degrees";
}

/// Thousands of angles in every form and precision read back to within half of the last decimal.
TEST(AngleTextProperty, RoundTrips) {
    std::mt19937_64 random(17);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const std::pair<AngleFormat, double> formats[] = {{AngleFormat::Decimal, 1.0},
                                                      {AngleFormat::Degrees, 1.0},
                                                      {AngleFormat::DegreesMinutes, 60.0},
                                                      {AngleFormat::DegreesMinutesSeconds, 3600.0}};
    const std::tuple<AngleKind, AngleReadOptions, double> kinds[] = {
        {AngleKind::Any, {}, 360.0},
        {AngleKind::Latitude, kLatitude, 90.0},
        {AngleKind::Longitude, kLongitude, 180.0}};
    for (const auto& [format, perDegree] : formats) {
        for (const auto& [kind, options, limit] : kinds) {
            for (int precision = 0; precision <= kMaxAnglePrecision; ++precision) {
                const double tolerance = 0.5 / perDegree * std::pow(10.0, -precision) + 3e-13;
                for (int i = 0; i < 300; ++i) {
                    // Whole minutes and seconds among them, where carries happen.
                    double degrees = limit * unit(random);
                    if (i % 3 == 0) degrees = std::round(degrees * 3600.0) / 3600.0;
                    const std::string text = writeAngle(degrees * kDegree, format, precision, kind);
                    ASSERT_NEAR(read(text, options), degrees, tolerance) << text;
                }
            }
        }
    }
}

/// Texts put together at random from what angles are made of: never a crash, and never half an answer.
TEST(AngleTextProperty, SurvivesNonsense) {
    const std::string_view pieces[] = {"2", "21", "59", "60",     ".",    ":",    " ",  "\u00B0",
                                       "'", "\"", "d",  "m",      "s",    "S",    "N",  "W",
                                       "-", "+",  "e",  "\u2032", "\xFF", "\xC2", "''", "1e5"};
    std::mt19937_64 random(19);
    int accepted = 0;
    for (int i = 0; i < 200000; ++i) {
        std::string text;
        for (auto count = random() % 9; count > 0; --count) text += pieces[random() % std::size(pieces)];
        double radians = 42.0;
        std::string error;
        if (readAngle(text, radians, {}, &error) == 0) {
            ++accepted;
            ASSERT_TRUE(std::isfinite(radians)) << text;
            ASSERT_TRUE(error.empty()) << text;
        } else {
            ASSERT_EQ(radians, 42.0) << text;
            ASSERT_FALSE(error.empty()) << text;
        }
    }
    EXPECT_GT(accepted, 1000);
}

}  // namespace
