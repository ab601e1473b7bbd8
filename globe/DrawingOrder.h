#pragma once

#include <cstddef>
#include <vector>

#include "globe/OverlayScene.h"

namespace sandbox {

/// The shapes of an overlay, by their indices, in the order in which to draw them. That is the file's order,
/// unless nobody can tell: where all are lines and areas of one look, those that lie close together follow
/// each other, so that a look at one place need not touch the whole world.
std::vector<std::size_t> drawingOrder(const OverlayScene::Shapes& shapes);

}  // namespace sandbox
