#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "gui/LlaEditGUI.h"
#include "gui/MgrsEditGUI.h"
#include "gui/XyzEditGUI.h"

namespace OverlayEditor {

/// One point of a panel: offsets while there is a converter, otherwise the coordinate system that the
/// preferences name. Each field takes a whole position, too, in any system.
class PointEditGui final : public PanelPart {
  public:
    explicit PointEditGui(PanelBody& panel);

    /// The converter's reference may have moved: follow with setPosition.
    void setPointConverter(const PointConverter* converter) override;
    void notifyPrefsUpdate() override { choose_(); }
    /// Radians and metres. \see PointEditor
    void setPosition(const PlacedPoint& point);
    std::optional<PlacedPoint> edited() const {
        return taken_.empty() ? current_->edited() : std::optional(taken_.front());
    }
    bool placeEdited() const { return !taken_.empty() || current_->placeEdited(); }
    /// Text of several lines may be as many points. Without this they are refused.
    void allowSeveral() { allowsSeveral_ = true; }
    /// All of the points that were pasted since the last setPosition, the edited one first.
    std::span<const PlacedPoint> taken() const { return taken_; }
    /// The position in view, edited or not.
    PlacedPoint position() const { return edited().value_or(position_); }
    void setEnabled(bool enabled);
    /// \see PointEditor
    void startAnew() { current_->startAnew(); }

  private:
    /// Shows the editor that is to be shown, and it alone.
    void choose_();
    /// \see PointEditor::Taker
    bool take_(const std::string& text, UTILS::TypedInto into, std::string& reason);
    /// "100, 200" and perhaps a third, as offsets.
    std::optional<PlacedPoint> readOffsets_(const std::string& text) const;

    const Preferences& preferences_;
    const PointConverter* converter_ = nullptr;
    bool allowsSeveral_ = false;
    std::vector<PlacedPoint> taken_;
    PlacedPoint position_{halCore::Vec3()};
    LlaEditGUI lla_;
    XyzEditGUI xyz_;
    MgrsEditGUI mgrs_;
    PointEditor* current_ = &lla_;
};

}  // namespace OverlayEditor
