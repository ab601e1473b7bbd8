#include "gui/MessageBoard.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "gui/Captions.h"
#include "gui/RefusedText.h"
#include "pi/FunctorTwoParams.h"

namespace OverlayEditor {

namespace {

constexpr std::int32_t kLines = 2;
/// So many letters are sure to have room.
constexpr std::size_t kMostLetters = 220;
constexpr std::size_t kMostInTooltip = 20;

/// Behind the path that begins here.
std::size_t pathEnd(const std::string& text, std::size_t begin) {
    return std::min(text.find_first_of(":,;\"", begin), text.find(" /", begin));
}

/// A text that fits: paths without their directories, so that the reason can be read; then with whole letters
/// of UTF-8 left out.
std::string shortened(std::string text) {
    constexpr std::string_view cut = "...";
    for (std::size_t at = 0; at < text.size() && text.size() > kMostLetters; ++at) {
        if (text[at] != '/' || (at > 0 && text[at - 1] != ' ')) continue;
        const std::size_t last = text.rfind('/', pathEnd(text, at + 1));
        if (last > at + cut.size()) text.replace(at, last - at, cut);
    }
    if (text.size() <= kMostLetters) return text;
    const auto isPart = [&](std::size_t at) {
        return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80;
    };
    std::size_t head = kMostLetters * 2 / 3;
    std::size_t tail = text.size() - (kMostLetters - head);
    while (head > 0 && isPart(head)) --head;
    while (tail < text.size() && isPart(tail)) ++tail;
    return text.substr(0, head) + " ... " + text.substr(tail);
}

}  // namespace

MessageBoard::MessageBoard(PIGUI::PICanvas* parent, FunctorTwoParams__* onAnswer,
                           FunctorTwoParams__* onCancel, FunctorTwoParams__* onRecover,
                           FunctorTwoParams__* onDiscard)
    : row_(parent, PIGUI::PILayoutFillX | PIGUI::PILayoutTight),
      text_(&row_, ""),
      answer_(&row_, "Load Rescued", onAnswer),
      cancel_(&row_, "Cancel\tEnd what is under way; what is edited stays as it is", onCancel),
      recover_(&row_, "Recover\tTake the shapes that were not saved into the editor", onRecover),
      discard_(&row_,
               "Discard\tWrite the shapes that were not saved to a rescue file, and offer them no more",
               onDiscard) {
    text_.setRoom(0, kLines);
    for (PIGUI::PIButton* button : {&answer_, &cancel_, &recover_, &discard_}) button->hide();
}

void MessageBoard::hear(halNotify::Severity severity, const std::string& text) {
    if (lines_.empty()) answer_.hide();
    lines_.push_back({severity, false, looking_, oneLine(text)});
    show_();
}

void MessageBoard::offer(const std::string& caption) {
    if (!lines_.empty()) lines_.back().answered = true;
    answer_.setValue(caption);
    answer_.show();
    show_();
}

void MessageBoard::clear() {
    lines_.clear();
    answer_.hide();
    show_();
    if (over_) over_();
}

void MessageBoard::tellLost(const std::function<std::string()>& look) {
    looking_ = true;
    lost_ = oneLine(look());
    looking_ = false;
    show_();
}

void MessageBoard::commanded(const PIObject* sender) {
    const bool follows = RefusedText::lastCommand() != 0 && commandsGiven() == RefusedText::lastCommand() + 1;
    const bool another =
        !sender || (sender != RefusedText::lastField() && !dynamic_cast<const PIGUI::PITextField*>(sender));
    if (!lines_.empty() && !(follows && another)) clear();
}

void MessageBoard::tellProgress(const std::string& text) {
    std::string line = oneLine(text);
    if (line == progress_) return;
    if (line.empty() != progress_.empty()) cancel_.setShown(!line.empty());
    progress_ = std::move(line);
    show_();
}

void MessageBoard::show_() {
    const bool tells = progress_.empty() && !lost_.empty() && std::ranges::all_of(lines_, &Line::aside);
    if (std::exchange(tellsLost_, tells) != tells) {
        recover_.setShown(tells);
        discard_.setShown(tells);
    }
    if (!progress_.empty()) {
        text_.setValue(shortened(progress_) + '\t' + progress_);
        return;
    }
    if (tells || lines_.empty()) {
        std::string text = shortened(lost_);
        if (!lines_.empty()) text.append(" (and ").append(std::to_string(lines_.size())).append(" more)");
        text.append("\t").append(lost_.empty() ? " " : lost_);
        for (std::size_t i = 0; i < std::min(lines_.size(), kMostInTooltip); ++i)
            text.append("\n").append(lines_[i].text);
        text_.setValue(text);
        return;
    }
    // Of equals the one that the button is for, or the last: it tells what has become of the command.
    const auto rank = [](const Line& line) { return std::pair(line.severity, !line.answered); };
    const auto worst = std::ranges::min_element(lines_.rbegin(), lines_.rend(), {}, rank);
    std::string text = shortened(worst->text);
    if (lines_.size() > 1) text.append(" (and ").append(std::to_string(lines_.size() - 1)).append(" more)");
    text += '\t';
    for (std::size_t i = 0; i < std::min(lines_.size(), kMostInTooltip); ++i)
        text.append(i ? "\n" : "").append(lines_[i].text);
    text_.setValue(text);
}

}  // namespace OverlayEditor
