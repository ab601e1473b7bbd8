#include "gui/PointsGui.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "geo/Sodano.h"
#include "model/Utils.h"
#include "pi/PICommon.h"

namespace OverlayEditor {

using halCore::Vec3;

PointsGui::PointsGui(PanelBody& panel, bool closed)
    : closed_(closed),
      caption_(panel.table(), "Points"),
      buttons_(panel.table(), PIGUI::PILayoutFillX),
      insert_(&buttons_, "Insert\tInsert a point before the current one",
              callbacks_.make(&PointsGui::onCmdInsert)),
      delete_(&buttons_, "Delete\tDelete the current point", callbacks_.make(&PointsGui::onCmdDelete)),
      filler_(panel.table(), ""),
      name_(panel.table(), "Point"),
      steps_(panel.table(), PIGUI::PILayoutFillX),
      previous_(&steps_, "<-\tPrevious point", callbacks_.make(&PointsGui::onCmdPrevious)),
      next_(&steps_, "->\tNext point", callbacks_.make(&PointsGui::onCmdNext)),
      counter_(&steps_, ""),
      counterFiller_(panel.table(), ""),
      point_(panel) {
    point_.allowSeveral();
    panel.add(*this);
}

void PointsGui::setPoints(PointsContainer& points) {
    if (points_ != &points) index_ = 0;
    points_ = &points;
    show_();
}

void PointsGui::refreshPoint(unsigned long index) {
    const unsigned long count = points_ ? points_->getNumPoints() : 0;
    index_ = count > 0 ? std::min(index, count - 1) : 0;
    show_();
}

void PointsGui::show_() {
    if (!points_) return;
    const unsigned long count = points_->getNumPoints();
    index_ = std::min(index_, count);
    const bool isNew = index_ == count;
    name_.setValue(std::string(isNew ? "New Point" : "Point"));
    counter_.setValue(isNew ? std::string() : std::to_string(index_ + 1) + " of " + std::to_string(count));
    point_.setPosition(isNew ? PlacedPoint(newPoint_()) : points_->placedPointAtIndex(index_));
    if (std::exchange(shownIndex_, index_) != index_) point_.startAnew();
    previous_.setEnabled(index_ > 0);
    next_.setEnabled(!isNew);
    delete_.setEnabled(!isNew);
}

Vec3 PointsGui::newPoint_() const {
    const unsigned long count = points_->getNumPoints();
    if (converter_) return points_->pointAtIndex(count);
    if (count > 0) return points_->pointAtIndex(count - 1);
    Vec3 ground;
    Utils::getDefaultLla(ground);
    ground.setAlt(points_->altitudeAhead().value_or(0.0));
    return ground;
}

Vec3 PointsGui::inserted_() const {
    const unsigned long count = points_->getNumPoints();
    if (index_ >= count) return newPoint_();
    const Vec3 current = points_->pointAtIndex(index_);
    if (index_ == 0 && !closed_) return current;
    const Vec3 before = points_->pointAtIndex((index_ + count - 1) % count);
    const auto way = halCore::Sodano::inverse(before, current);
    Vec3 middle = halCore::Sodano::direct(before, way.azimuth1, 0.5 * way.distance);
    middle.setAlt(0.5 * (before.alt() + current.alt()));
    return middle;
}

int PointsGui::onCmdPrevious(PIObject*, void*) {
    if (index_ > 0) --index_;
    show_();
    // It is marked in the view.
    PICommon::forceOpenGLRedraw();
    return 1;
}

int PointsGui::onCmdNext(PIObject*, void*) {
    ++index_;
    show_();
    PICommon::forceOpenGLRedraw();
    return 1;
}

int PointsGui::onCmdInsert(PIObject*, void*) {
    if (points_) points_->insertPointAtIndex(index_, inserted_());
    return 1;
}

int PointsGui::onCmdDelete(PIObject*, void*) {
    if (points_) points_->deletePointAtIndex(index_);
    return 1;
}

bool PointsGui::takeEdit() {
    const auto edited = point_.edited();
    if (points_ && point_.taken().size() > 1)
        points_->replacePointAtIndex(index_, std::vector(point_.taken().begin(), point_.taken().end()));
    else if (points_ && edited && points_->getNumPoints() == 0 && !point_.placeEdited())
        points_->setAltitudeAhead(edited->place.alt());
    else if (points_ && edited)
        points_->setPlacedPointAtIndex(index_, *edited);
    return edited.has_value();
}

}  // namespace OverlayEditor
