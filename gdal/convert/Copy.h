#pragma once

#include <gdal_priv.h>

#include "gdal/convert/Formats.h"

namespace exchange {

/// How much could not be taken over as it was.
struct Copied {
    std::size_t features = 0;
    std::size_t failed = 0;
    /// Areas that became lines, for want of areas.
    std::size_t areasAsLines = 0;
    /// Features without a geometry that the target cannot do without.
    std::size_t withoutPlace = 0;
    std::size_t texts = 0;  ///< longer than a Shapefile holds
};

/// Copies all layers with their columns and styles.
/// \param name of the target's layers, or what their names begin with
Copied copyLayers(GDALDataset& source, GDALDataset& target, const Format& format, const std::string& name);

}  // namespace exchange
