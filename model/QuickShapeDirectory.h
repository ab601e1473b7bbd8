#pragma once

#include <string>

namespace OverlayEditor {

/// The host's setting with the directory that the user chose for quick shapes.
inline constexpr const char* kQuickShapeDirectoryKey = "AutoSaveZelDir";

/// Where quick shapes are saved, without a slash at the end: the user's choice, or a directory below HOME
/// when that is empty, or the current one when there is no HOME.
std::string quickShapeDirectory();

/// The same, made if it is not there. Where that fails, saving a file in it fails too, and says why.
std::string makeQuickShapeDirectory();

}  // namespace OverlayEditor
