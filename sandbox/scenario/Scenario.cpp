#include "sandbox/scenario/Scenario.h"

#include <algorithm>
#include <utility>

namespace sandbox {

Scenario::Scenario() {
    tick_.setInterval(100);
    connect(&tick_, &QTimer::timeout, this, &Scenario::tick);
}

void Scenario::tick() {
    const double before = time_;
    double now = before + rate_ * static_cast<double>(sinceTick_.restart()) / 1000.0;
    const bool reachesEnd = before < end_ && now >= end_;
    if (reachesEnd) now = end_;
    setTime(now);
    if (reachesEnd) setRunning(false);
}

void Scenario::setTime(double seconds) {
    if (seconds == time_) return;
    time_ = seconds;
    for (const auto& [id, platform] : platforms_)
        if (platform.track.moves()) emit platformMoved(id);
    emit timeChanged();
}

void Scenario::setRunning(bool running) {
    if (running == isRunning()) return;
    sinceTick_.start();
    running ? tick_.start() : tick_.stop();
    emit clockChanged();
}

void Scenario::setRate(double rate) {
    if (rate == rate_) return;
    rate_ = rate;
    emit clockChanged();
}

std::uint64_t Scenario::add(const PIData::PIPlatformHeader& header, const PIData::PIDataPoint& point,
                            Plugin* owner) {
    const std::uint64_t id = ++lastId_;
    Platform& platform = platforms_[id] = {header, Track(point), {}, owner};
    platform.header.id = id;
    emit platformAdded(id);
    return id;
}

void Scenario::load(const std::string& file, std::vector<PlatformFile::Platform> loaded) {
    std::map<std::string, std::uint64_t> known;
    for (const auto& [id, platform] : platforms_)
        if (platform.file == file) known[platform.header.name] = id;
    std::vector<std::uint64_t> moved;
    std::vector<std::uint64_t> added;
    for (PlatformFile::Platform& platform : loaded) {
        if (const auto at = known.find(platform.name); at != known.end()) {
            platforms_[at->second].track = std::move(platform.track);
            moved.push_back(at->second);
        } else {
            added.push_back(++lastId_);
            platforms_[lastId_] = {{lastId_, platform.name, platform.icon}, std::move(platform.track), file};
        }
    }
    updateSpan();
    if (time_ < begin_ || time_ > end_) setTime(begin_);
    for (const std::uint64_t id : moved) {
        emit trackChanged(id);
        emit platformMoved(id);
    }
    for (const std::uint64_t id : added) emit platformAdded(id);
}

void Scenario::updateSpan() {
    std::vector<double> begins, ends;
    for (const auto& [id, platform] : platforms_) {
        if (platform.file.empty()) continue;
        begins.push_back(platform.track.beginTime());
        ends.push_back(platform.track.endTime());
    }
    begin_ = begins.empty() ? 0.0 : std::ranges::min(begins);
    end_ = ends.empty() ? 0.0 : std::ranges::max(ends);
    emit clockChanged();
}

bool Scenario::move(std::uint64_t id, const PIData::PIDataPoint& point) {
    const auto at = platforms_.find(id);
    if (at == platforms_.end()) return false;
    at->second.track = Track(point);
    emit trackChanged(id);
    emit platformMoved(id);
    return true;
}

bool Scenario::remove(std::uint64_t id) {
    const auto at = platforms_.find(id);
    if (at == platforms_.end()) return false;
    const bool spans = !at->second.file.empty();
    platforms_.erase(at);
    if (spans) updateSpan();
    emit platformRemoved(id);
    return true;
}

void Scenario::clear(PIApplicationEvents_t why) {
    for (const auto& [id, platform] : std::exchange(platforms_, {})) emit platformRemoved(id);
    updateSpan();
    emit cleared(why);
}

const Scenario::Platform* Scenario::find(std::uint64_t id) const {
    const auto at = platforms_.find(id);
    return at == platforms_.end() ? nullptr : &at->second;
}

std::optional<PIData::PIDataPoint> Scenario::at(std::uint64_t id, double seconds) const {
    const Platform* platform = find(id);
    return platform ? platform->track.at(seconds) : std::nullopt;
}

}  // namespace sandbox
