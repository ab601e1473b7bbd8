#pragma once

#include <optional>

#include "gui/LlaEditGUI.h"
#include "gui/MgrsEditGUI.h"
#include "gui/XyzEditGUI.h"

namespace OverlayEditor {

/// One point of a panel: offsets while there is a converter, otherwise the coordinate system that the
/// preferences name.
class PointEditGui final : public PanelPart {
  public:
    explicit PointEditGui(PanelBody& panel);

    /// The converter's reference may have moved: follow with setPosition.
    void setPointConverter(const PointConverter* converter) override;
    void notifyPrefsUpdate() override { choose_(); }
    /// Radians and metres. \see PointEditor
    void setPosition(const PlacedPoint& point);
    std::optional<PlacedPoint> edited() const { return current_->edited(); }
    bool placeEdited() const { return current_->placeEdited(); }
    /// The position in view, edited or not.
    PlacedPoint position() const { return edited().value_or(position_); }
    void setEnabled(bool enabled);

  private:
    /// Shows the editor that is to be shown, and it alone.
    void choose_();

    const Preferences& preferences_;
    bool attached_ = false;
    PlacedPoint position_{halCore::Vec3()};
    LlaEditGUI lla_;
    XyzEditGUI xyz_;
    MgrsEditGUI mgrs_;
    PointEditor* current_ = &lla_;
};

}  // namespace OverlayEditor
