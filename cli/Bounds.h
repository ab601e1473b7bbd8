#pragma once

#include <optional>

#include "common/Vec3.h"
#include "format/ZelShape.h"

namespace cli {

/// The smallest box about positions: latitude, longitude (degrees) and altitude (metres), or east, north
/// and up (metres).
class Bounds {
  public:
    void add(const halCore::Vec3& position);
    void add(const Bounds& other);

    bool empty() const { return !low_; }
    /// Only for bounds that are not empty.
    const halCore::Vec3& low() const { return *low_; }
    const halCore::Vec3& high() const { return *high_; }

  private:
    std::optional<halCore::Vec3> low_;
    std::optional<halCore::Vec3> high_;
};

/// What a shape gives as positions: its points, centres or sides. A radius does not count.
struct Extent {
    std::size_t points = 0;
    Bounds bounds;
};

Extent extentOf(const halCore::ZEL::ZelShape& shape);

}  // namespace cli
