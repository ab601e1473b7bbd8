#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/ViewProjection.h"

class FTFont;

namespace OverlayEditor {

/// The font of the labels, drawn through textures at one size in device pixels. Made, used and destroyed
/// only with an OpenGL context current. A font file that cannot be opened gives one message, and texts
/// of no size that draw nothing.
class LabelFont {
  public:
    explicit LabelFont(const std::string& path);
    ~LabelFont();
    LabelFont(const LabelFont&) = delete;
    LabelFont& operator=(const LabelFont&) = delete;

    static const char* defaultPath();

    bool isUsable() const { return font_ != nullptr; }
    /// Height of the font in device pixels.
    void setSize(int pixels);
    double width(const std::string& utf8) const;
    /// Parted at blanks into as few lines as are that wide at most; a word that is wider stays whole.
    std::vector<std::string> lines(const std::string& utf8, double width) const;
    /// Above and below the line on which the text stands, both positive.
    double ascent() const;
    double descent() const;
    /// Draws in the current colour. The projection maps device pixels, y upward.
    void draw(const std::string& utf8, double x, double baseline) const;

  private:
    std::unique_ptr<FTFont> font_;
    int size_ = 0;
};

}  // namespace OverlayEditor
