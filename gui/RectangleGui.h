#pragma once

#include "gui/PointEditGui.h"
#include "model/RectangleGeometry.h"

namespace OverlayEditor {

/// The panel of rectangles and triangles. The size or the other corner can be edited, whichever is chosen;
/// the fields of the one that is not show what follows from the other.
class RectangleGui final : public PanelOf<RectanglePanel> {
  public:
    RectangleGui(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change);

    void setAnchor(const PlacedPoint& point) override { anchor_.setPosition(point); }
    void setAnchorCenter(bool center) override { anchorChoice_.setFirst(center); }
    bool isAnchorCenter() const override { return anchorChoice_.isFirst(); }
    void setLastCorner(const PlacedPoint& point) override { corner_.setPosition(point); }
    void updateWidthHeight(double width, double height) override;
    bool edited() const override;
    bool spanned() const override;
    bool isSized() const override { return !cornerIsSource_(); }
    bool reshaped() const override;
    PlacedPoint anchor() const override;
    PlacedPoint getFirstCorner() const override;
    PlacedPoint getLastCorner() const override;
    double getWidth() const override { return size_().width; }
    double getHeight() const override { return size_().height; }
    LineStyleGUI& lineStyle() override { return lineStyle_; }
    FillStyleGUI& fillStyle() override { return fillStyle_; }

    void onCmdChange() override;

  private:
    bool cornerIsSource_() const { return !sourceChoice_.isFirst(); }
    /// The size that the fields describe, from the corner when that is the source.
    RectangleGeometry::Size size_() const;
    /// Only the fields of the source can be edited.
    void enableSource_();

    ChoiceRow anchorChoice_;
    PointEditGui anchor_;
    ChoiceRow sourceChoice_;
    ValueUnitEntry width_;
    ValueUnitEntry height_;
    HeadingRow cornerHeading_;
    PointEditGui corner_;
    LineStyleRows lineStyle_;
    FillStyleRows fillStyle_;
};

}  // namespace OverlayEditor
