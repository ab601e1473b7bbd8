#pragma once

#include <optional>
#include <vector>

#include "common/Vec3.h"
#include "common/Work.h"
#include "geo/Ecef.h"
#include "globe/OverlayScene.h"

namespace sandbox {

class Camera;

/// A sphere around everything that overlays draw, and around places, about the smallest.
struct SceneExtent {
    halCore::Ecef middle;
    double radius = 0.0;                ///< metres
    std::vector<halCore::Ecef> points;  ///< what is to be seen
};

/// Puts the extent into `extent`; nothing when there is none. Entries that are not shown count as well.
Work measureExtent(std::vector<OverlayScene::Entry> entries, std::vector<halCore::Ecef> places,
                   std::optional<SceneExtent>& extent);

/// Where to look, and from how far, to see an extent from straight above with a margin around it.
struct Outlook {
    halCore::Vec3 center;
    double range = 0.0;
};
/// `camera`: for the shape of its view.
Outlook outlookOn(const SceneExtent& extent, const Camera& camera);

}  // namespace sandbox
