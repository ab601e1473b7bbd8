#pragma once

#include <QString>
#include <optional>

#include "common/Vec3.h"

namespace sandbox {

/// Reads a place as the editor's fields do: "21.3N 158W", "158 W, 21 18 30 N", "4Q FJ 12345 67890". Latitude
/// and longitude in radians, altitude 0; else nothing, and `reason` says why.
std::optional<halCore::Vec3> readPlace(const QString& text, QString& reason);

}  // namespace sandbox
