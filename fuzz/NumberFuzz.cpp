// A line's first word as a number: the fast reader agrees with the general one, and what is written comes
// back, one by one or three together. A line that is no angle leaves the value alone. The whole as points of
// a line: with vector instructions they are what they are without.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "common/NumberLines.h"
#include "common/NumberText.h"
#include "format/PlainPoint.h"
#include "format/PointLines.h"
#include "geo/AngleText.h"
#include "geo/Angles.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

bool same(double a, double b) {
    return a == b && std::signbit(a) == std::signbit(b);
}

void readPoints(const std::string& lines) {
    const std::string text = "lla " + lines + std::string(80, '\n');
    const char* p = text.data();
    const char* const end = p + text.size();
    const char* next = p;
    halCore::ZEL::PointLines reader;
    for (const halCore::Vec3& point : reader.read(next, end, 3, {})) {
        halCore::Vec3 plain;
        require(std::string_view(p, 4) == "lla ");
        const char* const stop = halCore::ZEL::scanPlainPoint(p + 3, end, plain);
        require(stop != nullptr && std::memcmp(&plain, &point, sizeof plain) == 0);
        p = stop + 1;
    }
    require(p == next);
}

void writeThree(double value) {
    const halCore::Vec3 three(value, 0.1 * value, -value);
    char text[UTILS::kMaxNumbersLength];
    const char* const end = UTILS::writeLines(text, "", {&three, 1}, UTILS::kSignificantDigits);
    require(std::string_view(text, end) == UTILS::writeNumber(value) + " " + UTILS::writeNumber(0.1 * value) +
                                               " " + UTILS::writeNumber(-value) + "\n");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string line = std::string(reinterpret_cast<const char*>(data), size) + "\n";
    const char* p = line.c_str();
    double plain = 0.0;
    if (halCore::ZEL::scanPlainNumber(p, line.c_str() + line.size(), plain)) {
        const std::optional<double> general = UTILS::readNumber(std::string_view(line.c_str(), p));
        require(general && same(*general, plain));
        double radians = 0.0;
        require(halCore::readAngle(std::string_view(line.c_str(), p), radians) == 0);
        require(same(radians, plain * halCore::kRadiansPerDegree));
    }
    readPoints(line);
    double angle = 42.0;
    require(halCore::readAngle(line, angle) == 0 ? std::isfinite(angle) : angle == 42.0);
    const std::optional<double> value = UTILS::readNumber(line);
    if (value) {
        writeThree(*value);
        require(UTILS::readNumber(UTILS::writeNumber(*value, 17)) == value);
        const std::string shorter = UTILS::writeNumber(*value, UTILS::kSignificantDigits);
        const std::optional<double> rounded = UTILS::readNumber(shorter);
        // Rounding may step over the largest double.
        require(!rounded || UTILS::writeNumber(*rounded, UTILS::kSignificantDigits) == shorter ||
                std::abs(*value) < 1e-290);
    }
    return 0;
}
