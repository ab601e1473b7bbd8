#include "common/Notify.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace halNotify {
namespace {

struct State {
    Severity level = Warning;
    std::array<Handler, Debug + 1> handlers;
};

State& state() {
    static State instance;
    return instance;
}

bool isSeverity(Severity severity) {
    return severity >= Always && severity <= Debug;
}

}  // namespace

void setNotifyLevel(Severity severity) {
    state().level = severity;
}

bool isNotifyEnabled(Severity severity) {
    return isSeverity(severity) && severity <= state().level;
}

void setNotifyHandler(Severity severity, Handler handler) {
    if (isSeverity(severity)) state().handlers[static_cast<std::size_t>(severity)] = std::move(handler);
}

void setNotifyHandler(Handler handler) {
    state().handlers.fill(handler);
}

Silence::Silence() : before_(state().level) {
    state().level = static_cast<Severity>(Always - 1);
}

Silence::~Silence() {
    state().level = static_cast<Severity>(before_);
}

Message::~Message() {
    if (!isNotifyEnabled(severity_)) return;
    try {
        const std::string text = std::move(text_).str();
        // A copy, because the handler may replace itself.
        const Handler handler = state().handlers[static_cast<std::size_t>(severity_)];
        if (handler)
            handler(severity_, text);
        else if (severity_ <= Warning)
            std::fprintf(stderr, "%s\n", text.c_str());
    } catch (...) {
        // A message that cannot be sent is no reason to fail.
    }
}

}  // namespace halNotify
