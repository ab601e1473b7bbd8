#include "gui/OverlayEditorDialog.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/Notify.h"
#include "common/Strings.h"
#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "gui/Captions.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "model/PolygonShape.h"
#include "model/ShapePlace.h"
#include "pi/Guard.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

/// The list is filled so long at once, and is whole at once when it is short.
constexpr std::size_t kListedAtLeast = 10'000;
constexpr std::chrono::milliseconds kListedAtOnce{30};
constexpr std::int32_t kFollowToolMilliseconds = 1000;
constexpr double kNearestRangeMeters = 5000.0;
constexpr double kFarthestRangeMeters = 7.0e6;
constexpr const char* kFileCaption = "File:\tCurrently loaded ZEL file";
constexpr const char* kLoadRescued = "Load Rescued\tLoad the rescue file with the shapes that were not saved";
constexpr const char* kDiscard = "Discard\tGive up the shapes that are not saved";

/// The pole about which a box lies, or half about: the middle of its longitudes is beside what it holds. 0
/// for none.
double poleWithin(const halCore::Vec3& low, const halCore::Vec3& high) {
    constexpr double nearPole = halCore::kHalfPi / 2.0;
    constexpr double rounding = 1e-9;
    const double wide = high.lon() - low.lon();
    const bool isWhole = wide > halCore::kTwoPi - rounding;
    const bool isHalf = wide > halCore::kPi - rounding;
    const bool north = high.lat() == halCore::kHalfPi && isWhole;
    const bool south = low.lat() == -halCore::kHalfPi && isWhole;
    if (north && south) return 0.0;
    if (north || (isHalf && low.lat() > nearPole)) return halCore::kHalfPi;
    return south || (isHalf && high.lat() < -nearPole) ? -halCore::kHalfPi : 0.0;
}

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

// The list of shapes

void OverlayEditorDialog::giveUpShapes_() {
    mouseManager_->clearMouseTool();
    setCurrentShape_(nullptr);
    widgets_->attach.hideDialog();
    widgets_->list.clearItems();
    listing_ = false;
}

void OverlayEditorDialog::setCurrentShapes(const std::vector<Shape*>& shapes) {
    cancelLoading_("something else is loaded");
    giveUpShapes_();
    overlay_->clearShapes(false);
    for (Shape* shape : shapes) {
        overlay_->addShape(shape);
        if (!editing_) shape->setActive(false);
    }
    fillList_();
    updateMouseControls_();
    updateListManipulationButtons_();
}

void OverlayEditorDialog::fillList_() {
    widgets_->list.clearItems();
    listing_ = true;
    listed_ = 0;
    Slice slice(kListedAtLeast, kListedAtOnce);
    listOn_(slice);
}

void OverlayEditorDialog::listOn_(Slice& slice) {
    if (!listing_) return;
    constexpr std::size_t units = 3;
    for (Shape* const shape : overlay_->shapes(listed_)) {
        widgets_->list.appendItem(shape->name(), shape);
        listed_ = overlay_->numberOf(shape);
        if (slice.isOver(units) && document_.turns().comeBack()) return;
    }
    listing_ = false;
}

void OverlayEditorDialog::listRest_() {
    Slice whole;
    listOn_(whole);
}

Shape* OverlayEditorDialog::selectedShape_() {
    const std::int32_t item = widgets_->list.getSelectedItem();
    if (item < 0) return nullptr;
    auto* const shape = static_cast<Shape*>(widgets_->list.getItemData(item));
    if (overlay_->contains(shape)) return shape;
    halNotify::notify(halNotify::Warning)
        << "The shape \"" << widgets_->list.getItemText(item) << "\" is gone, and leaves the list";
    widgets_->list.removeItem(item);
    widgets_->list.deselectAll();
    updateListManipulationButtons_();
    return nullptr;
}

std::int32_t OverlayEditorDialog::itemOf_(const Shape* shape) {
    listRest_();
    const std::int32_t count = widgets_->list.getNumItems();
    // Usually they stand in the overlay's order: the host need not be asked for each.
    const std::vector<Shape*> shapes = overlay_->shapes();
    const auto place = static_cast<std::int32_t>(std::ranges::find(shapes, shape) - shapes.begin());
    if (place < count && widgets_->list.getItemData(place) == shape) return place;
    for (std::int32_t item = 0; item < count; ++item)
        if (widgets_->list.getItemData(item) == shape) return item;
    return -1;
}

Shape* OverlayEditorDialog::current_() {
    if (!overlay_->contains(currentShape_)) currentShape_ = nullptr;
    return currentShape_;
}

void OverlayEditorDialog::noteShownPoint_() {
    if (auto* const points = dynamic_cast<PolygonShape*>(current_()))
        shownPoints_[overlay_->numberOf(points)] = points->shownPoint();
}

