#include "model/Journal.h"

#include <chrono>
#include <utility>

#include "common/Notify.h"
#include "model/QuickShapeDirectory.h"
#include "pi/EntryScope.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

namespace {

/// From a change to the first bytes, and from some bytes to the next.
constexpr std::int32_t kDelayMilliseconds = 100;
constexpr std::int32_t kPauseMilliseconds = 2;
/// So long the interface may wait.
constexpr std::chrono::microseconds kAtOnce{400};
constexpr std::size_t kBufferBytes = std::size_t{128} << 10;
/// A file that has grown by so much, and to several times what it need be, is written anew.
constexpr std::size_t kSlackBytes = std::size_t{4} << 20;
constexpr std::size_t kSlackFactor = 3;
/// The host's setting with the directory of the last one: users may choose another meanwhile.
constexpr const char* kDirectoryKey = "OverlayEditorJournalDirectory";

std::set<std::string> journalDirectories() {
    std::set<std::string> directories{quickShapeDirectory()};
    if (std::string last = PIGUI::PIRegistry::getValue(kDirectoryKey); !last.empty())
        directories.insert(std::move(last));
    return directories;
}

}  // namespace

std::vector<std::string> abandonedJournals() {
    return JournalFile::abandonedIn(journalDirectories());
}

bool journalsAreHeld() {
    return JournalFile::anyHeldIn(journalDirectories());
}

Journal::Journal(History& history, std::function<JournalHead()> head)
    : history_(history),
      head_(std::move(head)),
      settled_(history.states()),
      settledAttachment_(history.attachment()) {
    history_.setEntryListener([this] { notice(); });
}

Journal::~Journal() {
    history_.setEntryListener({});
    leave();
}

void Journal::notice() {
    const std::vector<std::uint64_t> changed = history_.takeChanged();
    if (std::exchange(settling_, false)) {
        settled_ = history_.states();
        settledAttachment_ = history_.attachment();
        differing_.clear();
        unsettled_ = false;
        end();
        return;
    }
    for (const std::uint64_t number : changed) {
        const auto now = history_.states().find(number);
        const auto then = settled_.find(number);
        const bool is = now != history_.states().end();
        const bool was = then != settled_.end();
        if (is == was && (!is || now->second == then->second || *now->second == *then->second))
            differing_.erase(number);
        else
            differing_.insert(number);
    }
    // Of no shapes there is nothing to recover.
    if (isSettled_() || history_.states().empty()) {
        end();
        return;
    }
    if (!file_) rest_ = 0;
    pending_.insert(changed.begin(), changed.end());
    headPending_ = true;
    if (!timeout_.isArmed()) arm_(kDelayMilliseconds);
}

void Journal::settle() {
    settling_ = true;
    history_.noteEntry();
}

void Journal::unsettle() {
    history_.noteEntry();
    settling_ = false;
    unsettled_ = true;
}

void Journal::adopt(std::unique_ptr<JournalFile> file) {
    older_.push_back(std::move(file));
}

bool Journal::isSettled_() const {
    return !unsettled_ && differing_.empty() && !history_.isPressed() &&
           history_.attachment() == settledAttachment_;
}

void Journal::end() {
    timeout_.cancel();
    if (file_) file_->remove();
    for (const auto& older : std::exchange(older_, {})) older->remove();
    leave();
}

void Journal::leave() {
    timeout_.cancel();
    file_.reset();
    older_.clear();
    pending_.clear();
    rest_ = kNoRest;
    buffer_.clear();
    writer_.restart();
    isWriting_ = headPending_ = failed_ = false;
}

void Journal::arm_(std::int32_t milliseconds) {
    PICommon::createTimeout(timeout_, milliseconds, onTimeout_);
    // A host without timeouts.
    if (!timeout_.isArmed()) write_();
}

int Journal::onTimeout(PIObject*, void*) {
    timeout_.fired();
    // While the user looks for a file nothing is at work, and that may take minutes.
    if (!EntryScope::isNested() || EntryScope::isInDialog()) return onTurn(nullptr, nullptr);
    return onTurn_->Call(nullptr, nullptr);
}

int Journal::onTurn(PIObject*, void*) {
    // What the mouse has drawn until now belongs to its step, and comes with it.
    if (history_.isPressed()) {
        history_.commit();
        const auto changed = history_.takeChanged();
        pending_.insert(changed.begin(), changed.end());
        differing_.insert(changed.begin(), changed.end());
    }
    write_();
    return 1;
}

void Journal::write_() {
    if (!headPending_) return;
    if (!file_ && !failed_) open_();
    if (!file_) return;
    // A host without timeouts waits until all is written.
    while (file_ && headPending_) {
        const auto end = std::chrono::steady_clock::now() + kAtOnce;
        bool all = false;
        while (!(all = appendSome_()) && buffer_.size() < kBufferBytes &&
               std::chrono::steady_clock::now() < end) {
        }
        if (all) {
            writer_.head(head_(), buffer_);
            headPending_ = false;
        }
        flush_();
        if (all || !file_) break;
        PICommon::createTimeout(timeout_, kPauseMilliseconds, onTimeout_);
        if (timeout_.isArmed()) return;
    }
    if (!file_) return;
    file_->settle();
    for (const auto& older : std::exchange(older_, {})) older->remove();
    if (base_ == 0) base_ = written_;
    if (written_ > kSlackFactor * base_ + kSlackBytes) {
        older_.push_back(std::move(file_));
        writer_.restart();
    }
}

void Journal::open_() {
    std::string error;
    const std::string directory = makeQuickShapeDirectory();
    file_ = JournalFile::create(directory, error);
    failed_ = !file_;
    written_ = base_ = 0;
    if (file_ && PIGUI::PIRegistry::getValue(kDirectoryKey) != directory)
        PIGUI::PIRegistry::setValue(kDirectoryKey, directory);
    if (!file_)
        halNotify::notify(halNotify::Warning)
            << "No journal can be written, so that unsaved shapes are lost if the host ends without a word: "
            << error;
}

std::optional<std::uint64_t> Journal::nextPending_() {
    if (!pending_.empty()) return pending_.extract(pending_.begin()).value();
    const auto next = history_.states().lower_bound(rest_);
    rest_ = next != history_.states().end() ? next->first + 1 : kNoRest;
    return rest_ != kNoRest ? std::optional(next->first) : std::nullopt;
}

bool Journal::appendSome_() {
    if (isWriting_) {
        isWriting_ = !writer_.next(buffer_);
        return false;
    }
    const auto number = nextPending_();
    if (!number) return true;
    const auto state = history_.states().find(*number);
    if (state == history_.states().end()) {
        writer_.gone(*number, buffer_);
    } else {
        writer_.begin(*number, state->second);
        isWriting_ = true;
    }
    return false;
}

void Journal::flush_() {
    const std::string error = file_->append(buffer_);
    written_ += buffer_.size();
    buffer_.clear();
    if (error.empty()) return;
    halNotify::notify(halNotify::Warning) << "The journal cannot be written any more, so that unsaved shapes "
                                             "are lost if the host ends without a word: "
                                          << error;
    // What it holds until now may be of use.
    older_.push_back(std::move(file_));
    failed_ = true;
}

}  // namespace OverlayEditor
