// What a person does with the probe's window, and what has to come of it.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "kit/probe/Window.h"

namespace probe {

namespace {

using Mouse = PIGUI::PIMouseEventType_t;

/// Whether the sender is the wrapper, where the host has bound it.
constexpr const char* kNoRelease = "a press came, and no release";

bool isFrom(const PIObject* sender, const int& wrapper) {
    return !wrapper || sender == reinterpret_cast<const PIObject*>(&wrapper);
}

}  // namespace

struct Window::Step {
    int service;
    const char* prompt;
    const char* expectation;
};

const std::vector<Window::Step>& Window::steps_() {
    static const std::vector<Step> steps{
        {0, "Click once into the view, on the earth", "motion, press and release come once, in that order"},
        {0, "Double-click into the view, on the earth",
         "two presses come, the second one also where LeftDoubleClick comes and is answered with 0"},
        {0, "Click once into the view with the right button", "press and release come once, in that order"},
        {119, "Type 42 into the field and press Enter",
         "the callback has its wrapper as sender, and reads 42"},
        {124, "Choose \"Two\" in the menu", "the callback finds the index 1"},
        {911, "Double-click the row \"Two\"",
         "the callback has its wrapper as sender, and finds the row selected"},
        {319, "Choose \"Probed Action\" among the actions of plug-ins",
         "the callback has no sender, and the state asked for"},
        {440, "Choose \"Probed Item\" in the menu of the overlay in the host's list",
         "the menu is about the overlay, and its item calls back"},
        {163, "Press \"File...\" and cancel the dialog", "a cancelled dialog gives 0 and no path"},
        {163, "Press \"File...\" and choose a name to save as",
         "a path comes, and is remembered under its key"},
        {163, "Press \"File...\" and choose a directory", "the directory's path comes"},
        {160, "Close this window with its own button", "the observer is told after it was hidden"},
    };
    return steps;
}

class Window::Closing final : public PIGUI::PICloseObserver {
  public:
    explicit Closing(Window& window) : window_(window) {}
    void onClose(PIObject* dialogBox) override { window_.closed_(dialogBox); }

  private:
    Window& window_;
};

/// An overlay of the host's, and an item in its menu.
class Window::Menus final : public PIHALVIS::ContextMenuCallbackV3 {
  public:
    explicit Menus(Window& window) : window_(window) {
        const std::string path = overlayFile();
        std::ofstream(path) << kOverlay;
        overlay_ =
            ask(Id::OverlayFiles, PISelector::OverlayFiles::LoadFile, {.integers = {0, 1}, .strings = {path}})
                .handle();
        works_ = overlay_ &&
                 ask(Id::ContextMenu, PISelector::ContextMenu::Register, {.pointers = {self_()}}).result;
    }
    ~Menus() override {
        if (works_) ask(Id::ContextMenu, PISelector::ContextMenu::Remove, {.pointers = {self_()}});
        if (overlay_) ask(Id::OverlayFiles, PISelector::OverlayFiles::Unload, {.pointers = {overlay_}});
        std::remove(overlayFile().c_str());
    }
    Menus(const Menus&) = delete;
    Menus& operator=(const Menus&) = delete;

    bool works() const { return works_; }

    void menuRequested(const std::string& list, const PIHALVIS::ContextMenuData* data, void* menu) override {
        const auto* const files = dynamic_cast<const PIHALVIS::ZelMenuData*>(data);
        const bool isAbout = list == PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME && files &&
                             files->overlays == std::vector<void*>{overlay_};
        auto* const chosen = callback([&window = window_, isAbout, list](PIObject* sender, void* given) {
            window.decide_(Hand::Menu, isAbout && !sender && !given ? Verdict::Holds : Verdict::Wrong,
                           isAbout ? "there is a sender, or data"
                                   : "the menu of \"" + list + "\" is not about that overlay alone");
        });
        const Answer added = ask(Id::ContextMenu, PISelector::ContextMenu::AddItem,
                                 {{50, 1}, {}, {"Probed Item"}, {menu, chosen}});
        if (!added.result) window_.decide_(Hand::Menu, false, added);
    }

