#pragma once

#include <optional>

#include "geo/PointConverter.h"

namespace OverlayEditor {

/// The offset of a place from a converter's reference, to the nearest tenth of a micrometre where that leads
/// back to the place (to a micrometre on the ground), so that texts have few digits; otherwise with all
/// digits, as close to a pole. Nothing when no offset leads there.
std::optional<halCore::Vec3> offsetOf(const PointConverter& frame, const halCore::Vec3& lla);

/// Where an offset leads; nothing when it leads to no place.
std::optional<halCore::Vec3> placeOf(const PointConverter& frame, const halCore::Vec3& offset);

}  // namespace OverlayEditor
