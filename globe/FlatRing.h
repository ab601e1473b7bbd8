#pragma once

#include <vector>

namespace sandbox {

/// A point on a plane, with the altitude of what lies there.
struct Flat {
    double x = 0.0;
    double y = 0.0;
    double altitude = 0.0;
};

/// The last point joins the first.
using FlatRing = std::vector<Flat>;

}  // namespace sandbox
