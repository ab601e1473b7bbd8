#include "tools/LabelFont.h"

#include <cmath>

#include <FTGL/ftgl.h>

#include "common/Notify.h"

namespace OverlayEditor {

namespace {

/// FTGL takes points; at this resolution a point is a pixel.
constexpr unsigned int kResolution = 72;

}  // namespace

const char* LabelFont::defaultPath() {
    return "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
}

LabelFont::LabelFont(const std::string& path) {
    auto font = std::make_unique<FTTextureFont>(path.c_str());
    if (font->Error() == 0) {
        font->CharMap(ft_encoding_unicode);
        font_ = std::move(font);
        return;
    }
    if (halNotify::isNotifyEnabled(halNotify::Warning))
        halNotify::notify(halNotify::Warning)
            << "Points are drawn without labels: the font " << path << " cannot be opened";
}

LabelFont::~LabelFont() = default;

void LabelFont::setSize(int pixels) {
    if (!font_ || pixels == size_) return;
    size_ = pixels;
    font_->FaceSize(static_cast<unsigned int>(pixels), kResolution);
}

double LabelFont::width(const std::string& utf8) const {
    return font_ ? static_cast<double>(font_->Advance(utf8.c_str())) : 0.0;
}

std::vector<std::string> LabelFont::lines(const std::string& utf8, double width) const {
    std::vector<std::string> lines{utf8};
    while (this->width(lines.back()) > width) {
        const std::string rest = lines.back();
        // The last blank before which all fits, or the first one.
        std::size_t at = rest.find(' ');
        for (std::size_t next = at; next != std::string::npos; next = rest.find(' ', next + 1)) {
            if (this->width(rest.substr(0, next)) > width) break;
            at = next;
        }
        if (at == std::string::npos) break;
        lines.back().erase(at);
        lines.push_back(rest.substr(at + 1));
    }
    return lines;
}

double LabelFont::ascent() const {
    return font_ ? static_cast<double>(font_->Ascender()) : 0.0;
}

double LabelFont::descent() const {
    return font_ ? std::abs(static_cast<double>(font_->Descender())) : 0.0;
}

void LabelFont::draw(const std::string& utf8, double x, double baseline) const {
    if (font_) font_->Render(utf8.c_str(), -1, FTPoint(x, baseline));
}

}  // namespace OverlayEditor
