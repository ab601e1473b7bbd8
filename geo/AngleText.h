#pragma once

#include <string>
#include <string_view>

/// Angles as people and files write them. Radians inside; the process's locale never matters.
namespace halCore {

/// What an angle is, which decides the hemisphere letters and the range.
enum class AngleKind {
    Any,
    Latitude,
    Longitude,
    Bearing  ///< has no hemisphere
};

struct AngleReadOptions {
    /// Latitude refuses E and W, Longitude refuses N and S, Bearing all four; Any takes them.
    AngleKind kind = AngleKind::Any;
    /// Refuse more than 90 degrees for a latitude, 180 for a longitude, 360 otherwise.
    bool checkRange = false;
};

/// Reads an angle in degrees: decimal ("-21.3", "1e-05"), degrees and minutes ("21 18.5", "21:18.5"), or
/// degrees, minutes and seconds ("21 18 30", "21:18:30", "21°18'30\"", "21d18m30s"). The marks may also be
/// the Unicode degree sign, primes, curly quotes, and the words "deg", "min", "sec" and their long forms
/// in any case; blanks may stand between the parts. A sign in front, or a hemisphere letter of either case
/// before or after, tells the side; not both.
///
/// "s" behind the third number ends the seconds when "d" or "m" of the same case stand before it;
/// otherwise it is South. With capital marks ("21D18M30S"), or behind a second number without its mark
/// ("21d30s"), it could be either, and is refused.
///
/// Returns 0 and sets `radians`; otherwise returns non-zero, leaves `radians` alone, and tells in `error`
/// what is wrong: no number, minutes or seconds of 60 and more, a fraction before the last part, a sign
/// together with a hemisphere, the wrong hemisphere, a value out of range, something left over.
int readAngle(std::string_view text, double& radians, AngleReadOptions options = {},
              std::string* error = nullptr);

/// A form of degrees.
enum class AngleFormat {
    Decimal,               ///< 21.31
    Degrees,               ///< 21.31°
    DegreesMinutes,        ///< 21°18.50'
    DegreesMinutesSeconds  ///< 21°18'30.00"
};

/// Most decimals that are written. A text with more would not come back as it stands: radians have no more
/// digits.
int maxAnglePrecision(AngleFormat format);

/// Writes an angle with `precision` decimals (0 to maxAnglePrecision, clamped) in its last part. With
/// kind Latitude or Longitude a letter N, S, E or W ends the text; otherwise a negative angle has a sign.
/// Minutes and seconds are never written as 60, nor zero as negative. Within a turn what is read from the
/// text is written as the same text. Empty for a value that is not finite in degrees.
std::string writeAngle(double radians, AngleFormat format, int precision,
                       AngleKind hemisphere = AngleKind::Any);

}  // namespace halCore
