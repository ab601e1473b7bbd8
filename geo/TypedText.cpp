#include "geo/TypedText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "geo/Angles.h"

namespace UTILS {
namespace {

using halCore::AngleKind;

struct LookAlike {
    std::string_view text;
    std::string_view plain;
};
// Written out byte by byte, as they cannot be told apart in an editor.
constexpr std::array kLookAlikes = {
    // Blanks: no-break, the ones of U+2000 to U+200A, narrow no-break, mathematical, ideographic, Latin-1's.
    LookAlike{"\xC2\xA0", " "}, LookAlike{"\xE2\x80\x80", " "}, LookAlike{"\xE2\x80\x81", " "},
    LookAlike{"\xE2\x80\x82", " "}, LookAlike{"\xE2\x80\x83", " "}, LookAlike{"\xE2\x80\x84", " "},
    LookAlike{"\xE2\x80\x85", " "}, LookAlike{"\xE2\x80\x86", " "}, LookAlike{"\xE2\x80\x87", " "},
    LookAlike{"\xE2\x80\x88", " "}, LookAlike{"\xE2\x80\x89", " "}, LookAlike{"\xE2\x80\x8A", " "},
    LookAlike{"\xE2\x80\xAF", " "}, LookAlike{"\xE2\x81\x9F", " "}, LookAlike{"\xE3\x80\x80", " "},
    LookAlike{"\xA0", " "},
    // Without a width: space, joiners, marks of direction, byte order mark.
    LookAlike{"\xE2\x80\x8B", ""}, LookAlike{"\xE2\x80\x8C", ""}, LookAlike{"\xE2\x80\x8D", ""},
    LookAlike{"\xE2\x80\x8E", ""}, LookAlike{"\xE2\x80\x8F", ""}, LookAlike{"\xE2\x81\xA0", ""},
    LookAlike{"\xEF\xBB\xBF", ""},
    // Ends of lines and paragraphs, as fields of one line keep them.
    LookAlike{"\xE2\x80\xA8", "\n"}, LookAlike{"\xE2\x80\xA9", "\n"},
    // Minus, hyphens, en dash.
    LookAlike{"\xE2\x88\x92", "-"}, LookAlike{"\xE2\x80\x90", "-"}, LookAlike{"\xE2\x80\x91", "-"},
    LookAlike{"\xE2\x80\x93", "-"},
    // Degrees: the sign, masculine ordinal, ring above, the sign of Latin-1.
    LookAlike{"\xC2\xB0", "\xC2\xB0"}, LookAlike{"\xC2\xBA", "\xC2\xB0"}, LookAlike{"\xCB\x9A", "\xC2\xB0"},
    LookAlike{"\xB0", "\xC2\xB0"},
    // Minutes: prime, acute, grave, modifier prime and apostrophe, quotes; Latin-1's acute.
    LookAlike{"\xE2\x80\xB2", "'"}, LookAlike{"\xC2\xB4", "'"}, LookAlike{"`", "'"},
    LookAlike{"\xCA\xB9", "'"}, LookAlike{"\xCA\xBC", "'"}, LookAlike{"\xE2\x80\x98", "'"},
    LookAlike{"\xE2\x80\x99", "'"}, LookAlike{"\xB4", "'"},
    // Seconds.
    LookAlike{"\xE2\x80\xB3", "\""}, LookAlike{"\xCA\xBA", "\""}, LookAlike{"\xE2\x80\x9C", "\""},
    LookAlike{"\xE2\x80\x9D", "\""}};

constexpr std::array<std::string_view, 9> kMarkWords = {"degrees", "degree",  "deg",    "minutes", "minute",
                                                        "min",     "seconds", "second", "sec"};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isHemisphere(char c) {
    return std::string_view("NSEWnsew").find(c) != std::string_view::npos && c != '\0';
}

/// Whether the s behind the word of a mark may be the plural's or south.
bool isPlural(std::string_view word) {
    return word.size() > 1 && (word.back() == 's' || (word.back() == 'S' && word.front() <= 'Z')) &&
           std::ranges::any_of(kMarkWords, [&](std::string_view mark) {
               return equalsIgnoringCase(word.substr(0, word.size() - 1), mark);
           });
}

/// A word in front of or behind an angle as readAngle knows it; as it is when it is none of these.
std::string plainWord(std::string_view word) {
    const std::string lower = lowerCase(word);
    for (const std::string_view side : {"north", "south", "east", "west"})
        if (lower == side) return std::string(" ") + static_cast<char>(side.front() - 'a' + 'A') + ' ';
    for (const std::string_view mark : kMarkWords) {
        if (lower.size() != mark.size() + 1 || !lower.starts_with(mark) || !isHemisphere(word.back()))
            continue;
        if (!isPlural(word)) return std::string(mark) + ' ' + word.back();
    }
    return std::string(word);
}

/// With colons for dashes between digits, and plain words.
std::string withPlainParts(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t letters = i;
        while (letters < text.size() && isLetter(text[letters])) ++letters;
        if (letters > i) {
            result += plainWord(text.substr(i, letters - i));
            i = letters;
            continue;
        }
        const bool parts =
            text[i] == '-' && i > 0 && isDigit(text[i - 1]) && i + 1 < text.size() && isDigit(text[i + 1]);
        result += parts ? ':' : text[i];
        ++i;
    }
    return result;
}

/// A row of digits, such as 211830 or 2118.5, and its hemisphere.
struct Row {
    std::string_view digits;
    std::string_view fraction;
    char hemisphere = 0;
};

std::optional<Row> readRow(std::string_view text) {
    text = trimmed(text);
    Row row;
    const auto take = [&](bool isBehind) {
        if (text.empty() || !isHemisphere(isBehind ? text.back() : text.front())) return;
        row.hemisphere = isBehind ? text.back() : text.front();
        isBehind ? text.remove_suffix(1) : text.remove_prefix(1);
        text = trimmed(text);
    };
    take(false);
    if (row.hemisphere == 0) take(true);
    const std::size_t whole = std::min(text.find_first_not_of("0123456789"), text.size());
    row.digits = text.substr(0, whole);
    row.fraction = text.substr(whole);
    const bool isFraction =
        row.fraction.empty() || (row.fraction.front() == '.' && row.fraction.size() > 1 &&
                                 row.fraction.find_first_not_of("0123456789", 1) == std::string_view::npos);
    return isFraction && row.digits.size() >= 4 ? std::optional(row) : std::nullopt;
}

/// The row of digits with blanks between degrees, minutes and seconds; as it is when it is none.
std::string withPartedRow(std::string text) {
    const std::optional<Row> row = readRow(text);
    if (!row || row->hemisphere == 0) return text;
    const bool isLatitude = std::string_view("NSns").find(row->hemisphere) != std::string_view::npos;
    const std::size_t count = row->digits.size();
    // A latitude has two digits for its degrees, a longitude two or three.
    if (count > 7 || (isLatitude && count % 2 != 0)) return text;
    const std::size_t degrees = count % 2 == 0 ? 2 : 3;
    std::string parted(row->digits.substr(0, degrees));
    for (std::size_t i = degrees; i < count; i += 2) parted.append(" ").append(row->digits.substr(i, 2));
    return parted.append(row->fraction).append(" ").append(1, row->hemisphere);
}

/// A number whose thousands are parted, without that and with a point; nothing for all others.
std::optional<std::string> withoutGroups(std::string_view number, char separator, char point) {
    const std::size_t decimals = std::min(number.find(point), number.size());
    const std::size_t sign = number.starts_with('-') || number.starts_with('+') ? 1 : 0;
    std::string joined(number.substr(0, sign));
    std::size_t group = 0;
    bool isFirst = true;
    for (const char c : number.substr(sign, decimals - sign)) {
        if (c == separator) {
            if (isFirst ? group < 1 || group > 3 || joined[sign] == '0' : group != 3) return std::nullopt;
            isFirst = false;
            group = 0;
        } else {
            joined += c;
            ++group;
        }
    }
    if (isFirst || group != 3) return std::nullopt;
    if (decimals < number.size()) joined.append(".").append(number.substr(decimals + 1));
    return readNumber(joined) ? std::optional(joined) : std::nullopt;
}

std::string quoted(std::string_view text) {
    return std::string("\"").append(excerpt(text)).append("\"");
}

}  // namespace

