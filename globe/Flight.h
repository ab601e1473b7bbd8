#pragma once

#include "globe/Camera.h"

namespace sandbox {

/// A smooth way from one view to another: along the geodesic, high enough on the way to see both ends.
class Flight {
  public:
    Flight(const Camera& from, const Camera& to);

    /// `share` of the way, 0 to 1; at 1 exactly the end. The size of the view is that of `from`.
    Camera at(double share) const;

  private:
    Camera from_;
    Camera to_;
    double meters_;
    double azimuth_;
};

}  // namespace sandbox
