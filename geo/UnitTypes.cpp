#include "geo/UnitTypes.h"

#include <algorithm>
#include <array>

#include "common/Strings.h"

namespace UTILS {
namespace {

using halCore::Units;

struct Row {
    UnitType_t type;
    std::string_view abbreviation;
    std::string_view name;
    const Units* units;
};

constexpr UnitType_t kFirst = UnitType_t::Radians;

/// In the order of the types' numbers, which have no gap.
constexpr std::array kRows = {
    Row{UnitType_t::Radians, "rad", "radians", &Units::RADIANS},
    Row{UnitType_t::Degrees, "deg", "degrees", &Units::DEGREES},
    Row{UnitType_t::DegreesHemisphere, "deg NSEW", "degrees hemisphere", &Units::DEGREES},
    Row{UnitType_t::DegreesMinutesSecondsHemisphere, "deg:min:sec NSEW", "degrees minutes seconds hemisphere",
        &Units::DEGREES},
    Row{UnitType_t::DegreesMinutesHemisphere, "deg:min NSEW", "degrees minutes hemisphere", &Units::DEGREES},
    Row{UnitType_t::DegreesMinutes, "deg:min", "degrees minutes", &Units::DEGREES},
    Row{UnitType_t::DegreesMinutesSeconds, "deg:min:sec", "degrees minutes seconds", &Units::DEGREES},
    Row{UnitType_t::Milliradians, "mrad", "milliradians", &Units::MILLIRADIANS},
    Row{UnitType_t::Mils, "mil", "angular mil", &Units::MIL},
    Row{UnitType_t::Bam, "bam", "binary angle measurement", &Units::BAM},
    Row{UnitType_t::Meters, "m", "meters", &Units::METERS},
    Row{UnitType_t::Kilometers, "km", "kilometers", &Units::KILOMETERS},
    Row{UnitType_t::Yards, "yd", "yards", &Units::YARDS},
    Row{UnitType_t::Miles, "mi", "miles", &Units::MILES},
    Row{UnitType_t::Feet, "ft", "feet", &Units::FEET},
    Row{UnitType_t::Inches, "in", "inches", &Units::INCHES},
    Row{UnitType_t::NauticalMiles, "nm", "nautical miles", &Units::NAUTICAL_MILES},
    Row{UnitType_t::Centimeters, "cm", "centimeters", &Units::CENTIMETERS},
    Row{UnitType_t::Millimeters, "mm", "millimeters", &Units::MILLIMETERS},
    Row{UnitType_t::Kiloyards, "kyd", "kiloyards", &Units::KILOYARDS},
    Row{UnitType_t::Fathoms, "fm", "fathoms", &Units::FATHOMS},
    Row{UnitType_t::Kilofeet, "kf", "kilofeet", &Units::KILOFEET},
    Row{UnitType_t::DataMiles, "dm", "data miles", &Units::DATA_MILES},
};

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < kRows.size(); ++i)
        if (static_cast<std::size_t>(kRows[i].type) != static_cast<std::size_t>(kFirst) + i) return false;
    return true;
}
static_assert(isInOrder());

constexpr std::array kLengths = {UnitType_t::Meters,        UnitType_t::Kilometers,  UnitType_t::Yards,
                                 UnitType_t::Miles,         UnitType_t::Feet,        UnitType_t::Inches,
                                 UnitType_t::NauticalMiles, UnitType_t::Centimeters, UnitType_t::Millimeters,
                                 UnitType_t::Kiloyards,     UnitType_t::Fathoms,     UnitType_t::Kilofeet,
                                 UnitType_t::DataMiles};
constexpr std::array kAngles = {
    UnitType_t::Degrees, UnitType_t::DegreesMinutes, UnitType_t::DegreesMinutesSeconds,
    UnitType_t::Radians, UnitType_t::Milliradians,   UnitType_t::Mils,
    UnitType_t::Bam};
constexpr std::array kGeodetics = {UnitType_t::DegreesMinutesSecondsHemisphere,
                                   UnitType_t::DegreesMinutesHemisphere,
                                   UnitType_t::DegreesHemisphere,
                                   UnitType_t::DegreesMinutesSeconds,
                                   UnitType_t::DegreesMinutes,
                                   UnitType_t::Degrees};

bool contains(std::span<const UnitType_t> types, UnitType_t type) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

const Row* findRow(UnitType_t type) {
    const bool isKnown = type >= kRows.front().type && type <= kRows.back().type;
    return isKnown ? &kRows[static_cast<std::size_t>(type) - static_cast<std::size_t>(kFirst)] : nullptr;
}

}  // namespace

std::span<const UnitType_t> lengthUnitTypes() {
    return kLengths;
}
std::span<const UnitType_t> angleUnitTypes() {
    return kAngles;
}
std::span<const UnitType_t> geodeticUnitTypes() {
    return kGeodetics;
}

bool unitsIsLength(UnitType_t type) {
    return contains(kLengths, type);
}
bool unitsIsAngle(UnitType_t type) {
    return contains(kAngles, type);
}
bool unitsIsGeodetic(UnitType_t type) {
    return contains(kGeodetics, type);
}

std::string_view unitsGetName(UnitType_t type) {
    const Row* const row = findRow(type);
    return row ? row->name : std::string_view();
}

std::string_view unitsGetAbbreviation(UnitType_t type) {
    const Row* const row = findRow(type);
    return row ? row->abbreviation : std::string_view();
}

UnitType_t unitsGetTypeFromString(std::string_view text) {
    text = trimmed(text);
    const auto exact = std::find_if(kRows.begin(), kRows.end(), [text](const Row& row) {
        return row.abbreviation == text || row.name == text;
    });
    if (exact != kRows.end()) return exact->type;
    const auto similar = std::find_if(kRows.begin(), kRows.end(), [text](const Row& row) {
        return equalsIgnoringCase(row.abbreviation, text) || equalsIgnoringCase(row.name, text);
    });
    return similar != kRows.end() ? similar->type : UnitType_t::Invalid;
}

const Units& unitsGetUnits(UnitType_t type) {
    static constinit const Units invalid;
    const Row* const row = findRow(type);
    return row ? *row->units : invalid;
}

}  // namespace UTILS
