#pragma once

#include <string>

namespace OverlayEditor {

/// Writes the text of shapes that are about to be given up to a dated file among the quick shapes, "Unsaved
/// 2026-11-21 16-05-09.zel". The log says where it is, or why there is none. One that holds the text already
/// is as good as a new one; of all that lie there the twenty newest are kept.
/// \param atEnd in the directory for temporary files when it cannot be written there
/// \return its path, empty when it was not written
std::string writeRescueFile(const std::string& text, bool atEnd);

}  // namespace OverlayEditor
