#include "sandbox/PlatformMarkers.h"

#include <optional>
#include <utility>

#include "globe/GlobeView.h"
#include "sandbox/PlatformView.h"
#include "sandbox/scenario/Scenario.h"

namespace sandbox {

PlatformMarkers::PlatformMarkers(GlobeView& view, const Scenario& scenario)
    : view_(view), scenario_(scenario) {
    connect(&scenario, &Scenario::platformAdded, this, &PlatformMarkers::show);
    connect(&scenario, &Scenario::platformMoved, this, &PlatformMarkers::show);
    connect(&scenario, &Scenario::platformRemoved, this,
            [this](std::uint64_t id) { view_.removePlatform(id); });
    connect(&scenario, &Scenario::timeChanged, this, [this] { following_.begin(follow(), {}); });
}

void PlatformMarkers::show(std::uint64_t id) {
    std::optional<PlatformMarker> marker = markerOf(scenario_, id);
    if (marker.has_value() != view_.platforms().contains(id)) emit presenceChanged();
    if (marker)
        view_.setPlatform(std::move(*marker));
    else
        view_.removePlatform(id);
}

Work PlatformMarkers::follow() {
    // From where the time before this one was left, so that in a fast clock nobody stays behind.
    const auto& platforms = scenario_.platforms();
    for (std::size_t left = platforms.size(); left > 0 && !platforms.empty(); --left) {
        auto next = platforms.upper_bound(last_);
        if (next == platforms.end()) next = platforms.begin();
        last_ = next->first;
        const bool moves = next->second.track.moves();
        if (moves) show(last_);
        co_yield moves ? 4 : 1;
    }
}

}  // namespace sandbox
