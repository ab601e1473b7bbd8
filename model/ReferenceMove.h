#pragma once

#include <optional>

#include "common/Vec3.h"
#include "geo/Angles.h"
#include "geo/OffsetGrid.h"
#include "geo/PointConverter.h"

namespace OverlayEditor {

/// Moves a form: what lay about one position lies about the converter's reference afterwards, at the same
/// distances to east, north and up. These are kept on the grid of offsets, so that they are the same after
/// any number of moves.
class ReferenceMove {
  public:
    /// \param target not owned; must outlive the object
    ReferenceMove(const halCore::Vec3& from, const PointConverter& target) : target_(target) {
        from_.setReferenceLla({from.lat(), halCore::wrapToPi(from.lon()), from.alt()}, 0);
    }

    /// Nothing when a point cannot be moved: a reference on a pole, a point beyond it.
    std::optional<halCore::Vec3> operator()(const halCore::Vec3& lla) const {
        const auto offset = offsetOf(from_, lla);
        return offset ? placeOf(target_, *offset) : std::nullopt;
    }

  private:
    PointConverter from_;
    const PointConverter& target_;
};

}  // namespace OverlayEditor
