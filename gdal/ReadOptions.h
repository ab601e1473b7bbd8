#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "format/Placement.h"

namespace exchange {

/// How an overlay is shown to a GIS.
struct ReadOptions {
    bool oneLayer = false;
    bool split = true;
    /// Metres; 0 is the default of each shape.
    double tolerance = 0.0;
    /// For offsets without a reference of their own.
    std::optional<halCore::ZEL::Reference> about;
};

/// Reads "latitude,longitude[,altitude[,heading]]", degrees and metres; nothing when it is none.
std::optional<halCore::ZEL::Reference> placeOfText(std::string_view text);
std::string textOfPlace(const halCore::ZEL::Reference& place);

}  // namespace exchange
