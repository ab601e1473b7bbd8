#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "model/History.h"
#include "model/JournalFile.h"
#include "model/JournalText.h"
#include "pi/PICommon.h"

namespace OverlayEditor {

/// Keeps on the disk what an overlay is that has changed since it was loaded or saved, so that a host that
/// ends without a word costs a second's work at most. It writes in the pauses between the host's entries, a
/// little at a time.
class Journal {
  public:
    /// \param history of the overlay, outlives the journal
    /// \param head what is written beside the shapes
    Journal(History& history, std::function<JournalHead()> head);
    /// Leaves it: whoever has saved or rescued what it holds, and could, has ended it.
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    /// Something may have changed.
    void notice();
    /// What the overlay is when this entry is over is kept elsewhere, in its file.
    void settle();
    /// What the overlay is now is kept nowhere else.
    void unsettle();
    /// An older journal holds what the overlay is now: it goes when this one does.
    void adopt(std::unique_ptr<JournalFile> file);
    /// Its files go.
    void end();
    /// Its files stay, to be recovered.
    void leave();

    int onTimeout(PIObject* sender, void* data);
    int onTurn(PIObject* sender, void* data);

  private:
    static constexpr std::uint64_t kNoRest = ~std::uint64_t{0};

    void arm_(std::int32_t milliseconds);
    /// \return whether the overlay is as it was when it was settled
    bool isSettled_() const;
    void write_();
    void open_();
    /// Appends a little of what has changed. \return whether that was all
    bool appendSome_();
    /// The next shape that the file does not hold as it is, null for none.
    std::optional<std::uint64_t> nextPending_();
    void flush_();

    History& history_;
    std::function<JournalHead()> head_;
    JournalWriter writer_;
    std::unique_ptr<JournalFile> file_;
    /// Files that go as soon as this one holds all of theirs.
    std::vector<std::unique_ptr<JournalFile>> older_;
    /// Shapes that the file does not hold as they are: these, and all from a number on.
    std::set<std::uint64_t> pending_;
    std::uint64_t rest_ = kNoRest;
    bool isWriting_ = false;
    bool headPending_ = false;
    std::string buffer_;
    std::size_t written_ = 0;
    /// How long the file was when it held everything once.
    std::size_t base_ = 0;
    bool failed_ = false;

    /// What is kept elsewhere, and the shapes that differ from it.
    bool settling_ = false;
    ShapeStates settled_;
    Attachment::State settledAttachment_;
    std::set<std::uint64_t> differing_;
    bool unsettled_ = false;

    PICommon::Timeout timeout_;
    CallbackList<Journal> callbacks_{this};
    FunctorTwoParams__* const onTimeout_ = callbacks_.make(&Journal::onTimeout, Arrival::AtOnce);
    FunctorTwoParams__* const onTurn_ = callbacks_.make(&Journal::onTurn);
};

/// Journals of hosts that ended without a word, the newest first: where one would be written now, and where
/// the last one was. \see JournalFile::abandonedIn
std::vector<std::string> abandonedJournals();
/// Whether other processes hold some there.
bool journalsAreHeld();

}  // namespace OverlayEditor
