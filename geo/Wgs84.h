#pragma once

#include <cmath>

/// The WGS-84 ellipsoid. Lengths in metres.
namespace halCore::wgs84 {

inline constexpr double a = 6378137.0;
inline constexpr double f = 1.0 / 298.257223563;
inline constexpr double b = a * (1.0 - f);
/// Squares of the first and second eccentricity.
inline constexpr double e2 = f * (2.0 - f);
inline constexpr double ep2 = e2 / (1.0 - e2);
/// Third flattening.
inline constexpr double n = f / (2.0 - f);
/// Half way round the earth over a pole, to the metre below. What reaches farther comes back.
inline constexpr double halfMeridian = 20003931.0;

}  // namespace halCore::wgs84
