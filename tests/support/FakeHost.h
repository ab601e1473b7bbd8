#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <istream>
#include <iterator>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "common/NumberText.h"
#include "common/Vec3.h"
#include "pi/HostContract.h"
#include "pi/PIBase.h"
#include "pi/PIObject.h"

/// A host for tests, without a screen: it keeps what it is told, answers what the test put in, counts
/// calls. It is the service table from its construction to its destruction; put it before what uses it.
class FakeHost final : public PIServiceTable {
  public:
    using Id = PIServerFunctions_t;

    struct Overlay {
        std::string text;  ///< as loaded from a stream
        std::string path;  ///< of a file; not read
        std::uint64_t platform = 0;
        bool shown = true;
    };
    struct Widget {
        Id kind{};
        void* parent = nullptr;
        std::string caption;  ///< with its tooltip; a list's headers
        std::int32_t style = 0;
        FunctorTwoParams__* callback = nullptr;
        FunctorTwoParams__* typing = nullptr;
        PIObject* wrapper = nullptr;
        std::string text;  ///< value of a text field; caption of a label or a button, as it is now
        double number = 0.0;
        bool shown = true, enabled = true, checked = false, marked = false;
        std::vector<std::string> items;  ///< of an option menu or a list
        std::vector<void*> itemData;
        PIGUI::PICloseObserver* closeObserver = nullptr;
    };
    struct Timeout {
        std::int64_t milliseconds = 0;
        FunctorTwoParams__* callback = nullptr;
        void* userData = nullptr;
    };
    struct Platform {
        PIData::PIPlatformHeader header;
        PIData::PIDataPoint point;
    };

    FakeHost() : before_(g_FunctionMap) { g_FunctionMap = this; }
    ~FakeHost() { g_FunctionMap = before_; }
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    // What the test puts in.
    bool refuseAll = false;          ///< every call returns 0 without results
    bool marks = true;               ///< whether it can mark fields, and what else not every host can
    std::function<void(Id)> onCall;  ///< called during each call, but for calls made from within it
    /// Asked before each call; what it answers takes the place of the service.
    std::function<std::optional<PIServiceResult>(Id, void* args)> answer;
    std::optional<halCore::Vec3> eye;  ///< none: the host has no eye position
    std::function<std::optional<halCore::Vec3>(int x, int y)> pixelToLla;  ///< wins over `cursor`
    std::optional<halCore::Vec3> cursor;                                   ///< at every pixel
    std::uint64_t cursorPlatform = 0;
    std::map<std::uint64_t, Platform> platforms;
    std::vector<std::string> fileDialogAnswers;  ///< taken from the front; none left: cancelled
    std::map<std::string, std::string> settings;

    // What the test reads.
    std::map<Id, int> calls;
    void* caller = nullptr;  ///< the identity that came with the last call
    int loads = 0, unloads = 0, redraws = 0, grabs = 0;
    std::string lastText;  ///< of the overlay loaded last from a stream
    std::map<void*, Overlay> overlays;
    std::map<void*, Widget> widgets;
    std::map<void*, Timeout> timeouts;
    std::map<std::string, FunctorTwoParams__*> actions;  ///< by label
    std::map<std::string, bool> actionChecks;
    std::map<std::string, void*> services;  ///< published interfaces by name
    int icons = 0;                          ///< loaded and not destroyed
    std::map<void*, std::string> screenTexts;
    std::vector<std::string> notifications;  ///< "severity source: text"
    std::vector<PIHALVIS::ZELEventObserver*> observers;
    std::vector<PIHALVIS::ContextMenuCallbackV3*> contextMenus;
    std::map<std::string, FunctorTwoParams__*> contextItems;  ///< by label
    std::optional<halCore::Vec3> cameraCenter;
    std::optional<halCore::Vec3> cameraRae;

    /// The first widget whose caption, with or without its tooltip, is `caption`; null when there is none.
    Widget* find(const std::string& caption) {
        for (auto& [handle, widget] : widgets)
            if (widget.caption == caption || widget.caption.substr(0, widget.caption.find('\t')) == caption)
                return &widget;
        return nullptr;
    }
    /// Does what a user's change of the widget does: calls its callback. \return what it answered
    int activate(Widget& widget) {
        return widget.callback ? widget.callback->Call(widget.wrapper, nullptr) : 0;
    }
    void type(Widget& field, const std::string& text) {
        field.text = text;
        activate(field);
    }
    /// Lets every armed timeout fire once, but for those that another one cancels.
    void fireTimeouts() {
        const auto armed = timeouts;
        for (const auto& [handle, timeout] : armed)
            if (timeouts.erase(handle) != 0) timeout.callback->Call(nullptr, timeout.userData);
    }

