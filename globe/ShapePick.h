#pragma once

#include <cstddef>
#include <optional>

#include "common/Work.h"
#include "globe/Camera.h"
#include "globe/OverlayScene.h"

namespace sandbox {

/// A shape of an overlay, by its place in the entry.
struct PickedShape {
    OverlayScene::Id overlay = 0;
    std::size_t shape = 0;

    friend bool operator==(const PickedShape&, const PickedShape&) = default;
};

/// Looks for the shape that is seen at a pixel: the one on top of those with a line, a point, a label or an
/// edge of a body within a few pixels; else the topmost one that fills the place. It looks at what the scene
/// has been when it was begun, and puts what it finds into `picked`, nothing before it is done.
Work pickShape(const OverlayScene& scene, Camera camera, double x, double y,
               std::optional<PickedShape>& picked);

}  // namespace sandbox
