#pragma once

#include <cmath>

namespace halCore {

/// The sine and cosine of an angle, which stands for the angle where only they are needed.
struct SinCos {
    explicit SinCos(double radians) : sin(std::sin(radians)), cos(std::cos(radians)) {}
    SinCos(double sine, double cosine) : sin(sine), cos(cosine) {}

    SinCos plus(const SinCos& other) const {
        return {sin * other.cos + cos * other.sin, cos * other.cos - sin * other.sin};
    }

    /// Plus a small angle (below 0.01 radians, exact to 1e-15) without a call of sin and cos.
    SinCos plusSmall(double radians) const {
        const double d2 = radians * radians;
        const double s = radians * (1.0 - d2 * (1.0 / 6.0) * (1.0 - d2 * (1.0 / 20.0)));
        const double versine = 0.5 * d2 * (1.0 - d2 * (1.0 / 12.0) * (1.0 - d2 * (1.0 / 30.0)));
        return {sin + (cos * s - sin * versine), cos - (sin * s + cos * versine)};
    }

    double sin;
    double cos;
};

}  // namespace halCore
