#pragma once

#include <string>
#include <vector>

#include "gui/PointEditGui.h"

namespace OverlayEditor {

/// Chooses a font file. One that is not among those it offers is added to them when it is set.
class FontRow final : public PanelRow<PIGUI::PIOptionMenu> {
  public:
    explicit FontRow(PanelBody& panel);
    void setValue(const std::string& fileName);
    std::string value() const { return fileName_; }

  private:
    bool takeEdit_() override;

    std::string fileName_;
    /// The options, in their order.
    std::vector<std::string> fonts_;
};

/// The panel of labels.
class AnnotationGui final : public PanelOf<AnnotationPanel> {
  public:
    using PanelOf::PanelOf;

    void setPosition(const PlacedPoint& point) override { position_.setPosition(point); }
    std::optional<PlacedPoint> position() const override { return position_.edited(); }
    bool places() const override { return position_.placeEdited(); }
    void setColor(std::uint32_t rgba) override { color_.setValue(rgba); }
    std::uint32_t color() const override { return color_.value(); }
    void setFontName(const std::string& fileName) override { font_.setValue(fileName); }
    std::string fontName() const override { return font_.value(); }
    void setFontSize(int points) override { fontSize_.setValue(points); }
    int fontSize() const override { return fontSize_.value(); }

  private:
    PointEditGui position_{*this};
    ColorRow color_{*this, "Line Color:\tColor to use for drawing the line"};
    FontRow font_{*this};
    NumberRow fontSize_{*this, "Font Size:\tSize to use when drawing the text", "pixels", 1};
};

}  // namespace OverlayEditor