    std::int32_t hostBuildNumber() override { return 13000; }

    PIServiceResult handle(void* identity, Id service, void* args) override {
        if (service == Id::IdentityOverride) return overrideIdentity(as<PI_DATA_CATCHALL>(args));
        caller = identity;
        ++calls[service];
        if (onCall && !inside_) {
            inside_ = true;
            onCall(service);
            inside_ = false;
        }
        if (refuseAll) return 0;
        if (answer)
            if (const auto given = answer(service, args)) return *given;
        const auto created = create(service, args);
        return created ? created : serve(service, args);
    }

  private:
    template <typename Record>
    static Record& as(void* args) {
        return *static_cast<Record*>(static_cast<PI_DATA_BASE_CLASS*>(args));
    }
    void* nextHandle() { return reinterpret_cast<void*>(++handles_ * 16); }

    PIServiceResult overrideIdentity(PI_DATA_CATCHALL& r) {
        using Op = PISelector::IdentityOverride;
        const auto operation = static_cast<Op>(r.integers.at(0));
        if (operation == Op::Query && !identities_.empty()) r.pointers.push_back(identities_.back());
        if (operation == Op::Push) identities_.push_back(r.pointers.at(0));
        if (operation == Op::Pop) identities_.pop_back();
        return 1;
    }

    PIServiceResult create(Id service, void* args) {
        using Labelled = PI_DATA_POINTER_STRING_AND_FUNCTION;
        Widget widget;
        widget.kind = service;
        widget.shown = service != Id::CreateDialogBox;
        const auto is = [service](auto... wanted) { return ((service == wanted) || ...); };
        const auto fill = [&](const auto& record) {
            widget.parent = record.pointer;
            if constexpr (requires { record.text; }) widget.caption = record.text;
            if constexpr (requires { record.integer; }) widget.style = record.integer;
            if constexpr (requires { record.function; }) widget.callback = record.function;
            void* const handle = nextHandle();
            widgets[handle] = std::move(widget);
            return reinterpret_cast<PIServiceResult>(handle);
        };
        const bool isButton = is(Id::CreateButton, Id::CreateRadioButton, Id::CreateCheckButton);
        if (isButton) widget.text = as<Labelled>(args).text;
        if (is(Id::CreateLabel)) widget.text = as<PI_DATA_POINTER_AND_STRING>(args).text;
        if (isButton || is(Id::CreateMenuItem, Id::CreateOptionMenu)) return fill(as<Labelled>(args));
        if (is(Id::CreateTextField, Id::CreateColorWell, Id::CreateSpinner))
            return fill(as<PI_DATA_POINTER_INT_AND_FUNCTION>(args));
        if (is(Id::CreateList, Id::CreateGroupBox)) return fill(as<PI_DATA_POINTER_INT_AND_STRING>(args));
        if (is(Id::CreateLabel, Id::CreateDialogBox)) return fill(as<PI_DATA_POINTER_AND_STRING>(args));
        if (is(Id::CreateHorizontalMatrix, Id::CreateVerticalMatrix))
            return fill(as<PI_DATA_POINTER_AND_INT>(args));
        if (is(Id::CreateSwitcher, Id::CreateCanvas, Id::CreateHorizontalFrame, Id::CreateVerticalFrame))
            return fill(as<PI_DATA_POINTER_AND_OPTS>(args));
        return 0;
    }

