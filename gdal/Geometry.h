#pragma once

#include <memory>

#include <ogr_geometry.h>

#include "gdal/Outline.h"

namespace exchange {

/// An outline as OGR has it, in degrees and metres; null for none. Always with altitudes.
/// \param split cut what leads across 180 degrees, as GeoJSON's rule asks; otherwise the longitudes of curves
///        lead on beyond it, and given points stay as they stand
/// \param altered whether the vertices are no longer those of the outline
std::unique_ptr<OGRGeometry> geometryOf(const Outline& outline, bool split, bool& altered);

/// The type of the geometry that a shape will have, as far as that is known without working it out.
OGRwkbGeometryType geometryTypeOf(const halCore::ZEL::ZelShape& shape);

}  // namespace exchange
