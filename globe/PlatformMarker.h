#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory_resource>
#include <string>

#include "common/Vec3.h"

namespace sandbox {

/// A platform as the view shows it: a small symbol of constant size with its name beside it.
struct PlatformMarker {
    std::uint64_t id = 0;
    std::string name;        ///< UTF-8
    halCore::Vec3 position;  ///< latitude, longitude (radians), altitude (metres)
    double heading = 0.0;    ///< radians clockwise from north
    std::string icon;        ///< "x2" is a diagonal cross; anything else an arrowhead along the heading
};

/// Hands over one platform after the other, in the order in which they are drawn: a view has them, a picture
/// need not hold millions. Without one there are none.
using EachPlatform = std::function<void(const std::function<void(const PlatformMarker&)>&)>;

/// Markers by the platforms' numbers, in whose order they are drawn.
using MarkerMap = std::pmr::map<std::uint64_t, PlatformMarker>;

/// \param platforms to outlive the result
inline EachPlatform eachOf(const MarkerMap& platforms) {
    return [&platforms](const auto& take) {
        for (const auto& [id, platform] : platforms) take(platform);
    };
}

}  // namespace sandbox
