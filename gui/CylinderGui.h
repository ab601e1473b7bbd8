#pragma once

#include <memory>
#include <optional>

#include "gui/DrawRow.h"
#include "gui/PointEditGui.h"
#include "gui/StyleWidgets.h"
#include "gui/ValueUnitEntry.h"
#include "model/CylinderShape.h"

namespace OverlayEditor {

/// The panel of the circular shapes. Its fields depend on the subtype: one radius or two, a height, the
/// bounds of a sector.
class CylinderGui final : public CylinderPanel {
  public:
    /// \param canvas holds the panel and must outlive it
    /// \param change called after every edit of the user's
    CylinderGui(CylinderShape::Subtype subtype, const Preferences& preferences, PIGUI::PICanvas& canvas,
                PanelChange change);

    void setDrawCheck(bool drawn) override { draw_.setDrawCheck(drawn); }
    bool drawCheck() const override { return draw_.drawCheck(); }
    void setCenterLla(const halCore::Vec3& lla) override { center_.setPosition(lla); }
    std::optional<halCore::Vec3> centerLla() const override { return center_.edited(); }
    void setXradius(double meters) override;
    std::optional<double> xRadius() const override { return xRadius_.edited(); }
    void setYradius(double meters) override;
    std::optional<double> yRadius() const override;
    void setHeight(double meters) override;
    std::optional<double> height() const override;
    void setStartEndAngles(double startRad, double endRad) override;
    std::optional<double> startAngle() const override;
    std::optional<double> endAngle() const override;
    LineStyleGUI& lineStyle() override { return lineStyle_; }
    FillStyleGUI& fillStyle() override { return fillStyle_; }
    void setPointConverter(PointConverter* converter) override { center_.setPointConverter(converter); }
    void notifyPrefsUpdate() override;

    /// Every edit ends here.
    void onCmdChange();

  private:
    /// Null unless the subtype has the field.
    std::unique_ptr<ValueUnitEntry> entry_(bool wanted, const std::string& caption,
                                           ValueUnitEntry::Quantity quantity, const Preferences& preferences);

    PanelChange change_;
    PIGUI::PIHorizontalMatrix table_;
    DrawRow draw_;
    PointEditGui center_;
    ValueUnitEntry xRadius_;
    std::unique_ptr<ValueUnitEntry> yRadius_;
    std::unique_ptr<ValueUnitEntry> height_;
    std::unique_ptr<ValueUnitEntry> startAngle_;
    std::unique_ptr<ValueUnitEntry> endAngle_;
    LineStyleWidgets lineStyle_;
    FillStyleWidgets fillStyle_;
};

}  // namespace OverlayEditor
