#include <algorithm>

#include "sandbox/Host.h"
#include "sandbox/services/Services.h"
#include "sandbox/widgets/Controls.h"
#include "sandbox/widgets/ListWidget.h"

namespace sandbox {

namespace {

using Id = PIServerFunctions_t;

PIServiceResult unsupported(const ServiceCall& call, const HostWidget& widget, const char* what) {
    return call.misuse(QString("%1 takes no such %2").arg(widget.describe(), what));
}

void addFlags(ServiceTable& table) {
    using Record = PI_DATA_POINTER_AND_BOOL;
    table.add<Record>(Id::WindowShow, "show", [](ServiceCall& call, Record& record) -> PIServiceResult {
        auto* widget = call.object<HostWidget>(record.pointer, "widget");
        if (!widget) return 0;
        widget->setShown(record.flag);
        return 1;
    });
    table.add<Record>(Id::WindowEnable, "enable", [](ServiceCall& call, Record& record) -> PIServiceResult {
        auto* widget = call.object<HostWidget>(record.pointer, "widget");
        if (!widget) return 0;
        widget->setEnabled(record.flag);
        return 1;
    });
    table.add<Record>(Id::WindowCheck, "check", [](ServiceCall& call, Record& record) -> PIServiceResult {
        auto* widget = call.object<HostWidget>(record.pointer, "widget");
        if (!widget) return 0;
        return widget->setChecked(record.flag) ? 1 : unsupported(call, *widget, "check mark");
    });
    table.addBare(Id::WindowShown, "shown", [](ServiceCall& call, void* handle) -> PIServiceResult {
        const auto* widget = call.object<HostWidget>(handle, "widget");
        return widget && widget->isShown() ? 1 : 0;
    });
}

void addSetters(ServiceTable& table) {
    table.add<PI_DATA_POINTER_AND_INT>(
        Id::WindowSetInt, "set integer",
        [](ServiceCall& call, PI_DATA_POINTER_AND_INT& record) -> PIServiceResult {
            auto* widget = call.object<HostWidget>(record.pointer, "widget");
            if (!widget) return 0;
            if (widget->setInteger(record.integer)) return 1;
            return unsupported(call, *widget, qPrintable(QString("value as %1").arg(record.integer)));
        });
    table.add<PI_DATA_POINTER_AND_DOUBLE>(
        Id::WindowSetDouble, "set number",
        [](ServiceCall& call, PI_DATA_POINTER_AND_DOUBLE& record) -> PIServiceResult {
            auto* widget = call.object<HostWidget>(record.pointer, "widget");
            if (!widget) return 0;
            return widget->setReal(record.real) ? 1 : unsupported(call, *widget, "number");
        });
    table.add<PI_DATA_POINTER_AND_STRING>(
        Id::WindowSetString, "set text",
        [](ServiceCall& call, PI_DATA_POINTER_AND_STRING& record) -> PIServiceResult {
            auto* widget = call.object<HostWidget>(record.pointer, "widget");
            if (!widget) return 0;
            const QString text = QString::fromStdString(record.text);
            if (widget->setText(text)) return 1;
            return unsupported(call, *widget, qPrintable(QString("text as \"%1\"").arg(text)));
        });
}

void addGetters(ServiceTable& table) {
    using Selector = PISelector::WidgetValue;
    /// `give` appends the result; it is false when the widget has no such value.
    const auto value = [&table](Selector selector, const char* name, auto give) {
        table.addSelected(Id::WidgetValue, selector, name, {.pointers = 1},
                          [give, name](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                              auto* widget = call.object<HostWidget>(arguments.pointer(0), "widget");
                              if (!widget) return 0;
                              return give(*widget, arguments) ? 1 : unsupported(call, *widget, name);
                          });
    };
    value(Selector::Text, "value as text", [](HostWidget& widget, Arguments& arguments) {
        const auto text = widget.text();
        if (text) arguments.give(text->toStdString());
        return text.has_value();
    });
    value(Selector::Integer, "value as integer", [](HostWidget& widget, Arguments& arguments) {
        const auto number = widget.integer();
        if (number) arguments.give(*number);
        return number.has_value();
    });
    value(Selector::Real, "value as number", [](HostWidget& widget, Arguments& arguments) {
        const auto number = widget.real();
        if (number) arguments.give(*number);
        return number.has_value();
    });
    value(Selector::Checked, "check state", [](HostWidget& widget, Arguments& arguments) {
        const auto checked = widget.checked();
        if (checked) arguments.give(static_cast<std::int64_t>(*checked));
        return checked.has_value();
    });
}

void addOptions(ServiceTable& table) {
    using Record = PI_DATA_POINTER_INT_AND_STRING;
    table.add<Record>(Id::OptionMenuAppendOption, "add option",
                      [](ServiceCall& call, Record& record) -> PIServiceResult {
                          auto* menu = call.object<OptionMenuWidget>(record.pointer, "option menu");
                          if (!menu) return 0;
                          menu->insertOption(record.integer, QString::fromStdString(record.text));
                          return 1;
                      });
    table.add<Record>(Id::OptionMenuGetOptionText, "option text",
                      [](ServiceCall& call, Record& record) -> PIServiceResult {
                          auto* menu = call.object<OptionMenuWidget>(record.pointer, "option menu");
                          if (!menu) return 0;
                          const auto text = menu->option(record.integer);
                          if (!text) return call.misuse(QString("no option %1").arg(record.integer));
                          record.text = text->toStdString();
                          return 1;
                      });
}

/// Room, marks and limits: additions that a plug-in can do without.
void addLooks(ServiceTable& table) {
    using Selector = PISelector::WidgetLooks;
    table.addSelected(
        Id::WidgetLooks, Selector::Room, "room", {.integers = 2, .pointers = 1},
        [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
            auto* widget = call.object<HostWidget>(arguments.pointer(0), "widget");
            if (!widget) return 0;
            constexpr std::int64_t most = 400;
            const auto room = [&](std::size_t i) {
                return static_cast<int>(std::clamp<std::int64_t>(arguments.integer(i), 0, most));
            };
            widget->setRoom(room(0), room(1));
            return 1;
        });
    table.addSelected(Id::WidgetLooks, Selector::Mark, "mark", {.integers = 1, .pointers = 1},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* widget = call.object<HostWidget>(arguments.pointer(0), "widget");
                          if (!widget) return 0;
                          if (widget->setMarked(arguments.integer(0) != 0)) return 1;
                          return unsupported(call, *widget, "mark");
                      });
    table.addSelected(Id::WidgetLooks, Selector::Limits, "limits", {.integers = 2, .pointers = 1},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* spinner = call.object<SpinnerWidget>(arguments.pointer(0), "spinner");
                          if (!spinner) return 0;
                          const std::int64_t least = arguments.integer(0);
                          const std::int64_t most = arguments.integer(1);
                          constexpr std::int64_t widest = 1000000;
                          if (least > most || least < -widest || most > widest)
                              return call.misuse(QString("no limits: %1 to %2").arg(least).arg(most));
                          spinner->setLimits(static_cast<int>(least), static_cast<int>(most));
                          return 1;
                      });
    table.addSelected(Id::WidgetLooks, Selector::Chosen, "choice", {.pointers = 2},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* list = call.object<ListWidget>(arguments.pointer(0), "list");
                          if (!list) return 0;
                          list->setChosen(arguments.pointer<FunctorTwoParams__>(1));
                          return 1;
                      });
    table.addSelected(Id::WidgetLooks, Selector::Line, "line", {.pointers = 2},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* field = call.object<TextFieldWidget>(arguments.pointer(0), "text field");
                          if (!field) return 0;
                          field->setLine(arguments.pointer<FunctorTwoParams__>(1));
                          return 1;
                      });
}

}  // namespace

void addValueServices(Host& host) {
    addLooks(host.services());
    addFlags(host.services());
    addSetters(host.services());
    addGetters(host.services());
    addOptions(host.services());
}

}  // namespace sandbox
