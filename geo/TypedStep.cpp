#include "geo/TypedStep.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "geo/Angles.h"
#include "geo/TypedPosition.h"
#include "geo/TypedText.h"
#include "geo/Wgs84.h"

namespace UTILS {
namespace {

constexpr std::string_view kUnderstood =
    "understood are a position, \"5 nm 270\", \"+3 km E 1 km N\", \"5 nm\" and \"12 nm 270 330\"";
constexpr double kFarthestMeters = 1e9;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// A number and what stands behind it, up to the next one.
struct Item {
    enum class Kind { Bare, Length, Bearing, East, North, South, West, Other };

    std::string number;
    std::string suffix;
    Kind kind = Kind::Other;
    /// Of a length with a direction behind it, and whether a blank or the like ends the item.
    std::string unit;
    bool isParted = false;

    bool hasSide() const { return kind >= Kind::East && kind <= Kind::West; }
    bool isAngle() const { return kind == Kind::Bare || kind == Kind::Bearing; }
    bool isSigned() const { return !number.empty() && (number.front() == '+' || number.front() == '-'); }
};

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
    return std::ranges::any_of(words,
                               [text](std::string_view word) { return equalsIgnoringCase(text, word); });
}

bool isLengthUnit(const std::string& unit) {
    double ignored = 0.0;
    const TspiUnitsProviderAdapter any;
    return !unit.empty() && any.parseRange("1 " + unit, ignored) == 0;
}

/// In front of a bearing's mark stands perhaps that of degrees.
std::string_view withoutDegrees(std::string_view mark) {
    for (const std::string_view degrees : {"\xC2\xB0", "degrees", "deg"})
        if (lowerCase(mark).starts_with(degrees)) return trimmed(mark.substr(degrees.size()));
    return mark;
}

bool isMagnetic(const std::string& suffix) {
    return isOneOf(withoutDegrees(suffix), {"m", "mag", "magnetic"});
}

void classify(Item& item) {
    using Kind = Item::Kind;
    const std::string& suffix = item.suffix;
    if (suffix.empty()) {
        item.kind = Kind::Bare;
    } else if (isLengthUnit(suffix)) {
        item.kind = Kind::Length;
        item.unit = suffix;
    } else if (isOneOf(withoutDegrees(suffix), {"", "t", "true"}) || suffix.ends_with('\'') ||
               suffix.ends_with('"')) {
        item.kind = Kind::Bearing;
    } else {
        struct Side {
            std::string_view name;
            Kind kind;
        };
        constexpr std::array sides = {Side{"east", Kind::East},   Side{"north", Kind::North},
                                      Side{"south", Kind::South}, Side{"west", Kind::West},
                                      Side{"e", Kind::East},      Side{"n", Kind::North},
                                      Side{"s", Kind::South},     Side{"w", Kind::West}};
        const std::string lower = lowerCase(suffix);
        for (const Side& side : sides) {
            if (!lower.ends_with(side.name)) continue;
            const std::string unit(
                trimmed(std::string_view(suffix).substr(0, suffix.size() - side.name.size())));
            if (!unit.empty() && !isLengthUnit(unit)) continue;
            item.kind = side.kind;
            item.unit = unit;
            return;
        }
    }
}

/// None for a text that does not begin with a number.
std::vector<Item> readItems(std::string_view text) {
    std::vector<Item> items;
    std::size_t at = 0;
    const auto begins = [&](std::size_t i) {
        const bool isSign = text[i] == '+' || text[i] == '-';
        const std::size_t digit = isSign || text[i] == '.' ? i + 1 : i;
        return digit < text.size() && (isDigit(text[digit]) || (isSign && text[digit] == '.'));
    };
    while (at < text.size()) {
        if (!begins(at)) return {};
        std::size_t end = at + 1;
        // A comma between digits may be a point: it belongs to the number, which is then refused with advice.
        while (end < text.size() && (isDigit(text[end]) || text[end] == '.' ||
                                     (text[end] == ',' && isDigit(text[end - 1]) && end + 1 < text.size() &&
                                      isDigit(text[end + 1]))))
            ++end;
        Item item;
        item.number = text.substr(at, end - at);
        std::size_t next = end;
        while (next < text.size() && !begins(next)) ++next;
        std::string_view suffix = text.substr(end, next - end);
        constexpr std::string_view separators = " ,;/@\t";
        const std::size_t last = suffix.find_last_not_of(separators);
        item.isParted = last == std::string_view::npos ? !suffix.empty() : last + 1 < suffix.size();
        suffix = suffix.substr(0, last == std::string_view::npos ? 0 : last + 1);
        suffix.remove_prefix(std::min(suffix.find_first_not_of(separators), suffix.size()));
        if (suffix.ends_with(" at") || suffix == "at") suffix = trimmed(suffix.substr(0, suffix.size() - 2));
        item.suffix = suffix;
        // Degrees and minutes are one bearing.
        const bool goesOn =
            !items.empty() && ((items.back().suffix == "\xC2\xB0" && suffix.starts_with('\'')) ||
                               (items.back().suffix.ends_with('\'') && suffix.starts_with('"')));
        if (goesOn) {
            items.back().number += items.back().suffix + item.number;
            items.back().suffix = item.suffix;
            items.back().isParted = item.isParted;
        } else {
            items.push_back(std::move(item));
        }
        at = next;
    }
    for (Item& item : items) classify(item);
    return items;
}

/// Reads items whose pattern is known; the first fault is the reason.
class Values {
  public:
    Values(const TspiUnitsProviderAdapter& units, std::string& reason) : units_(units), reason_(reason) {}

