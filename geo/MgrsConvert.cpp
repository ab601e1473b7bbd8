#include "geo/MgrsConvert.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include <GeographicLib/MGRS.hpp>
#include <GeographicLib/UTMUPS.hpp>

#include "common/Strings.h"
#include "geo/Angles.h"

namespace UTILS {
namespace {

constexpr std::string_view kLettersMissing = "MGRS string is invalid, incorrect number of characters in GZD.";
constexpr std::string_view kNoLetterInFront =
    "MGRS string is invalid, expected non-numeric character in the first 3 positions.";
constexpr std::string_view kUnequal = "MGRS string is invalid, easting and northing are not the same length.";
constexpr std::string_view kSquareId = "MGRS string is invalid, expected two letters of a 100 km square.";
constexpr std::string_view kNotDigits =
    "MGRS string is invalid, easting and northing must have 0 to 11 digits.";
constexpr std::string_view kNoPosition = "The position is no latitude and longitude.";

int fail(std::string* err, std::string_view reason) {
    if (err) *err = reason;
    return 1;
}

/// Passes on what GeographicLib says, or that the memory ran out.
int failWith(std::string* err, const std::exception& exception) noexcept {
    try {
        if (err) *err = std::string("MGRS string is invalid: ") + exception.what();
    } catch (...) {
        // The code alone tells it.
    }
    return 1;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isLetter(char c) {
    return c >= 'A' && c <= 'Z';
}

/// Upper case, without quotes and outer blanks.
std::string cleaned(std::string_view text) {
    std::string result = upperCase(text);
    std::erase_if(result, [](char c) { return c == '"' || c == '\''; });
    return std::string(trimmed(result));
}

template <typename Predicate>
std::string_view takeWhile(std::string_view& text, Predicate predicate) {
    const auto end = std::find_if_not(text.begin(), text.end(), predicate);
    const std::string_view taken = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(taken.size());
    return taken;
}

std::string_view takePart(std::string_view& text, bool (*predicate)(char)) {
    const std::string_view part = takeWhile(text, predicate);
    takeWhile(text, isBlank);
    return part;
}

/// Whether the designator is a zone number of one or two digits and a letter, or one polar letter.
bool isGzd(std::string_view gzd) {
    const std::string_view zone = takeWhile(gzd, isDigit);
    return zone.size() <= 2 && gzd.size() == 1 && isLetter(gzd.front());
}

/// Whether the position lies on the line between 31V and 32V, which belongs to 32V.
bool isLostTo32V(int zone, double latDegrees, double easting) {
    return zone == 31 && latDegrees >= 56.0 && latDegrees < 64.0 && easting >= 500000.0;
}

int checkNumbers(std::string_view easting, std::string_view northing, std::string* err) {
    const auto isNumber = [](std::string_view text) {
        return text.size() <= MgrsConvert::kMaxDigits && std::all_of(text.begin(), text.end(), isDigit);
    };
    if (!isNumber(easting) || !isNumber(northing)) return fail(err, kNotDigits);
    return easting.size() == northing.size() ? 0 : fail(err, kUnequal);
}

}  // namespace

int MgrsConvert::geodeticToMgrs(double lat, double lon, std::string& mgrs, std::string* err) {
    return geodeticToMgrs(lat, lon, kDigits, mgrs, err);
}

int MgrsConvert::geodeticToMgrs(double lat, double lon, int digits, std::string& mgrs, std::string* err) {
    if (!(std::abs(lat) <= halCore::kHalfPi) || !std::isfinite(lon)) return fail(err, kNoPosition);
    digits = std::clamp(digits, 0, kMaxDigits);
    // A corner of a square that went through radians lies nanometres beside its line; without this it
    // would come back as the neighbouring square.
    constexpr double grain = 1e-7;
    const double latDegrees = lat * halCore::kDegreesPerRadian;
    try {
        int zone = 0;
        bool north = false;
        double easting = 0.0;
        double northing = 0.0;
        GeographicLib::UTMUPS::Forward(latDegrees, lon * halCore::kDegreesPerRadian, zone, north, easting,
                                       northing);
        if (isLostTo32V(zone, latDegrees, easting + grain))
            GeographicLib::UTMUPS::Forward(latDegrees, lon * halCore::kDegreesPerRadian, zone, north, easting,
                                           northing, 32);
        std::string result;
        try {
            GeographicLib::MGRS::Forward(zone, north, easting + grain, northing + grain, latDegrees, digits,
                                         result);
        } catch (const std::exception&) {
            // The grain led out of the grid.
            GeographicLib::MGRS::Forward(zone, north, easting, northing, latDegrees, digits, result);
        }
        mgrs = std::move(result);
        return 0;
    } catch (const std::exception& exception) {
        return failWith(err, exception);
    }
}

int MgrsConvert::mgrsToGeodetic(std::string_view mgrs, double& lat, double& lon, std::string* err) {
    std::string gzd;
    std::string squareId;
    std::string eastingText;
    std::string northingText;
    if (const int code = divideMgrs(mgrs, gzd, squareId, eastingText, northingText, err)) return code;
    try {
        int zone = 0;
        bool north = false;
        double easting = 0.0;
        double northing = 0.0;
        int digits = 0;
        constexpr bool isCenter = false;
        GeographicLib::MGRS::Reverse(gzd + squareId + eastingText + northingText, zone, north, easting,
                                     northing, digits, isCenter);
        double latDegrees = 0.0;
        double lonDegrees = 0.0;
        GeographicLib::UTMUPS::Reverse(zone, north, easting, northing, latDegrees, lonDegrees);
        if (!std::isfinite(latDegrees) || !std::isfinite(lonDegrees)) return fail(err, kNoPosition);
        lat = latDegrees * halCore::kRadiansPerDegree;
        lon = lonDegrees * halCore::kRadiansPerDegree;
        return 0;
    } catch (const std::exception& exception) {
        return failWith(err, exception);
    }
}

int MgrsConvert::divideMgrs(std::string_view mgrs, std::string& gzd, std::string& squareId,
                            std::string& easting, std::string& northing, std::string* err) {
    const std::string text = cleaned(mgrs);
    std::string_view rest = text;
    const bool hasLetterInFront =
        std::any_of(text.begin(), text.begin() + std::min<std::ptrdiff_t>(3, std::ssize(text)),
                    [](char c) { return !isDigit(c); });
    if (!text.empty() && !hasLetterInFront) return fail(err, kNoLetterInFront);

    std::string designator(takePart(rest, isDigit));
    if (!rest.empty() && isLetter(rest.front())) {
        designator += rest.front();
        rest.remove_prefix(1);
    }
    takeWhile(rest, isBlank);
    if (!isGzd(designator)) return fail(err, kLettersMissing);
    const std::string_view square = takePart(rest, isLetter);
    if (square.size() != 2) return fail(err, kSquareId);

    std::string_view first = takePart(rest, isDigit);
    std::string_view second = takePart(rest, isDigit);
    if (!rest.empty()) return fail(err, kNotDigits);
    if (second.empty()) {
        if (first.size() % 2 != 0) return fail(err, kUnequal);
        second = first.substr(first.size() / 2);
        first.remove_suffix(second.size());
    }
    if (const int code = checkNumbers(first, second, err)) return code;
    gzd = std::move(designator);
    squareId = square;
    easting = first;
    northing = second;
    return 0;
}

int MgrsConvert::combineMgrs(std::string_view gzd, std::string_view squareId, std::string_view easting,
                             std::string_view northing, std::string& mgrs, std::string* err) {
    const std::string designator = cleaned(gzd);
    const std::string square = cleaned(squareId);
    const std::string east = cleaned(easting);
    const std::string north = cleaned(northing);
    if (!designator.empty() && std::all_of(designator.begin(), designator.end(), isDigit))
        return fail(err, kNoLetterInFront);
    if (!isGzd(designator)) return fail(err, kLettersMissing);
    if (square.size() != 2 || !std::all_of(square.begin(), square.end(), isLetter))
        return fail(err, kSquareId);
    if (const int code = checkNumbers(east, north, err)) return code;
    mgrs = designator + square + east + north;
    return 0;
}

bool MgrsConvert::isValidMgrs(std::string_view mgrs, std::string* err) {
    double lat = 0.0;
    double lon = 0.0;
    return mgrsToGeodetic(mgrs, lat, lon, err) == 0;
}

bool MgrsConvert::isValidMgrs(std::string_view gzd, std::string_view squareId, std::string_view easting,
                              std::string_view northing, std::string* err) {
    std::string mgrs;
    return combineMgrs(gzd, squareId, easting, northing, mgrs, err) == 0 && isValidMgrs(mgrs, err);
}

}  // namespace UTILS
