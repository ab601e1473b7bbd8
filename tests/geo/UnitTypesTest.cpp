#include <array>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "geo/TspiUnitsProviderAdapter.h"
#include "geo/UnitTypes.h"
#include "support/CommaLocale.h"
#include "support/Rows.h"

namespace {

using namespace UTILS;

constexpr double kRadiansPerDegree = 0.017453292519943295;

using Provider = TspiUnitsProviderAdapter;

struct Field {
    std::string (Provider::*format)(double) const;
    int (Provider::*parse)(std::string_view, double&, std::string*) const;
    UnitType_t (Provider::*units)() const;
    /// The largest value, in metres or radians.
    double most;
};
const std::map<std::string, Field> kFields{
    {"range", {&Provider::formatRange, &Provider::parseRange, &Provider::rangeUnits, 1e7}},
    {"altitude", {&Provider::formatAltitude, &Provider::parseAltitude, &Provider::altitudeUnits, 1e7}},
    {"angle", {&Provider::formatAngle, &Provider::parseAngle, &Provider::angleUnits, 2 * M_PI}},
    {"latitude", {&Provider::formatLatitude, &Provider::parseLatitude, &Provider::geodeticUnits, M_PI / 2}},
    {"longitude", {&Provider::formatLongitude, &Provider::parseLongitude, &Provider::geodeticUnits, M_PI}}};

TEST(UnitTypes, HaveTheNumbersThatPreferencesUse) {
    EXPECT_EQ(static_cast<int>(UnitType_t::Meters), 20);
    EXPECT_EQ(static_cast<int>(UnitType_t::Degrees), 11);
    for (int number = -1; number < 40; ++number) {
        const auto type = static_cast<UnitType_t>(number);
        const bool isKnown = number >= 10 && number <= 32;
        EXPECT_EQ(unitsGetUnits(type).isValid(), isKnown) << number;
        EXPECT_EQ(unitsGetTypeFromString(unitsGetName(type)), isKnown ? type : UnitType_t::Invalid);
        EXPECT_EQ(unitsGetTypeFromString(unitsGetAbbreviation(type)), isKnown ? type : UnitType_t::Invalid);
        EXPECT_EQ(unitsGetName(type).empty(), !isKnown);
    }
    EXPECT_EQ(unitsGetTypeFromString(" Nautical Miles "), UnitType_t::NauticalMiles);
    for (const char* text : {"", "sec", "furlong", "m m", "\xFF"})
        EXPECT_EQ(unitsGetTypeFromString(text), UnitType_t::Invalid) << text;
}

TEST(UnitTypes, StandInTheMenusInTheirOrder) {
    const auto menu = [](std::span<const UnitType_t> types) {
        std::string text;
        for (const UnitType_t type : types) text.append(unitsGetAbbreviation(type)).append(", ");
        return text;
    };
    EXPECT_EQ(menu(lengthUnitTypes()), "m, km, yd, mi, ft, in, nm, cm, mm, kyd, fm, kf, dm, ");
    EXPECT_EQ(menu(angleUnitTypes()), "deg, deg:min, deg:min:sec, rad, mrad, mil, bam, ");
    EXPECT_EQ(menu(geodeticUnitTypes()),
              "deg:min:sec NSEW, deg:min NSEW, deg NSEW, deg:min:sec, deg:min, deg, ");
    for (const UnitType_t type : lengthUnitTypes()) {
        EXPECT_EQ(unitsGetName(type), unitsGetUnits(type).name());
        EXPECT_EQ(unitsGetAbbreviation(type), unitsGetUnits(type).abbreviation());
    }
}

/// Each of the four units takes those of its menu, and leaves the other three alone.
TEST(UnitsProvider, RefusesUnitsOfAnotherFamily) {
    using Set = bool (Provider::*)(UnitType_t);
    const std::tuple<Set, bool (*)(UnitType_t), std::size_t> setters[] = {
        {&Provider::setRangeUnits, unitsIsLength, 0},
        {&Provider::setAltitudeUnits, unitsIsLength, 1},
        {&Provider::setAngleUnits, unitsIsAngle, 2},
        {&Provider::setGeodeticUnits, unitsIsGeodetic, 3}};
    for (const auto& [set, fits, which] : setters)
        for (int number = -1; number < 40; ++number) {
            const auto type = static_cast<UnitType_t>(number);
            std::array expected{UnitType_t::Meters, UnitType_t::Meters, UnitType_t::Degrees,
                                UnitType_t::DegreesMinutesSecondsHemisphere};
            Provider provider;
            EXPECT_EQ((provider.*set)(type), fits(type)) << which << ": " << number;
            if (fits(type)) expected[which] = type;
            EXPECT_EQ((std::array{provider.rangeUnits(), provider.altitudeUnits(), provider.angleUnits(),
                                  provider.geodeticUnits()}),
                      expected);
        }
    Provider provider;
    EXPECT_EQ(provider.precision(), 2);
    provider.setPrecision(-1);
    EXPECT_EQ(provider.precision(), 0);
    provider.setPrecision(1000);
    EXPECT_EQ(provider.precision(), Provider::kMaxPrecision);
}

TEST(UnitsProvider, FormatsInTheUsersUnits) {
    const test::CommaLocale locale;
    Provider provider;
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

/// Every choice of units and precision gives a text that reads back to within its last decimal; in degrees
/// and radians it is the same text then, also where the last part is nearly full.
TEST(UnitsProviderProperty, RoundTrips) {
    std::mt19937_64 random(13);
    std::uniform_real_distribution<double> part(-1.0, 1.0);
    const auto any = [&](std::span<const UnitType_t> menu) { return menu[random() % menu.size()]; };
    Provider provider;
    for (int i = 0; i < 20000; ++i) {
        provider.setPrecision(i % (Provider::kMaxPrecision + 1));
        provider.setRangeUnits(any(lengthUnitTypes()));
        provider.setAltitudeUnits(any(lengthUnitTypes()));
        provider.setAngleUnits(any(angleUnitTypes()));
        provider.setGeodeticUnits(any(geodeticUnitTypes()));
        for (const auto& [name, field] : kFields) {
            double value = field.most * part(random);
            const bool isAngle = field.most < 7.0;
            if (isAngle && i % 3 == 0) {
                const double full = (std::trunc(value / kRadiansPerDegree) + 1.0 / 60.0) * kRadiansPerDegree;
                value = std::min(full - std::pow(10.0, -5.0 - 10.0 * std::abs(part(random))), field.most);
            }
            const std::string text = (provider.*field.format)(value);
            double back = 0.0;
            ASSERT_EQ((provider.*field.parse)(text, back, nullptr), 0) << text;
            const double unit = unitsGetUnits((provider.*field.units)()).toBaseScalar();
            ASSERT_NEAR(back, value,
                        0.51 * std::pow(10.0, -provider.precision()) * unit + 2e-15 * field.most);
            const UnitType_t type = (provider.*field.units)();
            if (unitsGetUnits(type) == halCore::Units::DEGREES || type == UnitType_t::Radians) {
                ASSERT_EQ((provider.*field.format)(back), text) << provider.precision();
            }
        }
    }
}

}  // namespace
