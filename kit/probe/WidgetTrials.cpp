#include "kit/probe/Trials.h"

namespace probe {

namespace {

using Value = PISelector::WidgetValue;
using Labelled = PI_DATA_POINTER_STRING_AND_FUNCTION;
using Styled = PI_DATA_POINTER_INT_AND_FUNCTION;

int called = 0;

FunctorTwoParams__* counter() {
    return callback([](PIObject*, void*) { ++called; });
}

void* make(PIServiceResult handle) {
    return reinterpret_cast<void*>(handle);
}
void destroy(void* widget) {
    if (widget) call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, widget, nullptr);
}

/// Creates, destroys, and sees that it has gone.
void tryContainer(Trial& trial, Id service, const char* name, void* container) {
    if (!trial.serves(service, std::string("creates a ") + name, container != nullptr)) return;
    const auto gone = call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, container, nullptr);
    trial.expect(Id::BindWidget, std::string("destroys a ") + name, gone != 0 && fault.empty(), fault);
    trial.refuses(Id::BindWidget, std::string("a ") + name + " that is gone",
                  call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, container, nullptr));
}

}  // namespace

void tryWidgets(Trial& trial, void* dialog) {
    const auto options = [&](Id service) {
        return make(call<PI_DATA_POINTER_AND_OPTS>(service, dialog, 0U));
    };
    tryContainer(trial, Id::CreateSwitcher, "switcher", options(Id::CreateSwitcher));
    tryContainer(trial, Id::CreateCanvas, "canvas", options(Id::CreateCanvas));
    void* const parent = options(Id::CreateCanvas);
    void* const child = make(call<PI_DATA_POINTER_AND_STRING>(Id::CreateLabel, parent, "Child"));
    destroy(parent);
    if (parent && child)
        trial.refuses(Id::BindWidget, "a widget whose parent is gone",
                      call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, child, nullptr));
    tryContainer(trial, Id::CreateHorizontalFrame, "horizontal frame", options(Id::CreateHorizontalFrame));
    tryContainer(trial, Id::CreateVerticalFrame, "vertical frame", options(Id::CreateVerticalFrame));
    tryContainer(trial, Id::CreateHorizontalMatrix, "horizontal matrix",
                 make(call<PI_DATA_POINTER_AND_INT>(Id::CreateHorizontalMatrix, dialog, 2)));
    tryContainer(trial, Id::CreateVerticalMatrix, "vertical matrix",
                 make(call<PI_DATA_POINTER_AND_INT>(Id::CreateVerticalMatrix, dialog, 2)));
    tryContainer(trial, Id::CreateGroupBox, "group box",
                 make(call<PI_DATA_POINTER_INT_AND_STRING>(Id::CreateGroupBox, dialog, 0, "Group")));
    tryContainer(trial, Id::CreateDialogBox, "dialog",
                 make(call<PI_DATA_POINTER_AND_STRING>(Id::CreateDialogBox, nullptr, "Another")));
    tryContainer(trial, Id::CreateMenuItem, "menu item",
                 make(call<Labelled>(Id::CreateMenuItem, nullptr, "Another", nullptr)));
    tryContainer(trial, Id::CreateRadioButton, "radio button",
                 make(call<Labelled>(Id::CreateRadioButton, dialog, "Radio", nullptr)));
    tryContainer(trial, Id::CreateButton, "button",
                 make(call<Labelled>(Id::CreateButton, dialog, "Button", nullptr)));
    const auto orphan = call<Labelled>(Id::CreateButton, strange(), "Button", nullptr);
    trial.refuses(Id::CreateButton, "a parent that is none", orphan);
    destroy(make(orphan));

    called = 0;
    const auto text = [&](void* widget) { return ask(Id::WidgetValue, Value::Text, {.pointers = {widget}}); };
    void* const field = make(call<Styled>(Id::CreateTextField, dialog, 0, counter()));
    if (trial.serves(Id::CreateTextField, "creates a text field", field != nullptr)) {
        const auto set = call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, field, "21.5 \xc3\xa4");
        if (trial.serves(Id::WindowSetString, "sets a text", set != 0)) {
            const Answer read = text(field);
            if (trial.serves(Id::WidgetValue, "reads a text", !read.isRefused()))
                trial.expect(Id::WidgetValue, "the text is the one that was set",
                             read.strings == std::vector<std::string>{"21.5 \xc3\xa4"}, read);
            call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, field, "21.5");
            const Answer real = ask(Id::WidgetValue, Value::Real, {.pointers = {field}});
            if (trial.serves(Id::WidgetValue, "reads a text field as a number", !real.isRefused()))
                trial.expect(Id::WidgetValue, "it is that of its text",
                             real.doubles == std::vector<double>{21.5}, real);
            call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, field, "no number");
            const Answer none = ask(Id::WidgetValue, Value::Real, {.pointers = {field}});
            if (!none.isRefused())
                trial.expect(Id::WidgetValue, "a text that is no number reads as 0",
                             none.doubles == std::vector<double>{0.0}, none);
        }
        trial.expect(Id::CreateTextField, "a change by a service calls no callback", called == 0,
                     std::to_string(called) + " calls");
        destroy(field);
    }
    trial.refuses(Id::WindowSetString, "a widget that is none",
                  call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, strange(), "x"));

    void* const label = make(call<PI_DATA_POINTER_AND_STRING>(Id::CreateLabel, dialog, "Shown\tTooltip"));
    if (trial.serves(Id::CreateLabel, "creates a label", label != nullptr)) {
        const Answer shown = text(label);
        if (!shown.isRefused())
            trial.expect(Id::WidgetValue, "a caption is read without its tooltip",
                         shown.strings == std::vector<std::string>{"Shown"}, shown);
        destroy(label);
    }
}

