// A line's first word as a number: the fast reader agrees with the general one, and what is written comes
// back. A line that is no angle leaves the value alone.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "common/NumberText.h"
#include "format/PlainNumber.h"
#include "geo/AngleText.h"
#include "geo/Angles.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

bool same(double a, double b) {
    return a == b && std::signbit(a) == std::signbit(b);
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
    double angle = 42.0;
    require(halCore::readAngle(line, angle) == 0 ? std::isfinite(angle) : angle == 42.0);
    const std::optional<double> value = UTILS::readNumber(line);
    if (value) {
        require(UTILS::readNumber(UTILS::writeNumber(*value, 17)) == value);
        const std::string shorter = UTILS::writeNumber(*value, UTILS::kSignificantDigits);
        const std::optional<double> rounded = UTILS::readNumber(shorter);
        // Rounding may step over the largest double.
        require(!rounded || UTILS::writeNumber(*rounded, UTILS::kSignificantDigits) == shorter ||
                std::abs(*value) < 1e-290);
    }
    return 0;
}
