#pragma once

#include "common/Vec3.h"

namespace OverlayEditor::Utils {

/// Where a new point starts: on the surface below the eye of the host's view, altitude 0; (0, 0, 0) when
/// the host has no eye position. \return the host's code, 0 on success
int getDefaultLla(halCore::Vec3& lla);

}  // namespace OverlayEditor::Utils
