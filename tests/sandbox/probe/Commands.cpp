#include <cmath>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <thread>

#include "Gallery.h"

namespace probe {

using Id = PIServerFunctions_t;
using Words = std::vector<std::string>;

namespace {

std::string first(const Words& texts) {
    return texts.empty() ? std::string() : texts.front();
}

}  // namespace

/// The commands of the probe's field, by their first word. Those that answer give the answer's text.
class Commands {
  public:
    explicit Commands(Gallery& owner) : gallery_(owner) {}

    std::string perform(const Words& words);

  private:
    std::string widgets(const Words& words);
    std::string list(const Words& words);
    std::string application(const Words& words);
    std::string scene(const Words& words);
    std::string overlay(const Words& words);
    std::string misuse(const Words& words);

    static double real(const Words& words, std::size_t index) { return std::atof(words.at(index).c_str()); }
    static std::int64_t integer(const Words& words, std::size_t index) {
        return std::atoll(words.at(index).c_str());
    }
    /// The words from `index` on; `|` stands for a tab and `_` for a blank.
    static std::string rest(const Words& words, std::size_t index);
    static std::string numbers(const std::vector<double>& values);
    static std::string numbers(const std::vector<std::int64_t>& values);

    Gallery& gallery_;
};

std::string Gallery::perform(const std::vector<std::string>& words) {
    return Commands(*this).perform(words);
}

std::string Commands::rest(const Words& words, std::size_t index) {
    std::string text;
    for (std::size_t i = index; i < words.size(); ++i) text += (i > index ? " " : "") + words[i];
    for (char& letter : text) letter = letter == '|' ? '\t' : letter == '_' ? ' ' : letter;
    return text;
}

std::string Commands::numbers(const std::vector<double>& values) {
    std::ostringstream text;
    text.precision(17);
    for (std::size_t i = 0; i < values.size(); ++i) text << (i > 0 ? " " : "") << values[i];
    return text.str();
}

std::string Commands::numbers(const std::vector<std::int64_t>& values) {
    std::ostringstream text;
    for (std::size_t i = 0; i < values.size(); ++i) text << (i > 0 ? " " : "") << values[i];
    return text.str();
}

std::string Commands::perform(const Words& words) {
    using Group = std::string (Commands::*)(const Words&);
    if (words.empty()) return {};
    for (const Group group : {&Commands::widgets, &Commands::list, &Commands::application, &Commands::scene,
                              &Commands::overlay, &Commands::misuse}) {
        const std::string answer = (this->*group)(words);
        if (answer != "?") return answer;
    }
    return "unknown command " + words[0];
}

std::string Commands::widgets(const Words& words) {
    const std::string& verb = words[0];
    void* widget = words.size() > 1 ? gallery_.widget(words[1]) : nullptr;
    if (verb == "set-text") {
        call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, widget, rest(words, 2));
    } else if (verb == "set-int") {
        call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, widget, static_cast<std::int32_t>(integer(words, 2)));
    } else if (verb == "set-real") {
        call<PI_DATA_POINTER_AND_DOUBLE>(Id::WindowSetDouble, widget, real(words, 2));
    } else if (verb == "check") {
        call<PI_DATA_POINTER_AND_BOOL>(Id::WindowCheck, widget, integer(words, 2) != 0);
    } else if (verb == "show") {
        call<PI_DATA_POINTER_AND_BOOL>(Id::WindowShow, widget, integer(words, 2) != 0);
    } else if (verb == "enable") {
        call<PI_DATA_POINTER_AND_BOOL>(Id::WindowEnable, widget, integer(words, 2) != 0);
    } else if (verb == "shown") {
        return std::to_string(call(Id::WindowShown, widget));
    } else if (verb == "int") {
        return numbers(
            ask(Id::WidgetValue, PISelector::WidgetValue::Integer, {.pointers = {widget}}).integers);
    } else if (verb == "real") {
        return numbers(ask(Id::WidgetValue, PISelector::WidgetValue::Real, {.pointers = {widget}}).reals);
    } else if (verb == "option") {
        PI_DATA_POINTER_INT_AND_STRING record(widget, static_cast<std::int32_t>(integer(words, 2)), "");
        call(Id::OptionMenuGetOptionText, &record);
        return record.text;
    } else if (verb == "page") {
        ask(Id::SwitcherSetCurrent,
            {.integers = {integer(words, 1)}, .pointers = {gallery_.widget("switcher"), nullptr}});
    } else if (verb == "second-dialog") {
        void* second = gallery_.keep(
            "second", call<PI_DATA_POINTER_AND_STRING>(Id::CreateDialogBox, gallery_.dialog_, "Second"));
        call<PI_DATA_POINTER_AND_POINTER>(Id::DialogRegisterCloseObserver, second,
                                          static_cast<PIGUI::PICloseObserver*>(&gallery_.throwingObserver_));
        call(Id::DialogShow, second);
    } else if (verb == "destroy") {
        gallery_.destroy(words[1]);
    } else if (verb == "icon") {
        // A PNG image of one pixel.
        static constexpr unsigned char png[] = {
            137, 80, 78, 71,  13, 10,  26,  10, 0,   0,   0,   13,  73,  72,  68,  82,  0, 0,
            0,   1,  0,  0,   0,  1,   8,   6,  0,   0,   0,   31,  21,  196, 137, 0,   0, 0,
            13,  73, 68, 65,  84, 120, 156, 99, 248, 223, 192, 240, 31,  0,   6,   128, 2, 127,
            16,  76, 27, 225, 0,  0,   0,   0,  73,  69,  78,  68,  174, 66,  96,  130};
        auto icon = ask(Id::Icon, PISelector::Icon::LoadPng,
                        {.integers = {sizeof png}, .pointers = {const_cast<unsigned char*>(png)}});
        ask(Id::Icon, PISelector::Icon::SetMenuItemIcon, {.pointers = {gallery_.menuItem_, icon.handle()}});
        ask(Id::Icon, PISelector::Icon::SetDialogIcon, {.pointers = {gallery_.dialog_, icon.handle()}});
        ask(Id::Icon, PISelector::Icon::Destroy, {.pointers = {icon.handle()}});
        return icon.handle() ? "loaded" : "no icon";
    } else {
        return "?";
    }
    return "done";
}