    PIServiceResult serve(Id service, void* args) {
        const auto is = [service](Id wanted) { return service == wanted; };
        if (is(Id::DialogShow)) return widgets[args].shown = true, 1;
        if (is(Id::WindowShown)) return widgets[args].shown ? 1 : 0;
        if (is(Id::WindowShow)) return flag(args, &Widget::shown);
        if (is(Id::WindowEnable)) return flag(args, &Widget::enabled);
        if (is(Id::WindowCheck)) return flag(args, &Widget::checked);
        if (is(Id::WindowSetInt)) return setNumber(args, &PI_DATA_POINTER_AND_INT::integer);
        if (is(Id::WindowSetDouble)) return setNumber(args, &PI_DATA_POINTER_AND_DOUBLE::real);
        if (is(Id::ForceRedraw)) return ++redraws, 1;
        if (is(Id::WindowSetString)) {
            const auto& record = as<PI_DATA_POINTER_AND_STRING>(args);
            Widget& widget = widgets[record.pointer];
            widget.text = record.text;
            const auto at = std::find(widget.items.begin(), widget.items.end(), record.text);
            if (at != widget.items.end()) widget.number = static_cast<double>(at - widget.items.begin());
        } else if (is(Id::BindWidget)) {
            const auto& record = as<PI_DATA_POINTER_AND_POINTER>(args);
            widgets[record.pointer].wrapper = static_cast<PIObject*>(record.second);
            if (!record.second) widgets.erase(record.pointer);
        } else if (is(Id::RegistrySetValue)) {
            const auto& record = as<PI_DATA_POINTER_STRING_AND_STRING>(args);
            settings[record.text] = record.second;
        } else if (is(Id::RegistryGetValue)) {
            auto& record = as<PI_DATA_POINTER_AND_STRING>(args);
            const auto found = settings.find(record.text);
            record.text = found == settings.end() ? std::string() : found->second;
        } else if (is(Id::WindowMapFunction)) {
            const auto& record = as<PI_DATA_POINTER_AND_FUNCTION>(args);
            widgets[record.pointer].callback = record.function;
        } else if (is(Id::OptionMenuAppendOption)) {
            const auto& record = as<PI_DATA_POINTER_INT_AND_STRING>(args);
            auto& items = widgets[record.pointer].items;
            const auto at = std::min(items.size(), static_cast<std::size_t>(record.integer));
            items.insert(items.begin() + static_cast<std::ptrdiff_t>(at), record.text);
        } else if (is(Id::OptionMenuGetOptionText)) {
            auto& record = as<PI_DATA_POINTER_INT_AND_STRING>(args);
            const auto& items = widgets[record.pointer].items;
            const auto index = static_cast<std::size_t>(record.integer);
            if (index >= items.size()) return 0;
            record.text = items[index];
        } else if (is(Id::DialogRegisterCloseObserver)) {
            const auto& record = as<PI_DATA_POINTER_AND_POINTER>(args);
            widgets[record.pointer].closeObserver = static_cast<PIGUI::PICloseObserver*>(record.second);
        } else if (is(Id::GetHeader)) {
            auto& request = *static_cast<PIData::HeaderRequest*>(as<PI_DATA_STRUCT>(args).pointer);
            if (!platforms.contains(request.id)) return 0;
            request.header = platforms[request.id].header;
            request.header.id = request.id;
        } else if (is(Id::GetDataPoint)) {
            auto& request = *static_cast<PIData::DataPointRequest*>(as<PI_DATA_STRUCT>(args).pointer);
            if (!platforms.contains(request.id)) return 0;
            request.point = platforms[request.id].point;
        } else {
            return serveCatchall(service, as<PI_DATA_CATCHALL>(args));
        }
        return 1;
    }

