#pragma once

#include <string_view>

#include "gui/PointEditor.h"
#include "gui/ValueUnitEntry.h"

namespace OverlayEditor {

/// A position as offsets from a converter's reference: east, north and up, in range units.
class XyzEditGUI final : public PointEditor {
  public:
    explicit XyzEditGUI(PanelBody& panel);

    /// Whose reference the offsets count from. Not owned; without one nothing can be shown or edited.
    void setPointConverter(const PointConverter* converter) { converter_ = converter; }

    void setPosition(const PlacedPoint& point) override;
    std::optional<PlacedPoint> edited() const override;
    bool placeEdited() const override { return x_.edited() || y_.edited(); }
    /// Plain numbers are offsets.
    void setTaker(const Taker& taker) override;
    void setShown(bool shown) override;

  private:
    std::array<Row*, 3> rows_() override { return {&x_, &y_, &z_}; }
    /// What the fields say now.
    halCore::Vec3 offset_() const { return {x_.value(), y_.value(), z_.value()}; }
    std::string_view refusal_(const halCore::Vec3& offset) const;

    const PointConverter* converter_ = nullptr;
    ValueUnitEntry x_;
    ValueUnitEntry y_;
    ValueUnitEntry z_;
    HeadingRow nowhere_;
    bool shown_ = true;
    bool isNowhere_ = false;
};

}  // namespace OverlayEditor
