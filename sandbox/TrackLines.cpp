#include "sandbox/TrackLines.h"

#include "sandbox/OverlayFiles.h"
#include "sandbox/scenario/Scenario.h"

namespace sandbox {

namespace {

constexpr std::uint32_t kTrackColor = 0xffffff70;  // red, green, blue, opacity

}  // namespace

TrackLines::TrackLines(OverlayScene& scene, const Scenario& scenario) : scene_(scene), scenario_(scenario) {
    connect(&scenario, &Scenario::platformAdded, this, &TrackLines::update);
    connect(&scenario, &Scenario::trackChanged, this, &TrackLines::update);
    connect(&scenario, &Scenario::platformRemoved, this, &TrackLines::remove);
}

TrackLines::~TrackLines() {
    for (const auto& [platform, line] : lines_) scene_.remove(line);
}

void TrackLines::update(std::uint64_t platform) {
    const Scenario::Platform* found = scenario_.find(platform);
    if (!found || found->track.size() < 2) {
        remove(platform);
        return;
    }
    const Track& track = found->track;
    auto shapes = OverlayFiles::line(
        track.size(), [&track](std::size_t i) { return track.point(i); }, kTrackColor, 1);
    if (const auto at = lines_.find(platform); at != lines_.end())
        scene_.replace(at->second, std::move(shapes));
    else
        lines_[platform] = scene_.add(std::move(shapes), std::nullopt, shown_);
}

void TrackLines::remove(std::uint64_t platform) {
    const auto at = lines_.find(platform);
    if (at == lines_.end()) return;
    scene_.remove(at->second);
    lines_.erase(at);
}

void TrackLines::setShown(bool shown) {
    shown_ = shown;
    for (const auto& [platform, line] : lines_) scene_.setShown(line, shown);
}

}  // namespace sandbox
