#pragma once

namespace sandbox {

/// What the view shows beside the earth and the overlays.
struct MapOptions {
    bool graticule = false;  ///< with the names of its lines
    bool coastlines = false;
    bool borders = false;
    bool scaleBar = false;

    friend bool operator==(const MapOptions&, const MapOptions&) = default;
};

}  // namespace sandbox
