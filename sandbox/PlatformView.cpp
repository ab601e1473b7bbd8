#include "sandbox/PlatformView.h"

#include "sandbox/scenario/Scenario.h"

namespace sandbox {

std::optional<PlatformMarker> markerOf(const Scenario& scenario, std::uint64_t platform) {
    const Scenario::Platform* found = scenario.find(platform);
    const auto point = scenario.at(platform, scenario.time());
    if (!found || !point) return std::nullopt;
    return PlatformMarker{.id = platform,
                          .name = found->name,
                          .position = {point->latRad, point->lonRad, point->altMeters},
                          .heading = point->headingRad,
                          .icon = found->icon.text()};
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
