#pragma once

#include <QString>
#include <optional>
#include <string>

#include "common/Vec3.h"

namespace sandbox {

/// Reads a place as the editor's fields read its parts: two angles, parted by a comma or else by the blank
/// where both halves are angles ("21.3N 158W", "21 18 30, -158"), or an MGRS reference ("4Q FJ 12345 67890").
/// Latitude and longitude in radians, altitude 0; else nothing, and `reason` says why.
std::optional<halCore::Vec3> readPlace(const QString& text, QString& reason);

}  // namespace sandbox
