#pragma once

#include <span>
#include <string_view>

#include "geo/Units.h"

/// The units and angle formats that a user can choose for display.
namespace UTILS {

/// The numbers are fixed; preferences start from 20, 11 and 13.
enum class UnitType_t : int {
    Invalid = 0,

    Radians = 10,
    Degrees = 11,
    DegreesHemisphere = 12,                ///< 21.31°N
    DegreesMinutesSecondsHemisphere = 13,  ///< 21°18'30.00"N
    DegreesMinutesHemisphere = 14,         ///< 21°18.50'N
    DegreesMinutes = 15,                   ///< 21°18.50'
    DegreesMinutesSeconds = 16,            ///< 21°18'30.00"
    Milliradians = 17,
    Mils = 18,
    Bam = 19,

    Meters = 20,
    Kilometers = 21,
    Yards = 22,
    Miles = 23,
    Feet = 24,
    Inches = 25,
    NauticalMiles = 26,
    Centimeters = 27,
    Millimeters = 28,
    Kiloyards = 29,
    Fathoms = 30,
    Kilofeet = 31,
    DataMiles = 32
};

inline constexpr UnitType_t kDefaultLengthUnits = UnitType_t::Meters;
inline constexpr UnitType_t kDefaultAngleUnits = UnitType_t::Degrees;
inline constexpr UnitType_t kDefaultGeodeticUnits = UnitType_t::DegreesMinutesSecondsHemisphere;

/// The choices of the units menus, in menu order: lengths (altitudes and ranges), angles that are no
/// latitude or longitude, and latitudes and longitudes.
std::span<const UnitType_t> lengthUnitTypes();
std::span<const UnitType_t> angleUnitTypes();
std::span<const UnitType_t> geodeticUnitTypes();

bool unitsIsLength(UnitType_t type);
/// One of angleUnitTypes().
bool unitsIsAngle(UnitType_t type);
/// One of geodeticUnitTypes().
bool unitsIsGeodetic(UnitType_t type);

/// The name under which a type is stored ("meters") and the abbreviation that menus show ("m",
/// "deg:min:sec"); no two types share one. Empty for Invalid and for numbers that are no type.
std::string_view unitsGetName(UnitType_t type);
std::string_view unitsGetAbbreviation(UnitType_t type);

/// The type of a name or an abbreviation, blanks around it ignored: matched exactly, else ignoring case.
/// Invalid when there is none.
UnitType_t unitsGetTypeFromString(std::string_view text);

/// The unit of measure behind a type; the degree forms are all Units::DEGREES. An invalid unit for Invalid.
const halCore::Units& unitsGetUnits(UnitType_t type);

}  // namespace UTILS
