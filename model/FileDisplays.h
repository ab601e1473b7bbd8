#pragma once

#include <string>
#include <vector>

namespace OverlayEditor {

/// Where the host shows a file, on whatever platform, and under whatever name: through a link, too.
std::vector<void*> displaysOf(const std::string& fileName);
/// The one to edit the file in place of, null for none: one that has the very name, if there is one.
void* displayOf(const std::string& fileName);

}  // namespace OverlayEditor
