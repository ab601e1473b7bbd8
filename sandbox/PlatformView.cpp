#include "sandbox/PlatformView.h"

#include "sandbox/scenario/Scenario.h"

namespace sandbox {

std::optional<PlatformMarker> markerOf(const Scenario& scenario, std::uint64_t platform) {
    const Scenario::Platform* found = scenario.find(platform);
    return found ? markerOf(platform, *found, scenario.time()) : std::nullopt;
}

std::optional<PlatformMarker> markerOf(std::uint64_t id, const Scenario::Platform& platform, double seconds) {
    const auto point = platform.track.at(seconds);
    if (!point) return std::nullopt;
    return PlatformMarker{.id = id,
                          .name = platform.name,
                          .position = {point->latRad, point->lonRad, point->altMeters},
                          .heading = point->headingRad,
                          .icon = platform.icon.text()};
}

std::optional<OverlayReference> referenceOf(const Scenario& scenario, std::uint64_t platform) {
    const auto point = scenario.at(platform, scenario.time());
    if (!point) return std::nullopt;
    return OverlayReference{
        {point->latRad, point->lonRad, point->altMeters}, point->headingRad, point->pitchRad, point->rollRad};
}

std::vector<halCore::Ecef> placesOf(const Scenario& scenario) {
    std::vector<halCore::Ecef> places;
    for (const auto& [id, platform] : scenario.platforms())
        if (const auto point = scenario.at(id, scenario.time()))
            places.push_back(halCore::toEcef({point->latRad, point->lonRad, point->altMeters}));
    return places;
}

}  // namespace sandbox
