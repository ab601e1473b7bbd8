#pragma once

namespace sandbox {

/// What the view shows beside the earth and the overlays.
struct MapOptions {
    bool graticule = false;  ///< with the names of its lines
    bool land = false;       ///< land and sea in colours where the picture of the earth is too coarse
    bool coastlines = false;
    bool borders = false;
    bool names = false;  ///< of countries
    bool scaleBar = false;

    friend bool operator==(const MapOptions&, const MapOptions&) = default;
};

}  // namespace sandbox
