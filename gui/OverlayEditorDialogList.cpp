#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <string>

#include "common/Notify.h"
#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "gui/OverlayEditorDialog.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "model/PolygonShape.h"
#include "model/ShapePlace.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

/// The list is filled so long at once, and is whole at once when it is short.
constexpr std::size_t kListedAtLeast = 10'000;
constexpr std::chrono::milliseconds kListedAtOnce{30};
constexpr double kNearestRangeMeters = 5000.0;
constexpr double kFarthestRangeMeters = 7.0e6;
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

}  // namespace OverlayEditor
