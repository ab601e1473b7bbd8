#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Slice.h"
#include "format/SourceText.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// Shapes that came from a file or a text, the caller's.
struct LoadResult {
    /// Empty when there is something that can be edited or kept, or nothing that is not understood: a file
    /// whose last shape was deleted is an overlay. Otherwise why there is nothing.
    std::string error;
    /// Shown or not, as the text says.
    std::vector<std::unique_ptr<Shape>> shapes;
    /// Kind and name of each shape that was read but that the editor cannot hold: latlonaltbox "A".
    std::vector<std::string> leftOut;
    /// Whether there are offsets that name no reference; and the first that is named.
    bool fromNowhere = false;
    std::optional<halCore::Vec3> reference;
    /// What of the text stays as it is, in words: "1 latlonaltbox and 2 blocks with errors". Empty for
    /// nothing.
    std::string kept;
    std::size_t keptBlocks = 0;
    /// Lines that the reader did not understand, but for those of blocks that stay as they are.
    std::size_t faultyLines = 0;
    /// The text itself, also when there is nothing; the shapes know their blocks of it.
    std::shared_ptr<const halCore::ZEL::SourceText> source;
};

/// Whether a text has offsets that count from the platform on which it is shown, as none is named.
bool hasLooseOffsets(std::string_view text);

/// Reads the text of a file into shapes that are not yet in an overlay, a slice at a time.
class OverlayReading {
  public:
    /// \param sourceName names the text in messages
    /// \param converter what relative positions count from when they do not say it themselves, and what the
    ///        shapes keep; not owned, null for absolute. What names no position stands on its platform, if
    ///        any, or among such offsets; else nowhere.
    /// \param platformId what the shapes are attached to
    OverlayReading(std::string text, std::string sourceName, const Preferences& preferences,
                   PointConverter* converter, unsigned long platformId);
    ~OverlayReading();
    OverlayReading(const OverlayReading&) = delete;
    OverlayReading& operator=(const OverlayReading&) = delete;

    /// \return whether all is read: then nothing more is to be called but take()
    bool goOn(Slice& slice);
    /// How much is read, from 0 to 1.
    double part() const;
    LoadResult take();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The same at once.
LoadResult loadOverlayText(std::string text, const std::string& sourceName, const Preferences& preferences,
                           PointConverter* converter, unsigned long platformId);

}  // namespace OverlayEditor
