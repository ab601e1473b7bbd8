#include "kit/probe/Window.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace probe {

namespace {

using Mouse = PIGUI::PIMouseEventType_t;
using Labelled = PI_DATA_POINTER_STRING_AND_FUNCTION;

struct Step {
    int service;
    const char* prompt;
    const char* expectation;
};
/// In the order of Window::Hand, without its ends.
constexpr Step kSteps[] = {
    {0, "Click once into the view, on the earth", "motion, press and release come in that order"},
    {0, "Click once into the view with the right button", "press and release come in that order"},
    {119, "Type 42 into the field and press Enter", "the callback has its wrapper as sender, and reads 42"},
    {124, "Choose \"Two\" in the menu", "the callback finds the index 1"},
    {163, "Press \"File...\" and cancel the dialog", "a cancelled dialog gives 0 and no path"},
    {160, "Close this window with its own button", "the observer is told after it was hidden"},
};

std::string environment(const char* name, const std::string& otherwise) {
    const char* const value = std::getenv(name);
    return value && *value ? value : otherwise;
}

/// Without links in its directory, as hosts may name files in it.
std::string reportFile() {
    const std::filesystem::path given =
        environment("HOST_PROBE_REPORT", environment("HOME", "/tmp") + "/host-probe.txt");
    std::error_code ignored;
    const auto whole = std::filesystem::absolute(given, ignored);
    return std::filesystem::weakly_canonical(whole.parent_path(), ignored) / whole.filename();
}

PIObject* asWrapper(int& object) {
    return reinterpret_cast<PIObject*>(&object);
}

}  // namespace

class Window::Closing final : public PIGUI::PICloseObserver {
  public:
    explicit Closing(Window& window) : window_(window) {}
    void onClose(PIObject* dialogBox) override { window_.closed_(dialogBox); }

  private:
    Window& window_;
};

Window::Window() : closing_(std::make_unique<Closing>(*this)) {
    isOpen = true;
    item_ = reinterpret_cast<void*>(call<Labelled>(Id::CreateMenuItem, nullptr,
                                                   "Host Probe...\tHolds this host against the contract",
                                                   callback([this](PIObject*, void*) { show_(); })));
}

Window::~Window() {
    isOpen = false;
    // A host need not draw; that it draws without a frame is its own affair.
    if (asksFrame_) report_.decide(frameEntry_, Verdict::LeftOut);
    cancelTimeout();
    report_.end();
    if (hand_ != Hand::None) write_();
    std::ranges::reverse(widgets_);
    for (void* const widget : widgets_) call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, widget, nullptr);
    if (item_) call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, item_, nullptr);
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
    call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, dialog_, asWrapper(dialogWrapper_));
    call<PI_DATA_POINTER_AND_POINTER>(Id::DialogRegisterCloseObserver, dialog_,
                                      static_cast<PIGUI::PICloseObserver*>(closing_.get()));
    status_ = keep_(call<PI_DATA_POINTER_AND_STRING>(
        Id::CreateLabel, dialog_, "\"Run\" tries every service, then asks for a few things."));
    const auto button = [&](const char* caption, void (Window::*press)()) {
        keep_(call<Labelled>(Id::CreateButton, dialog_, caption,
                             callback([this, press](PIObject*, void*) { (this->*press)(); })));
    };
    button("Run", &Window::run_);
    keep_(call<Labelled>(Id::CreateButton, dialog_, "Skip", callback([this](PIObject*, void*) {
                             if (hand_ == Hand::None || hand_ == Hand::Done) return;
                             askFor_(static_cast<Hand>(static_cast<int>(hand_) + 1));
                         })));
    button("File...", &Window::openFile_);
    const auto label = [&](const char* caption) {
        keep_(call<PI_DATA_POINTER_AND_STRING>(Id::CreateLabel, dialog_, caption));
    };
    label("Field:");
    field_ = keep_(call<PI_DATA_POINTER_INT_AND_FUNCTION>(
        Id::CreateTextField, dialog_, 0, callback([this](PIObject* sender, void*) { typed_(sender); })));
    if (field_) call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, field_, asWrapper(fieldWrapper_));
    label("Menu:");
    menu_ = keep_(
        call<Labelled>(Id::CreateOptionMenu, dialog_, "", callback([this](PIObject*, void*) { chosen_(); })));
    int index = 0;
    for (const char* const option : {"One", "Two", "Three"})
        if (menu_) call<PI_DATA_POINTER_INT_AND_STRING>(Id::OptionMenuAppendOption, menu_, index++, option);
}

