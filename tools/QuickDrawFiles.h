#pragma once

#include <string>

namespace OverlayEditor {

/// Where quick shapes are saved, without a slash at the end: the user's choice, or a directory below HOME
/// when that is empty, or the current one when there is no HOME.
std::string quickShapeDirectory(const std::string& chosen);

/// The highest number in the names of the quick shapes' files in a directory ("Circle_12.zel"), 0 for none.
int highestQuickShapeNumber(const std::string& directory);

/// The host's screen-text record that names the platform to which quick shapes are attached.
std::string attachNote(std::string platformName);

}  // namespace OverlayEditor
