#include "sandbox/scenario/Scenario.h"

#include <algorithm>
#include <unordered_map>
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
    platforms_[id] = {header.name, header.icon, Track(point), {}, owner};
    emit platformAdded(id);
    return id;
}

Work Scenario::loading(const std::string& file, std::deque<PlatformFile::Platform>& loaded,
                       std::size_t& done) {
    // What whoever hears of a platform takes for it.
    constexpr std::size_t kUnits = 10;
    std::unordered_map<std::string, std::uint64_t> known;
    const bool again = !files_.insert(file).second;
    for (auto at = platforms_.begin(); again && at != platforms_.end();) {
        if (at->second.file.text() == file) known[at->second.name] = at->first;
        // Others may be removed meanwhile.
        const std::uint64_t id = at->first;
        co_yield 1;
        at = platforms_.upper_bound(id);
    }
    for (Pieces some(loaded.size(), 100); some.next(); co_yield some.units())
        for (std::size_t i = some.first; i < some.last; ++i) include(loaded[i].track);
    emit clockChanged();
    const auto keepInside = [this] {
        if (time_ < begin_ || time_ > end_) setTime(begin_);
    };
    keepInside();
    const SharedText name = file;
    while (!loaded.empty()) {
        PlatformFile::Platform platform = std::move(loaded.front());
        loaded.pop_front();
        const auto old = known.find(platform.name);
        if (old == known.end()) {
            const std::uint64_t id = ++lastId_;
            platforms_.emplace_hint(
                platforms_.end(), id,
                Platform{std::move(platform.name), platform.icon, std::move(platform.track), name});
            emit platformAdded(id);
        } else if (const auto at = platforms_.find(old->second); at != platforms_.end()) {
            at->second.track = std::move(platform.track);
            emit trackChanged(at->first);
            emit platformMoved(at->first);
        }
        ++done;
        co_yield kUnits;
    }
    if (!again) co_return;
    updateSpan();
    keepInside();
}

void Scenario::load(const std::string& file, std::deque<PlatformFile::Platform> loaded) {
    std::size_t done = 0;
    loading(file, loaded, done).finish();
}

void Scenario::include(const Track& track) {
    begin_ = spans_ ? std::min(begin_, track.beginTime()) : track.beginTime();
    end_ = spans_ ? std::max(end_, track.endTime()) : track.endTime();
    spans_ = true;
}

void Scenario::updateSpan() {
    spans_ = false;
    begin_ = end_ = 0.0;
    for (const auto& [id, platform] : platforms_)
        if (!platform.file.empty()) include(platform.track);
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
    const Platform gone = std::move(at->second);
    platforms_.erase(at);
    if (!gone.file.empty() && (gone.track.beginTime() <= begin_ || gone.track.endTime() >= end_))
        updateSpan();
    emit platformRemoved(id);
    return true;
}

void Scenario::clear(PIApplicationEvents_t why) {
    for (const auto& [id, platform] : std::exchange(platforms_, {})) emit platformRemoved(id);
    files_.clear();
    updateSpan();
    emit cleared(why);
}

const Scenario::Platform* Scenario::find(std::uint64_t id) const {
    const auto at = platforms_.find(id);
    return at == platforms_.end() ? nullptr : &at->second;
}

bool Scenario::moves(std::uint64_t id) const {
    const Platform* platform = find(id);
    return platform && platform->track.moves();
}

std::optional<PIData::PIDataPoint> Scenario::at(std::uint64_t id, double seconds) const {
    const Platform* platform = find(id);
    return platform ? platform->track.at(seconds) : std::nullopt;
}

}  // namespace sandbox
