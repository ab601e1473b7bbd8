#include "geo/TypedPosition.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "geo/MgrsConvert.h"
#include "geo/TypedText.h"

namespace UTILS {
namespace {

using halCore::AngleKind;

constexpr std::string_view kSeparators = ";\t/";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isOf(std::string_view set, char c) {
    return set.find(c) != std::string_view::npos;
}

std::vector<std::string> split(std::string_view text, std::string_view separators) {
    std::vector<std::string> parts;
    while (true) {
        const std::size_t end = std::min(text.find_first_of(separators), text.size());
        parts.emplace_back(trimmed(text.substr(0, end)));
        if (end == text.size()) return parts;
        text.remove_prefix(end + 1);
    }
}

/// Without brackets about the whole.
std::string_view unwrapped(std::string_view text) {
    text = trimmed(text);
    while (text.size() >= 2 &&
           ((text.front() == '(' && text.back() == ')') || (text.front() == '[' && text.back() == ']')))
        text = trimmed(text.substr(1, text.size() - 2));
    return text;
}

/// Without "Lat:" and the like; a separator stands where "Lon:" did, unless it began the text.
std::string withoutNames(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        std::size_t letters = 0;
        while (letters < text.size() && isLetter(text[letters])) ++letters;
        const std::string word = lowerCase(text.substr(0, letters));
        const bool isLat = word == "lat" || word == "latitude";
        const bool isLon = word == "lon" || word == "long" || word == "lng" || word == "longitude";
        if (!isLat && !isLon) {
            const std::size_t taken = std::max<std::size_t>(letters, 1);
            result += text.substr(0, taken);
            text.remove_prefix(taken);
            continue;
        }
        text = trimmed(text.substr(letters));
        if (!text.empty() && isOf(":=", text.front())) text.remove_prefix(1);
        const std::string_view before = trimmed(result);
        result += !before.empty() && !isOf(",;/\t", before.back()) ? ";" : " ";
    }
    return result;
}

/// A latitude and a longitude, in the order that their letters tell.
std::optional<TypedPosition> readPair(const std::string& first, const std::string& second,
                                      std::string& reason) {
    TypedPosition pair;
    std::string remark;
    std::string other;
    if (readTypedAngle(first, AngleKind::Latitude, pair.lat, remark) == 0) {
        if (readTypedAngle(second, AngleKind::Longitude, pair.lon, reason) != 0) return std::nullopt;
        pair.lonWrapped = !reason.empty();
        return pair;
    }
    reason = remark;
    if (readTypedAngle(second, AngleKind::Latitude, pair.lat, other) != 0 ||
        readTypedAngle(first, AngleKind::Longitude, pair.lon, other) != 0)
        return std::nullopt;
    // Only letters tell that the longitude comes first.
    const auto hasSide = [](const std::string& text, std::string_view letters) {
        return lowerCase(text).find_first_of(letters) != std::string::npos;
    };
    if (!hasSide(first, "ew") && !hasSide(second, "ns")) {
        reason += "; the latitude comes first";
        return std::nullopt;
    }
    pair.lonWrapped = !other.empty();
    return pair;
}

/// Words between which a latitude may end: blanks, and the border behind or before a hemisphere.
std::vector<std::string> words(std::string_view text) {
    constexpr std::string_view sides = "NSEWnsew";
    const bool isInFront = !text.empty() && isOf(sides, text.front());
    std::string parted;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char before = i > 0 ? text[i - 1] : ' ';
        const bool isSide =
            isOf(sides, text[i]) && i > 0 && !isLetter(before) && i + 1 < text.size() && isDigit(text[i + 1]);
        if (isSide && isInFront) parted += ' ';
        parted += text[i];
        if (isSide && !isInFront) parted += ' ';
    }
    std::vector<std::string> result = split(parted, " \t\n\r");
    std::erase(result, "");
    return result;
}

std::string joined(const std::vector<std::string>& parts, std::size_t from, std::size_t to) {
    std::string text;
    for (std::size_t i = from; i < to; ++i) text.append(i > from ? " " : "").append(parts[i]);
    return text;
}

/// Whether something besides a blank tells that a latitude ends here; minutes might follow it.
bool isBorder(const std::string& first, const std::string& second) {
    constexpr std::string_view sides = "NSEWnsew";
    const auto hasPoint = [](const std::string& part) { return part.find('.') != std::string::npos; };
    const auto hasDegrees = [](const std::string& part) {
        return part.find("\xC2\xB0") != std::string::npos || lowerCase(part).find('d') != std::string::npos;
    };
    // An s behind a number with marks ends its seconds.
    const bool hasSide = isOf(sides, first.back()) && (first.back() != 's' || !hasDegrees(first));
    // Behind a colon no blank parts minutes from degrees.
    const bool haveColons = first.find(':') != std::string::npos && second.find(':') != std::string::npos;
    return hasSide || isOf("+-NSEWnsew", second.front()) || (hasPoint(first) && hasPoint(second)) ||
           hasDegrees(second) || haveColons;
}

