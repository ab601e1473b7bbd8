#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "geo/Ecef.h"
#include "globe/OverlayScene.h"
#include "globe/PlatformMarker.h"
#include "sandbox/scenario/Scenario.h"

namespace sandbox {

/// What a view shows of a platform at the scenario's time; nothing while it is nowhere.
std::optional<PlatformMarker> markerOf(const Scenario& scenario, std::uint64_t platform);
std::optional<PlatformMarker> markerOf(std::uint64_t id, const Scenario::Platform& platform, double seconds);
/// What the offsets of overlays on it count from, at that time.
std::optional<OverlayReference> referenceOf(const Scenario& scenario, std::uint64_t platform);

/// Where all platforms are at that time, those that are anywhere.
std::vector<halCore::Ecef> placesOf(const Scenario& scenario);

}  // namespace sandbox
