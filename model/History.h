#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/Attachment.h"
#include "model/FileState.h"
#include "model/Overlay.h"
#include "model/ShapeState.h"
#include "model/ShapeStates.h"

namespace OverlayEditor {

/// What the user did to an overlay, step by step, to be taken back and done again. Nobody tells it what was
/// done: at the end of each entry of the host's it looks at what may have changed, and keeps of each shape
/// what it was before and is now. So no action can be forgotten, and what ends as it began is no step.
///
/// A shape is named by its number in the overlay, never by a pointer. What each shape is by the steps that
/// have been done is known apart from the living shapes, which may be less: those whose platform is gone
/// stand where they stood, and become what they were as soon as a step leads to where no platform is needed.
class History final : private OverlayWatcher {
  public:
    static constexpr std::size_t kMostSteps = 1000;
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

    /// All must outlive the history, the overlay and what it is attached to.
    History(const Preferences& preferences, Overlay& overlay, Attachment& attachment);
    ~History();
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    /// Nothing is kept and nothing can be undone, for those who load only to write again.
    void keepNothing() { keeps_ = false; }
    bool keeps() const { return keeps_; }

    /// What the user does from now on, as far as it tells one step from the next.
    enum class Gesture {
        Command,  ///< a step by itself
        Typing,   ///< into a field: one step until another one is used
        Press,    ///< of the mouse: one step until release()
        Wheel     ///< one step as long as it goes on turning
    };
    /// \param field tells fields from each other; not followed
    void begin(Gesture gesture, const void* field = nullptr);
    /// The mouse's button is let go: the step ends with this entry.
    void release();
    bool isPressed() const { return pressed_; }

    /// What has changed becomes a step now, and not at the end of the entry.
    void commit();
    /// What has changed in the shapes since the last commit is dropped; of what a button of the mouse has
    /// changed, all of it.
    void revert();
    /// Another file takes the overlay's place with what changes now.
    /// \param before the state of the one that goes \param name what the step is called
    void switchFile(FileState before, std::string name);

    /// The overlay has got other shapes in place of all that it had, and that is the step. To be called when
    /// all else that belongs to it is done.
    void exchange(ShapeStates now);

    bool canUndo() const { return done_ > 0; }
    bool canRedo() const { return done_ < steps_.size(); }
    /// How many steps can be taken back.
    std::size_t done() const { return done_; }
    /// What would be taken back or done again, "move a point of Circle 1"; empty for nothing.
    std::string undoName() const;
    std::string redoName() const;
    enum class Outcome {
        Nothing,  ///< there is no such step
        Changed,
        Listed  ///< shapes have come or gone, or have other names
    };
    /// Takes the last step back, or does the next one again. What has not been committed is a step first.
    /// \param file becomes that of the file edited then
    Outcome undo(FileState& file);
    Outcome redo(FileState& file);
    /// How often undone and redone steps have led to another file.
    std::uint64_t fileSwitches() const { return fileSwitches_; }
    /// Whether the next step to be taken back, or done again, leads to another file.
    bool undoSwitches() const { return canUndo() && steps_[done_ - 1].file; }
    bool redoSwitches() const { return canRedo() && steps_[done_].file; }
    /// Whether a step that replaces all shapes could be taken back.
    bool holds() const;
    /// The number of the one shape that the last step has changed; 0 when it did something else.
    std::uint64_t lastChanged() const;
    /// How many of the last steps have to do with this shape alone, the first of which added it; 0 when that
    /// is not so.
    std::size_t stepsOf(std::uint64_t shape) const;
    /// Called when there are other steps, or another one would be undone next; empty for nobody.
    void setListener(std::function<void()> listener) { listener_ = std::move(listener); }
    /// Called at the end of an entry in which something may have changed, and after a step was undone or done
    /// again; empty for nobody.
    void setEntryListener(std::function<void()> listener) { entryListener_ = std::move(listener); }

    /// The selected shape's number, 0 for none. Steps bring it back; selecting is none by itself.
    std::uint64_t selected() const { return selected_; }
    void select(std::uint64_t number);

    /// Has the entry listener called when this entry is over.
    void noteEntry() { commitLater_(); }
    /// What the shapes are by the steps that are done, by number. Up to date after commit().
    const ShapeStates& states() const { return states_; }
    /// The numbers of those that have come, gone or changed since this was asked last, in their order.
    std::vector<std::uint64_t> takeChanged();
    const Attachment::State& attachment() const { return attached_; }
    /// A shape becomes what it was; the change is the user's.
    void restore(std::uint64_t number, const ShapeState& state);

  private:
    struct Change {
        std::uint64_t shape = 0;
        /// Null where there was, or is, no such shape.
        ShapeStatePtr before;
        ShapeStatePtr after;
    };
    struct Step {
        std::uint64_t gesture = 0;
        std::vector<Change> changes;
        Attachment::State attachedBefore;
        Attachment::State attachedAfter;
        /// Of the file that is edited on the other side of the step.
        std::optional<FileState> file;
        std::string fileName;
        std::uint64_t selectedBefore = 0;
        std::uint64_t selectedAfter = 0;
        std::size_t bytes = 0;

        std::string name() const;
        void weigh();
        bool lists() const;
        bool changesShapesAlone() const { return !file && attachedBefore == attachedAfter; }
    };

    void shapeTouched(std::uint64_t number) override;
    void attachmentTouched() override;
    void commitLater_();
    ShapeStatePtr stateNow_(std::uint64_t number) const;
    /// The shapes are by the steps what they are on one side of some changes.
    void follow_(const std::vector<Change>& changes, ShapeStatePtr Change::*side);
    /// A step that has led here, but for what has changed in the shapes.
    Step stepNow_(Attachment::State attached);
    /// Whether a step goes on with what the last one has done.
    bool joins_(const Step& step) const;
    void join_(Step& step);
    void push_(Step step);
    Outcome apply_(Step& step, bool back, FileState& file);
    /// The living shapes become what they are by the steps.
    /// \param numbers of those that may differ, in any order
    void realize_(std::vector<std::uint64_t> numbers);
    /// \param frame the attachment's, or where its platform stood that is gone
    void restore_(std::uint64_t number, const ShapeState& state, const PointConverter& frame);
    /// The oldest steps go, but never the last one.
    void limit_();

    const Preferences& preferences_;
    Overlay& overlay_;
    Attachment& attachment_;

    ShapeStates states_;
    Attachment::State attached_;
    /// What the shapes are that cannot be what they are by the steps, and the overlay with them.
    ShapeStates lost_;
    std::optional<Attachment::State> lostAttached_;

    /// In any order, some of them repeatedly.
    std::vector<std::uint64_t> touched_;
    std::vector<std::uint64_t> changed_;
    std::optional<FileState> fileBefore_;
    std::string switchName_;
    bool keeps_ = true;
    bool applying_ = false;
    bool pressed_ = false;
    /// For the end of the entry.
    bool waiting_ = false;

    std::deque<Step> steps_;
    std::size_t done_ = 0;
    std::size_t bytes_ = 0;
    std::uint64_t fileSwitches_ = 0;
    std::function<void()> listener_;
    std::function<void()> entryListener_;

    std::uint64_t gesture_ = 1;
    Gesture kind_ = Gesture::Command;
    const void* field_ = nullptr;
    std::chrono::steady_clock::time_point turned_;

    std::uint64_t selected_ = 0;
    /// When the last entry was over, or the last step within one.
    std::uint64_t settled_ = 0;

    /// Whether the history is still there, for what waits for the end of an entry.
    std::shared_ptr<History*> self_ = std::make_shared<History*>(this);
};

}  // namespace OverlayEditor