/// A position whose parts only blanks part.
TypedPositions readWords(std::string_view text) {
    const std::vector<std::string> parts = words(text);
    TypedPositions found;
    std::string ignored;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const std::string first = joined(parts, 0, i);
        const std::string second = joined(parts, i, parts.size());
        if (!isBorder(first, second)) continue;
        if (const auto pair = readPair(first, second, ignored)) found.positions.push_back(*pair);
    }
    if (found.positions.size() > 1)
        return {{}, "it is not clear where the latitude ends: put a comma between both"};
    const bool areNumbers = parts.size() == 3 && std::ranges::all_of(parts, [](const std::string& part) {
                                return readNumber(part).has_value();
                            });
    if (!found.positions.empty() && areNumbers)
        return {{},
                "the last number may be minutes or an altitude: type \"" + parts[0] + ", " + parts[1] + " " +
                    parts[2] + "\" or \"" + parts[0] + ", " + parts[1] + ", " + parts[2] + "\""};
    if (!found.positions.empty() || parts.size() < 3) return found;
    // Two decimal numbers, and what is behind them is an altitude.
    const auto isDecimal = [](const std::string& word) {
        return readNumber(word) && word.find('.') != std::string::npos;
    };
    const bool isPair = (isDecimal(parts[0]) && isDecimal(parts[1])) || isOf("+-", parts[1].front());
    if (!isPair || !readNumber(parts[0]) || !readNumber(parts[2])) return found;
    if (auto position = readPair(parts[0], parts[1], ignored)) {
        position->altitude = joined(parts, 2, parts.size());
        found.positions.push_back(*position);
    }
    return found;
}

/// A position whose parts are parted by something else.
TypedPositions readCells(std::string_view text) {
    const std::vector<std::string> cells = typedCells(text);
    if (cells.empty()) return {};
    if (cells.size() > 3) return {{}, "more than a position"};
    std::string reason;
    auto position = readPair(cells[0], cells[1], reason);
    if (!position) return {{}, reason};
    if (cells.size() > 2) position->altitude = cells[2];
    return {{*position}, {}};
}

/// An MGRS reference; `reason` tells why one denotes no place.
std::optional<TypedPosition> readReference(std::string_view text, std::string& reason) {
    std::string plain(text);
    std::ranges::replace_if(
        plain, [](char c) { return isOf(",/", c); }, ' ');
    TypedPosition position;
    // A square alone may be a word.
    if (trimmed(plain).empty() || !isDigit(trimmed(plain).back())) return std::nullopt;
    std::string gzd, square, easting, northing;
    if (MgrsConvert::divideMgrs(plain, gzd, square, easting, northing) != 0) return std::nullopt;
    if (MgrsConvert::mgrsToGeodetic(plain, position.lat, position.lon, &reason) != 0) return std::nullopt;
    return position;
}

bool isPlainPair(std::string_view text) {
    return text.find_first_not_of("+-0123456789.,;/ \t") == std::string_view::npos;
}

/// Whether blanks part numbers that points may part into thousands, as in "12.345 67.890".
bool areThousands(std::string_view text) {
    return std::ranges::all_of(split(text, " "), [](const std::string& number) {
        const std::size_t point = number.find('.');
        return point != std::string::npos && mayBeOneNumber(number + ",0");
    });
}

TypedPositions readParts(std::string_view text) {
    return text.find_first_of(",;\t/") == std::string_view::npos ? readWords(text) : readCells(text);
}

/// "21 18.5N 158 02.0W, 300 ft": only the letters part latitude and longitude.
std::optional<TypedPosition> readWithAltitude(std::string_view text) {
    const std::size_t comma = text.find_first_of(",;");
    if (comma == std::string_view::npos) return std::nullopt;
    const std::string_view place = trimmed(text.substr(0, comma));
    const std::string altitude(trimmed(text.substr(comma + 1)));
    if (place.empty() || !isOf("EWew", place.back()) || altitude.empty()) return std::nullopt;
    TypedPositions found = readWords(place);
    if (found.positions.size() != 1 || !found.positions.front().altitude.empty()) return std::nullopt;
    found.positions.front().altitude = altitude;
    return found.positions.front();
}

/// With something else for the commas between two digits.
std::string withoutTightCommas(std::string_view text, std::string_view instead) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isTight =
            text[i] == ',' && i > 0 && isDigit(text[i - 1]) && i + 1 < text.size() && isDigit(text[i + 1]);
        result += isTight ? instead : text.substr(i, 1);
    }
    return result;
}

