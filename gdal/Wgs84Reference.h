#pragma once

#include <ogr_spatialref.h>

namespace exchange {

/// Releases where it is the last that refers.
struct ReleaseReference {
    void operator()(OGRSpatialReference* reference) const { reference->Release(); }
};
using ReferencePtr = std::unique_ptr<OGRSpatialReference, ReleaseReference>;

/// WGS 84, longitudes first, as data have them.
inline ReferencePtr wgs84Reference() {
    ReferencePtr reference(new OGRSpatialReference);
    reference->SetWellKnownGeogCS("WGS84");
    reference->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return reference;
}

}  // namespace exchange
