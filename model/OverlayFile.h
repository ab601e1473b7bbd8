#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/LossReport.h"
#include "model/Overlay.h"

namespace OverlayEditor {

/// A shape that is not in a file because it is not complete.
struct SkippedShape {
    std::string name;
    /// It has been begun: at least it has a place.
    bool begun = false;
};
using SkippedShapes = std::vector<SkippedShape>;

/// What became of saving.
struct SaveResult {
    /// Empty when the file was written; otherwise why not, and then an old file stands untouched.
    std::string error;
    SkippedShapes skipped;
};

/// The text of a file with the overlay's shapes; empty when there is nothing to write.
std::string overlayText(const Overlay& overlay, SkippedShapes* skipped = nullptr);

/// The same for shapes without an overlay. \param converter null unless they are attached
std::string shapesText(const std::vector<std::unique_ptr<Shape>>& shapes, PointConverter* converter = nullptr,
                       SkippedShapes* skipped = nullptr);

/// Saves the overlay's shapes. An overlay with nothing to write is refused.
SaveResult saveOverlayFile(const Overlay& overlay, const std::string& path);

/// Shapes that came from a file or a text, the caller's.
struct LoadResult {
    /// Empty when there are shapes; otherwise why there are none.
    std::string error;
    /// Whether the log says so already.
    bool logged = false;
    std::vector<std::unique_ptr<Shape>> shapes;
    /// Kind and name of each shape that was read but that the editor cannot hold: latlonaltbox "A".
    std::vector<std::string> leftOut;
    /// Where offsets were read: what the file itself has them count from, when it says so; whether some had
    /// nothing but the converter; and whether there are absolute positions beside them.
    struct Offsets {
        std::optional<halCore::Vec3> reference;
        bool assumed = false;
        bool mixed = false;
    };
    std::optional<Offsets> offsets;
    /// What saving the shapes over the file would lose or change, by line. \see lossReport
    std::vector<halCore::ZEL::ParseMessage> losses;
};

/// Reads a file into shapes that are not yet in an overlay.
/// \param converter what relative positions count from when they do not say it themselves, and what the
///        shapes keep; not owned, null for absolute
/// \param platformId what the shapes are attached to
LoadResult loadOverlayFile(const std::string& path, const Preferences& preferences, PointConverter* converter,
                           unsigned long platformId);
/// The same from a text. \param sourceName names it in messages
LoadResult loadOverlayText(std::string_view text, const std::string& sourceName,
                           const Preferences& preferences, PointConverter* converter,
                           unsigned long platformId);

}  // namespace OverlayEditor