    PIServiceResult serveCatchall(Id service, PI_DATA_CATCHALL& r) {
        using namespace PISelector;
        const std::int64_t selector = r.integers.empty() ? -1 : r.integers.front();
        const auto does = [&](auto wanted) { return selector == static_cast<std::int64_t>(wanted); };
        const auto is = [service](Id wanted) { return service == wanted; };
        const auto give = [&r](auto value) { r.integers.push_back(static_cast<std::int64_t>(value)); };
        const auto callback = [&r](std::size_t i) { return static_cast<FunctorTwoParams__*>(r.pointers[i]); };
        if (is(Id::RemoveEntity)) return platforms.erase(static_cast<std::uint64_t>(r.integers[0])) ? 1 : 0;
        if (is(Id::OverlayFiles)) return overlayFiles(r, static_cast<OverlayFiles>(selector));
        if (is(Id::ListItems)) listItems(r, static_cast<ListItems>(selector));
        if (is(Id::SwitcherSetCurrent)) widgets[r.pointers[0]].number = static_cast<double>(r.integers[0]);
        if (is(Id::WidgetLooks)) {
            if (marks && does(WidgetLooks::Mark)) widgets[r.pointers[0]].marked = r.integers[1] != 0;
            if (marks && does(WidgetLooks::Line)) widgets[r.pointers[0]].typing = callback(1);
            return marks ? 1 : 0;
        }
        if (is(Id::MouseGrab)) grabs += does(MouseGrab::Grab) ? 1 : -1;
        if (is(Id::Clock)) r.doubles.push_back(0.0);
        if (is(Id::Notify))
            notifications.push_back(std::to_string(r.integers[1]) + " " + r.strings[0] + ": " + r.strings[1]);
        if (is(Id::GetPlatformList))
            for (const auto& entry : platforms) give(entry.first);
        if (is(Id::Icon)) {
            if (does(PISelector::Icon::LoadPng)) r.pointers.push_back(nextHandle()), ++icons;
            if (does(PISelector::Icon::Destroy)) --icons;
        } else if (is(Id::Service)) {
            if (does(PISelector::Service::Register)) services[r.strings[0]] = r.pointers[0];
            if (does(PISelector::Service::Unregister)) services.erase(r.strings[0]);
        } else if (is(Id::FileDialog) && !fileDialogAnswers.empty()) {
            r.strings.push_back(fileDialogAnswers.front());
            fileDialogAnswers.erase(fileDialogAnswers.begin());
        } else if (is(Id::WidgetValue)) {
            const Widget& widget = widgets[r.pointers[0]];
            if (does(WidgetValue::Text)) r.strings.push_back(widget.text);
            if (does(WidgetValue::Integer)) give(numberOf(widget));
            if (does(WidgetValue::Real)) r.doubles.push_back(numberOf(widget));
            if (does(WidgetValue::Checked)) give(widget.checked);
        } else if (is(Id::Timeout)) {
            if (does(PISelector::Timeout::Cancel)) return timeouts.erase(r.pointers[0]), 1;
            void* const handle = nextHandle();
            timeouts[handle] = {r.integers[1], callback(0), r.pointers[1]};
            r.pointers.push_back(handle);
        } else if (is(Id::Action)) {
            if (does(Action::SetChecked)) actionChecks[r.strings[1]] = r.integers[1] != 0;
            if (does(Action::Destroy))
                if (const auto label = actionLabels_.extract(r.pointers[0])) actions.erase(label.mapped());
            if (does(Action::Create)) {
                actions[r.strings[1]] = callback(0);
                r.pointers.push_back(nextHandle());
                actionLabels_[r.pointers.back()] = r.strings[1];
            }
        } else if (is(Id::CreateEntity)) {
            const auto& request = *static_cast<PIData::CreatePlatformRequest*>(r.pointers[0]);
            const std::uint64_t id = platforms.empty() ? 1 : platforms.rbegin()->first + 1;
            platforms[id] = {request.header, request.point};
            give(id);
        } else if (is(Id::Camera)) {
            if (does(Camera::EyePosition)) return position(eye, r);
            (does(Camera::SetCenter) ? cameraCenter : cameraRae) =
                halCore::Vec3(r.doubles[0], r.doubles[1], r.doubles[2]);
        } else if (is(Id::Cursor)) {
            if (does(Cursor::PlatformAtCursor)) return give(cursorPlatform), 1;
            if (!pixelToLla || !does(Cursor::LlaAtPixel)) return position(cursor, r);
            return position(pixelToLla(static_cast<int>(r.integers[1]), static_cast<int>(r.integers[2])), r);
        } else if (is(Id::OverlayLists)) {
            const auto platform =
                does(OverlayLists::Attached) ? static_cast<std::uint64_t>(r.integers[1]) : std::uint64_t{0};
            for (const auto& [handle, overlay] : overlays)
                if (!overlay.path.empty() && overlay.platform == platform) r.pointers.push_back(handle);
        } else if (is(Id::ScreenText)) {
            if (does(ScreenText::Remove)) return screenTexts.erase(r.pointers[0]), 1;
            r.pointers.push_back(nextHandle());
            screenTexts[r.pointers.back()] = r.strings[0];
        } else if (is(Id::ContextMenu)) {
            if (does(ContextMenu::AddItem)) return contextItems[r.strings[0]] = callback(1), 1;
            std::erase(contextMenus, r.pointers[0]);
            if (does(ContextMenu::Register))
                contextMenus.push_back(static_cast<PIHALVIS::ContextMenuCallbackV3*>(r.pointers[0]));
        }
        return 1;
    }