    double length(const Item& item) {
        const std::string text = item.unit.empty() ? item.number : item.number + " " + item.unit;
        double meters = 0.0;
        note_(item, units_.parseRange(text, meters, &remark_));
        if (std::abs(meters) > halCore::wgs84::halfMeridian)
            fail_(std::string("\"").append(text).append("\" reaches round more than half of the earth"));
        return meters;
    }
    double positive(const Item& item) {
        const double meters = length(item);
        if (!(meters > 0.0)) fail_("a length here is greater than 0");
        return meters;
    }
    double bearing(const Item& item) {
        double radians = 0.0;
        std::string text = item.number;
        const bool hasDegrees = withoutDegrees(item.suffix).size() != item.suffix.size();
        if (hasDegrees) text += "\xC2\xB0";
        if (item.suffix.ends_with('\'') || item.suffix.ends_with('"')) text += item.suffix;
        note_(item, units_.parseAngle(text, radians, &remark_));
        return halCore::wrapToTwoPi(radians);
    }

  private:
    void note_(const Item& item, int code) {
        if (code != 0)
            fail_("\"" + item.number + (item.unit.empty() ? "" : " ") + item.unit + "\": " + remark_);
    }
    void fail_(const std::string& reason) {
        if (reason_.empty()) reason_ = reason;
    }

