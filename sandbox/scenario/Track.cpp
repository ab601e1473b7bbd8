#include "sandbox/scenario/Track.h"

#include <algorithm>
#include <cmath>
#include <ranges>

#include <GeographicLib/Geodesic.hpp>

#include "geo/Angles.h"

namespace sandbox {

using halCore::kRadiansPerDegree;
using halCore::kTwoPi;

namespace {

using PIData::PIDataPoint;

const GeographicLib::Geodesic& earth() {
    return GeographicLib::Geodesic::WGS84();
}

/// Moves a point along the geodesic with the azimuth `degrees`. \return the course there, degrees
double walk(PIDataPoint& point, double degrees, double metres) {
    double latitude = 0.0;
    double longitude = 0.0;
    double course = 0.0;
    earth().Direct(point.latRad / kRadiansPerDegree, point.lonRad / kRadiansPerDegree, degrees, metres,
                   latitude, longitude, course);
    point.latRad = latitude * kRadiansPerDegree;
    point.lonRad = longitude * kRadiansPerDegree;
    return course;
}

struct Leg {
    double metres = 0.0;
    double departure = 0.0;  ///< courses, degrees
    double arrival = 0.0;
};

Leg legBetween(const PIDataPoint& a, const PIDataPoint& b) {
    Leg leg;
    earth().Inverse(a.latRad / kRadiansPerDegree, a.lonRad / kRadiansPerDegree, b.latRad / kRadiansPerDegree,
                    b.lonRad / kRadiansPerDegree, leg.metres, leg.departure, leg.arrival);
    return leg;
}

/// The angle between two, taken the short way round.
double turn(double from, double to, double fraction) {
    return from + fraction * std::remainder(to - from, kTwoPi);
}

double orElse(double value, double otherwise) {
    return std::isnan(value) ? otherwise : value;
}

}  // namespace

bool Track::moves() const {
    return size() > 1 || orElse(point(0).speedMetersPerSecond, 0.0) != 0.0;
}

double Track::arrivalCourse(std::size_t at) const {
    for (; at > 0; --at)
        if (const Leg leg = legBetween(point(at - 1), point(at)); leg.metres > 0.0)
            return leg.arrival * kRadiansPerDegree;
    return 0.0;
}

PIDataPoint Track::inLeg(std::size_t from, double seconds) const {
    const PIDataPoint a = this->point(from);
    const PIDataPoint b = this->point(from + 1);
    const double duration = b.timeSeconds - a.timeSeconds;
    const double fraction = (seconds - a.timeSeconds) / duration;
    const Leg leg = legBetween(a, b);

    PIDataPoint point = a;
    const double course = walk(point, leg.departure, leg.metres * fraction) * kRadiansPerDegree;
    point.altMeters = std::lerp(a.altMeters, b.altMeters, fraction);
    point.pitchRad = turn(a.pitchRad, b.pitchRad, fraction);
    point.rollRad = turn(a.rollRad, b.rollRad, fraction);
    if (std::isnan(a.headingRad))
        point.headingRad = leg.metres > 0.0 ? course : arrivalCourse(from);
    else
        point.headingRad = turn(a.headingRad, orElse(b.headingRad, a.headingRad), fraction);
    if (std::isnan(a.speedMetersPerSecond))
        point.speedMetersPerSecond = leg.metres / duration;
    else
        point.speedMetersPerSecond = std::lerp(
            a.speedMetersPerSecond, orElse(b.speedMetersPerSecond, a.speedMetersPerSecond), fraction);
    return point;
}

PIDataPoint Track::afterEnd(double seconds) const {
    PIDataPoint point = this->point(size() - 1);
    if (std::isnan(point.headingRad)) point.headingRad = arrivalCourse(size() - 1);
    point.speedMetersPerSecond = orElse(point.speedMetersPerSecond, 0.0);
    const double metres = point.speedMetersPerSecond * (seconds - point.timeSeconds);
    if (metres != 0.0)
        point.headingRad = walk(point, point.headingRad / kRadiansPerDegree, metres) * kRadiansPerDegree;
    return point;
}

Track::Track(std::vector<PIDataPoint> points) : count_(static_cast<std::uint32_t>(points.size())) {
    std::ranges::stable_sort(points, {}, &PIDataPoint::timeSeconds);
    auto rows = std::make_shared<TrackRows>();
    for (const PIDataPoint& point : points) rows->add(point);
    rows_ = std::move(rows);
}

std::optional<PIDataPoint> Track::at(double seconds) const {
    if (moves() && seconds < beginTime()) return std::nullopt;
    const auto all = std::views::iota(std::size_t{0}, size());
    const std::size_t next = static_cast<std::size_t>(
        std::ranges::upper_bound(all, seconds, {}, [this](std::size_t i) { return timeOf(i); }) -
        all.begin());
    PIDataPoint point = next == size() || next == 0 ? afterEnd(seconds) : inLeg(next - 1, seconds);
    point.timeSeconds = seconds;
    return point;
}

}  // namespace sandbox
