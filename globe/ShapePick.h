#pragma once

#include <cstddef>
#include <optional>

#include "globe/OverlayScene.h"

namespace sandbox {

class Camera;

/// A shape of an overlay, by its place in the entry.
struct PickedShape {
    OverlayScene::Id overlay = 0;
    std::size_t shape = 0;
};

/// The shape that is seen at a pixel: the one on top of those with a line, a point, a label or an edge of a
/// body within a few pixels; else the topmost one that fills the place.
std::optional<PickedShape> pickShape(const OverlayScene& scene, const Camera& camera, double x, double y);

}  // namespace sandbox
