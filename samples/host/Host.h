#pragma once

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "pi/HostContract.h"

/// The services of a host without a screen: a widget is a record, a user is a function call. It serves what
/// drawing and saving a shape needs, and refuses everything else by answering 0. A plug-in lives with that:
/// what it cannot do it leaves out, or says.
class Host final : public PIServiceTable {
  public:
    using Service = PIServerFunctions_t;

    std::string saveAs;                     ///< what the user answers when asked where to save
    std::set<Service> refused;              ///< to see what a plug-in makes of it
    std::map<void*, std::string> overlays;  ///< ZEL texts by their handles; a host with a screen draws them

    // What a user does, with what is found by its text or by the label in front of it.
    void press(const std::string& caption) { activate(find(caption)->second); }
    void choose(const std::string& label, const std::string& option) {
        Widget& menu = std::next(find(label))->second;
        const auto at = std::find(menu.options.begin(), menu.options.end(), option);
        if (at == menu.options.end()) throw std::runtime_error("there is no option \"" + option + "\"");
        menu.chosen = static_cast<std::size_t>(at - menu.options.begin());
        activate(menu);
    }
    /// What a plug-in has not taken down: nothing, once its Close has returned.
    std::size_t leftovers() const { return widgets_.size() + grabs_; }

    std::int32_t hostBuildNumber() override { return 13000; }

    /// The one door. Nothing may be thrown back into the plug-in.
    PIServiceResult handle(void* /*the plug-in*/, Service service, void* record) override {
        try {
            return refused.contains(service) ? 0 : serve(service, record);
        } catch (const std::exception& error) {
            std::cerr << "service " << static_cast<int>(service) << " failed: " << error.what() << '\n';
            return 0;
        }
    }

  private:
    struct Widget {
        void* parent = nullptr;
        std::string caption;                     // without its tooltip
        FunctorTwoParams__* callback = nullptr;  // the plug-in's; none: nothing happens
        PIObject* wrapper = nullptr;             // what the callback gets as its sender
        std::string text;
        std::size_t chosen = 0;
        std::vector<std::string> options;
    };

    std::map<void*, Widget>::iterator find(const std::string& caption) {
        for (auto at = widgets_.begin(); at != widgets_.end(); ++at)
            if (at->second.caption == caption) return at;
        throw std::runtime_error("there is no \"" + caption + "\"");
    }
    static void activate(const Widget& widget) {
        if (widget.callback) widget.callback->Call(widget.wrapper, nullptr);
    }
    void* newHandle() { return reinterpret_cast<void*>(++lastHandle_); }

    /// The record as the class that the contract names for the service.
    template <typename Record>
    static Record& as(void* record) {
        return *static_cast<Record*>(static_cast<PI_DATA_BASE_CLASS*>(record));
    }
    /// Keeps a new widget. Each such record names a parent; some have a caption, some a callback.
    template <typename Record>
    PIServiceResult create(void* data) {
        const auto& record = as<Record>(data);
        Widget widget;
        widget.parent = record.pointer;
        if constexpr (requires { record.text; })
            widget.caption = record.text.substr(0, record.text.find('\t'));
        widget.text = widget.caption;
        if constexpr (requires { record.function; }) widget.callback = record.function;
        if (record.pointer) widgets_.at(record.pointer);  // throws when there is no such parent
        void* const handle = newHandle();
        widgets_[handle] = widget;
        return reinterpret_cast<PIServiceResult>(handle);
    }
    /// A widget goes with what it holds.
    PIServiceResult destroy(void* handle) {
        if (!widgets_.erase(handle)) return 0;
        const auto isChild = [handle](const auto& each) { return each.second.parent == handle; };
        for (auto at = widgets_.begin();
             (at = std::find_if(widgets_.begin(), widgets_.end(), isChild)) != widgets_.end();)
            destroy(at->first);
        return 1;
    }
    /// Changes the widget that the record names first. `at` throws when there is none.
    template <typename Record, typename Change>
    PIServiceResult change(void* data, Change apply) {
        auto& record = as<Record>(data);
        apply(widgets_.at(record.pointer), record);
        return 1;
    }

