#include "gui/PointEditGui.h"

namespace OverlayEditor {

PointEditGui::PointEditGui(PanelBody& panel)
    : preferences_(panel.preferences()), lla_(panel), xyz_(panel), mgrs_(panel) {
    xyz_.setShown(false);
    mgrs_.setShown(false);
    choose_();
    panel.add(*this);
}

void PointEditGui::setPosition(const PlacedPoint& point) {
    position_ = point;
    current_->setPosition(point);
}

void PointEditGui::setPointConverter(const PointConverter* converter) {
    position_ = position();
    attached_ = converter != nullptr;
    xyz_.setPointConverter(converter);
    choose_();
}

void PointEditGui::setEnabled(bool enabled) {
    lla_.setEnabled(enabled);
    xyz_.setEnabled(enabled);
    mgrs_.setEnabled(enabled);
}

void PointEditGui::choose_() {
    PointEditor* chosen = &lla_;
    if (preferences_.coordinateSystem() == Preferences::MGRS) chosen = &mgrs_;
    if (attached_) chosen = &xyz_;
    if (chosen == current_) return;
    position_ = position();
    current_->setShown(false);
    chosen->setShown(true);
    current_ = chosen;
    current_->setPosition(position_);
}

}  // namespace OverlayEditor