/// What to type instead of commas between two digits; empty when nothing of that reads.
std::string commaAdvice(const std::string& text, AngleKind kind) {
    const auto isPosition = [](const std::string& other) {
        const auto& found = readParts(other).positions;
        return found.size() == 1 && (found[0].altitude.empty() || readNumber(found[0].altitude));
    };
    const auto quoted = [](const std::string& other) { return "\"" + other + "\""; };
    const std::string pointed = withoutTightCommas(text, ".");
    const std::string parted = withoutTightCommas(text, ", ");
    if (pointed == text) return {};
    double radians = 0.0;
    std::string ignored;
    const bool isNumber = readTypedAngle(pointed, kind, radians, ignored) == 0;
    const bool isPointed = isNumber || isPosition(pointed);
    if (isPointed && isPosition(parted))
        return "a comma may be a point, or part two numbers: type " + quoted(pointed) + " or " +
               quoted(parted);
    if (isPointed)
        return (isNumber ? "use a point for decimals: " : "use points for decimals: ") + quoted(pointed);
    if (isPosition(parted)) return "put blanks behind the commas between numbers: type " + quoted(parted);
    const std::vector<std::string> cells = split(text, ",");
    if (cells.size() != 4) return {};
    const std::string both = cells[0] + "." + cells[1] + ", " + cells[2] + "." + cells[3];
    return isPosition(both) ? "use points for decimals: " + quoted(both) : std::string();
}

TypedPositions readLine(std::string_view line, TypedInto into) {
    if (line.size() > kLongestTyped) return {};
    const std::string text = withoutNames(unwrapped(line));
    const std::string rest(unwrapped(text));
    std::string reason;
    if (const auto position = readReference(rest, reason)) return {{*position}, {}};
    if (const std::size_t comma = rest.find_last_of(",;"); comma != std::string::npos)
        if (auto position = readReference(rest.substr(0, comma), reason)) {
            position->altitude = trimmed(std::string_view(rest).substr(comma + 1));
            return {{*position}, {}};
        }
    if (!reason.empty()) return {{}, reason};
    if (isPlainPair(rest)) {
        if (into.pairs == PlainPairs::None) return {};
        if (into.pairs == PlainPairs::Decimals &&
            (rest.find_first_of(".-") == std::string::npos || areThousands(rest)))
            return {};
    }
    TypedPositions found = readParts(rest);
    if (auto position = found.positions.empty() ? readWithAltitude(rest) : std::nullopt)
        return {{*position}, {}};
    if (found.positions.empty())
        if (std::string advice = commaAdvice(rest, into.kind); !advice.empty())
            found.reason = std::move(advice);
    return found;
}

/// Pairs in one line, without a blank within.
bool isRowOfPairs(const std::vector<std::string>& cells) {
    return cells.size() > 1 && std::ranges::all_of(cells, [](const std::string& cell) {
               const auto numbers = split(cell, ",");
               return numbers.size() >= 2 && numbers.size() <= 3 &&
                      std::ranges::all_of(numbers,
                                          [](auto& number) { return readNumber(number).has_value(); });
           });
}

/// One position whose parts stand in a line each.
std::optional<TypedPosition> readStack(const std::vector<std::string>& lines) {
    if (lines.size() < 2 || lines.size() > 3) return std::nullopt;
    const auto part = [&](std::size_t i) { return std::string(trimmed(withoutNames(unwrapped(lines[i])))); };
    std::string ignored;
    auto position = readPair(part(0), part(1), ignored);
    if (position && lines.size() == 3) position->altitude = lines[2];
    return position;
}

}  // namespace

std::vector<std::string> typedCells(std::string_view row) {
    const bool hasCommas = row.find_first_of(kSeparators) == std::string_view::npos;
    std::vector<std::string> cells = split(row, hasCommas ? "," : kSeparators);
    constexpr std::string_view number = "0123456789.";
    for (std::size_t i = 1; i < cells.size() && hasCommas; ++i) {
        std::string before = cells[i - 1];
        const std::string& behind = cells[i];
        const bool isTight = row.find(before + ',' + behind) != std::string_view::npos;
        before.erase(0, before.find_last_not_of(number) + 1);
        const std::string first = behind.substr(0, behind.find_first_not_of(number));
        if (isTight && !before.empty() && !first.empty() && mayBeOneNumber(before + ',' + first)) return {};
    }
    return cells;
}

TypedPositions readTypedPositions(std::string_view text, TypedInto into) {
    std::vector<std::string> lines = split(plainText(text), "\n\r");
    std::erase(lines, "");
    const auto readAll = [&into](const std::vector<std::string>& each, std::string& reason) {
        TypedPositions all;
        for (std::size_t i = 0; i < each.size(); ++i) {
            TypedPositions one = readLine(each[i], into);
            if (one.positions.empty()) {
                reason = "line " + std::to_string(i + 1) + " is no position";
                if (!one.reason.empty()) reason.append(": ").append(one.reason);
                return TypedPositions();
            }
            all.positions.push_back(std::move(one.positions.front()));
        }
        return all;
    };
    std::string reason;
    if (lines.size() == 1) {
        const auto cells = split(lines[0], " ");
        if (isRowOfPairs(cells))
            if (TypedPositions all = readAll(cells, reason); !all.positions.empty()) return all;
        return readLine(lines[0], into);
    }
    if (TypedPositions all = readAll(lines, reason); !all.positions.empty()) return all;
    if (const auto position = readStack(lines)) return {{*position}, {}};
    return {{}, lines.empty() ? "" : reason};
}

}  // namespace UTILS
