#include <array>
#include <cmath>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "geo/Units.h"
#include "geo/UnitsRegistry.h"

namespace {

using halCore::Units;
using halCore::UnitsRegistry;

UnitsRegistry defaults() {
    UnitsRegistry registry;
    registry.registerDefaultUnits();
    return registry;
}

TEST(Units, ConvertWithTheScalesAsTheyStand) {
    EXPECT_EQ(Units::FEET.convertTo(Units::METERS, 1.0), 0.30479999);
    EXPECT_EQ(Units::FEET_PER_SECOND.convertTo(Units::METERS_PER_SECOND, 1.0), 0.3047999);
    EXPECT_DOUBLE_EQ(Units::YARDS.convertTo(Units::METERS, 1000.0), 914.39997);
    EXPECT_EQ(Units::NAUTICAL_MILES.convertTo(Units::KILOMETERS, 1.0), 1.852);
    EXPECT_EQ(Units::KNOTS_PER_SECOND.convertTo(Units::METERS_PER_SECOND_SQUARED, 1.0), 1852.0);
    EXPECT_EQ(Units::BAM.convertTo(Units::RADIANS, 1.0), 0.6366197723675814);
    EXPECT_DOUBLE_EQ(Units::DEGREES.convertTo(Units::MIL, 360.0), 6400.0);
    EXPECT_DOUBLE_EQ(Units::ATMOSPHERES.convertTo(Units::TORR, 1.0), 760.0);
}

// Sizes by definition, in the base unit of the family; ours are up to two parts in ten thousand off them.
TEST(Units, HaveAboutTheirPhysicalSizes) {
    const std::pair<const char*, double> sizes[] = {{"ms", 1e-3},
                                                    {"us", 1e-6},
                                                    {"ns", 1e-9},
                                                    {"min", 60.0},
                                                    {"hr", 3600.0},
                                                    {"d", 86400.0},
                                                    {"deg", M_PI / 180.0},
                                                    {"mrad", 1e-3},
                                                    {"bam", 2.0 / M_PI},
                                                    {"mil", M_PI / 3200},
                                                    {"km", 1e3},
                                                    {"yd", 0.9144},
                                                    {"mi", 1609.344},
                                                    {"ft", 0.3048},
                                                    {"in", 0.0254},
                                                    {"nm", 1852.0},
                                                    {"cm", 0.01},
                                                    {"mm", 0.001},
                                                    {"kyd", 914.4},
                                                    {"fm", 1.8288},
                                                    {"kf", 304.8},
                                                    {"dm", 1828.8},
                                                    {"km/hr", 1 / 3.6},
                                                    {"kts", 1852.0 / 3600},
                                                    {"mph", 0.44704},
                                                    {"ft/sec", 0.3048},
                                                    {"km/sec", 1e3},
                                                    {"dm/hr", 1828.8 / 3600},
                                                    {"yd/sec", 0.9144},
                                                    {"km/(s^2)", 1e3},
                                                    {"yd/(s^2)", 0.9144},
                                                    {"sm/(s^2)", 1609.344},
                                                    {"ft/(s^2)", 0.3048},
                                                    {"in/(s^2)", 0.0254},
                                                    {"nm/(s^2)", 1852.0},
                                                    {"F", 5.0 / 9},
                                                    {"k", 1.0},
                                                    {"ra", 5.0 / 9},
                                                    {"re", 1.25},
                                                    {"kHz", 1e3},
                                                    {"MHz", 1e6},
                                                    {"rpm", 1.0 / 60},
                                                    {"rad/sec", 0.5 / M_PI},
                                                    {"deg/sec", 1.0 / 360},
                                                    {"ml", 1e-3},
                                                    {"fl oz", 0.0295735},
                                                    {"cup", 0.236588},
                                                    {"pt", 0.473176},
                                                    {"qt", 0.946353},
                                                    {"gal", 3.78541},
                                                    {"tsp", 0.00492892},
                                                    {"tbsp", 0.0147868},
                                                    {"bar", 1e3},
                                                    {"psia", 68.9476},
                                                    {"atm", 1013.25},
                                                    {"torr", 1.33322},
                                                    {"Pa", 0.01},
                                                    {"kPa", 10.0},
                                                    {"MPa", 1e4},
                                                    {"mV", 1e-3},
                                                    {"uV", 1e-6},
                                                    {"kV", 1e3},
                                                    {"MV", 1e6},
                                                    {"GV", 1e9}};
    const UnitsRegistry registry = defaults();
    for (const auto& [abbreviation, size] : sizes)
        EXPECT_NEAR(registry.unitsByAbbreviation(abbreviation).toBaseScalar(), size, 2e-4 * size)
            << abbreviation;
}

TEST(Units, ConvertTemperatures) {
    EXPECT_DOUBLE_EQ(Units::FAHRENHEIT.convertTo(Units::CELSIUS, 212.0), 100.0);
    EXPECT_DOUBLE_EQ(Units::CELSIUS.convertTo(Units::FAHRENHEIT, -40.0), -40.0);
    EXPECT_DOUBLE_EQ(Units::CELSIUS.convertTo(Units::KELVIN, 0.0), 273.15);
    EXPECT_DOUBLE_EQ(Units::KELVIN.convertTo(Units::RANKINE, 300.0), 540.0);
    EXPECT_DOUBLE_EQ(Units::REAUMUR.convertTo(Units::CELSIUS, 80.0), 100.0);
}

TEST(Units, RefuseAnotherFamily) {
    double out = -1.0;
    EXPECT_EQ(Units::METERS.convertTo(Units::SECONDS, 5.0), 5.0);
    EXPECT_NE(Units::METERS.convertTo(Units::SECONDS, 5.0, out), 0);
    EXPECT_EQ(out, 5.0);
    EXPECT_EQ(Units::METERS.convertTo(Units::CENTIMETERS, 5.0, out), 0);
    EXPECT_EQ(out, 500.0);
    EXPECT_NE(Units().convertTo(Units(), 5.0, out), 0);
    EXPECT_FALSE(Units().canConvert(Units()));
}

TEST(Units, AreInvalidByDefaultOrWithoutAScale) {
    EXPECT_FALSE(Units().isValid());
    EXPECT_EQ(Units().family(), "invalid");
    EXPECT_FALSE(Units("a", "b", 0.0, "length").isValid());
    EXPECT_FALSE(Units("a", "b", std::nan(""), "length").isValid());
    EXPECT_FALSE(Units("a", "b", 1.0, "").isValid());
    EXPECT_TRUE(Units("a", "b", -1.0, "length").isValid());
}

TEST(Units, AreEqualByScaleOffsetAndFamily) {
    EXPECT_EQ(Units("other name", "x", 0.30479999, "length"), Units::FEET);
    EXPECT_NE(Units::FEET, Units::FEET_PER_SECOND_SQUARED);
    EXPECT_NE(Units::CELSIUS, Units::KELVIN);
    EXPECT_EQ(Units::offsetThenScaleUnit("f", "f", -32.0, 0.5555555555555556, "temperature"),
              Units::FAHRENHEIT);
}

TEST(Units, KeepTheTextsOfTheirOwn) {
    Units copy;
    {
        std::string name = "chains, as long as a cricket pitch";
        copy = Units(name, "ch", 20.1168, "length");
        name.assign(name.size(), '?');
    }
    EXPECT_EQ(copy.name(), "chains, as long as a cricket pitch");
    EXPECT_EQ(copy.abbreviation(), "ch");
    EXPECT_DOUBLE_EQ(copy.convertTo(Units::METERS, 10.0), 201.168);
}

TEST(UnitsRegistry, HasEveryFamilyItsBaseFirst) {
    const UnitsRegistry registry = defaults();
    const std::vector<std::pair<std::string, std::size_t>> families = {
        {"unitless", 1}, {"elapsed time", 7}, {"angle", 5},       {"length", 13},
        {"speed", 8},    {"acceleration", 7}, {"temperature", 5}, {"frequency", 6},
        {"volume", 9},   {"pressure", 8},     {"potential", 6}};
    std::vector<std::string> names;
    for (const auto& [family, count] : families) {
        names.push_back(family);
        const std::vector<Units> units = registry.units(family);
        ASSERT_EQ(units.size(), count) << family;
        EXPECT_EQ(units.front().toBaseScalar(), 1.0) << family;
    }
    EXPECT_EQ(registry.families(), names);
    EXPECT_TRUE(registry.units("invalid").empty());
}

TEST(UnitsRegistry, FindsEveryUnitByNameAndAbbreviation) {
    const UnitsRegistry registry = defaults();
    for (const std::string& family : registry.families()) {
        for (const Units& unit : registry.units(family)) {
            EXPECT_EQ(registry.unitsByName(unit.name()).abbreviation(), unit.abbreviation());
            EXPECT_EQ(registry.unitsByAbbreviation(unit.abbreviation()).name(), unit.name());
        }
    }
    EXPECT_EQ(registry.unitsByName("nautical miles"), Units::NAUTICAL_MILES);
    EXPECT_EQ(registry.unitsByAbbreviation("nm"), Units::NAUTICAL_MILES);
    EXPECT_EQ(registry.unitsByAbbreviation("k"), Units::KELVIN);
    EXPECT_EQ(registry.unitsByAbbreviation("mV"), Units::MILLIVOLTS);
    EXPECT_EQ(registry.unitsByAbbreviation("MV"), Units::MEGAVOLTS);
}

TEST(UnitsRegistry, MatchesExactlyOrNotAtAll) {
    const UnitsRegistry registry = defaults();
    Units out = Units::FEET;
    for (const char* text : {"K", "FT", "ft ", "feet ", "parsec", "\xC2\xB5s"}) {
        EXPECT_FALSE(registry.unitsByAbbreviation(text).isValid()) << text;
        EXPECT_FALSE(registry.unitsByName(text).isValid()) << text;
    }
    EXPECT_NE(registry.unitsByName("Feet", out), 0);
    EXPECT_FALSE(out.isValid());
    EXPECT_EQ(registry.unitsByName("feet", out), 0);
    EXPECT_EQ(out, Units::FEET);
    EXPECT_NE(UnitsRegistry().unitsByAbbreviation("ft", out), 0) << "nothing is registered";
}

TEST(UnitsRegistry, LetsTheLaterOfTwoWin) {
    UnitsRegistry registry;
    registry.registerUnits(Units("survey feet", "ft", 1200.0 / 3937.0, "length"));
    EXPECT_EQ(registry.unitsByAbbreviation("ft").name(), "survey feet");
    registry.registerDefaultUnits();
    EXPECT_EQ(registry.unitsByAbbreviation("ft"), Units::FEET);
    registry.registerUnits(Units("metric feet", "ft", 0.3, "length"));
    registry.registerUnits(Units());
    registry.registerDefaultUnits();
    const UnitsRegistry copy = registry;
    EXPECT_EQ(copy.unitsByAbbreviation("ft").name(), "metric feet");
    EXPECT_TRUE(copy.unitsByName("survey feet").isValid());
    EXPECT_EQ(copy.families().front(), "length");
    EXPECT_EQ(copy.units("length").size(), 15U);
}

TEST(UnitsProperty, RoundTripsWithinEveryFamily) {
    const UnitsRegistry registry = defaults();
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> value(-1e6, 1e6);
    for (const std::string& family : registry.families()) {
        const std::vector<Units> units = registry.units(family);
        for (const Units& from : units) {
            for (const Units& to : units) {
                // What the offsets and the two scales can cost in the last bits.
                const double grain =
                    1e-9 + std::abs(to.toBaseOffset()) * to.toBaseScalar() / from.toBaseScalar();
                for (int i = 0; i < 20; ++i) {
                    const double x = value(random);
                    ASSERT_NEAR(to.convertTo(from, from.convertTo(to, x)), x,
                                1e-9 * grain + 1e-14 * std::abs(x))
                        << from.name() << " to " << to.name();
                }
                EXPECT_EQ(from.convertTo(from, 0.1), 0.1) << "the same unit changes nothing";
            }
        }
    }
}

}  // namespace
