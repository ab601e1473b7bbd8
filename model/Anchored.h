#pragma once

#include "common/Vec3.h"

namespace OverlayEditor {

/// A shape that can be attached.
class Anchored {
  public:
    /// What comes to lie on the reference when the shape is attached by its centre.
    virtual halCore::Vec3 anchorPlace() const = 0;

  protected:
    ~Anchored() = default;
};

}  // namespace OverlayEditor
