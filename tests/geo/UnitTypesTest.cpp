#include <cmath>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "geo/MgrsConvert.h"
#include "geo/TspiUnitsProviderAdapter.h"
#include "geo/UnitTypes.h"
#include "support/CommaLocale.h"

namespace {

using namespace UTILS;
using halCore::Units;

constexpr double kRadiansPerDegree = 0.017453292519943295;

TEST(UnitTypes, HaveTheNumbersThatPreferencesUse) {
    EXPECT_EQ(static_cast<int>(UnitType_t::Meters), 20);
    EXPECT_EQ(static_cast<int>(UnitType_t::Degrees), 11);
    const TspiUnitsProviderAdapter provider;
    EXPECT_EQ(static_cast<int>(provider.geodeticUnits()), 13);
    EXPECT_EQ(static_cast<int>(provider.rangeUnits()), 20);
    EXPECT_EQ(static_cast<int>(provider.altitudeUnits()), 20);
    EXPECT_EQ(static_cast<int>(provider.angleUnits()), 11);
    EXPECT_EQ(provider.precision(), 2);
}

TEST(UnitTypes, ComeBackFromTheirNameAndAbbreviation) {
    for (int number = -1; number < 40; ++number) {
        const auto type = static_cast<UnitType_t>(number);
        const bool isKnown = number >= 10 && number <= 32;
        EXPECT_EQ(unitsGetUnits(type).isValid(), isKnown) << number;
        EXPECT_EQ(unitsIsLength(type), isKnown && number >= 20) << number;
        EXPECT_EQ(unitsIsAngle(type) || unitsIsGeodetic(type), isKnown && number < 20) << number;
        if (isKnown) {
            EXPECT_EQ(unitsGetTypeFromString(unitsGetName(type)), type);
            EXPECT_EQ(unitsGetTypeFromString(unitsGetAbbreviation(type)), type);
        } else {
            EXPECT_EQ(unitsGetName(type), "");
            EXPECT_EQ(unitsGetAbbreviation(type), "");
        }
    }
    EXPECT_EQ(unitsGetTypeFromString(" Nautical Miles "), UnitType_t::NauticalMiles);
    EXPECT_EQ(unitsGetTypeFromString("FT"), UnitType_t::Feet);
    for (const char* text : {"", "sec", "furlong", "m m", "\xFF"})
        EXPECT_EQ(unitsGetTypeFromString(text), UnitType_t::Invalid) << text;
}

TEST(UnitTypes, ShareNamesWithTheUnitsOfLength) {
    for (const UnitType_t type : lengthUnitTypes()) {
        EXPECT_EQ(unitsGetName(type), unitsGetUnits(type).name());
        EXPECT_EQ(unitsGetAbbreviation(type), unitsGetUnits(type).abbreviation());
    }
}

TEST(UnitsProvider, RefusesUnitsOfAnotherFamily) {
    TspiUnitsProviderAdapter provider;
    EXPECT_FALSE(provider.setRangeUnits(UnitType_t::Degrees));
    EXPECT_FALSE(provider.setAltitudeUnits(UnitType_t::Invalid));
    EXPECT_FALSE(provider.setAngleUnits(UnitType_t::DegreesHemisphere));
    EXPECT_FALSE(provider.setGeodeticUnits(UnitType_t::Mils));
    EXPECT_EQ(provider.rangeUnits(), UnitType_t::Meters);
    EXPECT_TRUE(provider.setRangeUnits(UnitType_t::NauticalMiles));
    EXPECT_EQ(provider.rangeUnits(), UnitType_t::NauticalMiles);
    provider.setPrecision(-1);
    EXPECT_EQ(provider.precision(), 0);
    provider.setPrecision(1000);
    EXPECT_EQ(provider.precision(), TspiUnitsProviderAdapter::kMaxPrecision);
}

TEST(UnitsProvider, FormatsInTheUsersUnits) {
    TspiUnitsProviderAdapter provider;
    const double lat = 21.308333333333334 * kRadiansPerDegree;
    const double lon = -157.999999 * kRadiansPerDegree;
    EXPECT_EQ(provider.formatRange(1852.0), "1852.00");
    EXPECT_EQ(provider.formatAngle(lat), "21.31");
    EXPECT_EQ(provider.formatLatitude(lat), "21\u00B018'30.00\"N");
    EXPECT_EQ(provider.formatLongitude(lon), "158\u00B000'00.00\"W");
    EXPECT_EQ(provider.formatRange(-0.001), "0.00");
    EXPECT_EQ(provider.formatRange(std::nan("")), "");

    provider.setRangeUnits(UnitType_t::NauticalMiles);
    provider.setAltitudeUnits(UnitType_t::Feet);
    provider.setAngleUnits(UnitType_t::Mils);
    provider.setGeodeticUnits(UnitType_t::DegreesMinutes);
    provider.setPrecision(3);
    EXPECT_EQ(provider.formatRange(1852.0), "1.000");
    EXPECT_EQ(provider.formatAltitude(0.30479999), "1.000");
    EXPECT_EQ(provider.formatAngle(90.0 * kRadiansPerDegree), "1600.000");
    EXPECT_EQ(provider.formatLatitude(-lat), "-21\u00B018.500'");
    provider.setGeodeticUnits(UnitType_t::Degrees);
    EXPECT_EQ(provider.formatLongitude(lon), "-158.000");
}

TEST(UnitsProvider, ParsesWhatPeopleType) {
    TspiUnitsProviderAdapter provider;
    provider.setRangeUnits(UnitType_t::Kilometers);
    double value = 0.0;
    const std::pair<const char*, double> lengths[] = {
        {"1.5", 1500.0},   {" +2 ", 2000.0},    {"2 nm", 3704.0},       {"2NM", 3704.0},
        {"1e3 m", 1000.0}, {"10 meters", 10.0}, {"-3 ft", -0.91439997}, {"1 Nautical Miles", 1852.0}};
    for (const auto& [text, meters] : lengths) {
        EXPECT_EQ(provider.parseRange(text, value), 0) << text;
        EXPECT_DOUBLE_EQ(value, meters) << text;
    }
    provider.setAngleUnits(UnitType_t::Mils);
    const std::pair<const char*, double> angles[] = {
        {"1600", 90.0}, {"90 deg", 90.0}, {"90\u00B0", 90.0}, {"90d30m", 90.5}, {"0 rad", 0.0}};
    for (const auto& [text, degrees] : angles) {
        EXPECT_EQ(provider.parseAngle(text, value), 0) << text;
        EXPECT_DOUBLE_EQ(value, degrees * kRadiansPerDegree) << text;
    }
    EXPECT_EQ(provider.parseLatitude("21.3 deg", value), 0);
    EXPECT_DOUBLE_EQ(value, 21.3 * kRadiansPerDegree);
    EXPECT_EQ(provider.parseLongitude("158 03 W", value), 0);
    EXPECT_DOUBLE_EQ(value, -158.05 * kRadiansPerDegree);
}

TEST(UnitsProvider, RefusesTheRestWithAReasonAndLeavesTheValue) {
    const TspiUnitsProviderAdapter provider;
    double value = 42.0;
    for (const char* text :
         {"", "  ", "abc", "1,000", "5 secs", "5 deg", "nan", "inf", "1e308 km", "m", "5 m m"}) {
        std::string error;
        EXPECT_NE(provider.parseRange(text, value, &error), 0) << text;
        EXPECT_FALSE(error.empty()) << text;
    }
    EXPECT_NE(provider.parseAngle("5 km", value), 0);
    EXPECT_NE(provider.parseAngle("", value), 0);
    EXPECT_NE(provider.parseLatitude("90.001", value), 0);
    EXPECT_NE(provider.parseLatitude("10 E", value), 0);
    EXPECT_NE(provider.parseLongitude("181", value), 0);
    EXPECT_NE(provider.parseLongitude("10 N", value), 0);
    EXPECT_EQ(value, 42.0);
}

TEST(UnitsProvider, IgnoresTheLocale) {
    const test::CommaLocale locale;
    TspiUnitsProviderAdapter provider;
    provider.setGeodeticUnits(UnitType_t::DegreesMinutes);
    double value = 0.0;
    EXPECT_EQ(provider.formatRange(1234567.5), "1234567.50");
    EXPECT_EQ(provider.formatLatitude(-21.31 * kRadiansPerDegree), "-21\u00B018.60'");
    EXPECT_EQ(provider.parseRange("1234.5", value), 0);
    EXPECT_EQ(value, 1234.5);
    EXPECT_EQ(provider.parseLatitude("21 18.6 S", value), 0);
    EXPECT_NE(provider.parseLatitude("21 18,6 S", value), 0);
    std::string mgrs;
    EXPECT_EQ(MgrsConvert::geodeticToMgrs(0.0, 3.0 * kRadiansPerDegree, mgrs), 0);
    EXPECT_EQ(mgrs, "31NEA0000000000");
}

/// Every choice of units and precision gives a text that reads back to within its last decimal.
TEST(UnitsProviderProperty, RoundTrips) {
    std::mt19937_64 random(13);
    std::uniform_real_distribution<double> metersBetween(-1e7, 1e7);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    TspiUnitsProviderAdapter provider;
    double back = 0.0;
    for (int i = 0; i < 20000; ++i) {
        const int precision = i % (TspiUnitsProviderAdapter::kMaxPrecision + 1);
        const double lastDecimal = std::pow(10.0, -precision);
        provider.setPrecision(precision);

        const UnitType_t length = lengthUnitTypes()[random() % lengthUnitTypes().size()];
        provider.setRangeUnits(length);
        const double meters = metersBetween(random);
        ASSERT_EQ(provider.parseRange(provider.formatRange(meters), back), 0);
        ASSERT_NEAR(back, meters, 0.51 * lastDecimal * unitsGetUnits(length).toBaseScalar() + 1e-8);

        const UnitType_t angle = angleUnitTypes()[random() % angleUnitTypes().size()];
        provider.setAngleUnits(angle);
        const double radians = 7.0 * unit(random);
        ASSERT_EQ(provider.parseAngle(provider.formatAngle(radians), back), 0)
            << provider.formatAngle(radians);
        ASSERT_NEAR(back, radians, 0.51 * lastDecimal * unitsGetUnits(angle).toBaseScalar() + 1e-14);

        provider.setGeodeticUnits(geodeticUnitTypes()[random() % geodeticUnitTypes().size()]);
        const double lat = 1.5707963267948966 * unit(random);
        const double lon = 3.141592653589793 * unit(random);
        ASSERT_EQ(provider.parseLatitude(provider.formatLatitude(lat), back), 0)
            << provider.formatLatitude(lat);
        ASSERT_NEAR(back, lat, 0.51 * lastDecimal * kRadiansPerDegree + 1e-14);
        ASSERT_EQ(provider.parseLongitude(provider.formatLongitude(lon), back), 0);
        ASSERT_NEAR(back, lon, 0.51 * lastDecimal * kRadiansPerDegree + 1e-14);
    }
}

}  // namespace
