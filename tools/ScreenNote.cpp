#include "tools/ScreenNote.h"

#include <algorithm>
#include <utility>

#include "common/NumberText.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

void ScreenNote::show(std::string text) {
    if (shown_) PIHALVIS::removeScreenText(std::exchange(shown_, nullptr));
    if (text.empty()) return;
    // A line break would end the field.
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    const std::string record =
        "ScreenText\n"
        "Enabled FLOAT64 1.0\n"
        "Text STRING " +
        text + "\nFont STRING " + place_.font + "\nPosX FLOAT64 " + UTILS::writeFixed(place_.left, 1) +
        "\nPosY FLOAT64 " + UTILS::writeFixed(place_.vertical, 1) +
        "\nTextColor STRING 0xffffffff\n"
        "HAlign STRING L\n"
        "VAlign STRING " +
        (place_.bottom ? "B\n" : "T\n");
    shown_ = PIHALVIS::addScreenText(record);
}

}  // namespace OverlayEditor
