#include "geo/TspiUnitsProviderAdapter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "geo/AngleText.h"
#include "geo/Angles.h"
#include "geo/TypedText.h"

namespace UTILS {
namespace {

using halCore::AngleFormat;
using halCore::AngleKind;
using halCore::Units;

bool assign(UnitType_t& units, UnitType_t type, bool fits) {
    if (fits) units = type;
    return fits;
}

int fail(std::string* remark, std::string_view reason) {
    if (remark) *remark = reason;
    return 1;
}

/// A text that ends in a unit's name or has no letters behind its last digit.
struct NumberAndUnit {
    std::string_view number;
    std::string_view unit;
};

NumberAndUnit split(std::string_view text) {
    text = trimmed(text);
    const std::size_t last = text.find_last_of("0123456789");
    if (last == std::string_view::npos) return {text, {}};
    const std::size_t end = text.substr(last + 1).starts_with('.') ? last + 2 : last + 1;
    std::string_view unit = trimmed(text.substr(end));
    // An abbreviation's.
    if (unit.ends_with('.')) unit.remove_suffix(1);
    return {trimmed(text.substr(0, end)), unit};
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
    Spelling{"kms", UnitType_t::Kilometers},
    Spelling{"centimeter", UnitType_t::Centimeters},
    Spelling{"centimetre", UnitType_t::Centimeters},
    Spelling{"centimetres", UnitType_t::Centimeters},
    Spelling{"millimeter", UnitType_t::Millimeters},
    Spelling{"millimetre", UnitType_t::Millimeters},
    Spelling{"millimetres", UnitType_t::Millimeters},
    Spelling{"yard", UnitType_t::Yards},
    Spelling{"yds", UnitType_t::Yards},
    Spelling{"kiloyard", UnitType_t::Kiloyards},
    Spelling{"mile", UnitType_t::Miles},
    Spelling{"sm", UnitType_t::Miles},
    Spelling{"statute mile", UnitType_t::Miles},
    Spelling{"statute miles", UnitType_t::Miles},
    Spelling{"foot", UnitType_t::Feet},
    Spelling{"kilofoot", UnitType_t::Kilofeet},
    Spelling{"inch", UnitType_t::Inches},
    Spelling{"nmi", UnitType_t::NauticalMiles},
    Spelling{"nms", UnitType_t::NauticalMiles},
    Spelling{"nautical mile", UnitType_t::NauticalMiles},
    Spelling{"fathom", UnitType_t::Fathoms},
    Spelling{"data mile", UnitType_t::DataMiles},
    Spelling{"mils", UnitType_t::Mils},
    Spelling{"radian", UnitType_t::Radians},
    Spelling{"rads", UnitType_t::Radians},
    Spelling{"milliradian", UnitType_t::Milliradians},
    Spelling{"mrads", UnitType_t::Milliradians},
    Spelling{"degree", UnitType_t::Degrees},
    Spelling{"degs", UnitType_t::Degrees},
    Spelling{"\xC2\xB0", UnitType_t::Degrees},
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

int parseLength(std::string_view typed, UnitType_t type, double& meters, std::string* remark,
                UnitType_t* named = nullptr) {
    if (typed.size() > kLongestTyped) return fail(remark, "not a number");
    const std::string text = plainText(typed);
    const auto [numberText, unit] = split(text);
    const std::optional<double> number = readNumber(numberText);
    if (!number) {
        double ignored = 0.0;
        const std::string advice = numberAdvice(
            text, [&](const std::string& other) { return parseLength(other, type, ignored, nullptr) == 0; });
        return fail(remark, !advice.empty() ? advice : text.empty() ? "no text" : "not a number");
    }
    if (!unit.empty()) type = typedUnits(unit);
    if (!unitsIsLength(type)) return fail(remark, "not a unit of length");
    const double value = unitsGetUnits(type).convertTo(Units::METERS, *number);
    if (!std::isfinite(value)) return fail(remark, "too large");
    meters = value;
    if (remark) remark->clear();
    if (named) *named = unit.empty() ? UnitType_t::Invalid : type;
    return 0;
}

bool isDegrees(UnitType_t type) {
    return unitsGetUnits(type) == Units::DEGREES;
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

/// Whether a text can only be meant in degrees.
bool hasDegreeMark(std::string_view text) {
    return text.find("\xC2\xB0") != std::string_view::npos || lowerCase(text).find('d') != std::string::npos;
}

/// Degrees, minutes and seconds with as many decimals as the angle has.
std::string shortestSeconds(double radians) {
    constexpr auto format = AngleFormat::DegreesMinutesSeconds;
    constexpr double none = 1e-12;
    std::string text;
    for (int decimals = 0; decimals <= halCore::maxAnglePrecision(format); ++decimals) {
        double back = 0.0;
        text = writeAngle(radians, format, decimals);
        if (halCore::readAngle(text, back) == 0 && std::abs(back - radians) < none) break;
    }
    return text;
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

int parsePosition(std::string_view text, AngleKind kind, double& radians, std::string* remark) {
    std::string own;
    return readTypedAngle(text, kind, radians, remark ? *remark : own);
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

int TspiUnitsProviderAdapter::parseRange(std::string_view text, double& meters, std::string* remark) const {
    return parseLength(text, rangeUnits_, meters, remark);
}

int TspiUnitsProviderAdapter::parseRange(std::string_view text, double& meters, std::string* remark,
                                         UnitType_t& unit) const {
    return parseLength(text, rangeUnits_, meters, remark, &unit);
}

int TspiUnitsProviderAdapter::parseAltitude(std::string_view text, double& meters,
                                            std::string* remark) const {
    return parseLength(text, altitudeUnits_, meters, remark);
}

int TspiUnitsProviderAdapter::parseAngle(std::string_view typed, double& radians, std::string* remark) const {
    if (typed.size() > kLongestTyped) return fail(remark, "a text that long is no angle");
    const std::string text = plainText(typed);
    std::string reason;
    double value = 0.0;
    bool needsMarks = false;
    if (const std::optional<double> measured = parseMeasuredAngle(text, angleUnits_)) {
        value = *measured;
    } else if (readTypedAngle(text, AngleKind::Bearing, value, reason) != 0) {
        const std::string advice = numberAdvice(
            text, [&](const std::string& other) { return parseAngle(other, value, nullptr) == 0; });
        if (!advice.empty()) return fail(remark, advice);
        // With points for its commas it may still be refused.
        std::string pointed = text;
        std::ranges::replace(pointed, ',', '.');
        std::string other;
        if (pointed != text && readTypedAngle(pointed, AngleKind::Bearing, value, other) == 0 &&
            parseAngle(pointed, value, &other) != 0)
            reason = other;
        return fail(remark, reason);
    } else {
        needsMarks = !isDegrees(angleUnits_) && !hasDegreeMark(text);
    }
    if (std::abs(value) > halCore::kTwoPi) {
        const auto withinTurn = [this](double angle) {
            constexpr double none = 1e-7;
            const double wrapped = halCore::wrapToTwoPi(angle);
            TspiUnitsProviderAdapter units = *this;
            std::string text = formatAngle(wrapped);
            for (double back = 0.0; units.precision_ < kMaxPrecision; text = units.formatAngle(wrapped)) {
                if (units.parseAngle(text, back) == 0 && std::abs(back - wrapped) < none) break;
                units.setPrecision(units.precision_ + 1);
            }
            return text;
        };
        // A full turn may lose a digit, or be rounded up where it is shown.
        if (formatAngle(std::abs(value)) != formatAngle(halCore::kTwoPi)) {
            reason = "more than one turn";
            // Of far more turns no digit is left.
            if (std::abs(value) < 1e3)
                reason.append(": \"").append(withinTurn(value)).append("\" is the same direction");
            return fail(remark, reason);
        }
        value = std::copysign(halCore::kTwoPi, value);
    }
    if (needsMarks)
        return fail(remark,
                    "degrees and minutes need their marks here: type \"" + shortestSeconds(value) + "\"");
    radians = value;
    if (remark) remark->clear();
    return 0;
}

int TspiUnitsProviderAdapter::parseLatitude(std::string_view text, double& radians,
                                            std::string* remark) const {
    return parsePosition(text, AngleKind::Latitude, radians, remark);
}

int TspiUnitsProviderAdapter::parseLongitude(std::string_view text, double& radians,
                                             std::string* remark) const {
    return parsePosition(text, AngleKind::Longitude, radians, remark);
}

}  // namespace UTILS