  private:
    void* self_() { return static_cast<PIHALVIS::ContextMenuCallbackV3*>(this); }

    Window& window_;
    void* overlay_ = nullptr;
    bool works_ = false;
};

Window::Window() {
    isOpen = true;
    item_ = reinterpret_cast<void*>(call<PI_DATA_POINTER_STRING_AND_FUNCTION>(
        Id::CreateMenuItem, nullptr, "Host Probe...\tHolds this host against the contract",
        callback([this](PIObject*, void*) { show_(); })));
}

Window::~Window() {
    isOpen = false;
    // A host need not draw; that it draws without a frame is its own affair.
    if (asksFrame_) report_.decide(frameEntry_, Verdict::LeftOut);
    const bool hasRun = hand_ != Hand::None;
    if (isHeld_()) report_.decide(entryOf_(hand_), Verdict::Wrong, kNoRelease);
    forget_();
    report_.end();
    if (hasRun) write_();
    bool areThere = true;
    std::ranges::reverse(widgets_);
    for (void* const widget : widgets_) areThere &= destroyWidget(widget);
    destroyWidget(item_);
    // The person, too, only hides it. A host that binds nothing destroys nothing.
    if (dialogWrapper_)
        Trial(report_).expect(Id::BindWidget, "the window and all in it is there until the probe destroys it",
                              areThere);
    const std::string stray = strayEntry();
    Trial(report_).expect(Id(0), "every call comes on the thread of the first", stray.empty(),
                          stray + " did not");
    if (hasRun) write_();
}

PIServiceResult Window::observeClosing_() {
    if (!closing_) closing_ = std::make_unique<Closing>(*this);
    return call<PI_DATA_POINTER_AND_POINTER>(Id::DialogRegisterCloseObserver, dialog_,
                                             static_cast<PIGUI::PICloseObserver*>(closing_.get()));
}

void Window::forget_() {
    cancelTimeout();
    seen = {};
    hand_ = Hand::None;
    asksFrame_ = false;
    menus_.reset();
    if (void* const action = std::exchange(action_, nullptr))
        ask(Id::Action, PISelector::Action::Destroy, {.pointers = {action}});
}

void Window::addSteps_() {
    for (const Step& step : steps_()) {
        const auto entry =
            report_.add(step.service, std::string("by hand: ") + step.expectation, Verdict::Skipped);
        if (&step == steps_().data()) firstHand_ = entry;
    }
}

bool Window::prepare_(Hand hand) {
    switch (hand) {
        case Hand::Text:
            return field_;
        case Hand::Option:
            return menu_;
        case Hand::Row: {
            if (!list_) return false;
            auto* const chosen = callback([this](PIObject* sender, void*) { rowChosen_(sender); });
            auto* const selected = callback([this](PIObject*, void*) { hasSelected_ = true; });
            ask(Id::ListItems, PISelector::ListItems::DeselectAll, {.pointers = {list_}});
            hasSelected_ = !call<PI_DATA_POINTER_AND_FUNCTION>(Id::WindowMapFunction, list_, selected);
            return ask(Id::WidgetLooks, PISelector::WidgetLooks::Chosen, {.pointers = {list_, chosen}})
                .result;
        }
        case Hand::Action: {
            using Op = PISelector::Action;
            const std::vector<std::string> names{"HostProbe", "Probed Action"};
            auto* const chosen = callback([this](PIObject* sender, void* data) { acted_(sender, data); });
            action_ = ask(Id::Action, Op::Create, {.strings = names, .pointers = {chosen}}).handle();
            return action_ && ask(Id::Action, Op::SetChecked, {.integers = {0}, .strings = names}).result;
        }
        case Hand::Menu:
            menus_ = std::make_unique<Menus>(*this);
            return menus_->works();
        default:
            return true;
    }
}

void Window::askFor_(Hand hand) {
    const auto next = [](Hand each) { return static_cast<Hand>(static_cast<int>(each) + 1); };
    for (; hand != Hand::Done && !prepare_(hand); hand = next(hand))
        report_.decide(entryOf_(hand), Verdict::LeftOut);
    hand_ = hand;
    clicks_.clear();
    if (hand == Hand::Done) {
        say_("Done: " + report_.summary() +
             (write_() ? ". The report is " : ". The report could not be written to ") + reportFile());
    } else {
        say_(std::string(steps_()[static_cast<std::size_t>(hand) - 1].prompt) + ", or press \"Skip\".");
        write_();
    }
}

void Window::skip_() {
    if (hand_ == Hand::None || hand_ == Hand::Done) return;
    // Whoever clicks, and goes on by this button, has seen nothing come of it.
    decide_(hand_, isHeld_() ? Verdict::Wrong : Verdict::Skipped, isHeld_() ? kNoRelease : "");
}

bool Window::isHeld_() const {
    const auto has = [this](Mouse type) { return std::ranges::count(clicks_, type); };
    return has(Mouse::LeftPress) > has(Mouse::LeftRelease) ||
           has(Mouse::RightPress) > has(Mouse::RightRelease);
}

void Window::decide_(Hand hand, Verdict verdict, const std::string& answer) {
    if (hand != hand_) return;
    report_.decide(entryOf_(hand), verdict, verdict == Verdict::Holds ? "" : answer);
    askFor_(static_cast<Hand>(static_cast<int>(hand) + 1));
}

void Window::decide_(Hand hand, bool right, const Answer& answer) {
    const bool isFaulty = !answer.fault.empty();
    decide_(hand,
            isFaulty             ? Verdict::Wrong
            : right              ? Verdict::Holds
            : answer.isRefused() ? Verdict::LeftOut
                                 : Verdict::Wrong,
            isFaulty             ? answer.fault
            : answer.isRefused() ? ""
                                 : answer.text());
}

void Window::mouse(Mouse type, const PIGUI::PIMouseEvent& event) {
    if (hand_ == Hand::DoubleClick) return clickedTwice_(type);
    if (hand_ != Hand::LeftClick && hand_ != Hand::RightClick) return;
    const bool left = hand_ == Hand::LeftClick;
    clicks_.push_back(type);
    if (type != (left ? Mouse::LeftRelease : Mouse::RightRelease)) return;
    const auto press = std::ranges::find(clicks_, left ? Mouse::LeftPress : Mouse::RightPress);
    const auto presses = std::ranges::count(clicks_, left ? Mouse::LeftPress : Mouse::RightPress);
    const bool moved = std::find(clicks_.begin(), press, Mouse::Motion) != press;
    std::string answer = presses == 0  ? "there was no press"
                         : presses > 1 ? "there was more than one press"
                         : !moved      ? "no motion came before the press"
                                       : "";
    if (!answer.empty())
        for (const Mouse each : clicks_) answer.append(" ").append(std::to_string(static_cast<int>(each)));
    if (left) {
        // The cursor is where the event was.
        using Op = PISelector::Cursor;
        const Answer cursor = ask(Id::Cursor, Op::LlaAtCursor, {.integers = {1}});
        const Answer pixel = ask(Id::Cursor, Op::LlaAtPixel, {.integers = {event.x, event.y, 1}});
        if (!cursor.isRefused() && !pixel.isRefused() &&
            (cursor.doubles.size() != 3 || pixel.doubles.size() != 3 ||
             std::abs(cursor.doubles[0] - pixel.doubles[0]) > 1e-6 ||
             std::abs(cursor.doubles[1] - pixel.doubles[1]) > 1e-6))
            answer +=
                " the place at the cursor is " + cursor.text() + ", at the event's pixel " + pixel.text();
    }
    decide_(hand_, answer.empty() ? Verdict::Holds : Verdict::Wrong, answer);
}

void Window::clickedTwice_(Mouse type) {
    clicks_.push_back(type);
    if (type != Mouse::LeftRelease || std::ranges::count(clicks_, type) < 2) return;
    const auto twice = std::ranges::find(clicks_, Mouse::LeftDoubleClick);
    const bool isMissing =
        twice != clicks_.end() && std::find(twice, clicks_.end(), Mouse::LeftPress) == clicks_.end();
    const auto presses = std::ranges::count(clicks_, Mouse::LeftPress);
    decide_(Hand::DoubleClick, presses == 2 && !isMissing ? Verdict::Holds : Verdict::Wrong,
            isMissing ? "no press came after LeftDoubleClick" : std::to_string(presses) + " presses came");
}

void Window::typed_(PIObject* sender, void* data) {
    if (!isFrom(sender, fieldWrapper_) || data)
        return decide_(Hand::Text, Verdict::Wrong, data ? "there is data" : "the sender is not its wrapper");
    const Answer text = ask(Id::WidgetValue, PISelector::WidgetValue::Text, {.pointers = {field_}});
    const bool isTyped = text.strings == std::vector<std::string>{"42"};
    // When Enter was pressed, and once more when the field is left, or twice at once.
    if (hand_ > Hand::Text && isTyped && report_.verdictOf(entryOf_(Hand::Text)) == Verdict::Holds)
        return report_.decide(entryOf_(Hand::Text), Verdict::Wrong, "it is called again without a change");
    decide_(Hand::Text, isTyped, text);
}

void Window::chosen_(void* data) {
    if (data) return decide_(Hand::Option, Verdict::Wrong, "there is data");
    const Answer index = ask(Id::WidgetValue, PISelector::WidgetValue::Integer, {.pointers = {menu_}});
    decide_(Hand::Option, index.integers == std::vector<std::int64_t>{1}, index);
}

void Window::rowChosen_(PIObject* sender) {
    if (!isFrom(sender, listWrapper_))
        return decide_(Hand::Row, Verdict::Wrong, "the sender is not its wrapper");
    if (!hasSelected_)
        return decide_(Hand::Row, Verdict::Wrong,
                       "the callback of 146 has not told that the row is selected");
    const Answer index = ask(Id::ListItems, PISelector::ListItems::Selected, {.pointers = {list_}});
    decide_(Hand::Row, index.integers == std::vector<std::int64_t>{1}, index);
}

void Window::acted_(PIObject* sender, void* data) {
    const auto* const state = static_cast<const std::int32_t*>(data);
    const bool right = !sender && state && *state == 1;
    decide_(Hand::Action, right ? Verdict::Holds : Verdict::Wrong,
            sender   ? "there is a sender"
            : !state ? "there is no state"
                     : "the state asked for is " + std::to_string(*state) + ", of one that was not checked");
}

void Window::openFile_() {
    using Op = PISelector::FileDialog;
    const Hand hand = hand_;
    if (hand != Hand::Cancel && hand != Hand::Save && hand != Hand::Directory) return;
    const Op operation = hand == Hand::Cancel ? Op::Load : hand == Hand::Save ? Op::Save : Op::Directory;
    const char* const title = hand == Hand::Cancel ? "Cancel this" : "Choose anything";
    const Answer file =
        ask(Id::FileDialog, operation, {.strings = {title, "HostProbe", "File", "", "Text files\t*.txt"}});
    if (hand == Hand::Cancel) {
        const bool right = file.isRefused() && file.fault.empty();
        return decide_(hand, right ? Verdict::Holds : Verdict::Wrong,
                       file.fault.empty() ? file.text() : file.fault);
    }
    if (file.strings.size() != 1 || !std::filesystem::path(file.strings[0]).is_absolute())
        return decide_(hand, false, file);
    std::error_code ignored;
    if (hand == Hand::Directory)
        return decide_(hand, std::filesystem::is_directory(file.strings[0], ignored), file);
    PI_DATA_POINTER_AND_STRING remembered(nullptr, "HostProbe/File");
    const bool reads = call(Id::RegistryGetValue, static_cast<void*>(&remembered)) != 0;
    decide_(hand, !reads || remembered.text == file.strings[0] ? Verdict::Holds : Verdict::Wrong,
            "102 reads \"" + remembered.text + "\", and not " + file.strings[0]);
}

void Window::closed_(PIObject* sender) {
    const bool hidden = call(Id::WindowShown, dialog_) == 0 && fault.empty();
    decide_(Hand::Close, hidden && isFrom(sender, dialogWrapper_) ? Verdict::Holds : Verdict::Wrong,
            hidden ? "the sender is not its wrapper" : "it is still shown");
}

}  // namespace probe
