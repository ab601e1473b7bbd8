#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "common/NumberLines.h"
#include "common/NumberText.h"
#include "support/CommaLocale.h"
#include "support/Rows.h"

namespace {

using UTILS::readInteger;
using UTILS::readNumber;
using UTILS::writeFixed;
using UTILS::writeNumber;

TEST(ReadNumber, TakesDecimalNumbers) {
    for (const std::string& text :
         test::split("0;21.3;-158.05;+7; 1.5\t;.5;5.;1e3;1E-05;\r\n2\n;1e-400;-1e-400;00012;5e-324;0e999;"
                     "1.7976931348623157e308;1e-99999999999999999999999;-1e-999",
                     ";")) {
        const double value = std::strtod(text.c_str(), nullptr);
        EXPECT_EQ(readNumber(text), value) << text;
        EXPECT_EQ(std::signbit(readNumber(text).value_or(value)), std::signbit(value)) << text;
    }
    EXPECT_EQ(readNumber("0." + std::string(100000, '0') + "1"), 0.0);
    EXPECT_EQ(readNumber("0." + std::string(500, '0') + "1e501"), 1.0);
    EXPECT_EQ(readNumber("1" + std::string(500, '0') + "e-500"), 1.0);
}

TEST(ReadNumber, RefusesEverythingElse) {
    for (const std::string& text : test::split(
             "; ;+;-;.;nan;NaN;inf;-inf;infinity;0x10;1,5;1.5.2;12a;1 2;++1;+-1;-+1;--1;1e;e5;1e400;-1e400;"
             "1_000;1e99999999999999999999999;\xC2\xA0"
             "1;1\xFF;½",
             ";"))
        EXPECT_EQ(readNumber(text), std::nullopt) << text;
    EXPECT_EQ(readNumber(std::string_view("1\0", 2)), std::nullopt);
    EXPECT_EQ(readNumber(std::string(100000, '9')), std::nullopt);
}

TEST(ReadInteger, TakesWholeNumbersOnly) {
    EXPECT_EQ(readInteger(" -12 "), -12);
    EXPECT_EQ(readInteger("+9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    for (const std::string& text : test::split(";1.0;1e2;9223372036854775808;0x1;+-1;1 2;a", ";"))
        EXPECT_EQ(readInteger(text), std::nullopt) << text;
}

/// Half way between two numbers of 15 digits, or the double beside that. Doubles are those halves only that
/// have the power of five as a factor.
double tie(std::mt19937_64& random) {
    const int decimals = static_cast<int>(random() % 24) - 2;
    const double five = std::pow(5.0, std::abs(decimals));
    std::uniform_real_distribution<double> number(1e14, decimals < 0 ? 4.5e15 / five : 1e15);
    const double odd = 2.0 * std::floor(number(random) / (decimals > 0 ? five : 1.0)) + 1.0;
    const double value = std::ldexp(decimals < 0 ? odd * five : odd, -decimals - 1);
    const int beside = static_cast<int>(random() % 3) - 1;
    return beside == 0 ? value : std::nextafter(value, beside * HUGE_VAL);
}

/// A power of ten, or one of the doubles beside: all digits are nines, or carry.
double besidePower(std::mt19937_64& random) {
    double value = std::pow(10.0, static_cast<int>(random() % 24) - 6);
    for (std::size_t step = random() % 20; step > 0; --step) value = std::nextafter(value, 0.0);
    return value;
}

/// Any number is written as printf does, and read again it is the same.
TEST(WriteNumber, WritesAsPrintfDoes) {
    // So many million numbers.
    const char* const campaign = std::getenv("CAMPAIGN_ROUNDS");
    std::mt19937_64 random(campaign ? std::random_device()() : 7);
    const long long count = campaign ? std::atoll(campaign) * 1000000 : 200000;
    for (long long i = 0; i < count; ++i) {
        // In turn any double at all, one of everyday size, and one half way between two texts or beside it.
        double value = std::bit_cast<double>(random());
        if (i % 3 == 0)
            value = std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(random() % 75));
        if (i % 3 == 1)
            value = (static_cast<double>(random() % 400'000'000) * 10 + 5) / std::pow(10.0, random() % 10);
        if (!std::isfinite(value)) continue;
        // Half of them as files have them.
        if (i % 6 == 5) value = i % 32 == 31 ? besidePower(random) : tie(random);
        const int digits =
            i % 2 ? UTILS::kSignificantDigits : 1 + static_cast<int>(random() % (i % 3 == 1 ? 10 : 17));
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.*g", digits, value);
        const std::string text = expected;
        ASSERT_EQ(writeNumber(value, digits), text) << std::hexfloat << value;
        // Three of a line are written in another way, where the processor can.
        const bool same = i % 4 < 2;
        const double last = i % 8 == 3 ? HUGE_VAL : 5.0;
        const halCore::Vec3 three(value, -value, same ? value : last);
        const std::string line = "xyz " + text + " " + (text[0] == '-' ? text.substr(1) : "-" + text) + " " +
                                 (same               ? text
                                  : std::isinf(last) ? "inf"
                                                     : "5") +
                                 "\n";
        char written[4 + UTILS::kMaxNumbersLength];
        ASSERT_EQ(std::string_view(written, UTILS::writeLines(written, "xyz ", {&three, 1}, digits)), line)
            << std::hexfloat << value;
        ASSERT_EQ(readNumber(writeNumber(value, 17)), value);
    }
}

TEST(WriteFixed, RoundsAndHasNoNegativeZero) {
    EXPECT_EQ(writeFixed(3.14159, 2), "3.14");
    EXPECT_EQ(writeFixed(-0.004, 2), "0.00");
    EXPECT_EQ(writeFixed(-0.006, 2), "-0.01");
    EXPECT_EQ(writeFixed(99.999, 1), "100.0");
    EXPECT_EQ(writeFixed(12.5, -3), "12");
    EXPECT_EQ(writeFixed(1e300, 17).size(), 301U + 18U);
    EXPECT_EQ(writeFixed(-std::numeric_limits<double>::max(), 17).size(), 310U + 18U);
    EXPECT_EQ(writeFixed(std::nan(""), 2), "");
    EXPECT_EQ(writeFixed(HUGE_VAL, 2), "");
}

TEST(NumberText, IgnoresTheLocale) {
    const test::CommaLocale locale;
    EXPECT_EQ(readNumber("1234.5"), 1234.5);
    EXPECT_EQ(readNumber("1234,5"), std::nullopt);
    // What a user typed stays.
    for (const char* text : {"21.3", "-158.05", "0.1", "1852", "1e-05", "123456.789", "1e+15", "1.5e+300"})
        EXPECT_EQ(writeNumber(*readNumber(text)), text);
    EXPECT_EQ(writeFixed(1234.5, 2), "1234.50");
}

}  // namespace