std::string Commands::list(const Words& words) {
    using Selector = PISelector::ListItems;
    const std::string& verb = words[0];
    void* list = gallery_.widget("list");
    const auto on = [&](Selector selector, Catchall arguments = {}) {
        arguments.pointers.insert(arguments.pointers.begin(), list);
        return ask(Id::ListItems, selector, arguments);
    };
    if (verb == "append") {
        auto data = reinterpret_cast<void*>(integer(words, 1));
        return numbers(on(Selector::Append, {.texts = {rest(words, 2)}, .pointers = {data}}).integers);
    }
    if (verb == "count") return numbers(on(Selector::Count).integers);
    if (verb == "selected") return numbers(on(Selector::Selected).integers);
    if (verb == "item") return first(on(Selector::GetText, {.integers = {integer(words, 1)}}).texts);
    if (verb == "data") {
        const auto data = on(Selector::GetData, {.integers = {integer(words, 1)}});
        return std::to_string(reinterpret_cast<std::intptr_t>(data.handle()));
    }
    if (verb == "add-header")
        on(Selector::AppendHeader, {.texts = {rest(words, 1)}});
    else if (verb == "remove")
        on(Selector::Remove, {.integers = {integer(words, 1)}});
    else if (verb == "clear")
        on(Selector::Clear);
    else if (verb == "select")
        on(Selector::Select, {.integers = {integer(words, 1)}});
    else if (verb == "deselect")
        on(Selector::DeselectAll);
    else if (verb == "rename")
        on(Selector::SetText, {.integers = {integer(words, 1)}, .texts = {rest(words, 2)}});
    else
        return "?";
    return "done";
}

