#pragma once

#include "format/Color.h"
#include "format/ZelShape.h"

namespace halCore::ZEL {

enum class OutlineThickness { None, Thin, Thick };

/// A text at a position.
///
/// The *text* is what stands after "annotation" in a file, where "_" is a blank and "\n" (two
/// characters) a line break. The *label* is what a user typed and the host displays. Users of labels
/// need only `setLabel` and `label`: any label comes back from a file as it was.
class Annotation : public ZelShape {
  public:
    explicit Annotation(bool relative) : ZelShape(relative, true, true) {}
    ShapeType shapeType() const override { return ShapeType::Annotation; }

    /// Sets name and text.
    void setLabel(std::string_view label);
    /// The name when it means the same as the text, otherwise what the text means.
    std::string label() const;

    int getPosition(Vec3& out) const;
    void setPosition(const Vec3& position) { position_ = position; }

    /// As in a file; line breaks and blanks that a file cannot hold are escaped when it is written.
    int getText(std::string& out) const;
    void setText(std::string_view text) { text_ = std::string(text); }

    /// A font file; default "arial.ttf".
    int getFontName(std::string& out) const;
    void setFontName(std::string_view name) { fontName_ = std::string(name); }

    /// Default 15.
    int getTextSize(int& out) const;
    void setTextSize(int size) { textSize_ = size; }

    int getTextColor(Color& out) const;
    void setTextColor(const Color& color) { textColor_ = color; }

    /// Default opaque black.
    int getOutlineColor(Color& out) const;
    void setOutlineColor(const Color& color) { outlineColor_ = color; }

    int getOutlineThickness(OutlineThickness& out) const;
    void setOutlineThickness(OutlineThickness thickness) { outlineThickness_ = thickness; }

    /// Read from a "kml_icon" comment, and written back as that comment only.
    int getIconFile(std::string& out) const;
    void setIconFile(std::string_view file) { iconFile_ = std::string(file); }

    int getPriority(double& out) const;
    void setPriority(double priority) { priority_ = priority; }

  protected:
    void serializeToStream_(std::ostream& out) const override;

  private:
    std::optional<Vec3> position_;
    std::optional<std::string> text_;
    std::optional<std::string> fontName_;
    std::optional<int> textSize_;
    std::optional<Color> textColor_;
    std::optional<Color> outlineColor_;
    std::optional<OutlineThickness> outlineThickness_;
    std::optional<std::string> iconFile_;
    std::optional<double> priority_;
};

}  // namespace halCore::ZEL
