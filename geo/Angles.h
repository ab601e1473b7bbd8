#pragma once

#include <cmath>
#include <numbers>

/// Angles in radians.
namespace halCore {

inline constexpr double kPi = std::numbers::pi;
inline constexpr double kTwoPi = 2.0 * std::numbers::pi;
inline constexpr double kHalfPi = 0.5 * std::numbers::pi;
inline constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;
/// The nearest double to 180/pi; the quotient of doubles is the same.
inline constexpr double kDegreesPerRadian = 180.0 / std::numbers::pi;

/// The same direction in (-pi, pi]; an angle that is already there is returned unchanged.
inline double wrapToPi(double radians) noexcept {
    if (radians > -kPi && radians <= kPi) return radians;
    // Up to there one turn is exact, and much faster.
    if (std::abs(radians) < 3.0 * kPi) return radians - std::copysign(kTwoPi, radians);
    const double wrapped = std::remainder(radians, kTwoPi);
    return wrapped <= -kPi ? kPi : wrapped;
}

/// The same direction in [0, 2 pi); an angle that is already there is returned unchanged.
inline double wrapToTwoPi(double radians) noexcept {
    if (radians >= 0.0 && radians < kTwoPi) return radians;
    const double wrapped = std::fmod(radians, kTwoPi);
    const double positive = wrapped < 0.0 ? wrapped + kTwoPi : wrapped;
    return positive >= kTwoPi ? 0.0 : positive + 0.0;
}

}  // namespace halCore
