#include "sandbox/scenario/Track.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <GeographicLib/Geodesic.hpp>

namespace sandbox {

namespace {

using PIData::PIDataPoint;

constexpr double kDegree = std::numbers::pi / 180.0;

/// The point that lies `metres` from `from` on the geodesic with the azimuth `degrees`.
PIDataPoint walk(const PIDataPoint& from, double degrees, double metres) {
    double latitude = 0.0;
    double longitude = 0.0;
    double azimuth = 0.0;
    GeographicLib::Geodesic::WGS84().Direct(from.latRad / kDegree, from.lonRad / kDegree, degrees, metres,
                                            latitude, longitude, azimuth);
    PIDataPoint there = from;
    there.latRad = latitude * kDegree;
    there.lonRad = longitude * kDegree;
    there.headingRad = azimuth * kDegree;
    return there;
}

/// The angle between two, taken the short way round.
double turn(double from, double to, double fraction) {
    return from + fraction * std::remainder(to - from, 2.0 * std::numbers::pi);
}

PIDataPoint between(const PIDataPoint& a, const PIDataPoint& b, double fraction) {
    double distance = 0.0;
    double azimuth = 0.0;
    double arrival = 0.0;
    GeographicLib::Geodesic::WGS84().Inverse(a.latRad / kDegree, a.lonRad / kDegree, b.latRad / kDegree,
                                             b.lonRad / kDegree, distance, azimuth, arrival);
    PIDataPoint point = walk(a, azimuth, distance * fraction);
    point.altMeters = std::lerp(a.altMeters, b.altMeters, fraction);
    point.headingRad = turn(a.headingRad, b.headingRad, fraction);
    point.pitchRad = turn(a.pitchRad, b.pitchRad, fraction);
    point.rollRad = turn(a.rollRad, b.rollRad, fraction);
    point.speedMetersPerSecond = std::lerp(a.speedMetersPerSecond, b.speedMetersPerSecond, fraction);
    return point;
}

}  // namespace

Track::Track(std::vector<PIDataPoint> points) : points_(std::move(points)) {
    std::ranges::stable_sort(points_, {}, &PIDataPoint::timeSeconds);
}

std::optional<PIDataPoint> Track::at(double seconds) const {
    if (!moves()) return points_.front();
    if (seconds < beginTime()) return std::nullopt;
    const auto next = std::ranges::upper_bound(points_, seconds, {}, &PIDataPoint::timeSeconds);
    const PIDataPoint& last = *(next - 1);
    const double elapsed = seconds - last.timeSeconds;
    PIDataPoint point = last;
    if (next != points_.end())
        point = between(last, *next, elapsed / (next->timeSeconds - last.timeSeconds));
    else if (last.speedMetersPerSecond != 0.0)
        point = walk(last, last.headingRad / kDegree, last.speedMetersPerSecond * elapsed);
    point.timeSeconds = seconds;
    return point;
}

}  // namespace sandbox
