#pragma once

#include <span>
#include <vector>

#include "globe/DrawList.h"
#include "globe/Sprites.h"

namespace sandbox {

class Camera;

TextLook lookOf(const DrawList::Label& label);

struct PlacedLabel {
    const DrawList::Label* label = nullptr;
    double x = 0.0;  ///< where its place appears, widget pixels
    double y = 0.0;
};

/// The labels to draw, in the given order: those whose place is in sight. Of labels that overlap and differ
/// in priority only those with the higher one remain; equal ones do not drive each other out.
std::vector<PlacedLabel> placeLabels(std::span<const DrawList::Label* const> labels, const Camera& camera);

}  // namespace sandbox
