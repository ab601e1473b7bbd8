#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "geo/AngleText.h"

namespace UTILS {

/// Latitude and longitude in radians, and the text of an altitude, if there was one.
struct TypedPosition {
    double lat = 0.0;
    double lon = 0.0;
    std::string altitude;
    /// Of more than 180 degrees as typed.
    bool lonWrapped = false;
};

struct TypedPositions {
    /// Empty when the text holds none.
    std::vector<TypedPosition> positions;
    /// Why a text that looks like positions is none; empty for one that does not.
    std::string reason;
};

/// Which pairs of plain numbers are a latitude and a longitude.
enum class PlainPairs {
    All,       ///< "45, -120"
    Decimals,  ///< "45.5, -120.3"; whole numbers may be an easting and a northing
    None       ///< they are offsets
};

/// What a field makes of texts by itself.
struct TypedInto {
    PlainPairs pairs = PlainPairs::All;
    /// Any for a field that holds neither a latitude nor a longitude.
    halCore::AngleKind kind = halCore::AngleKind::Any;
};

/// The parts of a row that semicolons, tabs or slashes part, or else commas ("100, 200 m"). None where the
/// numbers on both sides of a comma without a blank may be one ("5,000", "1,234.5").
std::vector<std::string> typedCells(std::string_view row);

/// Reads whole positions as people type and paste them, a line each: latitude and longitude in any form of
/// readTypedAngle, parted by a comma, a semicolon, a slash, a tab or a blank ("45.5, -120.3",
/// "21°18'30\"N 157°54'W", "W 157 54, N 21 18"), perhaps an altitude behind them, perhaps "Lat:" and "Lon:"
/// in front, perhaps in brackets; or an MGRS reference ("4Q FJ 12345 67890", "4QFJ1234567890, 100 ft"). Pairs
/// without a blank in them may stand in one line ("45.5,-120.3 46,-121"), and the parts of one position in a
/// line each.
TypedPositions readTypedPositions(std::string_view text, TypedInto into = {});

}  // namespace UTILS
