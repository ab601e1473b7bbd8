#include <algorithm>
#include <cmath>

#include "common/NumberText.h"
#include "kit/HostRecords.h"

namespace kit {

bool Host::isWidgetService_(Service service) {
    const int number = static_cast<int>(service);
    const bool others = service == Service::RegistrySetValue || service == Service::RegistryGetValue ||
                        service == Service::MouseGrab || service == Service::Icon ||
                        service == Service::FileDialog || service == Service::ForceRedraw;
    return ((number >= 100 && number < 200) || (number >= 900 && number < 1000)) && !others;
}

Host::Widget& Host::widget_(void* handle) {
    return known_(widgets, handle, "widget")->second;
}

bool Host::isVisible(const Widget& widget) const {
    if (!widget.shown) return false;
    const auto parent = widgets.find(widget.parent);
    if (parent == widgets.end()) return true;
    const bool isBehind = parent->second.kind == Service::CreateSwitcher && parent->second.current &&
                          parent->second.current != widget.handle;
    return !isBehind && isVisible(parent->second);
}

PIServiceResult Host::serveWidget_(Service service, void* record) {
    switch (service) {
        case Service::BindWidget:
            return bind_(as_<PI_DATA_POINTER_AND_POINTER>(record));
        case Service::DialogShow:
            widget_(record).shown = true;
            return 1;
        case Service::WindowShown:
            return isVisible(widget_(record)) ? 1 : 0;
        case Service::WindowShow:
        case Service::WindowEnable:
        case Service::WindowCheck: {
            const auto& flag = as_<PI_DATA_POINTER_AND_BOOL>(record);
            Widget& widget = widget_(flag.pointer);
            (service == Service::WindowShow     ? widget.shown
             : service == Service::WindowEnable ? widget.enabled
                                                : widget.checked) = flag.flag;
            if (service == Service::WindowCheck && flag.flag && widget.kind == Service::CreateRadioButton)
                for (auto& [handle, other] : widgets)
                    other.checked &=
                        handle == flag.pointer || other.kind != widget.kind || other.parent != widget.parent;
            return 1;
        }
        case Service::WindowMapFunction: {
            const auto& map = as_<PI_DATA_POINTER_AND_FUNCTION>(record);
            widget_(map.pointer).callback = callback_(map.function);
            return 1;
        }
        case Service::WindowSetInt: {
            const auto& value = as_<PI_DATA_POINTER_AND_INT>(record);
            return setNumber_(widget_(value.pointer), value.integer);
        }
        case Service::WindowSetDouble: {
            const auto& value = as_<PI_DATA_POINTER_AND_DOUBLE>(record);
            return setNumber_(widget_(value.pointer), value.real);
        }
        case Service::WindowSetString: {
            const auto& value = as_<PI_DATA_POINTER_AND_STRING>(record);
            Widget& widget = widget_(value.pointer);
            widget.text = value.text;
            const auto at = std::find(widget.items.begin(), widget.items.end(), value.text);
            if (at != widget.items.end()) widget.number = static_cast<double>(at - widget.items.begin());
            return 1;
        }
        case Service::OptionMenuAppendOption: {
            const auto& option = as_<PI_DATA_POINTER_INT_AND_STRING>(record);
            auto& items = widget_(option.pointer).items;
            if (option.integer < 0) throw Misuse("an option cannot stand at a negative index");
            const auto at = std::min(items.size(), static_cast<std::size_t>(option.integer));
            items.insert(items.begin() + static_cast<std::ptrdiff_t>(at), option.text);
            return 1;
        }
        case Service::OptionMenuGetOptionText: {
            auto& option = as_<PI_DATA_POINTER_INT_AND_STRING>(record);
            const auto& items = widget_(option.pointer).items;
            const auto index = static_cast<std::size_t>(option.integer);
            if (index >= items.size()) {
                if (answer) return 0;  // it may have been refused
                throw Misuse("the menu has no option " + std::to_string(option.integer));
            }
            option.text = items[index];
            return 1;
        }
        case Service::DialogRegisterCloseObserver: {
            const auto& observer = as_<PI_DATA_POINTER_AND_POINTER>(record);
            widget_(observer.pointer).closeObserver = static_cast<PIGUI::PICloseObserver*>(observer.second);
            return 1;
        }
        case Service::SwitcherSetCurrent: {
            const auto& current = as_<PI_DATA_CATCHALL>(record);
            void* const switcher = pointer_(current, 0);
            const auto index = static_cast<std::size_t>(integer_(current, 0));
            std::vector<void*> children;
            for (const auto& [handle, widget] : widgets)
                if (widget.parent == switcher) children.push_back(handle);
            void* child = pointer_(current, 1);
            if (child) widget_(child);
            if (!child && index < children.size()) child = children[index];
            if (std::ranges::find(children, child) == children.end()) {
                if (answer) return 0;  // it may have been refused
                throw Misuse("the switcher has no such child");
            }
            widget_(switcher).current = child;
            return 1;
        }
        case Service::WidgetValue:
            return value_(as_<PI_DATA_CATCHALL>(record));
        case Service::ListItems:
            return listItems_(as_<PI_DATA_CATCHALL>(record));
        case Service::WidgetLooks:
            return looks_(as_<PI_DATA_CATCHALL>(record));
        default:
            return create_(service, record);
    }
}

PIServiceResult Host::create_(Service service, void* record) {
    const auto make = [&](const auto& arguments) {
        Widget widget;
        widget.kind = service;
        widget.parent = arguments.pointer;
        if constexpr (requires { arguments.text; }) widget.caption = widget.text = arguments.text;
        if constexpr (requires { arguments.function; }) widget.callback = callback_(arguments.function);
        const bool standsAlone = service == Service::CreateMenuItem || service == Service::CreateDialogBox;
        if (widget.parent || !standsAlone) widget_(widget.parent);
        widget.shown = service != Service::CreateDialogBox;
        if constexpr (requires { arguments.integer; })
            if (service == Service::CreateSpinner && arguments.integer == PIGUI::PISpinnerSigned)
                widget.least = -widget.most;
        if (service == Service::CreateList) widget.number = -1;
        void* const handle = widget.handle = newHandle_();
        widgets[handle] = std::move(widget);
        return reinterpret_cast<PIServiceResult>(handle);
    };
    switch (service) {
        case Service::CreateMenuItem:
        case Service::CreateButton:
        case Service::CreateRadioButton:
        case Service::CreateCheckButton:
        case Service::CreateOptionMenu:
            return make(as_<PI_DATA_POINTER_STRING_AND_FUNCTION>(record));
        case Service::CreateTextField:
        case Service::CreateColorWell:
        case Service::CreateSpinner:
            return make(as_<PI_DATA_POINTER_INT_AND_FUNCTION>(record));
        case Service::CreateList:
        case Service::CreateGroupBox:
            return make(as_<PI_DATA_POINTER_INT_AND_STRING>(record));
        case Service::CreateLabel:
        case Service::CreateDialogBox:
            return make(as_<PI_DATA_POINTER_AND_STRING>(record));
        case Service::CreateHorizontalMatrix:
        case Service::CreateVerticalMatrix:
            return make(as_<PI_DATA_POINTER_AND_INT>(record));
        case Service::CreateSwitcher:
        case Service::CreateCanvas:
        case Service::CreateHorizontalFrame:
        case Service::CreateVerticalFrame:
            return make(as_<PI_DATA_POINTER_AND_OPTS>(record));
        default:
            throw Misuse("the contract has no such number");
    }
}

PIServiceResult Host::bind_(PI_DATA_POINTER_AND_POINTER& record) {
    widget_(record.pointer).wrapper = static_cast<PIObject*>(record.second);
    if (!record.second) destroy_(record.pointer);
    return 1;
}

void Host::destroy_(void* handle) {
    widgets.erase(handle);
    std::vector<void*> children;
    for (const auto& [child, widget] : widgets)
        if (widget.parent == handle) children.push_back(child);
    for (void* const child : children) destroy_(child);
}

PIServiceResult Host::setNumber_(Widget& widget, double number) {
    const bool hasItems = widget.kind == Service::CreateOptionMenu || widget.kind == Service::CreateList;
    if (hasItems && !(number >= -1.0 && number < static_cast<double>(widget.items.size()))) {
        if (answer) return 0;  // an item may have been refused
        throw Misuse("there is no item " + UTILS::writeNumber(number));
    }
    widget.number =
        widget.kind == Service::CreateSpinner ? std::clamp(number, widget.least, widget.most) : number;
    widget.text = UTILS::writeNumber(widget.number);
    return 1;
}

PIServiceResult Host::value_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::WidgetValue;
    const Op operation = selector_(record, Op::Checked);
    const Widget& widget = widget_(pointer_(record, 0));
    const double number = widget.kind == Service::CreateTextField
                              ? UTILS::readNumber(widget.text).value_or(0.0)
                              : widget.number;
    switch (operation) {
        case Op::Text:
            record.strings.push_back(widget.kind == Service::CreateTextField
                                         ? widget.text
                                         : widget.text.substr(0, widget.text.find('\t')));
            break;
        case Op::Integer:
            record.integers.push_back(std::abs(number) < 9e18 ? static_cast<std::int64_t>(number) : 0);
            break;
        case Op::Real:
            record.doubles.push_back(number);
            break;
        case Op::Checked:
            record.integers.push_back(widget.checked);
            break;
    }
    return 1;
}

