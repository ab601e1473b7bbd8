#pragma once

#include "gui/DrawRow.h"
#include "gui/HeadingRow.h"
#include "gui/PointEditGui.h"
#include "gui/StyleWidgets.h"

namespace OverlayEditor {

/// The panel of orbits.
class OrbitGui final : public OrbitPanel {
  public:
    /// \param canvas holds the panel and must outlive it
    /// \param change called after every edit of the user's
    OrbitGui(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change);

    void setDrawCheck(bool drawn) override { draw_.setDrawCheck(drawn); }
    bool drawCheck() const override { return draw_.drawCheck(); }
    void setCenterLla(const halCore::Vec3& lla) override { center1_.setPosition(lla); }
    std::optional<halCore::Vec3> centerLla() const override { return center1_.edited(); }
    void setCenterLla2(const halCore::Vec3& lla) override { center2_.setPosition(lla); }
    std::optional<halCore::Vec3> centerLla2() const override { return center2_.edited(); }
    void setRadius(double meters) override { radius_.setValue(meters); }
    std::optional<double> radius() const override { return radius_.edited(); }
    LineStyleGUI& lineStyle() override { return lineStyle_; }
    FillStyleGUI& fillStyle() override { return fillStyle_; }
    void setPointConverter(PointConverter* converter) override;
    void notifyPrefsUpdate() override;

    /// Every edit ends here.
    void onCmdChange();

  private:
    PanelChange change_;
    PIGUI::PIHorizontalMatrix table_;
    DrawRow draw_;
    HeadingRow heading1_;
    PointEditGui center1_;
    HeadingRow heading2_;
    PointEditGui center2_;
    ValueUnitEntry radius_;
    LineStyleWidgets lineStyle_;
    FillStyleWidgets fillStyle_;
};

}  // namespace OverlayEditor
