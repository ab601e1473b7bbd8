#include "geo/AngleText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "geo/Angles.h"

namespace halCore {
namespace {

// Written out byte by byte, as the look-alikes cannot be told apart in an editor: degree sign, masculine
// ordinal, ring above and the degree sign of Latin-1; prime and curly quote; their doubles; minus sign.
constexpr std::array<std::string_view, 4> kDegreeMarks = {"\xC2\xB0", "\xC2\xBA", "\xCB\x9A", "\xB0"};
constexpr std::array<std::string_view, 3> kMinuteMarks = {"'", "\xE2\x80\xB2", "\xE2\x80\x99"};
constexpr std::array<std::string_view, 6> kSecondMarks = {
    "\"", "\xE2\x80\xB3", "\xE2\x80\x9D", "''", "\xE2\x80\xB2\xE2\x80\xB2", "\xE2\x80\x99\xE2\x80\x99"};
// The marks written as words, in any case, for degrees, minutes and seconds.
constexpr std::array<std::array<std::string_view, 3>, 3> kMarkWords = {
    {{"deg", "degree", "degrees"}, {"min", "minute", "minutes"}, {"sec", "second", "seconds"}}};
constexpr std::string_view kMinusSign = "\xE2\x88\x92";
constexpr std::string_view kDegreeSign = kDegreeMarks.front();

enum class Case { None, Lower, Upper };

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
char toUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
Case caseOf(char c) {
    return c >= 'a' ? Case::Lower : Case::Upper;
}
bool isHemisphere(char c) {
    return std::string_view("NSEW").find(toUpper(c)) != std::string_view::npos;
}

/// Reads one text from left to right. The first thing wrong is kept in `failure`.
class Reader {
  public:
    Reader(std::string_view text, AngleReadOptions options) : rest_(text), options_(options) {}

    /// The angle in degrees, or none and `failure`.
    std::optional<double> read() {
        if (rest_.empty()) return fail("no text");
        if (const std::optional<double> plain = UTILS::readNumber(rest_)) return inRange(*plain);
        if (!readSide() || !readParts() || !readHemisphereBehind()) return std::nullopt;
        if (!rest_.empty()) return fail("unexpected text behind the angle");
        if (hemisphere_ == 0) return inRange(isNegative_ ? -degrees_ : degrees_);
        return inRange(hemisphere_ == 'S' || hemisphere_ == 'W' ? -degrees_ : degrees_);
    }

    const char* failure() const { return failure_; }

  private:
    std::nullopt_t fail(const char* reason) {
        if (!failure_) failure_ = reason;
        return std::nullopt;
    }
    bool refuse(const char* reason) {
        fail(reason);
        return false;
    }

    void skipBlanks() {
        while (!rest_.empty() && UTILS::isBlank(rest_.front())) rest_.remove_prefix(1);
    }
    bool take(std::string_view token) {
        if (!rest_.starts_with(token)) return false;
        rest_.remove_prefix(token.size());
        return true;
    }
    bool takeAny(std::span<const std::string_view> tokens) {
        return std::any_of(tokens.begin(), tokens.end(),
                           [this](std::string_view token) { return take(token); });
    }

    /// A sign or a hemisphere in front.
    bool readSide() {
        const bool isMinus = take("-") || take(kMinusSign);
        hasSign_ = isMinus || take("+");
        isNegative_ = isMinus;
        skipBlanks();
        if (!rest_.empty() && isHemisphere(rest_.front()) && !readHemisphere()) return false;
        skipBlanks();
        const bool hasSignBehind =
            rest_.starts_with('-') || rest_.starts_with('+') || rest_.starts_with(kMinusSign);
        if (hasSignBehind && hemisphere_ != 0) return refuse("a sign and a hemisphere together");
        return true;
    }

    bool readHemisphere() {
        const char letter = toUpper(rest_.front());
        const bool isLatitude = letter == 'N' || letter == 'S';
        if (hemisphere_ != 0) return refuse("more than one hemisphere");
        if (hasSign_) return refuse("a sign and a hemisphere together");
        if (options_.kind == AngleKind::Bearing) return refuse("this angle has no N, S, E or W");
        if (options_.kind == AngleKind::Latitude && !isLatitude) return refuse("a latitude is N or S");
        if (options_.kind == AngleKind::Longitude && isLatitude) return refuse("a longitude is E or W");
        hemisphere_ = letter;
        rest_.remove_prefix(1);
        return true;
    }

