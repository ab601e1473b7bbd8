#include "format/FileNumber.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "common/NumberText.h"
#include "common/Strings.h"

namespace halCore::ZEL {
namespace {

constexpr double kLargest = 1e300;
constexpr double kSmallest = 1e-250;

std::optional<double> limited(double value) {
    const double size = std::abs(value);
    if (!(size <= kLargest)) return std::nullopt;
    return size < kSmallest ? 0.0 : value;
}

std::string_view withoutQuotes(std::string_view text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') return text.substr(1, text.size() - 2);
    return text;
}

}  // namespace

std::optional<double> readFileNumber(std::string_view text) {
    const std::optional<double> value = UTILS::readNumber(text);
    return value ? limited(*value) : std::nullopt;
}

std::string exactNumberText(double value) {
    std::array<char, 32> text;
    return std::string(text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr);
}

std::optional<double> readFileDegrees(std::string_view text, AngleKind kind) {
    double radians = 0.0;
    if (readAngle(withoutQuotes(text), radians, {.kind = kind}) != 0) return std::nullopt;
    return limited(radians);
}

std::optional<int> readFileInteger(std::string_view text) {
    if (text.size() == 1 && text[0] >= '0' && text[0] <= '9') return text[0] - '0';
    const std::optional<std::int64_t> value = UTILS::readInteger(text);
    if (!value || *value < std::numeric_limits<int>::min() || *value > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(*value);
}

}  // namespace halCore::ZEL
