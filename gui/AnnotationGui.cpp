#include "gui/AnnotationGui.h"

#include <algorithm>
#include <array>
#include <utility>

#include "gui/CallChange.h"

namespace OverlayEditor {

namespace {

constexpr std::array<const char*, 29> kFonts{
    "andalemo.ttf", "arial.ttf",    "arialbd.ttf",  "arialbi.ttf",  "ariali.ttf",   "ariblk.ttf",
    "comic.ttf",    "comicbd.ttf",  "cour.ttf",     "courbd.ttf",   "courbi.ttf",   "couri.ttf",
    "georgia.ttf",  "georgiab.ttf", "georgiai.ttf", "georgiaz.ttf", "impact.ttf",   "times.ttf",
    "timesbd.ttf",  "timesbi.ttf",  "timesi.ttf",   "trebuc.ttf",   "trebucbd.ttf", "trebucbi.ttf",
    "trebucit.ttf", "verdana.ttf",  "verdanab.ttf", "verdanai.ttf", "verdanaz.ttf"};

}  // namespace

AnnotationGui::AnnotationGui(const Preferences& preferences, PIGUI::PICanvas& canvas, PanelChange change)
    : fonts_(kFonts.begin(), kFonts.end()),
      change_(std::move(change)),
      table_(&canvas, 3),
      draw_(table_, [this] { onCmdChange(); }),
      position_(table_, preferences, [this] { onCmdChange(); }),
      color_(table_, "Line Color:\tColor to use for drawing the line", [this] { onCmdChange(); }),
      fontCaption_(&table_, "Font:\tFont to use when drawing the text"),
      font_(&table_, "\tFont to use when drawing the text", callbacks_.make(&AnnotationGui::onCmdFont)),
      fontFiller_(&table_, ""),
      fontSize_(table_, "Font Size:\tSize to use when drawing the text", "pixels", 1,
                [this] { onCmdChange(); }) {
    for (std::size_t i = 0; i < fonts_.size(); ++i)
        font_.appendOption(static_cast<std::int32_t>(i), fonts_[i]);
}

void AnnotationGui::setFontName(const std::string& fileName) {
    fontName_ = fileName;
    auto found = std::find(fonts_.begin(), fonts_.end(), fileName);
    if (found == fonts_.end()) {
        font_.appendOption(static_cast<std::int32_t>(fonts_.size()), fileName);
        found = fonts_.insert(fonts_.end(), fileName);
    }
    font_.setValue(static_cast<std::int32_t>(found - fonts_.begin()));
}

int AnnotationGui::onCmdFont(PIObject*, void*) {
    const auto chosen = static_cast<std::size_t>(font_.getValueInt());
    if (chosen >= fonts_.size()) return 1;
    fontName_ = fonts_[chosen];
    onCmdChange();
    return 1;
}

void AnnotationGui::onCmdChange() {
    call(change_);
}

}  // namespace OverlayEditor