    PIServiceResult serve(Service service, void* data) {
        switch (service) {
            case Service::CreateMenuItem:
            case Service::CreateButton:
            case Service::CreateRadioButton:
            case Service::CreateCheckButton:
            case Service::CreateOptionMenu:
                return create<PI_DATA_POINTER_STRING_AND_FUNCTION>(data);
            case Service::CreateTextField:
            case Service::CreateColorWell:
            case Service::CreateSpinner:
                return create<PI_DATA_POINTER_INT_AND_FUNCTION>(data);
            case Service::CreateList:
            case Service::CreateGroupBox:
                return create<PI_DATA_POINTER_INT_AND_STRING>(data);
            case Service::CreateDialogBox:
            case Service::CreateLabel:
                return create<PI_DATA_POINTER_AND_STRING>(data);
            case Service::CreateHorizontalMatrix:
                return create<PI_DATA_POINTER_AND_INT>(data);
            case Service::CreateCanvas:
            case Service::CreateHorizontalFrame:
            case Service::CreateVerticalFrame:
                return create<PI_DATA_POINTER_AND_OPTS>(data);
            case Service::BindWidget: {  // a null wrapper: the widget goes
                const auto& record = as<PI_DATA_POINTER_AND_POINTER>(data);
                if (!record.second) return destroy(record.pointer);
                widgets_.at(record.pointer).wrapper = static_cast<PIObject*>(record.second);
                return 1;
            }
            case Service::OptionMenuAppendOption:
                return change<PI_DATA_POINTER_INT_AND_STRING>(
                    data, [](Widget& menu, auto& record) {  // behind the last: at the end
                        const auto at = std::min<std::size_t>(menu.options.size(),
                                                              static_cast<std::size_t>(record.integer));
                        menu.options.insert(menu.options.begin() + static_cast<std::ptrdiff_t>(at),
                                            record.text);
                    });
            case Service::WindowSetInt:
                return change<PI_DATA_POINTER_AND_INT>(data, [](Widget& widget, auto& record) {
                    if (record.integer >= 0 && !widget.options.empty())
                        widget.options.at(static_cast<std::size_t>(record.integer));
                    widget.chosen = static_cast<std::size_t>(record.integer);
                });
            case Service::WindowSetString:
                return change<PI_DATA_POINTER_AND_STRING>(data, [](Widget& widget, auto& record) {
                    widget.text = record.text.substr(0, record.text.find('\t'));
                    const auto at = std::find(widget.options.begin(), widget.options.end(), record.text);
                    if (at != widget.options.end())
                        widget.chosen = static_cast<std::size_t>(at - widget.options.begin());
                });
            case Service::RegistrySetValue: {
                const auto& record = as<PI_DATA_POINTER_STRING_AND_STRING>(data);
                settings_[record.text] = record.second;
                return 1;
            }
            case Service::RegistryGetValue: {  // the value takes the place of the key
                auto& record = as<PI_DATA_POINTER_AND_STRING>(data);
                record.text = settings_[record.text];
                return 1;
            }
            case Service::DialogShow:  // a bare handle instead of a record
                return widgets_.contains(data) ? 1 : 0;
            case Service::ForceRedraw:  // no record at all
                return 1;
            case Service::MouseGrab:
            case Service::FileDialog:
            case Service::Notify:
            case Service::Cursor:
            case Service::OverlayFiles:
            case Service::WidgetValue:
                return serveShared(service, as<PI_DATA_CATCHALL>(data));
            default:
                return 0;
        }
    }

    /// Numbers that several operations share: the first integer says which. Results go behind the arguments.
    PIServiceResult serveShared(Service service, PI_DATA_CATCHALL& record) {
        const auto is = [&](auto selector) { return record.integers.at(0) == static_cast<int>(selector); };
        switch (service) {
            case Service::MouseGrab:
                if (is(PISelector::MouseGrab::Grab)) return ++grabs_, 1;
                return is(PISelector::MouseGrab::Ungrab) && grabs_ > 0 ? --grabs_, 1 : 0;
            case Service::FileDialog:
                if (is(PISelector::FileDialog::Save)) record.strings.push_back(saveAs);
                return 1;
            case Service::Notify:
                if (record.integers.at(0) > 1) return 0;
                std::cerr << record.strings.at(0) << ": " << record.strings.at(1) << '\n';
                return 1;
            case Service::Cursor:
                return is(PISelector::Cursor::LlaAtPixel) ? groundAt(record) : 0;
            case Service::OverlayFiles:
                if (is(PISelector::OverlayFiles::LoadStream))
                    return keepOverlay(record, *static_cast<std::istream*>(record.pointers.at(0)));
                if (is(PISelector::OverlayFiles::LoadFile)) {
                    std::ifstream file(record.strings.at(0));
                    return keepOverlay(record, file);
                }
                return is(PISelector::OverlayFiles::Unload) && overlays.erase(record.pointers.at(0)) ? 1 : 0;
            case Service::WidgetValue: {
                const Widget& widget = widgets_.at(record.pointers.at(0));
                if (is(PISelector::WidgetValue::Text)) return record.strings.push_back(widget.text), 1;
                if (!is(PISelector::WidgetValue::Integer)) return 0;
                record.integers.push_back(static_cast<std::int64_t>(widget.chosen));
                return 1;
            }
            default:
                return 0;
        }
    }

    PIServiceResult keepOverlay(PI_DATA_CATCHALL& record, std::istream& stream) {
        const std::string text(std::istreambuf_iterator<char>(stream), {});
        if (text.empty() || record.integers.at(1) != 0) return 0;  // there are no platforms
        record.pointers.push_back(newHandle());
        overlays[record.pointers.back()] = text;
        return 1;
    }

    /// The simplest of views: from infinitely far above 0N 0E, north up, 800 by 600 pixels of 10 km.
    static PIServiceResult groundAt(PI_DATA_CATCHALL& record) {
        constexpr double kPixel = 10e3, kEquator = 6378137.0, kPole = kEquator * (1 - 1 / 298.257223563);
        const double east = (static_cast<double>(record.integers.at(1)) - 400.0) * kPixel;
        const double north = (300.0 - static_cast<double>(record.integers.at(2))) * kPixel;
        const double rest = 1.0 - std::pow(east / kEquator, 2) - std::pow(north / kPole, 2);
        if (rest < 0.0) return 0;  // beside the earth
        const double up = kEquator * std::sqrt(rest);
        // Latitude and longitude are those of the normal of the ellipsoid.
        record.doubles.push_back(std::atan2(north * std::pow(kEquator / kPole, 2), std::hypot(up, east)));
        record.doubles.push_back(std::atan2(east, up));
        record.doubles.push_back(0.0);
        return 1;
    }

    std::map<void*, Widget> widgets_;  // in the order of their creation
    std::map<std::string, std::string> settings_;
    std::size_t grabs_ = 0;
    std::uintptr_t lastHandle_ = 0;
};
