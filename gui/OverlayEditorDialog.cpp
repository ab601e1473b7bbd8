#include "gui/OverlayEditorDialog.h"

#include <utility>

#include "common/Notify.h"
#include "common/Strings.h"
#include "gui/Captions.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "pi/Guard.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

constexpr std::int32_t kFollowToolMilliseconds = 1000;
constexpr const char* kFileCaption = "File:\tCurrently loaded ZEL file";

}  // namespace

/// The window manager's close button does what "Close" does.
class OverlayEditorDialog::OverlayCloseObserver final : public PIGUI::PICloseObserver {
  public:
    explicit OverlayCloseObserver(FunctorTwoParams__* close) : close_(close) {}
    void onClose(PIObject*) override { close_->Call(nullptr, nullptr); }

  private:
    FunctorTwoParams__* close_;
};

/// An overlay that the host unloads while it is edited stays in the editor; only its handle is forgotten, at
/// once.
class OverlayEditorDialog::ZelObserver final : public PIHALVIS::ZELEventObserver {
  public:
    explicit ZelObserver(OverlayEditorDialog& dialog) : dialog_(dialog) {}
    void addedZEL(void*) override { changed_->Call(nullptr, nullptr); }
    void removedZEL(void* zel) override {
        guarded("removedZEL", 0, [&] {
            dialog_.document_.overlayRemoved(zel);
            if (dialog_.loading_ && dialog_.loading_->reading.zel == zel)
                dialog_.loading_->reading.zel = nullptr;
            std::erase(dialog_.toLoad_, zel);
            return 0;
        });
        changed_->Call(nullptr, nullptr);
    }

  private:
    OverlayEditorDialog& dialog_;
    FunctorTwoParams__* const changed_ = dialog_.callbacks_.make(&OverlayEditorDialog::onZelsChanged);
};

OverlayEditorDialog::OverlayEditorDialog(Preferences* preferences, MouseManager* mouseManager,
                                         Overlay* overlay, std::vector<Shape*> prototypes)
    : preferences_(preferences),
      mouseManager_(mouseManager),
      overlay_(overlay),
      prototypes_(std::move(prototypes)),
      document_(*preferences, *overlay),
      marks_(*overlay),
      closeObserver_(
          std::make_unique<OverlayCloseObserver>(callbacks_.make(&OverlayEditorDialog::onCmdDismiss))),
      zelObserver_(std::make_unique<ZelObserver>(*this)),
      box_(nullptr, "Overlay Editor"),
      widgets_(std::make_unique<Widgets>(box_, callbacks_, mouseManager_, *preferences_, prototypes_,
                                         nextTarget())),
      refusedName_(std::make_unique<RefusedText>(widgets_->name)) {
    box_.registerCloseObserver(closeObserver_.get());
    PIHALVIS::registerZELObserver(zelObserver_.get());
    setCommandListener([this](PIObject* sender) { commanded_(sender); });
    mouseManager_->setEventListener([this](PIGUI::PIMouseEventType_t type) { mouseMoved_(type); });
    document_.history().setListener([this] { showSteps_(); });
    document_.turns().add([this](Slice& slice) { loading_ ? goOnLoading_(slice) : listOn_(slice); });
    updateAttachControls_();
    showSteps_();
}

OverlayEditorDialog::~OverlayEditorDialog() {
    callbacks_.disconnect();
    document_.turns().end();
    setCommandListener({});
    mouseManager_->setEventListener({});
    document_.history().setListener({});
    editing_ = false;
    guardedEnd([this] { mouseManager_->clearMouseTool(); });
    guardedEnd([this] { document_.rescue(Document::Rescue::AtEnd); });
    guardedEnd([this] { PIHALVIS::removeZELObserver(zelObserver_.get()); });
    guardedEnd([this] { timeout_.cancel(); });
    loading_.reset();
    guardedEnd([this] { setCurrentShape_(nullptr); });
    guardedEnd([this] { widgets_->attach.hideDialog(); });
}

void OverlayEditorDialog::show() {
    const bool open = editing_ && box_.shown();
    box_.show();
    // It comes to the front; drawing and picking go on.
    if (open) return;
    setShowEditing_(true);
    offerLost();
}

void OverlayEditorDialog::hide() {
    widgets_->attach.hideDialog();
    if (existingZels_) existingZels_->hide();
    if (rings_) rings_->hide();
    cancelLoading_("the editor was closed");
    setShowEditing_(false);
    box_.hide();
}

void OverlayEditorDialog::setShowEditing_(bool editing) {
    editing_ = editing;
    if (!editing) mouseManager_->clearMouseTool();
    document_.setEditing(editing);
    const Shape* const shape = current_();
    if (editing && shape && shape->mouseTool()) mouseManager_->setCurrentMouseTool(shape->mouseTool(), false);
    updateMouseControls_();
}

// Adding, naming and drawing

std::string OverlayEditorDialog::getUniqueName_(const std::string& base) {
    std::string name;
    do {
        name = base + " " + std::to_string(nameCounter_++);
    } while (overlay_->findShape(name));
    return name;
}

