#include <algorithm>

#include "gui/Captions.h"
#include "gui/OverlayEditorDialog.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "model/FreeDrawShape.h"
#include "model/PolygonShape.h"

namespace OverlayEditor {

using Gesture = History::Gesture;

// What the user does, as far as it tells one step from the next

void OverlayEditorDialog::commanded_(PIObject* sender) {
    const bool typed = dynamic_cast<PIGUI::PITextField*>(sender) || dynamic_cast<PIGUI::PISpinner*>(sender);
    document_.history().begin(typed ? Gesture::Typing : Gesture::Command, sender);
    constexpr std::chrono::seconds soon{10};
    insists_ = sender && sender == refused_ && std::chrono::steady_clock::now() - refusedAt_ < soon;
    refused_ = nullptr;
    sender_ = sender;
    widgets_->messages.commanded(sender);
}

void OverlayEditorDialog::mouseMoved_(PIGUI::PIMouseEventType_t type) {
    using Type = PIGUI::PIMouseEventType_t;
    if (editing_ && mouseManager_->isActive()) followPlatform_();
    if (type == Type::LeftPress) document_.history().begin(Gesture::Press);
    if (type == Type::LeftPress && draws_()) dropUntouched_();
    if (type == Type::LeftRelease) document_.history().release();
    if (type == Type::Wheel) document_.history().begin(Gesture::Wheel);
}

NextTarget OverlayEditorDialog::nextTarget() {
    return {.shape = [this] { return editing_ ? current_() : nullptr; },
            .begin =
                [this] {
                    letGo_();
                    document_.history().begin(Gesture::Command);
                },
            .taken = [this] { updateMouseControls_(); },
            .finish = [this] { onCmdStop(nullptr, nullptr); }};
}

// Undo and redo

int OverlayEditorDialog::onCmdUndo(PIObject* sender, void*) {
    letGo_();
    if (!sender) countCommand();
    if (!dropTyped_()) step_(&Document::undo);
    return 1;
}

int OverlayEditorDialog::onCmdRedo(PIObject* sender, void*) {
    letGo_();
    if (!sender) countCommand();
    if (!dropTyped_()) step_(&Document::redo);
    return 1;
}

bool OverlayEditorDialog::dropTyped_() {
    const bool typed = PIGUI::PITextField::dropTyped();
    const bool refused = RefusedText::forgetAll();
    Shape* const shape = current_();
    if (refused) widgets_->messages.clear();
    if (refused && shape) {
        shape->fillGui();
        widgets_->name.setValue(shape->name());
    }
    return typed || refused;
}

void OverlayEditorDialog::step_(History::Outcome (Document::*step)()) {
    const History& history = document_.history();
    const std::uint64_t before = overlay_->numberOf(current_());
    const auto stateOf = [&history](std::uint64_t number) { return history.states().of(number); };
    const ShapeStatePtr was = stateOf(before);
    noteShownPoint_();
    const History::Outcome outcome = (document_.*step)();
    if (outcome == History::Outcome::Nothing) return;
    // Another shape may lie where the current one was.
    if (!overlay_->shapeOf(before)) currentShape_ = nullptr;
    if (outcome == History::Outcome::Listed) fillList_();
    Shape* const selected = overlay_->shapeOf(history.selected());
    if (selected != current_()) mouseManager_->clearMouseTool();
    setCurrentShape_(selected);
    if (history.selected() == before) showChangedPoint_(was, stateOf(before));
    widgets_->list.deselectAll();
    if (selected) widgets_->list.setSelectedItem(itemOf_(selected));
    widgets_->next.refresh();
    // What is not complete is shown by its points alone, which the host draws only when it is asked.
    PICommon::forceOpenGLRedraw();
    showDocument_();
}

void OverlayEditorDialog::showChangedPoint_(const ShapeStatePtr& was, const ShapeStatePtr& now) {
    auto* const points = dynamic_cast<PolygonShape*>(current_());
    if (!points || !was || !now) return;
    const std::size_t size = now->positions.given.size();
    const auto common = now->positions.given.commonWith(was->positions.given);
    if (common.front + common.back < std::max(size, was->positions.given.size()))
        points->showPoint(std::max(common.front + 1, size - common.back) - 1);
}

void OverlayEditorDialog::showSteps_() {
    const History& history = document_.history();
    const auto show = [](PIGUI::PIButton& button, const std::string& verb, bool can,
                         const std::string& name) {
        button.setValue(verb + "\t" + (can ? verb + ": " + oneLine(name) : "Nothing to " + oneLine(name)));
        button.setEnabled(can);
    };
    show(widgets_->undo, "Undo", history.canUndo(), history.canUndo() ? history.undoName() : "undo");
    show(widgets_->redo, "Redo", history.canRedo(), history.canRedo() ? history.redoName() : "redo");
    // What a typed line would do, now that the shape is another one.
    widgets_->next.refresh();
}

// While a shape is drawn

bool OverlayEditorDialog::draws_() {
    const Shape* const shape = current_();
    return shape && shape->mouseTool() && mouseManager_->currentMouseTool() == shape->mouseTool() &&
           shape->mouseTool()->isActive();
}

bool OverlayEditorDialog::letGo_() {
    if (!document_.history().isPressed()) return false;
    if (draws_()) {
        mouseManager_->clearMouseTool();
        mouseManager_->setCurrentMouseTool(current_()->mouseTool(), true);
    }
    return true;
}

int OverlayEditorDialog::onCmdCancelDrawing(PIObject*, void*) {
    if (!draws_()) return 1;
    History& history = document_.history();
    const bool held = history.isPressed();
    mouseManager_->clearMouseTool();
    if (held) history.revert();
    countCommand();
    const std::uint64_t drawn = overlay_->numberOf(current_());
    if (drawn != fresh_) {
        updateMouseControls_();
        return 1;
    }
    history.commit();
    std::size_t steps = history.stepsOf(drawn);
    if (steps == 0) delete_(current_());
    for (; steps > 0; --steps) step_(&Document::undo);
    return 1;
}

int OverlayEditorDialog::onCmdRemoveLastPoint(PIObject*, void*) {
    letGo_();
    countCommand();
    if (!draws_()) return 1;
    Shape* const shape = current_();
    if (auto* const drawn = dynamic_cast<FreeDrawShape*>(shape)) {
        drawn->removeLastLine();
    } else if (auto* const points = dynamic_cast<PointsContainer*>(shape)) {
        if (points->getNumPoints() > 0) points->deletePointAtIndex(points->getNumPoints() - 1);
    } else if (document_.history().lastChanged() == overlay_->numberOf(shape)) {
        step_(&Document::undo);
    }
    updateSavedMark_();
    return 1;
}

}  // namespace OverlayEditor
