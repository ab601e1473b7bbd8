#include "gui/PointEditGui.h"

namespace OverlayEditor {

PointEditGui::PointEditGui(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change)
    : preferences_(preferences),
      lla_(table, preferences, change),
      mgrs_(table, preferences, change),
      current_(chosen_()) {}

void PointEditGui::setPosition(const halCore::Vec3& lla) {
    position_ = lla;
    current_->setPosition(lla);
}

void PointEditGui::notifyPrefsUpdate() {
    position_ = edited().value_or(position_);
    PointEditor* const before = current_;
    current_ = chosen_();
    if (current_ != before) current_->setPosition(position_);
    current_->notifyPrefsUpdate();
}

PointEditor* PointEditGui::chosen_() {
    const bool mgrs = preferences_.coordinateSystem() == Preferences::MGRS;
    lla_.setShown(!mgrs);
    mgrs_.setShown(mgrs);
    return mgrs ? static_cast<PointEditor*>(&mgrs_) : &lla_;
}

}  // namespace OverlayEditor
