#pragma once

#include <cstdint>
#include <vector>

#include "geo/Ecef.h"
#include "model/Shape.h"
#include "tools/PUDrawPath.h"

namespace OverlayEditor {

/// The lines that make up a shape's outline, worked out anew only when the shape has changed or been carried.
/// Of a body it is the one at its centre's altitude; of a label there is none.
class ShapeOutline {
  public:
    /// \param revision of the shape's overlay: another shape may come to stand at the address of one that is
    /// gone
    const std::vector<PluginUtils::PUDrawPath>& of(const Shape& shape, std::uint64_t revision);

  private:
    void build_(const Shape& shape);

    std::vector<PluginUtils::PUDrawPath> paths_;
    const Shape* shape_ = nullptr;
    std::uint64_t revision_ = 0;
    std::uint64_t frame_ = 0;
};

}  // namespace OverlayEditor