std::string plainText(std::string_view typed) {
    std::string result;
    result.reserve(typed.size());
    while (!typed.empty()) {
        // The longest first: a byte of Latin-1 may begin a character of UTF-8.
        const LookAlike* found = nullptr;
        if (typed.front() == '`' || static_cast<signed char>(typed.front()) < 0)
            for (const LookAlike& each : kLookAlikes)
                if (typed.starts_with(each.text) && (!found || each.text.size() > found->text.size()))
                    found = &each;
        result += found ? found->plain : typed.substr(0, 1);
        typed.remove_prefix(found ? found->text.size() : 1);
    }
    return std::string(trimmed(result));
}

bool mayBeOneNumber(std::string_view number) {
    if (number.find('.') == std::string_view::npos) {
        std::string pointed(number);
        std::ranges::replace(pointed, ',', '.');
        if (readNumber(pointed)) return true;
    }
    return withoutGroups(number, ',', '.') || withoutGroups(number, '.', ',');
}

std::string numberAdvice(std::string_view text, const std::function<bool(const std::string&)>& reads) {
    const std::string plain = plainText(text);
    // The number in front, with all that may stand within one.
    const std::size_t end = std::min(plain.find_first_not_of("+-0123456789., '"), plain.size());
    const std::size_t last = plain.substr(0, end).find_last_of("0123456789");
    if (last == std::string::npos) return {};
    const std::string number = plain.substr(0, last + 1);
    const std::string rest = plain.substr(last + 1);
    const auto instead = [&](const std::optional<std::string>& other) {
        return other && reads(*other + rest) ? quoted(*other + rest) : std::string();
    };

    const std::size_t comma = number.find(',');
    if (comma != std::string::npos && number.find_first_of(",. '", comma + 1) == std::string::npos &&
        number.find_first_of(". '") == std::string::npos) {
        std::string other = number;
        other[comma] = '.';
        const std::string joined = instead(withoutGroups(number, ',', '.'));
        const std::string pointed = instead(other);
        if (!joined.empty() && !pointed.empty())
            return "a comma may be a point, or part thousands: type " + joined + " or " + pointed;
        if (!pointed.empty()) return "use a point for decimals: " + pointed;
        return joined.empty() ? joined : "nothing parts thousands: type " + joined;
    }
    for (const auto& [separator, point] :
         {std::pair{',', '.'}, {'.', ','}, {' ', '.'}, {' ', ','}, {'\'', '.'}, {'\'', ','}})
        if (const std::string joined = instead(withoutGroups(number, separator, point)); !joined.empty())
            return "nothing parts thousands: type " + joined;
    return {};
}