std::string Commands::application(const Words& words) {
    const std::string& verb = words[0];
    auto& handles = gallery_.handles_;
    if (verb == "store") {
        call<PI_DATA_POINTER_STRING_AND_STRING>(Id::RegistrySetValue, nullptr, words[1], rest(words, 2));
    } else if (verb == "read") {
        PI_DATA_POINTER_AND_STRING record(nullptr, words[1]);
        call(Id::RegistryGetValue, &record);
        return record.text;
    } else if (verb == "ask-load" || verb == "ask-save" || verb == "ask-directory") {
        const auto selector = verb == "ask-load"   ? PISelector::FileDialog::Load
                              : verb == "ask-save" ? PISelector::FileDialog::Save
                                                   : PISelector::FileDialog::Directory;
        const auto answer = ask(Id::FileDialog, selector,
                                {.texts = {"Choose", "PROBE", "Last", "", "Overlays\t*.zel *.ll", "All\t*"}});
        return answer.texts.empty() ? "cancelled" : answer.texts[0];
    } else if (verb == "timeout") {
        const std::string name = words[1];
        handles[name] = ask(Id::Timeout, PISelector::Timeout::Create,
                            {.integers = {integer(words, 2)},
                             .pointers = {callback([name](PIObject* sender, void* data) {
                                              say(name + " fired" + (sender ? " with a sender" : "") +
                                                  (data == &gallery ? " with its data" : ""));
                                          }),
                                          &gallery}})
                            .handle();
    } else if (verb == "cancel") {
        ask(Id::Timeout, PISelector::Timeout::Cancel, {.pointers = {handles[words[1]]}});
    } else if (verb == "action") {
        const std::string label = rest(words, 1);
        handles[label] =
            ask(Id::Action, PISelector::Action::Create,
                {.texts = {"Probe", label}, .pointers = {callback([label](PIObject*, void* data) {
                                                say(label + " asked for " +
                                                    std::to_string(*static_cast<const std::int32_t*>(data)));
                                            })}})
                .handle();
    } else if (verb == "check-action") {
        ask(Id::Action, PISelector::Action::SetChecked,
            {.integers = {integer(words, 1)}, .texts = {"Probe", rest(words, 2)}});
    } else if (verb == "destroy-action") {
        ask(Id::Action, PISelector::Action::Destroy, {.pointers = {handles[rest(words, 1)]}});
    } else if (verb == "publish" || verb == "withdraw") {
        const auto selector =
            verb == "publish" ? PISelector::Service::Register : PISelector::Service::Unregister;
        return std::to_string(
            ask(Id::Service, selector, {.texts = {words[1]}, .pointers = {&gallery}}).result);
    } else if (verb == "find-service") {
        const void* found = ask(Id::Service, PISelector::Service::Find, {.texts = {words[1]}}).handle();
        return !found ? "none" : found == &gallery ? "own" : "foreign";
    } else if (verb == "debug") {
        ask(Id::Notify, PISelector::Notify::Debug, {.integers = {0}, .texts = {"probe", rest(words, 1)}});
    } else if (verb == "notify") {
        ask(Id::Notify, PISelector::Notify::Message,
            {.integers = {integer(words, 1)}, .texts = {"probe", rest(words, 2)}});
    } else if (verb == "identity") {
        const auto identity = [](PISelector::IdentityOverride selector, Catchall arguments = {}) {
            return ask(Id::IdentityOverride, selector, std::move(arguments));
        };
        const bool none = identity(PISelector::IdentityOverride::Query).pointers.empty();
        identity(PISelector::IdentityOverride::Push, {.pointers = {instance}});
        const bool own = identity(PISelector::IdentityOverride::Query).handle() == instance;
        identity(PISelector::IdentityOverride::Pop, {.pointers = {nullptr}});
        const bool gone = identity(PISelector::IdentityOverride::Query).pointers.empty();
        return none && own && gone ? "kept" : "lost";
    } else if (verb == "leave-everything") {
        gallery_.leaves_ = true;
    } else {
        return "?";
    }
    return "done";
}

