#include "gui/RefusedText.h"

#include "common/Notify.h"

namespace OverlayEditor {

namespace {

std::vector<RefusedText*> standing;
std::uint64_t command = 0;
const PIGUI::PIWindow* commandsField = nullptr;

}  // namespace

RefusedText::~RefusedText() {
    std::erase(standing, this);
    if (commandsField == &field_) commandsField = nullptr;
}

bool RefusedText::refuse(const std::string& text, const std::string& message) {
    command = commandsGiven();
    commandsField = &field_;
    halNotify::notify(halNotify::Warning) << message;
    if (!field_.setMarked(true)) {
        forget();
        return false;
    }
    text_ = text;
    message_ = message;
    std::erase(standing, this);
    standing.push_back(this);
    return true;
}

void RefusedText::forget() {
    if (text_) field_.setMarked(false);
    text_.reset();
    std::erase(standing, this);
}

bool RefusedText::forgetAll() {
    const auto all = standing;
    for (RefusedText* each : all) each->forget();
    return !all.empty();
}

std::vector<std::string> RefusedText::messages() {
    std::vector<std::string> messages;
    for (const RefusedText* each : standing) messages.push_back(each->message_);
    return messages;
}

std::uint64_t RefusedText::lastCommand() {
    return command;
}

const PIGUI::PIWindow* RefusedText::lastField() {
    return commandsField;
}

}  // namespace OverlayEditor
