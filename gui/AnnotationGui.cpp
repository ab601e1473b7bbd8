#include "gui/AnnotationGui.h"

#include <algorithm>
#include <array>

namespace OverlayEditor {

namespace {

constexpr std::array<const char*, 29> kFonts{
    "andalemo.ttf", "arial.ttf",    "arialbd.ttf",  "arialbi.ttf",  "ariali.ttf",   "ariblk.ttf",
    "comic.ttf",    "comicbd.ttf",  "cour.ttf",     "courbd.ttf",   "courbi.ttf",   "couri.ttf",
    "georgia.ttf",  "georgiab.ttf", "georgiai.ttf", "georgiaz.ttf", "impact.ttf",   "times.ttf",
    "timesbd.ttf",  "timesbi.ttf",  "timesi.ttf",   "trebuc.ttf",   "trebucbd.ttf", "trebucbi.ttf",
    "trebucit.ttf", "verdana.ttf",  "verdanab.ttf", "verdanai.ttf", "verdanaz.ttf"};

}  // namespace

FontRow::FontRow(PanelBody& panel)
    : PanelRow(panel, "Font:\tFont to use when drawing the text", "\tFont to use when drawing the text", ""),
      fonts_(kFonts.begin(), kFonts.end()) {
    for (std::size_t i = 0; i < fonts_.size(); ++i)
        field_.appendOption(static_cast<std::int32_t>(i), fonts_[i]);
}

void FontRow::setValue(const std::string& fileName) {
    fileName_ = fileName;
    auto found = std::ranges::find(fonts_, fileName);
    if (found == fonts_.end()) {
        field_.appendOption(static_cast<std::int32_t>(fonts_.size()), fileName);
        found = fonts_.insert(fonts_.end(), fileName);
    }
    field_.setValue(static_cast<std::int32_t>(found - fonts_.begin()));
}

bool FontRow::takeEdit_() {
    const auto chosen = static_cast<std::size_t>(field_.getValueInt());
    if (chosen >= fonts_.size()) return false;
    fileName_ = fonts_[chosen];
    return true;
}

}  // namespace OverlayEditor