std::string Commands::scene(const Words& words) {
    const std::string& verb = words[0];
    auto& handles = gallery_.handles_;
    if (verb == "platforms") return numbers(ask(Id::GetPlatformList, {}).integers);
    if (verb == "year") return numbers(ask(Id::GetReferenceYear, {}).integers);
    if (verb == "initialized") return std::to_string(ask(Id::IsScenarioInitialized, {}).result);
    if (verb == "reference-frame") return numbers(ask(Id::GetScenarioCoordReferenceFrame, {}).integers);
    if (verb == "clock")
        return numbers(ask(Id::Clock, PISelector::Clock::Begin, {}).reals) + " " +
               numbers(ask(Id::Clock, PISelector::Clock::VisualTime, {}).reals);
    if (verb == "create-platform") {
        PIData::CreatePlatformRequest request;
        request.header.name = words[1];
        request.header.icon = "x2";
        request.point.latRad = real(words, 2);
        request.point.lonRad = real(words, 3);
        return numbers(
            ask(Id::CreateEntity, PISelector::CreateEntity::Platform, {.pointers = {&request}}).integers);
    }
    if (verb == "remove-platform")
        return std::to_string(ask(Id::RemoveEntity, {.integers = {integer(words, 1)}}).result);
    if (verb == "header") {
        PIData::HeaderRequest request;
        request.id = static_cast<std::uint64_t>(integer(words, 1));
        const auto known = call<PI_DATA_STRUCT>(Id::GetHeader, &request);
        return known
                   ? std::to_string(request.header.id) + " " + request.header.name + " " + request.header.icon
                   : "unknown";
    }
    if (verb == "point") {
        PIData::DataPointRequest request;
        request.id = static_cast<std::uint64_t>(integer(words, 1));
        request.timeSeconds = real(words, 2);
        const auto known = call<PI_DATA_STRUCT>(Id::GetDataPoint, &request);
        return known ? numbers(std::vector{request.point.latRad, request.point.lonRad,
                                           request.point.altMeters, request.point.headingRad})
                     : "unknown";
    }
    if (verb == "eye") return numbers(ask(Id::Camera, PISelector::Camera::EyePosition, {}).reals);
    if (verb == "look") {
        ask(Id::Camera, PISelector::Camera::SetCenter, {.reals = {real(words, 1), real(words, 2), 0.0}});
        ask(Id::Camera, PISelector::Camera::SetRangeAzimuthElevation,
            {.reals = {real(words, 3), real(words, 4), real(words, 5)}});
        return "done";
    }
    if (verb == "at-pixel" || verb == "at-cursor") {
        const auto place = verb == "at-cursor"
                               ? ask(Id::Cursor, PISelector::Cursor::LlaAtCursor, {.integers = {1}})
                               : ask(Id::Cursor, PISelector::Cursor::LlaAtPixel,
                                     {.integers = {integer(words, 1), integer(words, 2), 1}});
        return place.result ? numbers(place.reals) : "off the earth";
    }
    if (verb == "platform-at-cursor")
        return numbers(ask(Id::Cursor, PISelector::Cursor::PlatformAtCursor, {}).integers);
    if (verb == "mouse") {
        gallery_.reportsMouse_ = words[1] != "off";
        gallery_.consumesMouse_ = words[1] == "consume";
        return "done";
    }
    if (verb == "grab" || verb == "ungrab") {
        ask(Id::MouseGrab, verb == "grab" ? PISelector::MouseGrab::Grab : PISelector::MouseGrab::Ungrab, {});
        return "done";
    }
    if (verb == "redraw") {
        call(Id::ForceRedraw, nullptr);
        return "done";
    }
    if (verb == "refreshes") return std::to_string(gallery_.refreshes_);
    if (verb == "screen-text") {
        handles["screen"] = ask(Id::ScreenText, PISelector::ScreenText::Add,
                                {.texts = {"ScreenText\nEnabled FLOAT64 1.0\nText STRING " + rest(words, 3) +
                                           "\nFont STRING arial.ttf 14\nPosX FLOAT64 20\nPosY FLOAT64 30\n"
                                           "TextColor STRING 0xff00ffff\nHAlign STRING " +
                                           words[1] + "\nVAlign STRING " + words[2] + "\n"}})
                                .handle();
        return handles["screen"] ? "done" : "refused";
    }
    if (verb == "no-screen-text") {
        ask(Id::ScreenText, PISelector::ScreenText::Remove, {.pointers = {handles["screen"]}});
        return "done";
    }
    if (verb == "line") {
        handles["line"] = ask(Id::AnimatedLine, PISelector::AnimatedLine::Create,
                              {.integers = {integer(words, 1), integer(words, 2), 0xff0000ff}})
                              .handle();
        return handles["line"] ? "done" : "refused";
    }
    if (verb == "no-line") {
        ask(Id::AnimatedLine, PISelector::AnimatedLine::Remove, {.pointers = {handles["line"]}});
        return "done";
    }
    return "?";
}

