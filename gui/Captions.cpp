#include "gui/Captions.h"

#include <algorithm>

namespace OverlayEditor {

std::string captionName(const std::string& caption) {
    const std::string shown = caption.substr(0, caption.find('\t'));
    const auto last = shown.find_last_not_of(": ");
    return last == std::string::npos ? std::string() : shown.substr(0, last + 1);
}

std::string tooltipOf(const std::string& caption) {
    return caption.substr(std::min(caption.find('\t'), caption.size()));
}

std::string oneLine(std::string name) {
    for (char& c : name)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = ' ';
    return name;
}

}  // namespace OverlayEditor