void Window::run_() {
    // What comes meanwhile is of no report.
    cancelTimeout();
    hand_ = Hand::None;
    asksFrame_ = false;
    report_ = Report();
    Trial trial(report_);
    tryWidgets(trial, dialog_);
    tryChoices(trial, dialog_);
    tryApplication(trial, dialog_);
    tryScenario(trial);
    tryScene(trial, reportFile() + ".zel");
    if (trial.serves(Id::ForceRedraw, "is asked for a frame", call(Id::ForceRedraw, nullptr) != 0)) {
        frameEntry_ = report_.add(0, "the frame comes, with the view's size", Verdict::Waits);
        asksFrame_ = true;
    }
    for (const Step& step : kSteps) {
        const auto entry =
            report_.add(step.service, std::string("by hand: ") + step.expectation, Verdict::Skipped);
        if (&step == kSteps) firstHand_ = entry;
    }
    askFor_(Hand::LeftClick);
}

void Window::askFor_(Hand hand) {
    hand_ = hand;
    clicks_.clear();
    if (hand == Hand::Done) {
        say_("Done: " + report_.summary() +
             (write_() ? ". The report is " : ". The report could not be written to ") + reportFile());
    } else {
        say_(std::string(kSteps[static_cast<int>(hand) - 1].prompt) + ", or press \"Skip\".");
        write_();
    }
}

void Window::decide_(Hand hand, bool right, const std::string& answer) {
    if (hand != hand_) return;
    report_.decide(firstHand_ + static_cast<std::size_t>(hand) - 1, right ? Verdict::Holds : Verdict::Wrong,
                   right ? "" : answer);
    askFor_(static_cast<Hand>(static_cast<int>(hand) + 1));
}

void Window::mouse(Mouse type, const PIGUI::PIMouseEvent& event) {
    if (hand_ != Hand::LeftClick && hand_ != Hand::RightClick) return;
    const bool left = hand_ == Hand::LeftClick;
    clicks_.push_back(type);
    if (type != (left ? Mouse::LeftRelease : Mouse::RightRelease)) return;
    const auto press = std::ranges::find(clicks_, left ? Mouse::LeftPress : Mouse::RightPress);
    const bool pressed = press != clicks_.end();
    const bool moved = std::find(clicks_.begin(), press, Mouse::Motion) != press;
    std::string answer = !pressed ? "there was no press" : !moved ? "no motion came before the press" : "";
    if (!answer.empty())
        for (const Mouse each : clicks_) answer.append(" ").append(std::to_string(static_cast<int>(each)));
    if (left) {
        // The cursor is where the event was.
        using Op = PISelector::Cursor;
        const Answer cursor = ask(Id::Cursor, Op::LlaAtCursor, {.integers = {1}});
        const Answer pixel = ask(Id::Cursor, Op::LlaAtPixel, {.integers = {event.x, event.y, 1}});
        if (!cursor.isRefused() && (cursor.doubles.size() != 3 || pixel.doubles.size() != 3 ||
                                    std::abs(cursor.doubles[0] - pixel.doubles[0]) > 1e-6 ||
                                    std::abs(cursor.doubles[1] - pixel.doubles[1]) > 1e-6))
            answer +=
                " the place at the cursor is " + cursor.text() + ", at the event's pixel " + pixel.text();
    }
    decide_(hand_, answer.empty(), answer);
}

void Window::frame(int width, int height) {
    if (!std::exchange(asksFrame_, false)) return;
    const bool right = width > 0 && height > 0;
    report_.decide(frameEntry_, right ? Verdict::Holds : Verdict::Wrong,
                   right ? "" : std::to_string(width).append(" x ").append(std::to_string(height)));
}

void Window::typed_(PIObject* sender) {
    const Answer text = ask(Id::WidgetValue, PISelector::WidgetValue::Text, {.pointers = {field_}});
    const bool right = sender == asWrapper(fieldWrapper_) && text.strings == std::vector<std::string>{"42"};
    decide_(Hand::Text, right, (sender ? "" : "no sender, ") + text.text());
}

void Window::chosen_() {
    const Answer index = ask(Id::WidgetValue, PISelector::WidgetValue::Integer, {.pointers = {menu_}});
    decide_(Hand::Option, index.integers == std::vector<std::int64_t>{1}, index.text());
}

void Window::openFile_() {
    if (hand_ != Hand::Cancel) return;
    const Answer file = ask(Id::FileDialog, PISelector::FileDialog::Load,
                            {.strings = {"Cancel this", "HostProbe", "File", "", "Text files\t*.txt"}});
    decide_(Hand::Cancel, file.result == 0 && file.strings.empty() && file.fault.empty(),
            file.fault.empty() ? file.text() : file.fault);
}

void Window::closed_(PIObject* sender) {
    const bool hidden = call(Id::WindowShown, dialog_) == 0 && fault.empty();
    decide_(Hand::Close, hidden && sender == asWrapper(dialogWrapper_),
            hidden ? "the sender is not its wrapper" : "it is still shown");
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