void OverlayEditorDialog::setCurrentShape_(Shape* shape) {
    if (Shape* const before = current_(); shape != before) {
        widgets_->next.forget();
        noteShownPoint_();
        if (before) before->deleteGui();
        currentShape_ = shape;
        PICommon::forceOpenGLRedraw();
        if (shape) {
            shape->createGui(preferences_, &widgets_->panelArea);
            shape->fillGui();
        }
        if (auto* const points = dynamic_cast<PolygonShape*>(shape))
            points->showPoint(shownPoints_[overlay_->numberOf(shape)]);
    }
    document_.history().select(overlay_->numberOf(shape));
    refusedName_->forget();
    widgets_->name.setValue(shape ? shape->name() : std::string());
    widgets_->name.setEnabled(shape != nullptr);
    widgets_->next.setEnabled(shape != nullptr);
    updateAttachControls_();
}

int OverlayEditorDialog::onCmdCurrentShapeSelection(PIObject*, void*) {
    mouseManager_->clearMouseTool();
    setCurrentShape_(selectedShape_());
    dropUntouched_();
    updateMouseControls_();
    updateListManipulationButtons_();
    return 1;
}

void OverlayEditorDialog::updateListManipulationButtons_() {
    const bool selected = widgets_->list.getSelectedItem() >= 0;
    for (PIGUI::PIWindow* each : std::initializer_list<PIGUI::PIWindow*>{
             &widgets_->center, &widgets_->remove, &widgets_->duplicate, &widgets_->style})
        each->setEnabled(selected);
    const bool any = widgets_->list.getNumItems() > 0;
    widgets_->removeAll.setEnabled(any);
    widgets_->fresh.setEnabled(any || !document_.fileName().empty());
}

int OverlayEditorDialog::onCmdCenter(PIObject*, void*) {
    followPlatform_();
    const Shape* const shape = selectedShape_();
    if (!shape) return 1;
    if (!hasPlace(*shape)) {
        halNotify::notify(halNotify::Warning)
            << "Not centered: \"" << shape->name() << "\" has no position yet";
        return 1;
    }
    const auto [low, high] = shape->boundingBox();
    halCore::Vec3 center = shape->centerPoint();
    double extent = halCore::Sodano::inverse(low, high).distance;
    if (const double pole = poleWithin(low, high); pole != 0.0) {
        center.setLat(pole);
        const double edge = pole > 0.0 ? low.lat() : high.lat();
        extent = 2.0 * halCore::Sodano::inverse(pole, 0.0, edge, 0.0).distance;
    }
    PIHALVIS::setCameraCenterPos(center.lat(), center.lon(), 0.0);
    PIHALVIS::setCameraRAE(std::clamp(extent, kNearestRangeMeters, kFarthestRangeMeters), 0.0,
                           halCore::kHalfPi);
    return 1;
}

int OverlayEditorDialog::onCmdDelete(PIObject*, void*) {
    Shape* const shape = selectedShape_();
    mouseManager_->clearMouseTool();
    delete_(shape);
    return 1;
}

void OverlayEditorDialog::delete_(Shape* shape) {
    if (shape) {
        setCurrentShape_(nullptr);
        widgets_->list.removeItem(itemOf_(shape));
        widgets_->list.deselectAll();
        overlay_->removeShape(shape);
        delete shape;
        // The host does not know of one that was not complete, but shows its points.
        PICommon::forceOpenGLRedraw();
    }
    updateMouseControls_();
    updateListManipulationButtons_();
}

int OverlayEditorDialog::onCmdClear(PIObject*, void*) {
    if (rescued_()) clear_();
    return 1;
}

void OverlayEditorDialog::clear_() {
    cancelLoading_("an empty overlay is begun");
    giveUpShapes_();
    document_.clear();
    showDocument_();
}

bool OverlayEditorDialog::rescued_() {
    const std::string before = document_.rescueFile();
    const bool rescued = document_.rescue(insists_ ? Document::Rescue::OrGiveUp : Document::Rescue::OrKeep);
    if (!rescued) {
        widgets_->messages.offer(kDiscard);
        refused_ = sender_;
        refusedAt_ = std::chrono::steady_clock::now();
    } else if (document_.rescueFile() != before) {
        widgets_->messages.offer(kLoadRescued);
    }
    answer_ = rescued ? Answer::LoadRescued : Answer::Discard;
    return rescued;
}

int OverlayEditorDialog::onCmdAnswer(PIObject*, void*) {
    widgets_->messages.clear();
    if (answer_ == Answer::LoadRescued) {
        load_(document_.beginFile(document_.rescueFile()), false);
        return 1;
    }
    clear_();
    halNotify::notify(halNotify::Warning)
        << "The unsaved shapes are given up without a rescue file, and Undo brings them back";
    return 1;
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
