#include "geo/TspiUnitsProviderAdapter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "geo/AngleText.h"

namespace UTILS {
namespace {

using halCore::AngleFormat;
using halCore::AngleKind;
using halCore::Units;

bool assign(UnitType_t& units, UnitType_t type, bool fits) {
    if (fits) units = type;
    return fits;
}

int fail(std::string* error, std::string_view text, std::string_view reason) {
    if (error) error->assign("Invalid value \"").append(excerpt(text)).append("\": ").append(reason);
    return 1;
}

/// A text that ends in a unit's name or has no letters behind its last digit.
struct NumberAndUnit {
    std::string_view number;
    std::string_view unit;
};

NumberAndUnit split(std::string_view text) {
    text = trimmed(text);
    const std::size_t last = text.find_last_of("0123456789.");
    if (last == std::string_view::npos) return {text, {}};
    return {trimmed(text.substr(0, last + 1)), trimmed(text.substr(last + 1))};
}

/// Units as people write them beside the names and abbreviations of the menus.
struct Spelling {
    std::string_view text;
    UnitType_t type;
};
constexpr std::array kSpellings = {
    Spelling{"meter", UnitType_t::Meters},
    Spelling{"metre", UnitType_t::Meters},
    Spelling{"metres", UnitType_t::Meters},
    Spelling{"kilometer", UnitType_t::Kilometers},
    Spelling{"kilometre", UnitType_t::Kilometers},
    Spelling{"kilometres", UnitType_t::Kilometers},
    Spelling{"yard", UnitType_t::Yards},
    Spelling{"mile", UnitType_t::Miles},
    Spelling{"foot", UnitType_t::Feet},
    Spelling{"inch", UnitType_t::Inches},
    Spelling{"nmi", UnitType_t::NauticalMiles},
    Spelling{"nautical mile", UnitType_t::NauticalMiles},
    Spelling{"fathom", UnitType_t::Fathoms},
    Spelling{"data mile", UnitType_t::DataMiles},
    Spelling{"mils", UnitType_t::Mils},
};

UnitType_t typedUnits(std::string_view text) {
    const UnitType_t type = unitsGetTypeFromString(text);
    if (type != UnitType_t::Invalid) return type;
    const auto found = std::find_if(kSpellings.begin(), kSpellings.end(), [text](const Spelling& spelling) {
        return equalsIgnoringCase(spelling.text, text);
    });
    return found != kSpellings.end() ? found->type : UnitType_t::Invalid;
}

std::string formatLength(double meters, UnitType_t type, int precision) {
    return writeFixed(Units::METERS.convertTo(unitsGetUnits(type), meters), precision);
}

int parseLength(std::string_view text, UnitType_t type, double& meters, std::string* error) {
    const auto [numberText, unit] = split(text);
    if (!unit.empty()) type = typedUnits(unit);
    if (!unitsIsLength(type)) return fail(error, trimmed(text), "not a unit of length");
    const std::optional<double> number = readNumber(numberText);
    if (!number) return fail(error, trimmed(text), "not a number");
    const double value = unitsGetUnits(type).convertTo(Units::METERS, *number);
    if (!std::isfinite(value)) return fail(error, trimmed(text), "too large");
    meters = value;
    return 0;
}

/// An angle with a unit of measure behind it, or a plain number in `type`; none for anything else.
std::optional<double> parseMeasuredAngle(std::string_view text, UnitType_t type) {
    const auto [numberText, unit] = split(text);
    if (!unit.empty()) type = typedUnits(unit);
    if (!unitsIsAngle(type)) return std::nullopt;
    const std::optional<double> number = readNumber(numberText);
    if (!number) return std::nullopt;
    return unitsGetUnits(type).convertTo(Units::RADIANS, *number);
}

std::string formatAngleAs(double radians, UnitType_t type, int precision, AngleKind kind) {
    switch (type) {
        case UnitType_t::DegreesHemisphere:
            return writeAngle(radians, AngleFormat::Degrees, precision, kind);
        case UnitType_t::DegreesMinutesHemisphere:
            return writeAngle(radians, AngleFormat::DegreesMinutes, precision, kind);
        case UnitType_t::DegreesMinutesSecondsHemisphere:
            return writeAngle(radians, AngleFormat::DegreesMinutesSeconds, precision, kind);
        case UnitType_t::DegreesMinutes:
            return writeAngle(radians, AngleFormat::DegreesMinutes, precision);
        case UnitType_t::DegreesMinutesSeconds:
            return writeAngle(radians, AngleFormat::DegreesMinutesSeconds, precision);
        default:
            return writeFixed(Units::RADIANS.convertTo(unitsGetUnits(type), radians), precision);
    }
}

int parsePosition(std::string_view text, AngleKind kind, double& radians, std::string* error) {
    return halCore::readAngle(text, radians, {.kind = kind, .checkRange = true}, error);
}

}  // namespace

bool TspiUnitsProviderAdapter::setRangeUnits(UnitType_t type) {
    return assign(rangeUnits_, type, unitsIsLength(type));
}

bool TspiUnitsProviderAdapter::setAltitudeUnits(UnitType_t type) {
    return assign(altitudeUnits_, type, unitsIsLength(type));
}

bool TspiUnitsProviderAdapter::setAngleUnits(UnitType_t type) {
    return assign(angleUnits_, type, unitsIsAngle(type));
}

bool TspiUnitsProviderAdapter::setGeodeticUnits(UnitType_t type) {
    return assign(geodeticUnits_, type, unitsIsGeodetic(type));
}

void TspiUnitsProviderAdapter::setPrecision(int decimals) {
    precision_ = std::clamp(decimals, 0, kMaxPrecision);
}

std::string TspiUnitsProviderAdapter::formatRange(double meters) const {
    return formatLength(meters, rangeUnits_, precision_);
}

std::string TspiUnitsProviderAdapter::formatAltitude(double meters) const {
    return formatLength(meters, altitudeUnits_, precision_);
}

std::string TspiUnitsProviderAdapter::formatAngle(double radians) const {
    return formatAngleAs(radians, angleUnits_, precision_, AngleKind::Any);
}

std::string TspiUnitsProviderAdapter::formatLatitude(double radians) const {
    return formatAngleAs(radians, geodeticUnits_, precision_, AngleKind::Latitude);
}

std::string TspiUnitsProviderAdapter::formatLongitude(double radians) const {
    return formatAngleAs(radians, geodeticUnits_, precision_, AngleKind::Longitude);
}

int TspiUnitsProviderAdapter::parseRange(std::string_view text, double& meters, std::string* error) const {
    return parseLength(text, rangeUnits_, meters, error);
}

int TspiUnitsProviderAdapter::parseAltitude(std::string_view text, double& meters, std::string* error) const {
    return parseLength(text, altitudeUnits_, meters, error);
}

int TspiUnitsProviderAdapter::parseAngle(std::string_view text, double& radians, std::string* error) const {
    const std::optional<double> measured = parseMeasuredAngle(text, angleUnits_);
    if (!measured) return halCore::readAngle(text, radians, {}, error);
    if (!std::isfinite(*measured)) return fail(error, trimmed(text), "too large");
    radians = *measured;
    return 0;
}

int TspiUnitsProviderAdapter::parseLatitude(std::string_view text, double& radians,
                                            std::string* error) const {
    return parsePosition(text, AngleKind::Latitude, radians, error);
}

int TspiUnitsProviderAdapter::parseLongitude(std::string_view text, double& radians,
                                             std::string* error) const {
    return parsePosition(text, AngleKind::Longitude, radians, error);
}

}  // namespace UTILS
