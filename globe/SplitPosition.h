#pragma once

#include <QVector3D>
#include <array>
#include <cmath>
#include <cstddef>

#include "geo/Ecef.h"

namespace sandbox {

using FloatTriple = std::array<float, 3>;

/// A position as the graphics card holds it: high + low.
struct SplitPosition {
    FloatTriple high;
    FloatTriple low;
};

inline SplitPosition split(const halCore::Ecef& p) {
    // High is a multiple of 64 m, which a float holds exactly out to a million kilometres; low is then
    // good to microns. (Rounding to float and subtracting what came out does not work: GCC 12 leaves the
    // rounding out when it vectorizes the two conversions.)
    constexpr double kStep = 64.0;
    SplitPosition result;
    const std::array<double, 3> value = {p.x, p.y, p.z};
    for (std::size_t i = 0; i < 3; ++i) {
        const double high = std::round(value[i] / kStep) * kStep;
        result.high[i] = static_cast<float>(high);
        result.low[i] = static_cast<float>(value[i] - high);
    }
    return result;
}

inline QVector3D vector(const FloatTriple& v) {
    return {v[0], v[1], v[2]};
}

}  // namespace sandbox
