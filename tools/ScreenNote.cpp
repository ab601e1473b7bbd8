#include "tools/ScreenNote.h"

#include <algorithm>
#include <utility>

#include "common/NumberText.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

/// As many as the narrowest view has room for.
constexpr std::size_t kLetters = 62;

std::size_t lettersOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// Takes the text up to a mark and what is left of it.
std::string_view takeUpTo(std::string_view& text, std::string_view mark) {
    const std::size_t at = text.find(mark);
    const std::string_view taken = text.substr(0, at == std::string_view::npos ? at : at + mark.size() - 1);
    text.remove_prefix(std::min(text.size(), taken.size() + 1));
    return taken;
}

}  // namespace

std::vector<std::string> linesOf(std::string_view text, std::size_t letters) {
    std::vector<std::string> lines;
    const auto add = [&](std::string_view piece) {
        if (lines.empty() || lettersOf(lines.back()) + 1 + lettersOf(piece) > letters)
            lines.emplace_back(piece);
        else
            lines.back().append(" ").append(piece);
    };
    while (!text.empty()) {
        std::string_view sentence = takeUpTo(text, lettersOf(text) > letters ? ". " : "\n");
        if (lettersOf(sentence) <= letters)
            add(sentence);
        else
            while (!sentence.empty()) add(takeUpTo(sentence, " "));
    }
    return lines;
}

void ScreenNote::show(std::string text) {
    for (void* const line : std::exchange(shown_, {})) PIHALVIS::removeScreenText(line);
    // A line break would end the field.
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    text_ = std::move(text);
    const std::vector<std::string> lines = linesOf(text_, kLetters);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::size_t before = place_.bottom ? lines.size() - 1 - i : i;
        const std::string record =
            "ScreenText\n"
            "Enabled FLOAT64 1.0\n"
            "Text STRING " +
            lines[i] + "\nFont STRING " + place_.font + "\nPosX FLOAT64 " +
            UTILS::writeFixed(place_.left, 1) + "\nPosY FLOAT64 " +
            UTILS::writeFixed(place_.vertical + kPitch * static_cast<double>(before), 1) +
            "\nTextColor STRING 0xffffffff\n"
            "HAlign STRING L\n"
            "VAlign STRING " +
            (place_.bottom ? "B\n" : "T\n");
        if (void* const line = PIHALVIS::addScreenText(record)) shown_.push_back(line);
    }
}

void ScreenNote::moveTo(double vertical) {
    if (vertical == place_.vertical) return;
    place_.vertical = vertical;
    if (!text_.empty()) show(std::exchange(text_, {}));
}

}  // namespace OverlayEditor
