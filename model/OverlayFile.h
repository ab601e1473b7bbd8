#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Slice.h"
#include "format/ParseReport.h"
#include "format/SourceText.h"
#include "format/ZelShape.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// What a text as a whole says of offsets: where all its shapes come to stand depends on it.
struct TextOffsets {
    /// Whether there are offsets that name no reference; and the first that is named.
    bool fromNowhere = false;
    std::optional<halCore::Vec3> reference;

    /// Adds what the next shape says, or the next part of the text.
    void note(const halCore::ZEL::ZelShape& shape);
    void append(const TextOffsets& next);
};

/// Counts things of a kind in the order in which they come.
class KindCounts {
  public:
    void add(const std::string& one, const std::string& many, std::size_t number = 1);
    void add(const KindCounts& next) {
        for (const Count& count : next.counts_) add(count.one, count.many, count.number);
    }
    std::size_t total() const;
    /// "1 latlonaltbox, 2 cones and 3 blocks with errors"; empty for nothing.
    std::string text() const;

  private:
    struct Count {
        std::string one;
        std::string many;
        std::size_t number = 0;
    };
    std::vector<Count> counts_;
};

/// What cannot be edited of a text, or of parts of one together.
struct LoadRemarks {
    /// What of the text stays as it is.
    KindCounts kept;
    /// Lines that the reader did not understand, but for those of blocks that stay as they are.
    std::size_t faultyLines = 0;
    /// Shapes that are left out with a message: the first ones with one of their own.
    std::size_t leftOut = 0;

    void append(const LoadRemarks& next);
    /// Says how many shapes were left out without a message of their own.
    void tellLeftOut(const std::string& sourceName) const;
    /// Says the rest, of a text that is loaded.
    void tell(const std::string& sourceName) const;
};

/// Says what the reader says of a text when it has no report to write to, without drowning what else is said.
void tellMessages(const halCore::ZEL::ParseReport& report, const std::string& sourceName);

/// The error of a text that has something in it, but no shape.
inline constexpr const char* kNoShapes = "no valid shapes found";

/// Where a text stands that is a part of another, and what must be known of that before the part is read.
struct TextPart {
    std::size_t linesBefore = 0;
    /// The whole text's, see SourceText::lineEnd.
    std::string_view lineEnd;
    TextOffsets offsets;
    /// \see LoadRemarks::leftOut
    std::size_t leftOutBefore = 0;
};

/// Shapes that came from a file or a text, the caller's.
struct LoadResult : TextOffsets, LoadRemarks {
    /// Empty when there is something that can be edited or kept, or nothing that is not understood: a file
    /// whose last shape was deleted is an overlay. Otherwise why there is nothing.
    std::string error;
    /// Shown or not, as the text says.
    std::vector<std::unique_ptr<Shape>> shapes;
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
    /// \param part null for a whole text. Of a part nothing is said but why single shapes are left out, and
    ///        one without shapes is no error.
    OverlayReading(std::string text, std::string sourceName, const Preferences& preferences,
                   PointConverter* converter, unsigned long platformId, const TextPart* part = nullptr);
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
