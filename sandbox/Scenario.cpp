#include "sandbox/Scenario.h"

#include <numbers>
#include <utility>

#include <GeographicLib/Geodesic.hpp>

namespace sandbox {

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

}  // namespace

Scenario::Scenario() {
    tick_.setInterval(100);
    connect(&tick_, &QTimer::timeout, this,
            [this] { setTime(time_ + static_cast<double>(sinceTick_.restart()) / 1000.0); });
}

void Scenario::setTime(double seconds) {
    if (seconds == time_) return;
    time_ = seconds;
    for (const auto& [id, platform] : platforms_)
        if (platform.point.speedMetersPerSecond != 0.0) emit platformMoved(id);
    emit timeChanged();
}

void Scenario::setRunning(bool running) {
    sinceTick_.start();
    running ? tick_.start() : tick_.stop();
}

std::uint64_t Scenario::add(const PIData::PIPlatformHeader& header, const PIData::PIDataPoint& point,
                            Plugin* owner) {
    const std::uint64_t id = ++lastId_;
    Platform& platform = platforms_[id];
    platform = {header, point, owner};
    platform.header.id = id;
    emit platformAdded(id);
    return id;
}

bool Scenario::move(std::uint64_t id, const PIData::PIDataPoint& point) {
    const auto at = platforms_.find(id);
    if (at == platforms_.end()) return false;
    at->second.point = point;
    emit platformMoved(id);
    return true;
}

bool Scenario::remove(std::uint64_t id) {
    if (platforms_.erase(id) == 0) return false;
    emit platformRemoved(id);
    return true;
}

void Scenario::clear(PIApplicationEvents_t why) {
    for (const auto& [id, platform] : std::exchange(platforms_, {})) emit platformRemoved(id);
    emit cleared(why);
}

const Scenario::Platform* Scenario::find(std::uint64_t id) const {
    const auto at = platforms_.find(id);
    return at == platforms_.end() ? nullptr : &at->second;
}

std::optional<PIData::PIDataPoint> Scenario::at(std::uint64_t id, double seconds) const {
    const Platform* platform = find(id);
    if (!platform) return std::nullopt;
    PIData::PIDataPoint point = platform->point;
    const double elapsed = seconds - point.timeSeconds;
    point.timeSeconds = seconds;
    if (point.speedMetersPerSecond == 0.0) return point;
    if (elapsed < 0.0) return std::nullopt;
    double latitude = 0.0;
    double longitude = 0.0;
    double heading = 0.0;
    GeographicLib::Geodesic::WGS84().Direct(point.latRad / kDegree, point.lonRad / kDegree,
                                            point.headingRad / kDegree, point.speedMetersPerSecond * elapsed,
                                            latitude, longitude, heading);
    point.latRad = latitude * kDegree;
    point.lonRad = longitude * kDegree;
    point.headingRad = heading * kDegree;
    return point;
}

}  // namespace sandbox