int readTypedAngle(std::string_view text, AngleKind kind, double& radians, std::string& remark) {
    if (text.size() > kLongestTyped) {
        remark = "a text that long is no angle";
        return 1;
    }
    const std::string plain = plainText(text);
    const auto read = [kind](const std::string& typed, double& value, std::string* reason) {
        return halCore::readAngle(withPartedRow(withPlainParts(typed)), value,
                                  {.kind = kind, .checkRange = kind == AngleKind::Latitude}, reason);
    };
    double value = 0.0;
    remark.clear();
    const bool isLongitude = kind == AngleKind::Longitude;
    const bool isRead = read(plain, value, &remark) == 0;
    if (isRead && isLongitude && std::abs(value) > halCore::kTwoPi) remark = "a longitude beyond 360 degrees";
    if (isRead && remark.empty()) {
        if (isLongitude && std::abs(value) > halCore::kPi) {
            value = halCore::wrapToPi(value);
            remark = "beyond 180 degrees";
        }
        radians = value;
        return 0;
    }
    // The reason alone.
    constexpr std::string_view quoteEnd = "\": ";
    if (const std::size_t at = remark.rfind(quoteEnd); at != std::string::npos)
        remark.erase(0, at + quoteEnd.size());
    if (const std::optional<Row> row = readRow(plain); row && kind != AngleKind::Bearing) {
        if (row->hemisphere == 0)
            remark += isLongitude ? "; a row of digits needs E or W" : "; a row of digits needs N or S";
        else if (remark.find("beyond") != std::string::npos)
            remark += isLongitude ? "; a row has 4 to 7 digits" : "; a row has 4 or 6 digits";
    }
    std::string_view word = plain;
    while (!word.empty() && !isLetter(word.front())) word.remove_prefix(1);
    if (isPlural(word)) remark = "S could mean several or south";
    if (std::string pointed = plain; plain.find(',') != std::string::npos) {
        std::ranges::replace(pointed, ',', '.');
        if (read(pointed, value, nullptr) == 0) remark = "use a point for decimals: " + quoted(pointed);
    }
    return 1;
}

}  // namespace UTILS
