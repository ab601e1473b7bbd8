#include "globe/Flight.h"

#include <algorithm>
#include <cmath>

#include "geo/Angles.h"
#include "geo/GeodesicPath.h"

namespace sandbox {

using halCore::kTwoPi;

Flight::Flight(const Camera& from, const Camera& to) : from_(from), to_(to) {
    const halCore::DistanceAndAzimuth way = geodesicBetween(from.center(), to.center());
    meters_ = way.meters;
    azimuth_ = way.azimuthAtStart;
}

Camera Flight::at(double share) const {
    const double t = std::clamp(share, 0.0, 1.0);
    const double eased = t * t * (3.0 - 2.0 * t);
    Camera camera = from_;
    camera.setCenter(t >= 1.0 ? to_.center() : geodesicFrom(from_.center(), azimuth_, meters_ * eased));
    const double highest = std::max({from_.range(), to_.range(), meters_});
    const double level = std::lerp(std::log(from_.range()), std::log(to_.range()), eased);
    const double climb =
        4.0 * eased * (1.0 - eased) * (std::log(highest) - std::log(std::max(from_.range(), to_.range())));
    const double turn = std::remainder(to_.azimuth() - from_.azimuth(), kTwoPi);
    camera.setRangeAzimuthElevation(t >= 1.0 ? to_.range() : std::exp(level + climb),
                                    t >= 1.0 ? to_.azimuth() : from_.azimuth() + turn * eased,
                                    std::lerp(from_.elevation(), to_.elevation(), eased));
    return camera;
}

}  // namespace sandbox
