// A host, probed: it loads HostProbe.so, presses "Run", and does what the person is asked for. It is the
// example, or the kit's own, of which the environment's BROKEN falsifies something meanwhile: a verb, and the
// number of the service that it is about, with its selector, and a factor.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "kit/Session.h"
#include "samples/host/Host.h"
#include "samples/host/Plugin.h"

namespace {

using kit::Service;
using Mouse = kit::Plugin::Mouse;

struct Fault {
    std::string verb;
    int service = -1, selector = -1;  ///< "428:7"; a selector of -1: all
    double factor = 1.0;

    Fault() {
        const char* const broken = std::getenv("BROKEN");
        std::istringstream text(broken ? broken : "");
        text >> verb >> service;
        if (text.peek() == ':') text.ignore() >> selector;
        text >> factor;
    }
    bool isAbout(Service number, const PI_DATA_CATCHALL* values) const {
        const bool isSelected =
            selector < 0 || (values && !values->integers.empty() && values->integers[0] == selector);
        return static_cast<int>(number) == service && isSelected;
    }
};

class BrokenHost {
  public:
    explicit BrokenHost(const char* probe) : plugin_(probe, findings_, situation_) {
        plugin_.initialise(host_);
        if (fault_.verb == "silent") host_.tell = {};
        host_.answersIdentity = true;
        host_.answer = [this](Service service, void* record) -> std::optional<PIServiceResult> {
            auto* const base = static_cast<PI_DATA_BASE_CLASS*>(record);
            auto* const values = dynamic_cast<PI_DATA_CATCHALL*>(base);
            if (isInside_ || !fault_.isAbout(service, values)) return std::nullopt;
            return falsify_(service, base, values);
        };
    }

    void run() {
        plugin_.start();
        kit::Hands hands(plugin_, host_, 1);
        hands.menuItems();
        press_("Run");
        hands.fireTimeouts();
        plugin_.frame();
        // Another thread than the one of all the others.
        if (fault_.verb == "scatters") std::thread([this] { tell_(Mouse::Motion); }).join();
        const char* const captions[] = {"Click once into the view, on",
                                        "Double-click into the view",
                                        "the right button",
                                        "Type 42",
                                        "in the menu, or",
                                        "the row",
                                        "the actions",
                                        "Probed Item",
                                        "cancel the dialog",
                                        "save as",
                                        "a directory",
                                        "Close this"};
        for (int hand = 0; hand < static_cast<int>(std::size(captions)); ++hand)
            if (asks_(captions[hand])) act_(hand, hands), asks_(captions[hand]) ? press_("Skip") : void();
        plugin_.close();
    }

  private:
    PIServiceResult falsify_(Service service, PI_DATA_BASE_CLASS* base, PI_DATA_CATCHALL* values) {
        const std::string& verb = fault_.verb;
        if (verb == "refuses") return 0;
        if (verb == "claims") return 1;
        if (verb == "throws") throw std::runtime_error("lost settings");
        if (verb == "dies") std::abort();
        std::vector<std::int64_t> integers;
        std::vector<double> doubles;
        if (values) integers = values->integers, doubles = values->doubles;
        if (verb == "forgives") values->integers[1] = 0;
        if (verb == "doubles") values->integers[1] *= 2, values->integers[2] *= 2;
        if (verb == "hurries" && host_.tell)
            host_.tell(PIApplicationEvents_t::EntityRemoved, static_cast<std::uint64_t>(integers[0]));
        if (verb == "turns") values->doubles[1] += 3.14159265358979;
        if (verb == "mirrors") values->integers[2] = 600 - values->integers[2];
        if (verb == "appends") static_cast<PI_DATA_POINTER_INT_AND_STRING*>(base)->integer = 99;
        if (verb == "truncates") static_cast<PI_DATA_POINTER_AND_DOUBLE*>(base)->real = -2.0;
        const auto overlays = host_.overlays;
        if (verb == "unloads")
            for (const auto& [handle, overlay] : overlays)
                if (overlay.platform) host_.closeFile(handle);
        const PIServiceResult result = serve_(service, base);
        if (values)
            std::ranges::copy(integers, values->integers.begin()),
                std::ranges::copy(doubles, values->doubles.begin());
        if (verb == "repeats") return serve_(service, base);
        if (verb == "denies") return 0;
        if (verb == "trusts") return result ? result : 1;
        if (verb == "keeps")
            for (auto& [handle, overlay] : host_.overlays) overlay.platform = overlays.at(handle).platform;
        if (verb == "in-front") std::swap(values->pointers.front(), values->pointers.back());
        if (verb == "scales")
            for (double& real : values->doubles) real *= fault_.factor;
        if (verb == "adds") values->integers.back() += static_cast<std::int64_t>(fault_.factor);
        if (verb == "forgets") static_cast<PI_DATA_POINTER_AND_STRING*>(base)->text.clear();
        auto* const stream =
            verb == "cuts"
                ? dynamic_cast<std::ostringstream*>(static_cast<std::ostream*>(values->pointers[1]))
                : nullptr;
        if (stream) stream->str(stream->str().substr(0, stream->str().rfind("end")));
        if (verb == "feet")
            static_cast<PIData::DataPointRequest*>(static_cast<PI_DATA_STRUCT*>(base)->pointer)
                ->point.altMeters *= 3.28;
        if (verb == "guesses")
            values->doubles.back() = std::strtod(host_.widgets.at(values->pointers[0]).text.c_str(), nullptr);
        if (verb == "checks-all")
            for (auto& [handle, widget] : host_.widgets)
                widget.checked = widget.kind == Service::CreateRadioButton;
        if (verb == "selects-first") host_.widgets.at(values->pointers[0]).number = 0.0;
        if (verb == "hastens")
            host_.timeouts.at(values->pointers.back()).callback->Call(nullptr, values->pointers[1]);
        if (verb == "echoes")
            for (const auto& [handle, widget] : std::map(host_.widgets))
                if (widget.callback && widget.caption.empty()) widget.callback->Call(nullptr, nullptr);
        return result;
    }
    PIServiceResult serve_(Service service, void* record) {
        isInside_ = true;
        const auto result =
            host_.handle(service == Service::IdentityOverride ? nullptr : host_.instance(), service, record);
        isInside_ = false;
        return result;
    }

