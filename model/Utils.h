#pragma once

#include <cstdint>
#include <string>

#include "common/Vec3.h"

namespace OverlayEditor::Utils {

/// Where a new point starts: on the surface below the eye of the host's view, altitude 0; (0, 0, 0) when
/// the host has no eye position. \return the host's code, 0 on success
int getDefaultLla(halCore::Vec3& lla);

/// Where a platform of the host is now. \return 0 on success; otherwise it has no place and `lla` is
/// unchanged
int getPlatformLla(std::uint64_t id, halCore::Vec3& lla);

/// The name of a platform of the host, "Unknown" when the host does not know it.
std::string platformName(std::uint64_t id);

}  // namespace OverlayEditor::Utils
