#include "gui/PointEditGui.h"

namespace OverlayEditor {

PointEditGui::PointEditGui(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change)
    : preferences_(preferences),
      lla_(table, preferences, change),
      xyz_(table, preferences, change),
      mgrs_(table, preferences, change) {
    choose_();
}

void PointEditGui::setPosition(const halCore::Vec3& lla) {
    position_ = lla;
    current_->setPosition(lla);
}

void PointEditGui::setPointConverter(PointConverter* converter) {
    position_ = position();
    attached_ = converter != nullptr;
    xyz_.setPointConverter(converter);
    choose_();
}

void PointEditGui::notifyPrefsUpdate() {
    position_ = position();
    choose_();
    current_->notifyPrefsUpdate();
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
    current_ = chosen;
    for (PointEditor* editor : {static_cast<PointEditor*>(&lla_), static_cast<PointEditor*>(&xyz_),
                                static_cast<PointEditor*>(&mgrs_)})
        editor->setShown(editor == current_);
    current_->setPosition(position_);
    current_->notifyPrefsUpdate();
}

}  // namespace OverlayEditor
