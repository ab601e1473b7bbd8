#pragma once

#include <string>
#include <vector>

#include "gui/DrawRow.h"
#include "gui/NumberRow.h"
#include "gui/PointEditGui.h"
#include "gui/StyleWidgets.h"

namespace OverlayEditor {

/// The panel of labels.
class AnnotationGui final : public AnnotationPanel {
  public:
    /// \param canvas holds the panel and must outlive it
    /// \param change called after every edit of the user's
    AnnotationGui(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change);
    ~AnnotationGui() override { callbacks_.disconnect(); }

    void setDraw(bool drawn) override { draw_.setDrawCheck(drawn); }
    bool isDrawn() const override { return draw_.drawCheck(); }
    void setPosition(const halCore::Vec3& lla) override { position_.setPosition(lla); }
    std::optional<halCore::Vec3> position() const override { return position_.edited(); }
    void setColor(std::uint32_t rgba) override { color_.setColor(rgba); }
    std::uint32_t color() const override { return color_.color(); }
    void setFontName(const std::string& fileName) override;
    std::string fontName() const override { return fontName_; }
    void setFontSize(int points) override { fontSize_.setValue(points); }
    int fontSize() const override { return fontSize_.value(); }
    void setPointConverter(PointConverter* converter) override { position_.setPointConverter(converter); }
    void notifyPrefsUpdate() override { position_.notifyPrefsUpdate(); }

    int onCmdFont(PIObject* sender, void* data);
    /// Every edit ends here.
    void onCmdChange();

  private:
    std::string fontName_;
    /// The font selector's options, in its order.
    std::vector<std::string> fonts_;
    CallbackList<AnnotationGui> callbacks_{this};
    PanelChange change_;
    PIGUI::PIHorizontalMatrix table_;
    DrawRow draw_;
    PointEditGui position_;
    ColorRow color_;
    PIGUI::PILabel fontCaption_;
    PIGUI::PIOptionMenu font_;
    PIGUI::PILabel fontFiller_;
    NumberRow fontSize_;
};

}  // namespace OverlayEditor
