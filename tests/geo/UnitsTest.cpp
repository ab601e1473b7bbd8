#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "geo/Units.h"
#include "geo/UnitsRegistry.h"
#include "support/Rows.h"

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
    EXPECT_EQ(Units::FEET.convertTo(Units::FEET, 0.1), 0.1) << "the same unit changes nothing";
    EXPECT_DOUBLE_EQ(Units::FAHRENHEIT.convertTo(Units::CELSIUS, 212.0), 100.0);
    EXPECT_DOUBLE_EQ(Units::CELSIUS.convertTo(Units::FAHRENHEIT, -40.0), -40.0);
    EXPECT_DOUBLE_EQ(Units::CELSIUS.convertTo(Units::KELVIN, 0.0), 273.15);
    EXPECT_DOUBLE_EQ(Units::KELVIN.convertTo(Units::RANKINE, 300.0), 540.0);
    EXPECT_DOUBLE_EQ(Units::REAUMUR.convertTo(Units::CELSIUS, 80.0), 100.0);
}

/// The families and their units in order, the base first, with the sizes by definition; ours are up to two
/// parts in ten thousand off them. Each is found by its name and its abbreviation.
TEST(UnitsRegistry, HasEveryUnitInAboutItsPhysicalSize) {
    const UnitsRegistry registry = defaults();
    std::vector<std::string> families;
    for (const auto& row : test::rows(R"(
unitless |  1
elapsed time | s 1;ms 1e-3;us 1e-6;ns 1e-9;min 60;hr 3600;d 86400
angle | rad 1;deg 0.0174533;mrad 1e-3;bam 0.636620;mil 9.81748e-4
length | m 1;km 1e3;yd 0.9144;mi 1609.344;ft 0.3048;in 0.0254;nm 1852;cm 0.01;mm 0.001;kyd 914.4;fm 1.8288;kf 304.8;dm 1828.8
speed | m/sec 1;km/hr 0.277778;kts 0.514444;mph 0.44704;ft/sec 0.3048;km/sec 1e3;dm/hr 0.508;yd/sec 0.9144
acceleration | m/(s^2) 1;km/(s^2) 1e3;yd/(s^2) 0.9144;sm/(s^2) 1609.344;ft/(s^2) 0.3048;in/(s^2) 0.0254;nm/(s^2) 1852
temperature | C 1;F 0.555556;k 1;ra 0.555556;re 1.25
frequency | Hz 1;kHz 1e3;MHz 1e6;rpm 0.0166667;rad/sec 0.159155;deg/sec 0.00277778
volume | l 1;ml 1e-3;fl oz 0.0295735;cup 0.236588;pt 0.473176;qt 0.946353;gal 3.78541;tsp 0.00492892;tbsp 0.0147868
pressure | mbar 1;bar 1e3;psia 68.9476;atm 1013.25;torr 1.33322;Pa 0.01;kPa 10;MPa 1e4
potential | V 1;mV 1e-3;uV 1e-6;kV 1e3;MV 1e6;GV 1e9
)",
                                      2)) {
        families.push_back(row[0]);
        const std::vector<std::string> expected = test::split(row[1], ";");
        const std::vector<Units> units = registry.units(row[0]);
        ASSERT_EQ(units.size(), expected.size()) << row[0];
        EXPECT_EQ(units.front().toBaseScalar(), 1.0);
        for (std::size_t i = 0; i < units.size(); ++i) {
            const std::size_t blank = expected[i].rfind(' ');
            EXPECT_EQ(units[i].abbreviation(), expected[i].substr(0, blank));
            const double size = std::stod(expected[i].substr(blank));
            EXPECT_NEAR(units[i].toBaseScalar(), size, 2e-4 * size) << expected[i];
            EXPECT_EQ(registry.unitsByName(units[i].name()).abbreviation(), units[i].abbreviation());
            EXPECT_EQ(registry.unitsByAbbreviation(units[i].abbreviation()).name(), units[i].name());
        }
    }
    EXPECT_EQ(registry.families(), families);
    EXPECT_TRUE(registry.units("invalid").empty());
    EXPECT_EQ(registry.unitsByName("nautical miles"), Units::NAUTICAL_MILES);
    EXPECT_EQ(registry.unitsByAbbreviation("k"), Units::KELVIN);
}

TEST(Units, RefuseAnotherFamilyAndInvalidOnes) {
    double out = -1.0;
    EXPECT_EQ(Units::METERS.convertTo(Units::SECONDS, 5.0), 5.0);
    EXPECT_NE(Units::METERS.convertTo(Units::SECONDS, 5.0, out), 0);
    EXPECT_EQ(out, 5.0);
    EXPECT_EQ(Units::METERS.convertTo(Units::CENTIMETERS, 5.0, out), 0);
    EXPECT_EQ(out, 500.0);
    for (const Units& invalid : {Units(), Units("a", "b", 0.0, "length"),
                                 Units("a", "b", std::nan(""), "length"), Units("a", "b", 1.0, "")}) {
        EXPECT_FALSE(invalid.isValid());
        EXPECT_NE(invalid.convertTo(invalid, 5.0, out), 0);
        EXPECT_FALSE(invalid.canConvert(invalid));
    }
    EXPECT_EQ(Units().family(), "invalid");
    EXPECT_TRUE(Units("a", "b", -1.0, "length").isValid());
}

TEST(Units, AreEqualByScaleOffsetAndFamily) {
    EXPECT_NE(Units::FEET, Units::FEET_PER_SECOND_SQUARED);
    EXPECT_NE(Units::CELSIUS, Units::KELVIN);
    EXPECT_EQ(Units::offsetThenScaleUnit("f", "f", -32.0, 0.5555555555555556, "temperature"),
              Units::FAHRENHEIT);
    EXPECT_EQ(Units("another name", "x", 0.30479999, "length"), Units::FEET);
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

}  // namespace
