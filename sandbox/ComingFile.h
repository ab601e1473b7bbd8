#pragma once

#include "common/Slice.h"

namespace sandbox {

/// A file that is being read, and shown once all of it is there.
class ComingFile {
  public:
    ComingFile() = default;
    virtual ~ComingFile() = default;
    ComingFile(const ComingFile&) = delete;
    ComingFile& operator=(const ComingFile&) = delete;

    /// Reads on. \return whether nothing is left to be read
    virtual bool goOn(Slice& slice) = 0;
    /// Reads all that is left, and shows it.
    virtual void finish() {
        Slice whole;
        goOn(whole);
        show(whole);
    }
    /// How much of it is read and shown.
    virtual int percent() const = 0;
    /// How long there is nothing to do, as others are at work.
    virtual int pauseMilliseconds() const { return 0; }
    /// Once it is read: shows it, and tells what is wrong with it. \return whether nothing is left to be
    /// shown
    virtual bool show(Slice& slice) = 0;
    /// Whether anything of it is shown so far.
    virtual bool isShown() const = 0;
};

}  // namespace sandbox