    const TspiUnitsProviderAdapter& units_;
    std::string& reason_;
    std::string remark_;
};

/// Nothing where the items make no pattern; a reason where they do and hold no values.
TypedStep readPattern(const std::vector<Item>& items, const TspiUnitsProviderAdapter& units,
                      std::string& reason) {
    using Kind = Item::Kind;
    if (items.empty() || items.size() > 3) return {};
    Values values(units, reason);
    if (std::ranges::all_of(items, &Item::hasSide)) {
        TypedShift shift;
        std::array<int, 2> counts{};
        bool isLength = items[0].isSigned();
        std::string example;
        for (const Item& item : items) {
            const bool isEast = item.kind == Kind::East || item.kind == Kind::West;
            const double way = values.length(item);
            const bool back = item.kind == Kind::West || item.kind == Kind::South;
            (isEast ? shift.eastMeters : shift.northMeters) = back ? -way : way;
            ++counts[isEast ? 1 : 0];
            isLength = isLength || !item.unit.empty();
            const std::string unit =
                item.unit.empty() ? std::string(unitsGetAbbreviation(units.rangeUnits())) : item.unit;
            example.append(example.empty() ? "" : " ").append(item.number).append(" ").append(unit);
            example.append(" ").append(trimmed(std::string_view(item.suffix).substr(item.unit.size())));
        }
        if (!isLength || counts[0] > 1 || counts[1] > 1) {
            reason.clear();
            return {};
        }
        // Without units it might as well be a position.
        if (std::ranges::any_of(items, [](const Item& item) { return item.unit.empty(); }))
            reason = std::string("a distance needs its unit here: type \"").append(example).append("\"");
        if (reason.empty() && shift.eastMeters == 0.0 && shift.northMeters == 0.0)
            reason = "this leads nowhere";
        return shift;
    }
    if (items.size() == 1) {
        if (items[0].kind != Kind::Bare && items[0].kind != Kind::Length) return {};
        const std::string text = items[0].number + " " + items[0].unit;
        TypedLength length{values.length(items[0]), 0.0};
        std::string ignored;
        if (reason.empty()) static_cast<void>(units.parseAltitude(text, length.metersAsAltitude, &ignored));
        return length;
    }
    const auto isLength = [](const Item& item) {
        return item.kind == Kind::Length && !isMagnetic(item.suffix);
    };
    if (const auto magnetic =
            std::ranges::find_if(items, [](const Item& item) { return isMagnetic(item.suffix); });
        magnetic != items.end() && std::ranges::any_of(items, isLength)) {
        reason = "directions are true here, and \"" + magnetic->number + magnetic->suffix +
                 "\" is magnetic: type the true one";
        return TypedWay();
    }
    // Behind two numbers a length may be the altitude of a position.
    const bool isBehind = items.size() == 2 && items.back().kind == Kind::Length;
    std::vector<Item> angles = items;
    const Item length = isBehind ? items.back() : items.front();
    angles.erase(isBehind ? angles.end() - 1 : angles.begin());
    if (length.kind != Kind::Length || !std::ranges::all_of(angles, &Item::isAngle) ||
        !std::ranges::all_of(items.begin(), items.end() - 1, &Item::isParted))
        return {};
    const double meters = values.positive(length);
    const double start = values.bearing(angles[0]);
    if (angles.size() == 1) return TypedWay{meters, start};
    return TypedSector{meters, start, values.bearing(angles[1])};
}

std::optional<TypedOffset> readOffset(const std::string& text, const TspiUnitsProviderAdapter& units) {
    const auto cells = typedCells(text);
    if (cells.size() < 2 || cells.size() > 3) return std::nullopt;
    std::array values{0.0, 0.0, 0.0};
    for (std::size_t i = 0; i < cells.size(); ++i)
        if (units.parseRange(cells[i], values[i]) != 0 || std::abs(values[i]) > kFarthestMeters)
            return std::nullopt;
    TypedOffset offset{values[0], values[1], {}};
    if (cells.size() == 3) offset.z = values[2];
    return offset;
}

TypedStep readPlaces(std::string_view text, const TspiUnitsProviderAdapter& units, bool offsets,
                     std::string& reason) {
    TypedPositions typed = readTypedPositions(text, {offsets ? PlainPairs::None : PlainPairs::All});
    TypedPlaces places;
    for (const TypedPosition& each : typed.positions) {
        TypedPlaces::Place place{each.lat, each.lon, {}};
        if (!each.altitude.empty()) {
            double meters = 0.0;
            std::string remark;
            if (units.parseAltitude(each.altitude, meters, &remark) != 0 ||
                std::abs(meters) > kFarthestMeters) {
                reason = "the altitude \"" + excerpt(each.altitude) +
                         "\": " + (remark.empty() ? "this is beyond a million kilometers" : remark);
                return {};
            }
            place.alt = meters;
        }
        if (each.lonWrapped && !places.wrappedLon) places.wrappedLon = each.lon;
        places.places.push_back(place);
    }
    reason = std::move(typed.reason);
    if (places.places.empty()) return {};
    return places;
}

}  // namespace

TypedWay TypedShift::way() const {
    return {std::hypot(eastMeters, northMeters), halCore::wrapToTwoPi(std::atan2(eastMeters, northMeters))};
}

TypedStep readTypedStep(std::string_view typed, const TspiUnitsProviderAdapter& units, bool offsets,
                        std::string& reason) {
    reason.clear();
    if (typed.size() > kLongestTyped * 20) {
        reason = "a text that long is no step";
        return {};
    }
    const std::string text = plainText(typed);
    if (text.empty()) return {};
    std::vector<Item> items;
    if (text.size() <= kLongestTyped) items = readItems(text);
    std::string patternReason;
    TypedStep pattern = readPattern(items, units, patternReason);
    const bool isPattern = !std::holds_alternative<std::monostate>(pattern);
    if (isPattern && patternReason.empty()) return pattern;
    if (std::holds_alternative<TypedShift>(pattern)) {
        reason = patternReason;
        return {};
    }
    if (offsets && text.find('\n') == std::string::npos)
        if (const auto offset = readOffset(text, units)) return *offset;
    TypedStep places = readPlaces(text, units, offsets, reason);
    if (!std::holds_alternative<std::monostate>(places)) return places;
    if (isPattern)
        reason = patternReason;
    else if (items.size() == 2 && std::ranges::all_of(items, [](const Item& item) {
                 return item.isAngle() && readNumber(item.number);
             }))
        reason = std::string("this is no position, and a distance needs its unit here: type \"")
                     .append(items[0].number)
                     .append(" ")
                     .append(unitsGetAbbreviation(units.rangeUnits()))
                     .append(" ")
                     .append(items[1].number)
                     .append("\"");
    else if (reason.empty())
        reason = kUnderstood;
    return {};
}

}  // namespace UTILS
