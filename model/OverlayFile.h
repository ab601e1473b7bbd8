#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/LossReport.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// Shapes that came from a file or a text, the caller's.
struct LoadResult {
    /// Empty when there are shapes; otherwise why there are none.
    std::string error;
    std::vector<std::unique_ptr<Shape>> shapes;
    /// Kind and name of each shape that was read but that the editor cannot hold: latlonaltbox "A".
    std::vector<std::string> leftOut;
    /// Whether there are offsets that name no reference; and the first that is named.
    bool fromNowhere = false;
    std::optional<halCore::Vec3> reference;
    /// What saving the shapes over the file would lose or change, by line. \see lossReport
    std::vector<halCore::ZEL::ParseMessage> losses;
    /// The text itself; the shapes know their blocks of it.
    std::shared_ptr<const halCore::ZEL::SourceText> source;
};

/// Reads the text of a file into shapes that are not yet in an overlay.
/// \param sourceName names the text in messages
/// \param converter what relative positions count from when they do not say it themselves, and what the
///        shapes keep; not owned, null for absolute
/// \param platformId what the shapes are attached to
LoadResult loadOverlayText(std::string text, const std::string& sourceName, const Preferences& preferences,
                           PointConverter* converter, unsigned long platformId);

}  // namespace OverlayEditor