std::string Commands::overlay(const Words& words) {
    using Selector = PISelector::OverlayFiles;
    const std::string& verb = words[0];
    auto& handles = gallery_.handles_;
    const auto on = [&](Selector selector, Catchall arguments = {}) {
        arguments.pointers.insert(arguments.pointers.begin(), handles[words.at(1)]);
        return ask(Id::OverlayFiles, selector, arguments);
    };
    if (verb == "load") {
        handles[words[1]] = ask(Id::OverlayFiles, Selector::LoadFile,
                                {.integers = {integer(words, 3), integer(words, 4)}, .texts = {words[2]}})
                                .handle();
        return handles[words[1]] ? "loaded" : "not loaded";
    }
    if (verb == "stream") {
        std::istringstream text("start\ncircle\ncenterll " + words[3] + " " + words[4] +
                                "\nradius 1000\nrangeunits m\nend\n");
        handles[words[1]] =
            ask(Id::OverlayFiles, Selector::LoadStream,
                {.integers = {integer(words, 2)}, .pointers = {static_cast<std::istream*>(&text)}})
                .handle();
        return handles[words[1]] ? "loaded" : "not loaded";
    }
    if (verb == "unload") {
        on(Selector::Unload);
        return "done";
    }
    if (verb == "show-overlay") {
        on(Selector::Show, {.integers = {integer(words, 2)}});
        return "done";
    }
    if (verb == "file-name") return first(on(Selector::FileName).texts);
    if (verb == "host-of") return numbers(on(Selector::Host).integers);
    if (verb == "text-of") {
        std::ostringstream text;
        const auto written =
            on(Selector::SerializeToStream, {.pointers = {static_cast<std::ostream*>(&text)}});
        return written.result ? text.str().substr(0, text.str().find('\n', 6)) : "nothing";
    }
    if (verb == "find") {
        void* found = ask(Id::OverlayFiles, Selector::FindByFileName, {.texts = {words[1]}}).handle();
        for (const auto& [name, handle] : handles)
            if (found && handle == found) return name;
        return found ? "foreign" : "none";
    }
    if (verb == "unattached")
        return std::to_string(
            ask(Id::OverlayLists, PISelector::OverlayLists::Unattached, {}).pointers.size());
    if (verb == "attached")
        return std::to_string(
            ask(Id::OverlayLists, PISelector::OverlayLists::Attached, {.integers = {integer(words, 1)}})
                .pointers.size());
    if (verb == "observe" || verb == "unobserve") {
        ask(Id::OverlayFiles, verb == "observe" ? Selector::RegisterObserver : Selector::RemoveObserver,
            {.pointers = {static_cast<PIHALVIS::ZELEventObserver*>(&gallery_.overlayObserver_)}});
        return "done";
    }
    if (verb == "menus" || verb == "no-menus") {
        ask(Id::ContextMenu,
            verb == "menus" ? PISelector::ContextMenu::Register : PISelector::ContextMenu::Remove,
            {.pointers = {static_cast<PIHALVIS::ContextMenuCallbackV3*>(&gallery_.menuObserver_)}});
        return "done";
    }
    if (verb == "stream-in-hook") {
        gallery_.streamsInHook_ = words[1] == "on";
        return "done";
    }
    return "?";
}

