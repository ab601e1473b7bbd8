#pragma once

#include "geo/Angles.h"

namespace OverlayEditor {

/// Follows a line from point to point: a longitude becomes the one of the same meridian that is nearest to
/// the one before. The box around a line across 180 degrees stays one piece.
class LongitudeWalk {
  public:
    double next(double longitude) {
        if (started_) longitude = at_ + halCore::wrapToPi(longitude - at_);
        started_ = true;
        return at_ = longitude;
    }

  private:
    bool started_ = false;
    double at_ = 0.0;
};

}  // namespace OverlayEditor
