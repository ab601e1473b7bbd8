#pragma once

#include <iostream>
#include <memory>
#include <streambuf>
#include <string>

#include "format/KeptLines.h"

namespace OverlayEditor {

/// Text written through a stream and then read through another, without a copy in between. The memory is
/// kept for the next user, and so are the lines of a long list of points: a shape that is being dragged is
/// written as text at every mouse move. A stream swallows what goes wrong while it writes: a text that is not
/// whole cannot be had from here.
class TextBuffer {
  public:
    /// An empty buffer, given back when the pointer dies. Several may be out at a time.
    struct GiveBack {
        void operator()(TextBuffer* buffer) const;
    };
    using Ptr = std::unique_ptr<TextBuffer, GiveBack>;
    static Ptr take();
    /// Empties it.
    void restart();

    std::ostream& out() { return out_; }
    /// Reads what was written so far, from its beginning. \throws as text()
    std::istream& in();
    /// What was written so far. \throws std::bad_alloc when there was not enough memory for all of it
    const std::string& text() const;

  private:
    class Memory : public std::streambuf {
      public:
        std::string text;
        void rewind() { setg(text.data(), text.data(), text.data() + text.size()); }

      protected:
        int_type overflow(int_type c) override;
        std::streamsize xsputn(const char* from, std::streamsize count) override;
        pos_type seekoff(off_type offset, std::ios_base::seekdir from,
                         std::ios_base::openmode which) override;
        pos_type seekpos(pos_type to, std::ios_base::openmode which) override;
    };

    TextBuffer();

    Memory memory_;
    halCore::ZEL::KeptLines lines_;
    std::ostream out_;
    std::istream in_;
};

}  // namespace OverlayEditor