    bool readHemisphereBehind() {
        skipBlanks();
        if (!rest_.empty() && isHemisphere(rest_.front()) && !readHemisphere()) return false;
        skipBlanks();
        return true;
    }

    /// Degrees, and minutes and seconds if they follow.
    bool readParts() {
        constexpr std::array<double, 3> partsPerDegree = {1.0, 60.0, 3600.0};
        for (std::size_t i = 0; i < partsPerDegree.size(); ++i) {
            double value = 0.0;
            bool hasFraction = false;
            if (!readPart(value, hasFraction)) return false;
            if (i > 0 && value >= 60.0)
                return refuse(i == 1 ? "minutes of 60 or more" : "seconds of 60 or more");
            degrees_ += value / partsPerDegree[i];

            skipBlanks();
            if (!readMark(i)) return false;
            const bool hasColon = i < 2 && take(":");
            skipBlanks();
            const bool isNext = i < 2 && !rest_.empty() && (isDigit(rest_.front()) || rest_.front() == '.');
            if (hasColon && !isNext) return refuse("no number behind the colon");
            if (!isNext) return true;
            if (hasFraction) return refuse("a fraction before the last part");
        }
        return true;
    }

    bool readPart(double& value, bool& hasFraction) {
        const std::size_t size = std::min(rest_.find_first_not_of("0123456789."), rest_.size());
        const char* const end = rest_.data() + size;
        const auto [stop, error] = std::from_chars(rest_.data(), end, value, std::chars_format::fixed);
        if (size == 0 || error == std::errc::invalid_argument) return refuse("a number is missing");
        if (error != std::errc()) return refuse("a number is too large or too small");
        if (stop != end) return refuse("a number with two points");
        hasFraction = rest_.substr(0, size).find('.') != std::string_view::npos;
        rest_.remove_prefix(size);
        return true;
    }

    /// The mark that may end part i.
    bool readMark(std::size_t i) {
        std::size_t letters = 0;
        while (letters < rest_.size() && toUpper(rest_[letters]) >= 'A' && toUpper(rest_[letters]) <= 'Z')
            ++letters;
        // More letters than a mark and a hemisphere are a word.
        if (letters > 2) {
            const std::string_view word = rest_.substr(0, letters);
            rest_.remove_prefix(letters);
            return std::any_of(
                       kMarkWords[i].begin(), kMarkWords[i].end(),
                       [word](std::string_view mark) { return UTILS::equalsIgnoringCase(word, mark); }) ||
                   refuse("unexpected text behind the angle");
        }
        if (i == 0) {
            if (!takeAny(kDegreeMarks)) takeLetter('D');
        } else if (i == 1) {
            // Two minute marks in a row are a second mark, and out of place here.
            if (!takeAny(kMinuteMarks) && !takeLetter('M') && isSideOrSeconds())
                return refuse("S could mean seconds or south");
        } else if (!takeAny(kSecondMarks) && isSideOrSeconds()) {
            const bool maySouth = options_.kind == AngleKind::Any || options_.kind == AngleKind::Latitude;
            if (markCase_ == Case::Upper && hemisphere_ == 0 && maySouth &&
                !isHemisphereBehind(rest_.substr(1)))
                return refuse("S could mean seconds or south");
            rest_.remove_prefix(1);
        }
        return true;
    }

    static bool isHemisphereBehind(std::string_view text) {
        text = UTILS::trimmed(text);
        return !text.empty() && isHemisphere(text.front());
    }

    /// Whether an S of the marks' case comes next.
    bool isSideOrSeconds() const {
        return !rest_.empty() && toUpper(rest_.front()) == 'S' && caseOf(rest_.front()) == markCase_;
    }

    bool takeLetter(char letter) {
        if (rest_.empty() || toUpper(rest_.front()) != letter) return false;
        markCase_ = caseOf(rest_.front());
        rest_.remove_prefix(1);
        return true;
    }

