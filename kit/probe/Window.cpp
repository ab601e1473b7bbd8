#include "kit/probe/Window.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

namespace probe {

namespace {

using Labelled = PI_DATA_POINTER_STRING_AND_FUNCTION;

std::string environment(const char* name, const std::string& otherwise) {
    const char* const value = std::getenv(name);
    return value && *value ? value : otherwise;
}

PIObject* asWrapper(int& object) {
    return reinterpret_cast<PIObject*>(&object);
}

}  // namespace

std::string reportFile() {
    const std::filesystem::path given =
        environment("HOST_PROBE_REPORT", environment("HOME", "/tmp") + "/host-probe.txt");
    std::error_code ignored;
    const auto whole = std::filesystem::absolute(given, ignored);
    return std::filesystem::weakly_canonical(whole.parent_path(), ignored) / whole.filename();
}

void* Window::keep_(PIServiceResult widget) {
    if (!widget) return nullptr;
    widgets_.push_back(reinterpret_cast<void*>(widget));
    return widgets_.back();
}

void Window::show_() {
    if (!dialog_) build_();
    if (dialog_) call(Id::DialogShow, dialog_);
}

void Window::build_() {
    dialog_ = keep_(call<PI_DATA_POINTER_AND_STRING>(Id::CreateDialogBox, nullptr, "Host Probe"));
    if (!dialog_) return;
    const auto bind = [](void* widget, int& wrapper) {
        wrapper = widget && call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, widget, asWrapper(wrapper));
    };
    bind(dialog_, dialogWrapper_);
    observeClosing_();
    status_ = keep_(call<PI_DATA_POINTER_AND_STRING>(
        Id::CreateLabel, dialog_, "\"Run\" tries every service, then asks for a few things."));
    const auto button = [&](const char* caption, Function press) {
        return keep_(call<Labelled>(Id::CreateButton, dialog_, caption, callback(std::move(press))));
    };
    bind(button("Run", [this](PIObject* sender, void*) { run_(sender); }), buttonWrapper_);
    button("Skip", [this](PIObject*, void*) { skip_(); });
    button("File...", [this](PIObject*, void*) { openFile_(); });
    const auto label = [&](const char* caption) {
        keep_(call<PI_DATA_POINTER_AND_STRING>(Id::CreateLabel, dialog_, caption));
    };
    label("Field:");
    field_ = keep_(call<PI_DATA_POINTER_INT_AND_FUNCTION>(
        Id::CreateTextField, dialog_, 0,
        callback([this](PIObject* sender, void* data) { typed_(sender, data); })));
    bind(field_, fieldWrapper_);
    label("Menu:");
    menu_ = keep_(call<Labelled>(Id::CreateOptionMenu, dialog_, "",
                                 callback([this](PIObject*, void* data) { chosen_(data); })));
    list_ = keep_(call<PI_DATA_POINTER_INT_AND_STRING>(Id::CreateList, dialog_, PIGUI::PIListSingle, "Row"));
    bind(list_, listWrapper_);
    int index = 0;
    for (const char* const name : {"One", "Two", "Three"}) {
        if (menu_) call<PI_DATA_POINTER_INT_AND_STRING>(Id::OptionMenuAppendOption, menu_, index++, name);
        if (list_) ask(Id::ListItems, PISelector::ListItems::Append, {{}, {}, {name}, {list_, nullptr}});
    }
}

void Window::run_(PIObject* sender) {
    forget_();
    report_ = Report();
    // Of a host that ends meanwhile, too, there is a report.
    std::ofstream file(reportFile());
    onCall = [this, &file, written = std::size_t{0}](Id service) mutable {
        std::string text = report_.text(static_cast<int>(service));
        written = std::max(written, text.size());
        text.resize(written, ' ');
        file.seekp(0);
        file << text << std::flush;
    };
    Trial trial(report_);
    if (buttonWrapper_)
        trial.expect(Id::CreateButton, "the callback of \"Run\" has its wrapper as sender",
                     sender == asWrapper(buttonWrapper_));
    trial.serves(Id::DialogRegisterCloseObserver, "takes an observer of a dialog's closing",
                 observeClosing_() != 0);
    tryWidgets(trial, dialog_);
    tryFields(trial, dialog_);
    tryChoices(trial, dialog_);
    tryLists(trial, dialog_);
    tryApplication(trial, dialog_, item_);
    tryScenario(trial);
    tryOverlays(trial, overlayFile());
    looksDown_ = tryView(trial);
    if (trial.serves(Id::ForceRedraw, "is asked for a frame", call(Id::ForceRedraw, nullptr) != 0)) {
        frameEntry_ = report_.add(0, "the frame comes, with the view's size", Verdict::Waits);
        asksFrame_ = true;
    }
    onCall = {};
    file.close();
    addSteps_();
    askFor_(Hand::LeftClick);
}

void Window::frame(int width, int height) {
    if (!std::exchange(asksFrame_, false)) return;
    const bool right = width > 0 && height > 0;
    report_.decide(frameEntry_, right ? Verdict::Holds : Verdict::Wrong,
                   right ? "" : std::to_string(width).append(" x ").append(std::to_string(height)));
    Trial trial(report_);
    if (right && looksDown_) tryMiddle(trial, width, height);
}

void Window::say_(const std::string& text) {
    if (status_) call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, status_, text);
    ask(Id::Notify, PISelector::Notify::Message, {.integers = {4}, .strings = {"HostProbe", text}});
}

bool Window::write_() {
    std::ofstream file(reportFile());
    file << report_.text();
    return static_cast<bool>(file.flush());
}

}  // namespace probe