    bool asks_(const std::string& text) const {
        return std::ranges::any_of(host_.widgets, [&](const auto& each) {
            return each.second.kind == Service::CreateLabel &&
                   each.second.text.find(text) != std::string::npos;
        });
    }
    void activate_(void* handle) {
        const kit::Host::Widget widget = host_.widgets.at(handle);
        int data = 0;
        // A row that is chosen is selected, too.
        const bool isSilent = widget.chosen && fault_.verb == "skips-selection";
        for (auto* const callback : {isSilent ? nullptr : widget.callback, widget.chosen})
            plugin_.call("a widget", callback, fault_.verb == "anonymous" ? nullptr : widget.wrapper,
                         fault_.verb == "data" ? &data : nullptr);
    }
    void press_(const std::string& caption) {
        for (const auto& [handle, widget] : std::map(host_.widgets))
            if (widget.caption == caption) activate_(handle);
    }
    void* last_(Service kind) const {
        void* found = nullptr;
        for (const auto& [handle, widget] : host_.widgets)
            if (widget.kind == kind) found = handle;
        return found;
    }
    /// A mouse event by itself, whatever it is answered with.
    void tell_(Mouse type) {
        PIGUI::PIMouseEvent event{400, 300, 0, 0};
        PIFunctionParams_t record;
        record.integers[PIParameterName_t::EventCode] = static_cast<std::int32_t>(type);
        record.pointers[PIParameterName_t::EventData] = &event;
        plugin_.dispatch(static_cast<std::int32_t>(PIClientFunctions_t::HandleMouseEvent), &record);
    }
    void act_(int hand, kit::Hands& hands) {
        const auto click = [&](Mouse press, Mouse release) {
            if (fault_.verb != "jumps") plugin_.mouse(Mouse::Motion, 400, 300);
            for (int i = fault_.verb == "stutters" ? 2 : 1; i > 0; --i) plugin_.mouse(press, 400, 300);
            if (fault_.verb != "holds") plugin_.mouse(release, 400, 300);
        };
        if (hand == 0) click(Mouse::LeftPress, Mouse::LeftRelease);
        if (hand == 1) {
            click(Mouse::LeftPress, Mouse::LeftRelease);
            if (fault_.verb == "swallows")
                tell_(Mouse::LeftDoubleClick);
            else
                plugin_.mouse(Mouse::LeftDoubleClick, 400, 300);
            plugin_.mouse(Mouse::LeftRelease, 400, 300);
        }
        if (hand == 2) click(Mouse::RightPress, Mouse::RightRelease);
        if (hand == 3)
            host_.widgets.at(last_(Service::CreateTextField)).text = "42",
            activate_(last_(Service::CreateTextField));
        if (hand == 3 && fault_.verb == "insists") activate_(last_(Service::CreateTextField));
        if (hand == 4)
            host_.widgets.at(last_(Service::CreateOptionMenu)).number = 1,
            activate_(last_(Service::CreateOptionMenu));
        if (hand == 5)
            host_.widgets.at(last_(Service::CreateList)).number = 1, activate_(last_(Service::CreateList));
        if (hand == 6 && !host_.actions.empty()) {
            std::int32_t state = fault_.verb == "unasked" ? 0 : 1;
            plugin_.call("an action", host_.actions.begin()->second.callback, nullptr, &state);
        }
        if (hand == 7 && !host_.overlays.empty()) {
            host_.requestMenu(fault_.verb == "astray" ? nullptr : host_.overlays.begin()->first);
            for (auto* const item : host_.contextItems) plugin_.call("an item", item, nullptr, nullptr);
        }
        host_.directory = hand == 9 || hand == 10 ? std::filesystem::current_path().string() : "";
        if (hand >= 8 && hand <= 10) press_("File...");
        if (hand == 11) hands.closeDialogs();
        if (hand == 11 && fault_.verb == "buries") host_.widgets.clear();
    }

    const Fault fault_;
    kit::Situation situation_;
    kit::Findings findings_{2, situation_, true};
    kit::Host host_{findings_, situation_, this};
    kit::Plugin plugin_;
    bool isInside_ = false;
};

void runExample(const char* probe) {
    Host host;
    Plugin plugin(probe, host.hostBuildNumber());
    plugin.start(host);
    host.press("Host Probe...");
    host.press("Run");
    plugin.close();
    if (host.leftovers() != 0) throw std::runtime_error("the probe left something behind");
    plugin.unload();
}

}  // namespace

int main(int count, char** arguments) try {
    if (count == 2)
        BrokenHost(arguments[1]).run();
    else if (count == 3)
        runExample(arguments[2]);
    else
        throw std::runtime_error("usage: probed-host [example] HostProbe.so");
    return 0;
} catch (const std::exception& error) {
    std::cerr << "probed-host: " << error.what() << '\n';
    return 1;
}
