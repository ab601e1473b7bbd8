#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "format/SourceText.h"
#include "model/FileVersion.h"

namespace OverlayEditor {

/// What a document knows of the file that is edited.
struct FileState {
    /// The file that was loaded or saved last, empty for none.
    std::string name;
    /// As it was then.
    FileVersion known;
    /// What was saved last, where something was lost: it needs no copy for what is lost again.
    FileVersion saved;
    /// The digest of the overlay's text that is in it, and the platform that its positions count from.
    std::uint64_t kept = 0;
    unsigned long keptPlatform = 0;
    /// Whether any are offsets from there.
    bool keptOffsets = false;
    /// The text of which the shapes have blocks, null for none.
    std::shared_ptr<const halCore::ZEL::SourceText> source;
    /// Whether it was recovered, and is in no file yet.
    bool recovered = false;
    /// The platform of the scenario that it was recovered without, empty for none: a reference platform of
    /// the editor's own stands in for it.
    std::string awaited;
    /// The host's overlay of it; it may be gone.
    void* zel = nullptr;
};

}  // namespace OverlayEditor
