#pragma once

#include <span>

namespace OverlayEditor {

/// The editor's icon, 16 by 16 pixels, as the bytes of a PNG file.
std::span<const unsigned char> editorIconPng();

}  // namespace OverlayEditor