    std::optional<double> inRange(double degrees) {
        if (!options_.checkRange) return degrees;
        const bool isLatitude =
            options_.kind == AngleKind::Latitude || hemisphere_ == 'N' || hemisphere_ == 'S';
        const bool isLongitude =
            options_.kind == AngleKind::Longitude || hemisphere_ == 'E' || hemisphere_ == 'W';
        if (isLatitude && std::abs(degrees) > 90.0) return fail("a latitude beyond 90 degrees");
        if (isLongitude && std::abs(degrees) > 180.0) return fail("a longitude beyond 180 degrees");
        if (std::abs(degrees) > 360.0) return fail("an angle beyond 360 degrees");
        return degrees;
    }

    std::string_view rest_;
    AngleReadOptions options_;
    const char* failure_ = nullptr;
    double degrees_ = 0.0;
    bool hasSign_ = false;
    bool isNegative_ = false;
    char hemisphere_ = 0;
    /// Case of the letters d and m, as far as they were used.
    Case markCase_ = Case::None;
};

/// Degrees, minutes and maybe seconds with their marks; `degrees` is not negative.
std::string writeParts(double degrees, bool hasSeconds, int precision) {
    double whole = std::floor(degrees);
    std::int64_t scale = 1;
    for (int i = 0; i < precision; ++i) scale *= 10;
    const std::int64_t perDegree = scale * (hasSeconds ? 3600 : 60);
    auto count = static_cast<std::int64_t>(std::llround((degrees - whole) * static_cast<double>(perDegree)));
    if (count >= perDegree) {
        count = 0;
        whole += 1.0;
    }

    std::string text = UTILS::writeFixed(whole, 0);
    text += kDegreeSign;
    const auto appendTwoDigits = [&text](std::int64_t value) {
        text += static_cast<char>('0' + value / 10);
        text += static_cast<char>('0' + value % 10);
    };
    if (hasSeconds) {
        appendTwoDigits(count / (60 * scale));
        text += '\'';
        count %= 60 * scale;
    }
    appendTwoDigits(count / scale);
    if (precision > 0) {
        const std::string decimals = std::to_string(count % scale);
        text += '.';
        text.append(static_cast<std::size_t>(precision) - decimals.size(), '0');
        text += decimals;
    }
    text += hasSeconds ? '"' : '\'';
    return text;
}

}  // namespace

int readAngle(std::string_view text, double& radians, AngleReadOptions options, std::string* error) {
    text = UTILS::trimmed(text);
    Reader reader(text, options);
    if (const std::optional<double> degrees = reader.read()) {
        radians = *degrees * kRadiansPerDegree;
        return 0;
    }
    if (error) *error = std::string("Invalid angle \"") + UTILS::excerpt(text) + "\": " + reader.failure();
    return 1;
}

int maxAnglePrecision(AngleFormat format) {
    switch (format) {
        case AngleFormat::DegreesMinutes:
            return 11;
        case AngleFormat::DegreesMinutesSeconds:
            return 9;
        case AngleFormat::Decimal:
        case AngleFormat::Degrees:
            break;
    }
    return 12;
}

std::string writeAngle(double radians, AngleFormat format, int precision, AngleKind hemisphere) {
    const double degrees = std::abs(radians) * kDegreesPerRadian;
    if (!std::isfinite(degrees)) return {};
    precision = std::clamp(precision, 0, maxAnglePrecision(format));

    std::string text;
    switch (format) {
        case AngleFormat::Decimal:
            text = UTILS::writeFixed(degrees, precision);
            break;
        case AngleFormat::Degrees:
            text = UTILS::writeFixed(degrees, precision).append(kDegreeSign);
            break;
        case AngleFormat::DegreesMinutes:
            text = writeParts(degrees, false, precision);
            break;
        case AngleFormat::DegreesMinutesSeconds:
            text = writeParts(degrees, true, precision);
            break;
    }
    const bool isNegative = radians < 0.0 && text.find_first_of("123456789") != std::string::npos;
    if (hemisphere == AngleKind::Latitude)
        text += isNegative ? 'S' : 'N';
    else if (hemisphere == AngleKind::Longitude)
        text += isNegative ? 'W' : 'E';
    else if (isNegative)
        text.insert(text.begin(), '-');
    return text;
}

}  // namespace halCore
