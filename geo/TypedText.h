#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "geo/AngleText.h"

/// Numbers and angles as people type them into fields and paste them from elsewhere. Files are read more
/// strictly.
namespace UTILS {

/// No value that a person types is longer.
inline constexpr std::size_t kLongestTyped = 500;

/// The text with the plain characters that look-alikes stand for: every kind of blank is one, every dash a
/// minus, accents and typographic quotes are primes. Characters without a width are gone, and so are blanks
/// at both ends.
std::string plainText(std::string_view typed);

/// Whether a plain number with a comma in it may be one number: with a decimal comma ("7,5") or with parted
/// thousands ("5,000", "1,234.5", "1.234,56").
bool mayBeOneNumber(std::string_view number);

/// Why a text with commas, or with blanks within a number, is none, and what to type instead: "use a point
/// for decimals: \"7.5 nm\"". Empty when that is not what is wrong, or nothing of that `reads`.
std::string numberAdvice(std::string_view text, const std::function<bool(const std::string&)>& reads);

/// Reads a latitude, a longitude or, with kind Bearing, an angle without a hemisphere, in degrees; all that
/// halCore::readAngle takes, and besides dashes between the parts ("21-18-30N"), the hemisphere as a word
/// ("21.3 North") or behind the word of a mark ("21.3degN"), and latitudes and longitudes in one row of
/// digits ("211830N", "2118.5N", "1575400W"). A longitude of more than 180 degrees, up to 360, is the one of
/// the same meridian.
///
/// Returns 0 and sets `radians`; `remark` is then empty, or "beyond 180 degrees". Otherwise returns non-zero,
/// leaves `radians` alone, and `remark` has the reason alone, without the text.
int readTypedAngle(std::string_view text, halCore::AngleKind kind, double& radians, std::string& remark);

}  // namespace UTILS
