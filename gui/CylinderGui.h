#pragma once

#include <memory>

#include "gui/PointEditGui.h"
#include "model/CylinderShape.h"

namespace OverlayEditor {

/// The panel of the circular shapes. Its fields depend on the subtype: one radius or two, a height, the
/// bounds of a sector.
class CylinderGui final : public PanelOf<CylinderPanel> {
  public:
    CylinderGui(CylinderShape::Subtype subtype, const Preferences& preferences, PIGUI::PICanvas& canvas,
                PanelChange change);

    void setCenterLla(const PlacedPoint& point) override { center_.setPosition(point); }
    std::optional<PlacedPoint> centerLla() const override { return center_.edited(); }
    bool placesCenter() const override { return center_.placeEdited(); }
    void setXradius(double meters) override { xRadius_.setValue(meters); }
    std::optional<double> xRadius() const override { return xRadius_.edited(); }
    void setYradius(double meters) override { show_(yRadius_, meters); }
    std::optional<double> yRadius() const override { return edited_(yRadius_); }
    void setHeight(double meters) override { show_(height_, meters); }
    std::optional<double> height() const override { return edited_(height_); }
    void setStartEndAngles(double startRad, double endRad) override {
        show_(startAngle_, startRad);
        // More than one turn is nothing that can be typed: equal bounds are a full turn.
        show_(endAngle_, endRad > halCore::kTwoPi ? startRad : endRad);
    }
    std::optional<double> startAngle() const override { return edited_(startAngle_); }
    std::optional<double> endAngle() const override { return edited_(endAngle_); }
    LineStyleGUI& lineStyle() override { return lineStyle_; }
    FillStyleGUI& fillStyle() override { return fillStyle_; }

  private:
    /// Null unless the subtype has the field.
    using Entry = std::unique_ptr<ValueUnitEntry>;
    Entry entry_(bool wanted, const char* caption, ValueUnitEntry::Quantity quantity);
    static void show_(const Entry& entry, double value) {
        if (entry) entry->setValue(value);
    }
    static std::optional<double> edited_(const Entry& entry) {
        return entry ? entry->edited() : std::nullopt;
    }

    PointEditGui center_{*this};
    ValueUnitEntry xRadius_;
    Entry yRadius_;
    Entry height_;
    Entry startAngle_;
    Entry endAngle_;
    LineStyleRows lineStyle_{*this};
    FillStyleRows fillStyle_{*this};
};

}  // namespace OverlayEditor
