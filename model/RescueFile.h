#pragma once

#include <cstdint>
#include <string>

namespace OverlayEditor {

/// What becomes of shapes that cannot be written to a rescue file.
enum class Unrescued : std::uint8_t {
    StayInEditor,
    StayInJournal,
    /// The user insists, and can take it back.
    AreGivenUp,
    /// Rather than that they are written to the directory for temporary files.
    AreLost
};

/// Writes the text of shapes that are about to be given up to a dated file among the quick shapes, "Unsaved
/// 2026-11-21 16-05-09.zel". The log says where it is, or why there is none. One that holds the text already
/// is as good as a new one; of all that lie there the twenty newest are kept.
/// \param otherwise what becomes of the shapes when that fails
/// \return its path, empty when it was not written
std::string writeRescueFile(const std::string& text, Unrescued otherwise);

}  // namespace OverlayEditor
