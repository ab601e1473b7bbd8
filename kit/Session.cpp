#include "kit/Session.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "kit/Process.h"

namespace kit {

namespace {

using Widget = Host::Widget;

bool isPressed(const Widget& widget) {
    return widget.kind == Service::CreateButton || widget.kind == Service::CreateCheckButton ||
           widget.kind == Service::CreateRadioButton;
}
bool isChosen(const Widget& widget) {
    return widget.kind == Service::CreateOptionMenu || widget.kind == Service::CreateList ||
           widget.kind == Service::CreateSpinner || widget.kind == Service::CreateColorWell;
}
bool isTyped(const Widget& widget) {
    return widget.kind == Service::CreateTextField;
}

std::string nameOf(const Widget& widget) {
    return "the callback of widget " + std::to_string(static_cast<int>(widget.kind)) + " \"" +
           widget.caption.substr(0, widget.caption.find('\t')) + "\"";
}

/// What people type, and what they paste.
constexpr const char* kTexts[] = {"5000",
                                  "0",
                                  "-1",
                                  "21.3 -158",
                                  "1e300",
                                  "",
                                  " ",
                                  "nan",
                                  "a name",
                                  "ein \xc3\xa4nderer\nName",
                                  "4QFJ1234567890",
                                  "0.001",
                                  "\xff\xfe",
                                  "99999999999999999999",
                                  "21-18-30N",
                                  "end"};

constexpr const char* kOverlay =
    "version 2\nstart\naltitudeunits m\nrangeunits m\ncircle\ncenterlla 21.3 -158 0\nradius 500\nend\n"
    "start\nline\nll 21.3 -158\nll 21.4 -158.1\nend\n";

}  // namespace

void resetFiles(const std::string& home) {
    if (!isScratch(home)) throw std::logic_error("\"" + home + "\" was not made for this check");
    for (const auto& entry : std::filesystem::directory_iterator(home)) std::filesystem::remove_all(entry);
    for (const char* const name : {"/chosen.zel", "/host.zel"}) std::ofstream(home + name) << kOverlay;
}

void* Hands::usable_(Test test) {
    std::vector<void*> found;
    for (const auto& [handle, widget] : host_.widgets)
        if (test(widget) && widget.enabled && host_.isVisible(widget)) found.push_back(handle);
    return found.empty() ? nullptr : found[static_cast<std::size_t>(upTo_(static_cast<int>(found.size())))];
}

void Hands::activate_(void* handle) {
    const auto found = host_.widgets.find(handle);
    if (found == host_.widgets.end()) return;
    const Widget& widget = found->second;
    plugin_.call(nameOf(widget), widget.callback, widget.wrapper, nullptr);
}

void Hands::menuItems() {
    std::vector<void*> items;
    for (const auto& [handle, widget] : host_.widgets)
        if (widget.kind == Service::CreateMenuItem && widget.enabled) items.push_back(handle);
    for (void* const item : items) activate_(item);
}

void Hands::press() {
    void* const handle = usable_(isPressed);
    if (!handle) return;
    Widget& widget = host_.widgets.at(handle);
    if (widget.kind == Service::CreateCheckButton) widget.checked = !widget.checked;
    if (widget.kind == Service::CreateRadioButton) {
        for (auto& [other, sibling] : host_.widgets)
            if (sibling.kind == widget.kind && sibling.parent == widget.parent) sibling.checked = false;
        widget.checked = true;
    }
    activate_(handle);
}

void Hands::choose_() {
    void* const handle = usable_(isChosen);
    if (!handle) return;
    Widget& widget = host_.widgets.at(handle);
    if (widget.kind == Service::CreateColorWell) {
        widget.number = static_cast<double>(static_cast<std::int32_t>(random_()));
    } else if (widget.kind == Service::CreateSpinner) {
        widget.number = widget.least + upTo_(static_cast<int>(widget.most - widget.least) + 1);
        widget.text = std::to_string(static_cast<int>(widget.number));
    } else if (!widget.items.empty()) {
        widget.number = upTo_(static_cast<int>(widget.items.size()));
    }
    FunctorTwoParams__* const chosen = widget.chosen;
    PIObject* const wrapper = widget.wrapper;
    const bool isMenu = widget.kind == Service::CreateOptionMenu;
    activate_(handle);
    if (chosen && upTo_(2) && host_.widgets.contains(handle))
        plugin_.call("the choice of a row", chosen, wrapper, nullptr);
    if (isMenu && upTo_(4)) draw();
}

void Hands::type_() {
    void* const handle = usable_(isTyped);
    if (!handle) return;
    Widget& field = host_.widgets.at(handle);
    field.text = kTexts[upTo_(static_cast<int>(std::size(kTexts)))];
    if (field.typing) plugin_.call("typing into a line", field.typing, field.wrapper, nullptr);
    if (!host_.widgets.contains(handle)) return;
    activate_(handle);
}

void Hands::act_() {
    if (host_.actions.empty()) return;
    const auto action = std::next(host_.actions.begin(), upTo_(static_cast<int>(host_.actions.size())));
    std::int32_t asked = action->second.checked ? 0 : 1;
    plugin_.call("action \"" + action->second.label + "\"", action->second.callback, nullptr, &asked);
    if (upTo_(2)) draw();
}

void Hands::click_(int x, int y) {
    using Mouse = Plugin::Mouse;
    plugin_.mouse(Mouse::Motion, x, y);
    plugin_.mouse(Mouse::LeftPress, x, y);
    plugin_.mouse(Mouse::LeftRelease, x, y);
}

/// Whatever it is that is drawn, a drag or some clicks, until the right button ends it.
void Hands::draw() {
    using Mouse = Plugin::Mouse;
    const int x = 40 + upTo_(500), y = 40 + upTo_(400);
    plugin_.mouse(Mouse::Motion, x, y);
    plugin_.mouse(Mouse::LeftPress, x, y);
    plugin_.mouse(Mouse::Motion, x + 30, y + 20);
    plugin_.frame();
    if (upTo_(4) == 0) plugin_.mouse(Mouse::Wheel, x + 30, y + 20, PIGUI::PIModifierShift, 120);
    plugin_.mouse(Mouse::LeftRelease, x + 30, y + 20);
    for (int clicks = upTo_(3); clicks > 0; --clicks) click_(40 + upTo_(500), 40 + upTo_(400));
    plugin_.frame();
    if (upTo_(3) == 0) return;
    plugin_.mouse(Mouse::RightPress, x, y);
    plugin_.mouse(Mouse::RightRelease, x, y);
}

void Hands::fireTimeouts() {
    // Each once, but for those that another one cancels.
    const auto armed = host_.timeouts;
    for (const auto& [handle, timeout] : armed)
        if (host_.timeouts.erase(handle) != 0)
            plugin_.call("a timeout", timeout.callback, nullptr, timeout.userData);
}

void Hands::closeDialogs() {
    std::vector<void*> dialogs;
    for (const auto& [handle, widget] : host_.widgets)
        if (widget.kind == Service::CreateDialogBox && widget.shown) dialogs.push_back(handle);
    for (void* const handle : dialogs) {
        const auto found = host_.widgets.find(handle);
        if (found == host_.widgets.end()) continue;
        found->second.shown = false;
        PIObject* const wrapper = found->second.wrapper;
        if (auto* const observer = found->second.closeObserver)
            plugin_.enter("a dialog's close observer", [&] { observer->onClose(wrapper); });
    }
}

/// An event of the mouse that nobody expects.
void Hands::stray_() {
    using Mouse = Plugin::Mouse;
    const auto type = static_cast<Mouse>(upTo_(static_cast<int>(Mouse::Wheel) + 1));
    const int x = upTo_(800), y = upTo_(600);
    const auto modifiers = static_cast<std::uint32_t>(upTo_(8));
    if (type != Mouse::Leave) plugin_.mouse(Mouse::Motion, x, y, modifiers);
    plugin_.mouse(type, x, y, modifiers, type == Mouse::Wheel ? 120 * (upTo_(5) - 2) : 0);
    // To each press there is a release.
    const bool isLeft = type == Mouse::LeftPress || type == Mouse::LeftDoubleClick;
    if (isLeft) plugin_.mouse(Mouse::LeftRelease, x, y, modifiers);
    if (type == Mouse::MiddlePress) plugin_.mouse(Mouse::MiddleRelease, x, y, modifiers);
    if (type == Mouse::RightPress) plugin_.mouse(Mouse::RightRelease, x, y, modifiers);
}

void Hands::event_() {
    const auto code = static_cast<PIApplicationEvents_t>(upTo_(18));
    const std::uint64_t id = host_.platforms.empty() ? 1 : host_.platforms.begin()->first;
    plugin_.event(code, id);
}

/// The person opens, closes or asks for the menu of an overlay file of the host's.
void Hands::file_() {
    std::vector<void*> files;
    for (const auto& [handle, overlay] : host_.overlays)
        if (!overlay.path.empty()) files.push_back(handle);
    constexpr std::size_t kMost = 6;
    if (files.empty() || (files.size() < kMost && upTo_(3) == 0)) {
        host_.openFile(host_.directory + "/host.zel");
        return;
    }
    void* const file = files[static_cast<std::size_t>(upTo_(static_cast<int>(files.size())))];
    if (upTo_(3) == 0) return host_.closeFile(file);
    host_.requestMenu(file);
    for (auto* const item : std::vector(host_.contextItems))
        plugin_.call("a context menu item", item, nullptr, nullptr);
}

void Hands::step_() {
    switch (upTo_(17)) {
        case 0:
        case 1:
        case 2:
            return choose_();
        case 3:
        case 4:
        case 5:
            return press();
        case 6:
        case 7:
            return type_();
        case 8:
        case 9:
            return act_();
        case 10:
        case 11:
            return draw();
        case 12:
            return fireTimeouts();
        case 13:
            return file_();
        case 14:
            return upTo_(3) ? plugin_.frame() : event_();
        case 15:
            return stray_();
        default:
            if (upTo_(4) == 0) closeDialogs();
            return menuItems();
    }
}

void Hands::use(int steps) {
    menuItems();
    for (int i = 0; i < steps; ++i) step_();
}

std::vector<std::pair<std::string, std::function<void()>>> Hands::incidents() {
    std::vector<std::pair<std::string, std::function<void()>>> all;
    for (int type = 0; type <= static_cast<int>(Plugin::Mouse::Wheel); ++type)
        all.emplace_back("mouse event " + std::to_string(type), [this, type] {
            plugin_.mouse(static_cast<Plugin::Mouse>(type), 15 + host_.calls % 40, 25);
        });
    for (int code = 0; code <= 17; ++code)
        all.emplace_back("application event " + std::to_string(code), [this, code] {
            plugin_.event(static_cast<PIApplicationEvents_t>(code),
                          host_.platforms.empty() ? 1 : host_.platforms.begin()->first);
        });
    all.emplace_back("a frame", [this] { plugin_.frame(); });
    all.emplace_back("timeouts", [this] { fireTimeouts(); });
    all.emplace_back("StartUp", [this] { plugin_.dispatch(Plugin::Event::StartUp); });
    all.emplace_back("Callback", [this] { plugin_.dispatch(Plugin::Event::Callback); });
    all.emplace_back("menu items", [this] { menuItems(); });
    all.emplace_back("actions", [this] { act_(); });
    all.emplace_back("buttons", [this] { press(); });
    all.emplace_back("choices", [this] { choose_(); });
    all.emplace_back("typed texts", [this] { type_(); });
    all.emplace_back("files of the host's", [this] { file_(); });
    all.emplace_back("closed dialogs", [this] { closeDialogs(); });
    return all;
}

Session::Session(Context& c) : context(c), host(c.findings, c.situation, this), seed(c.settings.seed) {
    host.directory = c.settings.home;
}

bool Session::play() {
    resetFiles(context.settings.home);
    Plugin plugin(context.settings.library, context.findings, context.situation);
    Hands hands(plugin, host, seed);
    plugin.initialise(host);
    if (prepare) prepare(plugin, hands);
    const bool started = plugin.start();
    if (use)
        use(plugin, hands);
    else
        hands.use(steps);
    if (host.phase == Phase::Started || host.phase == Phase::Initialised) plugin.close();
    // What the host had queued: until clean-up a callback can be called, and does nothing.
    if (host.phase == Phase::Closed)
        for (auto* const callback : host.callbacks)
            plugin.call("a callback after Close", callback, nullptr, nullptr);
    plugin.cleanUp();
    plugin.unload();
    return started;
}

}  // namespace kit
