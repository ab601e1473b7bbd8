#pragma once

#include "common/Vec3.h"

/// Geodesics on the WGS-84 ellipsoid: shortest lines, their lengths and directions.
///
/// Angles are radians and lengths metres. Latitudes are in [-pi/2, pi/2]; longitudes may be any finite
/// angle. Azimuths count clockwise from north and come out in (-pi, pi]. Altitudes play no part.
///
/// The solutions are closed series in the manner of E. M. Sodano (Bulletin Geodesique 75, 1965, and 85,
/// 1967), improved until both agree with each other and with the exact geodesic; docs/geodesy.md tells
/// how and how well. They take a fixed time, allocate nothing and throw nothing.
namespace halCore::Sodano {

struct InverseSolution {
    /// False when an argument was not finite or a latitude lay beyond a pole; all else is then 0.
    bool valid = false;
    double distance = 0.0;
    /// Direction at the first point, towards the second. 0 when the points coincide, as a pole does with
    /// itself under another longitude.
    double azimuth1 = 0.0;
    /// Direction at the second point, onward, away from the first. 0 when the points coincide.
    double azimuth2 = 0.0;

    /// Direction at the second point back to the first, in (-pi, pi].
    double backAzimuth() const noexcept;
};

struct DirectSolution {
    /// False when an argument was not finite or the latitude lay beyond a pole; all else is then 0.
    bool valid = false;
    double lat = 0.0;
    /// In (-pi, pi].
    double lon = 0.0;
    /// Direction at the point reached, onward.
    double azimuth2 = 0.0;
};

/// Distance and azimuths between two points. Within 1 mm of the exact geodesic up to 1,000 km and 1 cm
/// up to 10,000 km; nearly antipodal pairs (beyond 19,100 km) are solved by GeographicLib.
InverseSolution inverse(double lat1, double lon1, double lat2, double lon2) noexcept;
InverseSolution inverse(const Vec3& lla1, const Vec3& lla2) noexcept;

/// The point at `distance` from the first along `azimuth1`. A negative distance leads backwards.
/// The inverse of the result is `distance` again, to 1e-9 of it or 10 nm.
DirectSolution direct(double lat1, double lon1, double azimuth1, double distance) noexcept;
/// The same about a position, keeping its altitude; `lla1` itself when an argument is not valid.
Vec3 direct(const Vec3& lla1, double azimuth1, double distance) noexcept;

}  // namespace halCore::Sodano
