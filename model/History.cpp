#include "model/History.h"

#include <algorithm>
#include <span>
#include <utility>

#include "common/Notify.h"
#include "model/StepName.h"
#include "model/Utils.h"
#include "pi/EntryScope.h"

namespace OverlayEditor {

namespace {

/// The wheel stands still for so long before it turns anew.
constexpr std::chrono::seconds kTurn{1};

bool same(const ShapeStatePtr& a, const ShapeStatePtr& b) {
    return a == b || (a && b && *a == *b);
}

/// In their order, each of them once.
std::vector<std::uint64_t> ordered(std::vector<std::uint64_t> numbers) {
    if (!std::ranges::is_sorted(numbers)) std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

}  // namespace

History::History(const Preferences& preferences, Overlay& overlay, Attachment& attachment)
    : preferences_(preferences), overlay_(overlay), attachment_(attachment), attached_(attachment.state()) {
    for (const Shape* shape : overlay.shapes()) states_.append(overlay.numberOf(shape), shape->state());
    overlay_.setWatcher(this);
}

History::~History() {
    *self_ = nullptr;
    overlay_.setWatcher(nullptr);
}

// Noticing

void History::begin(Gesture gesture, const void* field) {
    if (gesture == Gesture::Wheel && pressed_) return;
    // In the midst of another entry nothing is whole.
    pressed_ = false;
    if (!EntryScope::isNested()) commit();
    const auto now = std::chrono::steady_clock::now();
    const bool goesOn = gesture == kind_ && ((gesture == Gesture::Typing && field == field_) ||
                                             (gesture == Gesture::Wheel && now - turned_ < kTurn));
    if (!goesOn) ++gesture_;
    kind_ = gesture;
    field_ = field;
    turned_ = now;
    pressed_ = gesture == Gesture::Press;
}

void History::release() {
    pressed_ = false;
    commitLater_();
}

void History::select(std::uint64_t number) {
    selected_ = number;
    commitLater_();
}

void History::shapeTouched(std::uint64_t number) {
    if (applying_) return;
    if (keeps_ && (touched_.empty() || touched_.back() != number)) touched_.push_back(number);
    commitLater_();
}

void History::attachmentTouched() {
    commitLater_();
}

void History::commitLater_() {
    if (applying_ || std::exchange(waiting_, true)) return;
    EntryScope::atEnd([self = self_] {
        History* const history = *self;
        if (!history) return;
        history->waiting_ = false;
        if (!history->pressed_) {
            history->commit();
            history->settled_ = history->selected_;
        }
        if (history->entryListener_) history->entryListener_();
    });
}

ShapeStatePtr History::stateNow_(std::uint64_t number) const {
    const Shape* const shape = overlay_.shapeOf(number);
    return shape ? shape->state(states_.of(number).get()) : nullptr;
}

History::Step History::stepNow_(Attachment::State attached) {
    attached.name =
        attached.platform == attached_.platform ? attached_.name : Utils::platformName(attached.platform);
    return {.gesture = gesture_,
            .changes = {},
            .attachedBefore = std::exchange(attached_, attached),
            .attachedAfter = attached,
            .file = std::exchange(fileBefore_, {}),
            .fileName = std::exchange(switchName_, {}),
            .selectedBefore = std::exchange(settled_, selected_),
            .selectedAfter = selected_};
}

void History::commit() {
    if (applying_ || !keeps_) return;
    const auto touched = ordered(std::exchange(touched_, {}));
    Attachment::State attached = attachment_.state();
    const bool attachmentChanged = !(attached == lostAttached_.value_or(attached_));
    std::vector<ShapeStates::Entry> now;
    for (const std::uint64_t number : touched) {
        const auto lost = lost_.find(number);
        ShapeStatePtr state = stateNow_(number);
        if (!same(state, lost != lost_.end() ? lost->second : states_.of(number)))
            now.emplace_back(number, std::move(state));
    }
    if (now.empty() && !attachmentChanged && !fileBefore_) {
        // A platform that has moved is no step.
        if (!lostAttached_) attached_.reference = attached.reference;
        return;
    }
    const auto touchedEnd = now.size();
    for (const ShapeStates::Entry& lost : lost_)
        if (!std::ranges::binary_search(std::span(now).first(touchedEnd), lost.first, {},
                                        &ShapeStates::Entry::first))
            now.push_back(lost);
    std::ranges::inplace_merge(now, now.begin() + static_cast<std::ptrdiff_t>(touchedEnd), {},
                               &ShapeStates::Entry::first);
    lost_.clear();
    lostAttached_.reset();

    Step step = stepNow_(std::move(attached));
    for (auto& [number, state] : now) {
        ShapeStatePtr before = states_.of(number);
        if (!same(before, state)) step.changes.push_back({number, std::move(before), std::move(state)});
    }
    follow_(step.changes, &Change::after);
    if (joins_(step))
        join_(step);
    else
        push_(std::move(step));
    if (listener_) listener_();
    // What nobody did with the mouse or a widget is a step by itself.
    if (!pressed_ && kind_ != Gesture::Typing && kind_ != Gesture::Wheel) ++gesture_;
}

void History::follow_(const std::vector<Change>& changes, ShapeStatePtr Change::*side) {
    std::vector<ShapeStates::Entry> states;
    states.reserve(changes.size());
    for (const Change& change : changes) {
        states.emplace_back(change.shape, change.*side);
        changed_.push_back(change.shape);
    }
    states_.change(states);
}

std::vector<std::uint64_t> History::takeChanged() {
    return ordered(std::exchange(changed_, {}));
}

void History::switchFile(FileState before, std::string name) {
    if (!fileBefore_) fileBefore_ = std::move(before);
    switchName_ = std::move(name);
    commitLater_();
}

void History::exchange(ShapeStates now) {
    Step step = stepNow_(attachment_.state());
    step.changes.reserve(states_.size() + now.size());
    // Numbers are not given twice: the new ones come behind.
    for (const auto& [number, state] : states_) step.changes.push_back({number, state, nullptr});
    for (const auto& [number, state] : now) step.changes.push_back({number, nullptr, state});
    for (const Change& change : step.changes) changed_.push_back(change.shape);
    states_ = std::move(now);
    lost_.clear();
    lostAttached_.reset();
    touched_.clear();
    push_(std::move(step));
    if (listener_) listener_();
    ++gesture_;
    commitLater_();
}

// Steps

bool History::Step::lists() const {
    return std::ranges::any_of(changes, [](const Change& change) {
        return !change.before || !change.after || change.before->name != change.after->name;
    });
}

void History::Step::weigh() {
    bytes = sizeof(Step) + changes.size() * sizeof(Change);
    for (const Change& change : changes) {
        if (change.before) bytes += change.before->bytesBeyond(change.after.get());
        if (change.after) bytes += change.after->bytesBeyond(change.before.get());
    }
}

std::string History::Step::name() const {
    if (file) return fileName;
    if (!(attachedBefore == attachedAfter))
        return attachedAfter.platform != 0 ? "attach to " + attachedAfter.name
                                           : "detach from " + attachedBefore.name;
    if (changes.size() == 1) return stepName(changes.front().before.get(), changes.front().after.get());
    const auto none = [this](ShapeStatePtr Change::*side) {
        return std::ranges::none_of(changes,
                                    [side](const Change& change) { return change.*side != nullptr; });
    };
    const char* const verb = none(&Change::before) ? "add " : none(&Change::after) ? "delete " : "change ";
    return verb + std::to_string(changes.size()) + " shapes";
}

bool History::joins_(const Step& step) const {
    if (done_ == 0 || done_ < steps_.size() || step.file) return false;
    const Step& last = steps_.back();
    return last.gesture == step.gesture && !last.file && step.attachedBefore == step.attachedAfter;
}

void History::join_(Step& step) {
    Step& last = steps_.back();
    bytes_ -= last.bytes;
    // Both are in the order of the numbers.
    const std::size_t known = last.changes.size();
    std::size_t at = 0;
    for (Change& change : step.changes) {
        while (at < known && last.changes[at].shape < change.shape) ++at;
        if (at < known && last.changes[at].shape == change.shape)
            last.changes[at].after = std::move(change.after);
        else
            last.changes.push_back(std::move(change));
    }
    std::ranges::inplace_merge(last.changes, last.changes.begin() + static_cast<std::ptrdiff_t>(known), {},
                               &Change::shape);
    std::erase_if(last.changes, [](const Change& change) { return same(change.before, change.after); });
    last.selectedAfter = step.selectedAfter;
    if (last.changes.empty() && last.attachedBefore == last.attachedAfter) {
        steps_.pop_back();
        --done_;
        return;
    }
    last.weigh();
    bytes_ += last.bytes;
    limit_();
}

void History::push_(Step step) {
    while (steps_.size() > done_) {
        bytes_ -= steps_.back().bytes;
        steps_.pop_back();
    }
    step.weigh();
    bytes_ += step.bytes;
    steps_.push_back(std::move(step));
    ++done_;
    limit_();
}

void History::limit_() {
    while (steps_.size() > 1 && (steps_.size() > kMostSteps || bytes_ > kMostBytes)) {
        bytes_ -= steps_.front().bytes;
        steps_.pop_front();
        if (done_ > 0) --done_;
    }
}

std::string History::undoName() const {
    return canUndo() ? steps_[done_ - 1].name() : std::string();
}

std::string History::redoName() const {
    return canRedo() ? steps_[done_].name() : std::string();
}

bool History::holds() const {
    std::size_t bytes = 0;
    for (const auto& [number, state] : states_) bytes += state->bytesBeyond(nullptr) + sizeof(Change);
    return bytes < kMostBytes / 2;
}

std::uint64_t History::lastChanged() const {
    if (!canUndo() || steps_[done_ - 1].changes.size() != 1) return 0;
    const Change& change = steps_[done_ - 1].changes.front();
    return change.before && change.after ? change.shape : 0;
}

std::size_t History::stepsOf(std::uint64_t shape) const {
    for (std::size_t i = done_; i > 0; --i) {
        const Step& step = steps_[i - 1];
        if (!step.changesShapesAlone() || step.changes.size() != 1 || step.changes.front().shape != shape)
            return 0;
        if (!step.changes.front().before) return done_ - i + 1;
    }
    return 0;
}

History::Outcome History::undo(FileState& file) {
    pressed_ = false;
    commit();
    return canUndo() ? apply_(steps_[--done_], true, file) : Outcome::Nothing;
}

History::Outcome History::redo(FileState& file) {
    pressed_ = false;
    commit();
    return canRedo() ? apply_(steps_[done_++], false, file) : Outcome::Nothing;
}

History::Outcome History::apply_(Step& step, bool back, FileState& file) {
    ++gesture_;
    kind_ = Gesture::Command;
    std::vector<std::uint64_t> numbers;
    numbers.reserve(step.changes.size());
    for (const Change& change : step.changes) numbers.push_back(change.shape);
    follow_(step.changes, back ? &Change::before : &Change::after);
    if (!(step.attachedBefore == step.attachedAfter))
        attached_ = back ? step.attachedBefore : step.attachedAfter;
    if (step.file) {
        std::swap(file, *step.file);
        ++fileSwitches_;
    }
    selected_ = settled_ = back ? step.selectedBefore : step.selectedAfter;
    realize_(std::move(numbers));
    if (listener_) listener_();
    commitLater_();
    return step.lists() ? Outcome::Listed : Outcome::Changed;
}

// Living shapes

void History::restore(std::uint64_t number, const ShapeState& state) {
    if (overlay_.shapeOf(number)) restore_(number, state, attachment_.converter());
}

void History::revert() {
    pressed_ = false;
    std::vector<std::uint64_t> numbers = std::exchange(touched_, {});
    // Of what a button holds a part may be a step already, so that a journal has it.
    if (kind_ == Gesture::Press && done_ > 0 && done_ == steps_.size() && steps_.back().gesture == gesture_ &&
        steps_.back().changesShapesAlone()) {
        for (const Change& change : steps_.back().changes) numbers.push_back(change.shape);
        follow_(steps_.back().changes, &Change::before);
        bytes_ -= steps_.back().bytes;
        steps_.pop_back();
        --done_;
        if (listener_) listener_();
    }
    realize_(std::move(numbers));
}

void History::restore_(std::uint64_t number, const ShapeState& state, const PointConverter& frame) {
    const bool there = &frame == &attachment_.converter();
    Shape* shape = overlay_.shapeOf(number);
    // What is new is not active, and nobody is told of it before it is what it was.
    std::unique_ptr<Shape> made = shape ? nullptr : shapeKind(state.kind).make(preferences_);
    if (made) shape = made.get();
    // Nothing can be displayed of it before it is detached.
    if (!there) shape->setActive(false);
    shape->restore(state, frame, there ? overlay_.attachedPlatformId() : attached_.platform,
                   there && overlay_.counts() ? &attachment_.converter() : nullptr);
    if (!there) shape->setAttachedPlatformId(0, nullptr, false);
    if (made) {
        overlay_.insertShape(number, shape);
        static_cast<void>(made.release());
    }
    if (shape->active() != overlay_.active()) shape->setActive(overlay_.active());
}

void History::realize_(std::vector<std::uint64_t> numbers) {
    applying_ = true;
    const struct Guard {
        ~Guard() { applying = false; }
        bool& applying;
    } guard{applying_};

    const bool there = Attachment::isThere(attached_);
    const bool switches = !(attachment_.state() == attached_);
    numbers = ordered(std::move(numbers));
    const auto include = [&numbers](const ShapeStates& states) {
        const auto known = static_cast<std::ptrdiff_t>(numbers.size());
        for (const auto& [number, state] : states) numbers.push_back(number);
        std::ranges::inplace_merge(numbers, numbers.begin() + known);
    };
    include(lost_);
    if (there && switches) include(states_);
    numbers = ordered(std::move(numbers));
    for (const std::uint64_t number : numbers)
        if (Shape* const shape = overlay_.shapeOf(number); shape && !states_.contains(number))
            overlay_.deleteShape(shape);

    lost_.clear();
    lostAttached_.reset();
    PointConverter gone;
    if (there) {
        if (switches) attachment_.restore(attached_);
    } else {
        halNotify::notify(halNotify::Warning)
            << attached_.name
            << " is gone: the shapes are not attached to it again, and stand where they stood";
        gone.setReferenceLla(attached_.reference, attached_.platform);
        if (switches) attachment_.restore({});
    }
    overlay_.expect(states_.size());
    for (const std::uint64_t number : numbers) {
        const auto state = states_.find(number);
        if (state == states_.end()) continue;
        restore_(number, *state->second, there ? attachment_.converter() : gone);
        if (!there) lost_.append(number, overlay_.shapeOf(number)->state());
    }
    if (!there) lostAttached_ = attachment_.state();
    touched_.clear();
}

}  // namespace OverlayEditor