std::string Commands::misuse(const Words& words) {
    if (words[0] != "misuse") return "?";
    const std::string& kind = words[1];
    void* text = gallery_.widget("text");
    if (kind == "wrong-record") {
        call<PI_DATA_POINTER_AND_BOOL>(Id::WindowSetInt, text, true);
    } else if (kind == "null-record") {
        call(Id::WindowSetInt, nullptr);
    } else if (kind == "bare-handle") {
        call(Id::WindowSetInt, text);
    } else if (kind == "record-for-handle") {
        call<PI_DATA_POINTER_AND_BOOL>(Id::WindowShown, text, true);
    } else if (kind == "unknown-handle") {
        call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, &gallery_, 1);
    } else if (kind == "null-handle") {
        call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, nullptr, 1);
    } else if (kind == "dead-handle") {
        void* left = gallery_.widget("left");
        gallery_.destroy("left");
        call<PI_DATA_POINTER_AND_BOOL>(Id::WindowCheck, left, true);
    } else if (kind == "wrong-kind") {
        ask(Id::ListItems, PISelector::ListItems::Count, {.pointers = {text}});
    } else if (kind == "unknown-service") {
        call<PI_DATA_POINTER_AND_INT>(static_cast<Id>(777), text, 1);
    } else if (kind == "unknown-selector") {
        ask(Id::Timeout, {.integers = {55}});
    } else if (kind == "no-selector") {
        ask(Id::Timeout, {});
    } else if (kind == "arguments") {
        ask(Id::Camera, PISelector::Camera::SetCenter, {.reals = {0.1, 0.2}});
    } else if (kind == "not-finite") {
        ask(Id::Camera, PISelector::Camera::SetCenter, {.reals = {0.1, 1.0 / 0.0, 0.0}});
    } else if (kind == "nowhere") {
        PIData::CreatePlatformRequest request;
        request.point.latRad = 7.0;
        ask(Id::CreateEntity, PISelector::CreateEntity::Platform, {.pointers = {&request}});
    } else if (kind == "never") {
        PIData::DataPointRequest request;
        request.timeSeconds = std::nan("");
        call<PI_DATA_STRUCT>(Id::GetDataPoint, &request);
    } else if (kind == "observer-twice") {
        for (const char* verb : {"observe", "observe", "unobserve"}) overlay({verb});
    } else if (kind == "menu-as-window") {
        call<PI_DATA_POINTER_AND_STRING>(Id::CreateDialogBox, gallery_.menuItem_, "Nowhere");
    } else if (kind == "dialog-gone" || kind == "item-gone") {
        const auto make = [&](void* parent) {
            return reinterpret_cast<void*>(
                kind == "dialog-gone"
                    ? call<PI_DATA_POINTER_AND_STRING>(Id::CreateDialogBox, parent, "Box")
                    : call<PI_DATA_POINTER_STRING_AND_FUNCTION>(Id::CreateMenuItem, parent, "Item", nullptr));
        };
        void* outer = make(nullptr);
        void* inner = make(outer);
        call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, outer, nullptr);
        call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, inner, "Still there");
    } else if (kind == "identity") {
        PI_DATA_POINTER_AND_INT record(text, 1);
        services->handle(&gallery_, Id::WindowSetInt, &record);
    } else if (kind == "pop") {
        ask(Id::IdentityOverride, PISelector::IdentityOverride::Pop, {.pointers = {nullptr}});
    } else if (kind == "option") {
        call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, gallery_.widget("fruit"), 3);
    } else if (kind == "item") {
        ask(Id::ListItems, PISelector::ListItems::GetText,
            {.integers = {7}, .pointers = {gallery_.widget("list")}});
    } else if (kind == "ungrab") {
        ask(Id::MouseGrab, PISelector::MouseGrab::Ungrab, {});
    } else if (kind == "platform") {
        ask(Id::RemoveEntity, {.integers = {4711}});
    } else if (kind == "screen-text") {
        ask(Id::ScreenText, PISelector::ScreenText::Add, {.texts = {"ScreenText\nPosX FLOAT64 much\n"}});
    } else if (kind == "severity") {
        ask(Id::Notify, PISelector::Notify::Message, {.integers = {12}, .texts = {"probe", "loud"}});
    } else if (kind == "thread") {
        std::thread([text] { call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, text, 1); }).join();
    } else {
        return "unknown misuse " + kind;
    }
    return "done";
}

}  // namespace probe