PIServiceResult Host::looks_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::WidgetLooks;
    const Op operation = selector_(record, Op::Line);
    Widget& widget = widget_(pointer_(record, 0));
    if (operation == Op::Chosen) {
        if (widget.kind != Service::CreateList) throw Misuse("rows are chosen of a list");
        widget.chosen = callback_(pointer_(record, 1));
    }
    if (operation == Op::Line) {
        if (widget.kind != Service::CreateTextField) throw Misuse("a line is a text field");
        widget.typing = callback_(pointer_(record, 1));
    }
    if (operation == Op::Mark) integer_(record, 1);
    if (operation == Op::Room) integer_(record, 2);
    if (operation == Op::Limits) {
        if (integer_(record, 1) > integer_(record, 2))
            throw Misuse("the least of the limits is above the most");
        widget.most = static_cast<double>(integer_(record, 2));
        widget.least = static_cast<double>(integer_(record, 1));
    }
    return 1;
}

PIServiceResult Host::listItems_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::ListItems;
    const Op operation = selector_(record, Op::GetData);
    Widget& list = widget_(pointer_(record, 0));
    const auto count = static_cast<std::int64_t>(list.items.size());
    const auto index = [&] {
        const std::int64_t wanted = integer_(record, 1);
        if (answer && wanted == -1) throw Gone();
        if (wanted < 0 || wanted >= count) throw Misuse("the list has no item " + std::to_string(wanted));
        return static_cast<std::size_t>(wanted);
    };
    switch (operation) {
        case Op::Append:
            list.items.push_back(text_(record, 0));
            list.itemData.push_back(pointer_(record, 1));
            record.integers.push_back(count);
            break;
        case Op::AppendHeader:
            list.caption.append("\t").append(text_(record, 0));
            break;
        case Op::Remove: {
            const auto at = static_cast<std::ptrdiff_t>(index());
            list.items.erase(list.items.begin() + at);
            list.itemData.erase(list.itemData.begin() + at);
            if (list.number == static_cast<double>(at)) list.number = -1;
            if (list.number > static_cast<double>(at)) list.number -= 1;
            break;
        }
        case Op::Clear:
            list.items.clear();
            list.itemData.clear();
            list.number = -1;
            break;
        case Op::Count:
            record.integers.push_back(count);
            break;
        case Op::Selected:
            record.integers.push_back(static_cast<std::int64_t>(list.number));
            break;
        case Op::Select:
            list.number = static_cast<double>(index());
            break;
        case Op::DeselectAll:
            list.number = -1;
            break;
        case Op::GetText:
            record.strings.push_back(list.items[index()]);
            break;
        case Op::SetText:
            list.items[index()] = text_(record, 0);
            break;
        case Op::GetData:
            record.pointers.push_back(list.itemData[index()]);
            break;
    }
    return 1;
}

}  // namespace kit
