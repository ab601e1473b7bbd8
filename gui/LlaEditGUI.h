#pragma once

#include "gui/PointEditor.h"
#include "gui/ValueUnitEntry.h"

namespace OverlayEditor {

/// A position as latitude, longitude and altitude: three rows of a panel's table.
class LlaEditGUI final : public PointEditor {
  public:
    LlaEditGUI(PIGUI::PICanvas& table, const Preferences& preferences, const PanelChange& change);

    void setPosition(const halCore::Vec3& lla) override;
    std::optional<halCore::Vec3> edited() const override;
    bool placeEdited() const override { return lat_.edited() || lon_.edited(); }
    void notifyPrefsUpdate() override;
    void setShown(bool shown) override;
    void setEnabled(bool enabled) override;

  private:
    halCore::Vec3 position_;
    ValueUnitEntry lat_;
    ValueUnitEntry lon_;
    ValueUnitEntry alt_;
};

}  // namespace OverlayEditor
