#pragma once

#include <functional>

#include "globe/map/MapData.h"

namespace sandbox {

/// A box of latitudes and longitudes, radians; `west` may lie below -180 degrees, `east` above 180.
struct MapBox {
    double south = 0.0;
    double north = 0.0;
    double west = 0.0;
    double east = 0.0;
};

/// Cuts the paths of a level to a box, longitudes brought to its turn.
///
/// What is outside is drawn in to the box's edge, so that each coast stays a closed ring, and land remains
/// land at every place inside.
class MapClip {
  public:
    /// Begins a path; `closed`: its last point joins the first.
    std::function<void(MapPath::Kind kind, bool closed)> begin;
    /// The next point. `drawn`: the way from the point before is the path's own, and not along the box's edge
    /// or to the pole.
    std::function<void(double lat, double lon, bool drawn)> point;
    std::function<void()> end;

    void run(const MapLevel& level, const MapBox& box) const;
};

}  // namespace sandbox
