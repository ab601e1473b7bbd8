#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "model/Attachment.h"
#include "model/FileVersion.h"
#include "model/ShapeState.h"

namespace OverlayEditor {

/// What a journal holds beside the shapes.
struct JournalHead {
    std::string fileName;
    FileVersion known;
    Attachment::State attachment;
};

/// Writes a journal: records that follow one another, each of which tells whether it is whole. A shape that
/// has changed is written again, but of its points only those that are other ones.
class JournalWriter {
  public:
    /// Begins with a shape as it is now. Nothing else may be begun before next() has ended it.
    void begin(std::uint64_t number, ShapeStatePtr state);
    /// Appends a record. \return whether the shape is whole now
    bool next(std::string& out);
    void gone(std::uint64_t number, std::string& out);
    /// All that was written until now belongs together.
    void head(const JournalHead& head, std::string& out);
    /// What is written next does not build upon what was.
    void restart() { shapes_.clear(); }

  private:
    struct Written {
        ShapeStatePtr state;
        std::uint32_t version = 0;
    };
    std::map<std::uint64_t, Written> shapes_;
    std::uint64_t number_ = 0;
    ShapeStatePtr state_;
    /// Which of the shape's lists of points is being written, and from where on.
    std::size_t list_ = 0;
    std::size_t at_ = 0;
};

/// What can be read of a journal: the last state that is whole, or, where the file is damaged, whatever there
/// is.
struct JournalContents {
    JournalHead head;
    std::map<std::uint64_t, ShapeStatePtr> shapes;
    /// Whether something was lost.
    bool damaged = false;
};
JournalContents readJournal(std::string_view text);

}  // namespace OverlayEditor