Shape* OverlayEditorDialog::add_(std::unique_ptr<Shape> made) {
    listRest_();
    Shape* const shape = made.release();
    overlay_->addShape(shape);
    widgets_->list.appendItem(shape->name(), shape);
    return shape;
}

void OverlayEditorDialog::choose_(Shape* shape) {
    mouseManager_->clearMouseTool();
    widgets_->list.deselectAll();
    widgets_->list.setSelectedItem(itemOf_(shape));
    setCurrentShape_(shape);
    updateMouseControls_();
    updateListManipulationButtons_();
}

int OverlayEditorDialog::onCmdDrawShapeSelection(PIObject*, void*) {
    const std::int32_t option = widgets_->shape.getValueInt();
    widgets_->shape.setValue(0);
    if (option < 1 || static_cast<std::size_t>(option) > prototypes_.size()) return 1;
    mouseManager_->clearMouseTool();

    const Shape* const prototype = prototypes_[static_cast<std::size_t>(option) - 1];
    std::unique_ptr<Shape> made(prototype->clone());
    made->setName(getUniqueName_(prototype->name()));
    Shape* const shape = add_(std::move(made));
    choose_(shape);
    fresh_ = overlay_->numberOf(shape);
    added_[fresh_] = shape->state();
    if (shape->mouseTool()) mouseManager_->setCurrentMouseTool(shape->mouseTool(), true);
    updateMouseControls_();
    return 1;
}

int OverlayEditorDialog::onCmdStartDraw(PIObject*, void*) {
    const Shape* const shape = current_();
    if (!draws_()) fresh_ = 0;
    if (shape && shape->mouseTool()) mouseManager_->setCurrentMouseTool(shape->mouseTool(), true);
    updateMouseControls_();
    return 1;
}

void OverlayEditorDialog::beforeRefresh() {
    if (editing_) followPlatform_();
}

void OverlayEditorDialog::afterRefresh(int widthPixels, int heightPixels) {
    if (editing_) marks_.draw(current_(), widthPixels, heightPixels);
}

void OverlayEditorDialog::dropUntouched_() {
    Shape* const current = current_();
    bool dropped = false;
    std::erase_if(added_, [&](const auto& entry) {
        Shape* const shape = overlay_->shapeOf(entry.first);
        if (shape && shape == current) return false;
        if (!shape || !(*shape->state(entry.second.get()) == *entry.second)) return true;
        widgets_->list.removeItem(itemOf_(shape));
        overlay_->removeShape(shape);
        delete shape;
        return dropped = true;
    });
    if (!dropped) return;
    widgets_->list.deselectAll();
    if (current) widgets_->list.setSelectedItem(itemOf_(current));
    updateListManipulationButtons_();
}

int OverlayEditorDialog::onCmdStop(PIObject*, void*) {
    mouseManager_->clearMouseTool();
    updateMouseControls_();
    return 1;
}

void OverlayEditorDialog::updateMouseControls_() {
    if (editing_) followPlatform_();
    if (Shape* const shape = current_(); std::exchange(carried_, false) && shape) shape->fillGui();
    timeout_.cancel();
    updateSavedMark_();
    if (!editing_) return;
    const Shape* const shape = current_();
    MouseTool* const tool = shape ? shape->mouseTool() : nullptr;
    if (!mouseManager_->isValid() && tool) mouseManager_->setCurrentMouseTool(tool, false);
    const bool usable = mouseManager_->isValid();
    const bool drawing = tool && mouseManager_->currentMouseTool() == tool && tool->isActive();
    widgets_->edit.setEnabled(usable);
    widgets_->stop.setEnabled(usable);
    widgets_->edit.setCheck(drawing);
    widgets_->stop.setCheck(usable && !drawing);
    // Others may write the file at any time.
    PICommon::createTimeout(timeout_, kFollowToolMilliseconds, onTimeoutCallback_);
}

int OverlayEditorDialog::onTimeout(PIObject*, void*) {
    // Noted at once, whatever has to wait: the host has forgotten it.
    timeout_.fired();
    return followTool_->Call(nullptr, nullptr);
}

void OverlayEditorDialog::hear(halNotify::Severity severity, const std::string& text) {
    widgets_->messages.hear(severity, text);
}

void OverlayEditorDialog::setOverListener(std::function<void()> over) {
    widgets_->messages.setOverListener(std::move(over));
}

int OverlayEditorDialog::onCmdShapeName(PIObject*, void*) {
    Shape* const shape = current_();
    if (!shape) return 1;
    const std::string name = widgets_->name.getValueText();
    if (UTILS::trimmed(name).empty()) {
        if (refusedName_->is(name) ||
            !refusedName_->refuse(name, "Name: a shape needs one; still \"" + shape->name() + "\"")) {
            refusedName_->forget();
            widgets_->name.setValue(shape->name());
        }
        return 1;
    }
    refusedName_->forget();
    shape->setName(name);
    if (shape->name() != name) widgets_->name.setValue(shape->name());
    if (const std::int32_t item = itemOf_(shape); item >= 0) widgets_->list.setItemText(item, shape->name());
    updateSavedMark_();
    return 1;
}

