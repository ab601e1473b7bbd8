#pragma once

#include <optional>
#include <vector>

#include "common/Vec3.h"
#include "geo/Ecef.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// Where a shape is held: of round shapes the centre, of rectangles theirs, of an orbit the middle between
/// the centres, of lines, polygons and free drawings the middle of all their sides, which stays where it is
/// when they turn.
class ShapeMiddle {
  public:
    /// Nothing for what is not complete or has no place, for a label, which is one point, and for what lies
    /// all about the earth. Of a line that was looked at before only points that changed are worked out anew.
    std::optional<halCore::Vec3> of(const Shape& shape);

  private:
    void place_(const std::vector<halCore::Vec3>& points);

    /// Of the last line or polygon, and where they are.
    std::vector<halCore::Vec3> points_;
    std::vector<halCore::Ecef> places_;
};

}  // namespace OverlayEditor