    PIServiceResult overlayFiles(PI_DATA_CATCHALL& r, PISelector::OverlayFiles operation) {
        using Op = PISelector::OverlayFiles;
        const auto add = [&](Overlay overlay) {
            void* const handle = nextHandle();
            overlay.platform = static_cast<std::uint64_t>(r.integers[1]);
            overlays[handle] = std::move(overlay);
            r.pointers.push_back(handle);
        };
        if (operation == Op::LoadStream) {
            auto& stream = *static_cast<std::istream*>(r.pointers[0]);
            lastText.assign(std::istreambuf_iterator<char>(stream), {});
            ++loads;
            add({lastText, {}, 0, true});
            return 1;
        }
        if (operation == Op::LoadFile) {
            add({{}, r.strings[0], 0, r.integers[2] != 0});
            for (auto* observer : observers) observer->addedZEL(r.pointers.back());
            return 1;
        }
        if (operation == Op::FindByFileName) {
            for (const auto& [handle, overlay] : overlays)
                if (overlay.path == r.strings[0]) return r.pointers.push_back(handle), 1;
            return 0;
        }
        if (operation == Op::RegisterObserver || operation == Op::RemoveObserver) {
            auto* observer = static_cast<PIHALVIS::ZELEventObserver*>(r.pointers[0]);
            std::erase(observers, observer);
            if (operation == Op::RegisterObserver) observers.push_back(observer);
            return 1;
        }
        const auto found = overlays.find(r.pointers[0]);
        if (found == overlays.end()) return 0;
        if (operation == Op::Unload) {
            const bool file = !found->second.path.empty();
            overlays.erase(found);
            ++unloads;
            if (file)
                for (auto* observer : observers) observer->removedZEL(r.pointers[0]);
        }
        if (operation == Op::Show) found->second.shown = r.integers[1] != 0;
        if (operation == Op::FileName) r.strings.push_back(found->second.path);
        if (operation == Op::Host) r.integers.push_back(static_cast<std::int64_t>(found->second.platform));
        if (operation == Op::SerializeToStream)
            *static_cast<std::ostream*>(r.pointers[1]) << found->second.text;
        return 1;
    }

    void listItems(PI_DATA_CATCHALL& r, PISelector::ListItems operation) {
        using Op = PISelector::ListItems;
        Widget& list = widgets[r.pointers[0]];
        const auto index = r.integers.size() > 1 ? static_cast<std::size_t>(r.integers[1]) : 0;
        const auto offset = static_cast<std::ptrdiff_t>(index);
        const bool known = index < list.items.size();
        const auto give = [&r](auto value) { r.integers.push_back(static_cast<std::int64_t>(value)); };
        if (operation == Op::Append) {
            if (list.items.empty()) list.number = -1;
            give(list.items.size());
            list.items.push_back(r.strings[0]);
            list.itemData.push_back(r.pointers[1]);
        }
        if (operation == Op::AppendHeader) list.caption += "\t" + r.strings[0];
        if (operation == Op::Clear) list.items.clear(), list.itemData.clear();
        if (operation == Op::Clear || operation == Op::DeselectAll) list.number = -1;
        if (operation == Op::Count) give(list.items.size());
        if (operation == Op::Selected) give(list.items.empty() ? -1 : list.number);
        if (operation == Op::Select) list.number = static_cast<double>(r.integers[1]);
        if (!known) return;
        if (operation == Op::GetText) r.strings.push_back(list.items[index]);
        if (operation == Op::SetText) list.items[index] = r.strings[0];
        if (operation == Op::GetData) r.pointers.push_back(list.itemData[index]);
        if (operation == Op::Remove) {
            list.items.erase(list.items.begin() + offset);
            list.itemData.erase(list.itemData.begin() + offset);
        }
    }

    PIServiceResult flag(void* args, bool Widget::*member) {
        const auto& record = as<PI_DATA_POINTER_AND_BOOL>(args);
        widgets[record.pointer].*member = record.flag;
        return 1;
    }
    template <typename Record, typename Number>
    PIServiceResult setNumber(void* args, Number Record::*value) {
        const auto& record = as<Record>(args);
        Widget& widget = widgets[record.pointer];
        widget.number = record.*value;
        widget.text = UTILS::writeNumber(widget.number);
        return 1;
    }
    /// The chosen index or the colour, or the number that a text field holds.
    static double numberOf(const Widget& widget) {
        return widget.kind == Id::CreateTextField ? UTILS::readNumber(widget.text).value_or(0.0)
                                                  : widget.number;
    }
    static PIServiceResult position(const std::optional<halCore::Vec3>& lla, PI_DATA_CATCHALL& record) {
        if (!lla) return 0;
        record.doubles.insert(record.doubles.end(), {lla->lat(), lla->lon(), lla->alt()});
        return 1;
    }

    PIServiceTable* before_;
    std::uintptr_t handles_ = 0;
    std::map<void*, std::string> actionLabels_;
    std::vector<void*> identities_;
    bool inside_ = false;
};
