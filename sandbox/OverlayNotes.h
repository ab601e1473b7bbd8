#pragma once

#include <string>
#include <vector>

#include "sandbox/view/OverlayScene.h"

namespace sandbox {

/// What the view does not show as the shapes ask for, one sentence each: heights above another datum than
/// WGS-84, and pictures, which it does not draw.
std::vector<std::string> notesOn(const OverlayScene::Shapes& shapes);

}  // namespace sandbox
