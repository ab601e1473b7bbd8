#pragma once

#include "gui/PointEditor.h"
#include "gui/ValueUnitEntry.h"

namespace OverlayEditor {

/// A position as offsets from a converter's reference: three rows of a panel's table. East, north and up,
/// in range units.
class XyzEditGUI final : public PointEditor {
  public:
    XyzEditGUI(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change);

    /// Whose reference the offsets count from. Not owned; without one nothing can be shown or edited.
    void setPointConverter(const PointConverter* converter) { converter_ = converter; }

    void setPosition(const halCore::Vec3& lla) override;
    std::optional<halCore::Vec3> edited() const override;
    bool placeEdited() const override { return x_.edited() || y_.edited(); }
    void notifyPrefsUpdate() override;
    void setShown(bool shown) override;
    void setEnabled(bool enabled) override;

  private:
    /// What the fields say now.
    halCore::Vec3 typed_() const;
    std::string_view refusal_(const halCore::Vec3& offset) const;

    const PointConverter* converter_ = nullptr;
    halCore::Vec3 offset_;
    ValueUnitEntry x_;
    ValueUnitEntry y_;
    ValueUnitEntry z_;
};

}  // namespace OverlayEditor