void tryChoices(Trial& trial, void* dialog) {
    called = 0;
    const auto flag = [](Id service, void* widget, bool value) {
        return call<PI_DATA_POINTER_AND_BOOL>(service, widget, value);
    };
    const auto integer = [](void* widget) {
        return ask(Id::WidgetValue, Value::Integer, {.pointers = {widget}});
    };
    const auto is = [](const Answer& answer, std::int64_t value) {
        return answer.integers == std::vector<std::int64_t>{value};
    };

    void* const box = make(call<Labelled>(Id::CreateCheckButton, dialog, "Check", counter()));
    if (trial.serves(Id::CreateCheckButton, "creates a check button", box != nullptr)) {
        if (trial.serves(Id::WindowCheck, "checks it", flag(Id::WindowCheck, box, true) != 0)) {
            const Answer checked = ask(Id::WidgetValue, Value::Checked, {.pointers = {box}});
            if (trial.serves(Id::WidgetValue, "reads whether it is checked", !checked.isRefused()))
                trial.expect(Id::WidgetValue, "it is checked", is(checked, 1), checked);
        }
        if (trial.serves(Id::WindowShow, "hides it", flag(Id::WindowShow, box, false) != 0)) {
            trial.expect(Id::WindowShown, "what is hidden is not shown", call(Id::WindowShown, box) == 0);
            flag(Id::WindowShow, box, true);
        }
        trial.serves(Id::WindowEnable, "disables it", flag(Id::WindowEnable, box, false) != 0);
        trial.serves(Id::WindowMapFunction, "takes another callback",
                     call<PI_DATA_POINTER_AND_FUNCTION>(Id::WindowMapFunction, box, counter()) != 0);
        destroy(box);
    }
    for (const Id service : {Id::WindowShow, Id::WindowEnable, Id::WindowCheck})
        trial.refuses(service, "a widget that is none", flag(service, strange(), true));

    void* const menu = make(call<Labelled>(Id::CreateOptionMenu, dialog, "Menu", counter()));
    if (trial.serves(Id::CreateOptionMenu, "creates an option menu", menu != nullptr)) {
        const auto add = [&](int index, const char* option) {
            return call<PI_DATA_POINTER_INT_AND_STRING>(Id::OptionMenuAppendOption, menu, index, option);
        };
        if (trial.serves(Id::OptionMenuAppendOption, "adds an option", add(0, "One") != 0)) {
            add(1, "Two");
            add(99, "Three");
            PI_DATA_POINTER_INT_AND_STRING option(menu, 2, "");
            if (trial.serves(Id::OptionMenuGetOptionText, "reads an option",
                             call(Id::OptionMenuGetOptionText, static_cast<void*>(&option)) != 0))
                trial.expect(Id::OptionMenuGetOptionText, "an index behind the last appends",
                             option.text == "Three", option.text);
            const auto set = call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, menu, 1);
            if (trial.serves(Id::WindowSetInt, "chooses an option", set != 0)) {
                const Answer chosen = integer(menu);
                if (!chosen.isRefused())
                    trial.expect(Id::WidgetValue, "its value is the chosen index", is(chosen, 1), chosen);
            }
        }
        destroy(menu);
    }

    void* const spinner = make(call<Styled>(Id::CreateSpinner, dialog, PIGUI::PISpinnerSigned, counter()));
    if (trial.serves(Id::CreateSpinner, "creates a spinner", spinner != nullptr)) {
        call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, spinner, -7);
        const Answer value = integer(spinner);
        if (!value.isRefused())
            trial.expect(Id::WidgetValue, "a signed spinner holds -7", is(value, -7), value);
        destroy(spinner);
    }
    void* const well = make(call<Styled>(Id::CreateColorWell, dialog, PIGUI::PIColorWellAlpha, counter()));
    if (trial.serves(Id::CreateColorWell, "creates a colour well", well != nullptr)) {
        const auto red = static_cast<std::int32_t>(0xff0000ffU);
        call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, well, red);
        const Answer value = integer(well);
        if (!value.isRefused())
            trial.expect(Id::WidgetValue, "opaque red is 0xff0000ff in the bits of a 32-bit integer",
                         value.integers.size() == 1 && static_cast<std::int32_t>(value.integers[0]) == red,
                         value);
        destroy(well);
    }

    using Op = PISelector::ListItems;
    void* const list =
        make(call<PI_DATA_POINTER_INT_AND_STRING>(Id::CreateList, dialog, PIGUI::PIListSingle, "Name\tKind"));
    if (trial.serves(Id::CreateList, "creates a list", list != nullptr)) {
        call<PI_DATA_POINTER_AND_FUNCTION>(Id::WindowMapFunction, list, counter());
        const auto item = [&](Op operation, std::vector<std::int64_t> integers = {},
                              std::vector<std::string> strings = {}, std::vector<void*> data = {}) {
            data.insert(data.begin(), list);
            return ask(Id::ListItems, operation,
                       {std::move(integers), {}, std::move(strings), std::move(data)});
        };
        int data = 0;
        const Answer first = item(Op::Append, {}, {"a\tx"}, {&data});
        if (trial.serves(Id::ListItems, "appends an item", !first.isRefused())) {
            trial.expect(Id::ListItems, "the first item's index is 0", is(first, 0), first);
            item(Op::Append, {}, {"b\ty"}, {nullptr});
            trial.expect(Id::ListItems, "nothing is selected at first", is(item(Op::Selected), -1),
                         item(Op::Selected));
            item(Op::Select, {1});
            trial.expect(Id::ListItems, "what was selected is", is(item(Op::Selected), 1),
                         item(Op::Selected));
            trial.expect(Id::ListItems, "an item has its data", item(Op::GetData, {0}).handle() == &data);
            const Answer text = item(Op::GetText, {1});
            trial.expect(Id::ListItems, "an item's text comes with its tabs",
                         text.strings == std::vector<std::string>{"b\ty"}, text);
            item(Op::Remove, {0});
            trial.expect(Id::ListItems, "one of two stays", is(item(Op::Count), 1), item(Op::Count));
            item(Op::Clear);
            trial.expect(Id::ListItems, "a cleared list is empty", is(item(Op::Count), 0), item(Op::Count));
        }
        destroy(list);
    }
    trial.expect(Id::WindowMapFunction, "no service has called a callback", called == 0,
                 std::to_string(called) + " calls");
}

}  // namespace probe
