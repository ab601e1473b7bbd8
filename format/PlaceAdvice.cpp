#include "format/PlaceAdvice.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "format/FileNumber.h"
#include "format/ShapeCast.h"
#include "format/ShapeFields.h"
#include "geo/Angles.h"

namespace halCore::ZEL {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string quoted(std::string_view text) {
    return std::string("\"").append(text).append("\"");
}

std::string degreesText(double radians) {
    return UTILS::writeNumber(radians * kDegreesPerRadian, 10);
}

std::string latitudeText(double radians) {
    return degreesText(std::abs(radians)) + (radians < 0.0 ? " south" : " north");
}

bool allDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, isDigit);
}

/// "211836n" as "21:18:36n"; nothing for what is no such row.
std::optional<std::string> parted(std::string_view word, std::string_view sides) {
    if (word.empty() || sides.find(word.back()) == std::string_view::npos) return std::nullopt;
    const std::string_view number = word.substr(0, word.size() - 1);
    const std::size_t whole = std::min(number.find('.'), number.size());
    const std::string_view digits = number.substr(0, whole);
    if (!allDigits(digits) || digits.size() < 4 || digits.size() > 7) return std::nullopt;
    const std::size_t first = digits.size() % 2 == 0 ? 2 : 3;
    std::string text(digits.substr(0, first));
    for (std::size_t i = first; i < digits.size(); i += 2) text.append(":").append(digits.substr(i, 2));
    text.append(number.substr(whole)).append(1, word.back());
    return readFileDegrees(text, AngleKind::Any) ? std::optional(text) : std::nullopt;
}

/// Of one of both, which lies beyond `most`.
std::string adviceOnAngle(std::string_view word, double radians, const char* name, double mostDegrees,
                          std::string_view sides) {
    if (std::abs(radians) <= mostDegrees * kRadiansPerDegree * (1.0 + 1e-12)) return {};
    std::string text = quoted(word);
    text.append(" is a ").append(name).append(" of ").append(degreesText(radians)).append(" degrees");
    if (const auto meant = parted(word, sides))
        text.append("; in degrees and minutes it is ").append(quoted(*meant));
    return text;
}

}  // namespace

std::string adviceOnCapitalS(std::string_view latitude) {
    std::string written(latitude);
    if (!written.ends_with('s')) return {};
    const auto read = readFileDegrees(written, AngleKind::Latitude);
    written.back() = 'S';
    const auto meant = readFileDegrees(written, AngleKind::Latitude);
    if (!read || !meant || *read == *meant) return {};
    return written + " is read as " + latitudeText(*read) + ", as words are in small letters: in quotes, " +
           quoted(written) + ", it is " + latitudeText(*meant);
}

std::string adviceOnReference(std::string_view reference, std::string_view second, std::string_view third) {
    while (!reference.empty() && (reference.front() == '"' || reference.front() == '\''))
        reference.remove_prefix(1);
    while (!reference.empty() && (reference.back() == '"' || reference.back() == '\''))
        reference.remove_suffix(1);
    if (reference.empty() || isDigit(reference.back()) || !allDigits(second)) return {};
    const bool isPair = allDigits(third) && third.size() == second.size();
    constexpr std::size_t mostOfAnAltitude = 5;
    const bool isRow = third.empty() && second.size() > mostOfAnAltitude && second.size() % 2 == 0;
    if (!isPair && !isRow) return {};
    const std::string whole = UTILS::upperCase(reference) + std::string(second) + std::string(third);
    std::string text = UTILS::upperCase(reference);
    return text.append(" is read as the corner of its square, at an altitude of ")
        .append(second)
        .append(": written without blanks, ")
        .append(whole)
        .append(", it is another place");
}

std::string adviceOnPlace(std::string_view latitude, std::string_view longitude) {
    const auto lat = readFileDegrees(latitude, AngleKind::Latitude);
    const auto lon = readFileDegrees(longitude, AngleKind::Longitude);
    if (!lat || !lon) return {};
    std::string advice = adviceOnAngle(latitude, *lat, "latitude", 90.0, "ns");
    // Around the globe once, longitudes are counted from other meridians.
    if (advice.empty()) return adviceOnAngle(longitude, *lon, "longitude", 360.0, "ew");
    if (std::abs(*lat) <= kPi && std::abs(*lon) <= kHalfPi)
        advice += "; are latitude and longitude changed over?";
    return advice;
}

std::string adviceOnBox(std::string_view north, std::string_view south, std::string_view west,
                        std::string_view east) {
    std::optional<double> latitudes[2];
    std::size_t side = 0;
    for (const std::string_view word : {north, south}) {
        latitudes[side] = readFileDegrees(word, AngleKind::Latitude);
        if (!latitudes[side]) return {};
        const std::string advice = adviceOnAngle(word, *latitudes[side++], "latitude", 90.0, "ns");
        if (!advice.empty()) return advice;
    }
    if (*latitudes[0] < *latitudes[1])
        return "the north side, " + quoted(north) + ", lies south of the south side, " + quoted(south);
    for (const std::string_view word : {west, east})
        if (const auto longitude = readFileDegrees(word, AngleKind::Longitude)) {
            const std::string advice = adviceOnAngle(word, *longitude, "longitude", 360.0, "ew");
            if (!advice.empty()) return advice;
        }
    return {};
}

std::string adviceOnMissingPlace(const ZelShape& shape) {
    Vec3 reference;
    const bool canLack =
        shapeAs<CircularShape>(shape) != nullptr || shape.shapeType() == ShapeType::Annotation;
    if (!shape.isRelative() || !canLack || anchorOf(shape) || shape.getReferencePosition(reference) == 0)
        return {};
    return std::string(ZelShape::shapeTypeToString(shape.shapeType())) +
           " has no place but that of a platform which the overlay is attached to";
}

}  // namespace halCore::ZEL
