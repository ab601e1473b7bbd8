#pragma once

#include "gui/DrawRow.h"
#include "gui/HeadingRow.h"
#include "gui/PointEditGui.h"
#include "gui/StyleWidgets.h"
#include "model/RectangleGeometry.h"

namespace OverlayEditor {

/// The panel of rectangles and triangles. The size or the other corner can be edited, whichever is chosen;
/// the fields of the one that is not show what follows from the other.
class RectangleGui final : public RectanglePanel {
  public:
    /// \param canvas holds the panel and must outlive it
    /// \param change called after every edit of the user's
    RectangleGui(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change);
    ~RectangleGui() override { callbacks_.disconnect(); }

    void setDrawCheck(bool drawn) override { draw_.setDrawCheck(drawn); }
    bool drawCheck() const override { return draw_.drawCheck(); }
    void setAnchor(const halCore::Vec3& lla) override { anchor_.setPosition(lla); }
    void setAnchorCenter(bool center) override;
    bool isAnchorCenter() const override { return anchorCenter_; }
    void setLastCorner(const halCore::Vec3& lla) override { corner_.setPosition(lla); }
    void updateWidthHeight(double width, double height) override;
    bool edited() const override;
    bool spanned() const override;
    bool reshaped() const override;
    halCore::Vec3 anchor() const override;
    halCore::Vec3 getFirstCorner() const override;
    halCore::Vec3 getLastCorner() const override;
    double getWidth() const override { return size_().width; }
    double getHeight() const override { return size_().height; }
    LineStyleGUI& lineStyle() override { return lineStyle_; }
    FillStyleGUI& fillStyle() override { return fillStyle_; }
    void setPointConverter(PointConverter* converter) override;
    void notifyPrefsUpdate() override;

    int onCmdAnchor(PIObject* sender, void* data);
    int onCmdSource(PIObject* sender, void* data);
    /// Every edit ends here.
    void onCmdChange();

  private:
    /// The size that the fields describe, from the corner when that is the source.
    RectangleGeometry::Size size_() const;
    /// Only the fields of the source can be edited.
    void enableSource_();

    bool anchorCenter_ = true;
    bool cornerIsSource_ = false;
    CallbackList<RectangleGui> callbacks_{this};
    PanelChange change_;
    PIGUI::PIHorizontalMatrix table_;
    DrawRow draw_;
    PIGUI::PILabel anchorCaption_;
    PIGUI::PIHorizontalFrame anchorChoice_;
    PIGUI::PIRadioButton centerButton_;
    PIGUI::PIRadioButton cornerButton_;
    PIGUI::PILabel anchorFiller_;
    PointEditGui anchor_;
    PIGUI::PILabel sourceCaption_;
    PIGUI::PIHorizontalFrame sourceChoice_;
    PIGUI::PIRadioButton sizeButton_;
    PIGUI::PIRadioButton corner2Button_;
    PIGUI::PILabel sourceFiller_;
    ValueUnitEntry width_;
    ValueUnitEntry height_;
    HeadingRow cornerHeading_;
    PointEditGui corner_;
    LineStyleWidgets lineStyle_;
    FillStyleWidgets fillStyle_;
};

}  // namespace OverlayEditor
