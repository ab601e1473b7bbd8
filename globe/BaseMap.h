#pragma once

#include "globe/MapOptions.h"
#include "globe/OverlayScene.h"

namespace sandbox {

/// The world's coastlines and borders (Natural Earth, 1:110 million): overlay files that are part of the
/// program, drawn as overlays are, in the colours of a map. Read when they are first shown.
class BaseMap {
  public:
    void show(const MapOptions& options);
    const OverlayScene& scene() const { return scene_; }

  private:
    OverlayScene scene_;
    OverlayScene::Id coastlines_ = 0;
    OverlayScene::Id borders_ = 0;
};

}  // namespace sandbox