// Editor-wide settings

int OverlayEditorDialog::onCmdAutoDelete(PIObject*, void*) {
    preferences_->setAutoDelete(widgets_->autoDelete.isChecked());
    return 1;
}

UTILS::UnitType_t OverlayEditorDialog::chosenUnits_(const PIGUI::PIOptionMenu& menu) const {
    return UTILS::unitsGetTypeFromString(menu.getOptionText(menu.getValueInt()));
}

int OverlayEditorDialog::onCmdLlaUnits(PIObject*, void*) {
    preferences_->setGeodeticUnits(chosenUnits_(widgets_->lla.menu));
    notifyPrefsUpdate_();
    return 1;
}

int OverlayEditorDialog::onCmdAltitudeUnits(PIObject*, void*) {
    preferences_->setAltitudeUnits(chosenUnits_(widgets_->altitude.menu));
    notifyPrefsUpdate_();
    return 1;
}

int OverlayEditorDialog::onCmdAngleUnits(PIObject*, void*) {
    preferences_->setAngleUnits(chosenUnits_(widgets_->angle.menu));
    notifyPrefsUpdate_();
    return 1;
}

int OverlayEditorDialog::onCmdRangeUnits(PIObject*, void*) {
    preferences_->setRangeUnits(chosenUnits_(widgets_->range.menu));
    notifyPrefsUpdate_();
    return 1;
}

int OverlayEditorDialog::onCmdPrecision(PIObject*, void*) {
    const auto digits = widgets_->digits.take();
    if (!digits) return 1;
    preferences_->setPrecision(*digits);
    notifyPrefsUpdate_();
    return 1;
}

int OverlayEditorDialog::onCmdCoordinateSystem(PIObject*, void*) {
    const std::int32_t chosen = widgets_->system.getValueInt();
    preferences_->setCoordinateSystem(
        preferences_->getSystemFromString(widgets_->system.getOptionText(chosen)));
    notifyPrefsUpdate_();
    return 1;
}

void OverlayEditorDialog::notifyPrefsUpdate_() {
    for (Shape* shape : overlay_->shapes()) shape->notifyPrefsUpdate();
    if (rings_) rings_->notifyPrefsUpdate();
    // The labels of points in the view, too.
    PICommon::forceOpenGLRedraw();
}

int OverlayEditorDialog::onCmdDismiss(PIObject*, void*) {
    hide();
    return 1;
}

// Platforms

void OverlayEditorDialog::updateAttachControls_() {
    const Shape* const shape = current_();
    const bool canAttach = (shape && shape->canAttach()) || document_.attachment().holdsOffsets();
    widgets_->attach.setControlsEnabled(canAttach || overlay_->attachedPlatformId() != 0,
                                        shape ? "A shape of this kind cannot be attached: select another one"
                                              : "Select a shape first: it is attached with all the others");
}

void OverlayEditorDialog::showDocument_() {
    widgets_->file.setValue(document_.fileName());
    widgets_->fileCaption.setValue(
        kFileCaption + (document_.fileName().empty() ? std::string() : ": " + oneLine(document_.fileName())));
    widgets_->save.setEnabled(!document_.fileName().empty());
    widgets_->attach.setAttachPlatform(overlay_->attachedPlatformId());
    updateAttachControls_();
    updateMouseControls_();
    updateListManipulationButtons_();
}

int OverlayEditorDialog::onCmdAttach(PIObject*, void* data) {
    const unsigned long platform = data ? *static_cast<const unsigned long*>(data) : 0;
    // The row shows what was chosen.
    if (!document_.attach(platform, widgets_->attach.centerOnHost()))
        widgets_->attach.setAttachPlatform(overlay_->attachedPlatformId());
    updateAttachControls_();
    updateSavedMark_();
    return 1;
}

int OverlayEditorDialog::onCmdSetMouseTool(PIObject*, void*) {
    updateMouseControls_();
    return 1;
}

void OverlayEditorDialog::scenarioEntityRemoved(unsigned long id) {
    if (id == 0) return;
    if (loading_ && loading_->reading.isOn(id)) cancelLoading_("the platform on which it is shown is gone");
    if (document_.platformRemoved(id)) {
        widgets_->attach.reset();
        updateAttachControls_();
        updateSavedMark_();
    }
    widgets_->attach.refreshPlatformList();
}

void OverlayEditorDialog::scenarioZELsChanged() {
    if (existingZels_) existingZels_->refreshZELList();
}

int OverlayEditorDialog::onZelsChanged(PIObject*, void*) {
    scenarioZELsChanged();
    return 1;
}

void OverlayEditorDialog::scenarioPlatformAdded() {
    widgets_->attach.refreshPlatformList();
}

}  // namespace OverlayEditor
