#pragma once

#include <cstdint>
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

}  // namespace sandbox
