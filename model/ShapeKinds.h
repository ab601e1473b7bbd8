#pragma once

#include "model/Preferences.h"
#include "model/ShapeRegistry.h"

namespace OverlayEditor {

/// Registers a prototype of every kind of shape that a user can make, in the order in which the editor offers
/// them. The prototypes keep the preferences.
void addAllKinds(ShapeRegistry& registry, const Preferences& preferences);

}  // namespace OverlayEditor
