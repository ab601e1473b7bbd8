#pragma once

#include <vector>

#include "globe/Camera.h"
#include "globe/DrawList.h"

namespace sandbox {

/// How near the solid bodies of a picture are, pixel by pixel, to tell what they hide.
class DepthMap {
  public:
    explicit DepthMap(const Camera& camera);

    void add(const DrawList::Mesh& body);
    bool hides(const halCore::Ecef& position) const;

  private:
    struct Corner {
        double x, y;
        double nearness;  ///< 1 / depth
    };
    Corner corner(const halCore::Ecef& position) const;
    void add(const Corner& a, const Corner& b, const Corner& c);

    const Camera& camera_;
    std::vector<float> nearness_;
    bool empty_ = true;
};

}  // namespace sandbox
