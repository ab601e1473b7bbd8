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
PIServiceResult set(Id service, void* widget, bool value) {
    return call<PI_DATA_POINTER_AND_BOOL>(service, widget, value);
}
PIServiceResult set(void* widget, std::int32_t value) {
    return call<PI_DATA_POINTER_AND_INT>(Id::WindowSetInt, widget, value);
}
/// What is read of it as an integer is that.
void reads(Trial& trial, void* widget, Value value, const char* expectation, std::int64_t number) {
    const Answer answer = ask(Id::WidgetValue, value, {.pointers = {widget}});
    trial.expect(Id::WidgetValue, expectation, answer.integers == std::vector<std::int64_t>{number}, answer);
}

void tryCheck(Trial& trial, void* dialog) {
    void* const box = made(call<Labelled>(Id::CreateCheckButton, dialog, "Check", counter()));
    if (trial.serves(Id::CreateCheckButton, "creates a check button", box != nullptr)) {
        if (trial.serves(Id::WindowCheck, "checks it", set(Id::WindowCheck, box, true) != 0)) {
            reads(trial, box, Value::Checked, "it is checked", 1);
            set(Id::WindowCheck, box, false);
            reads(trial, box, Value::Checked, "it is not, once it is unchecked", 0);
        }
        trial.serves(Id::WindowEnable, "disables it", set(Id::WindowEnable, box, false) != 0);
        trial.serves(Id::WindowMapFunction, "takes another callback",
                     call<PI_DATA_POINTER_AND_FUNCTION>(Id::WindowMapFunction, box, counter()) != 0);
        destroyWidget(box);
    }
    for (const Id service : {Id::WindowShow, Id::WindowEnable, Id::WindowCheck})
        trial.refuses(service, "a widget that is none", set(service, strange(), true));

    void* const button = made(call<Labelled>(Id::CreateButton, dialog, "Toggle", counter()));
    if (button && set(Id::WindowCheck, button, true))
        reads(trial, button, Value::Checked, "a button that was checked is a toggle button", 1);
    destroyWidget(button);
}

void tryRadio(Trial& trial, void* dialog) {
    void* const parent = made(call<PI_DATA_POINTER_AND_OPTS>(Id::CreateCanvas, dialog, 0U));
    const auto make = [&](const char* caption) {
        return made(call<Labelled>(Id::CreateRadioButton, parent ? parent : dialog, caption, counter()));
    };
    void* const one = make("One");
    void* const other = make("Other");
    if (one && other && set(Id::WindowCheck, one, true) && set(Id::WindowCheck, other, true)) {
        reads(trial, other, Value::Checked, "a radio button that was checked is", 1);
        reads(trial, one, Value::Checked, "the other one of its parent is not then", 0);
    }
    for (void* const widget : {other, one, parent}) destroyWidget(widget);
}

void tryMenu(Trial& trial, void* dialog) {
    void* const menu = made(call<Labelled>(Id::CreateOptionMenu, dialog, "Menu", counter()));
    if (!trial.serves(Id::CreateOptionMenu, "creates an option menu", menu != nullptr)) return;
    const auto add = [&](int index, const char* option) {
        return call<PI_DATA_POINTER_INT_AND_STRING>(Id::OptionMenuAppendOption, menu, index, option);
    };
    const auto textOf = [&](int index) {
        PI_DATA_POINTER_INT_AND_STRING option(menu, index, "");
        return call(Id::OptionMenuGetOptionText, static_cast<void*>(&option)) ? option.text : std::string();
    };
    if (trial.serves(Id::OptionMenuAppendOption, "adds an option", add(0, "One") != 0)) {
        add(1, "Three");
        if (const std::string first = textOf(0), second = textOf(1); !first.empty())
            trial.expect(Id::OptionMenuGetOptionText, "each option is read by its index",
                         first == "One" && second == "Three", first + " " + second);
        add(99, "Four");
        add(1, "Two");
        if (trial.serves(Id::OptionMenuGetOptionText, "reads an option", !textOf(0).empty())) {
            std::string all;
            for (int i = 0; i < 4; ++i) all.append(textOf(i)).append(" ");
            trial.expect(Id::OptionMenuAppendOption,
                         "an index behind the last appends, another one inserts there",
                         all == "One Two Three Four ", all);
            trial.expect(Id::OptionMenuGetOptionText, "there is no option behind the last", textOf(4).empty(),
                         textOf(4));
        }
        if (trial.serves(Id::WindowSetInt, "chooses an option", set(menu, 1) != 0)) {
            reads(trial, menu, Value::Integer, "its value is the chosen index", 1);
            trial.refuses(Id::WindowSetInt, "an option that is not there", set(menu, 4));
            if (call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, menu, "Three"))
                reads(trial, menu, Value::Integer, "an option that was chosen by its text is", 2);
            if (set(menu, -1)) reads(trial, menu, Value::Integer, "none is chosen after -1", -1);
        }
    }
    destroyWidget(menu);
}

void trySpinner(Trial& trial, void* dialog) {
    void* const spinner = made(call<Styled>(Id::CreateSpinner, dialog, PIGUI::PISpinnerSigned, counter()));
    if (!trial.serves(Id::CreateSpinner, "creates a spinner", spinner != nullptr)) return;
    if (trial.serves(Id::WindowSetInt, "sets its number", set(spinner, -7) != 0))
        reads(trial, spinner, Value::Integer, "a signed spinner holds -7", -7);
    using Op = PISelector::WidgetLooks;
    const auto looks = [&](Op op, std::vector<std::int64_t> integers) {
        return ask(Id::WidgetLooks, op, {.integers = std::move(integers), .pointers = {spinner}});
    };
    const Answer limits = looks(Op::Limits, {2, 5});
    if (trial.serves(Id::WidgetLooks, "sets the limits of a spinner", limits.result != 0)) {
        set(spinner, 9);
        const Answer number = ask(Id::WidgetValue, Value::Integer, {.pointers = {spinner}});
        trial.expect(Id::WidgetLooks, "its number keeps within them",
                     number.integers.size() == 1 && number.integers[0] >= 2 && number.integers[0] <= 5,
                     number);
        trial.serves(Id::WidgetLooks, "marks its text", looks(Op::Mark, {1}).result != 0);
        trial.serves(Id::WidgetLooks, "keeps room", looks(Op::Room, {8, 1}).result != 0);
    }
    destroyWidget(spinner);
}

void tryColour(Trial& trial, void* dialog) {
    void* const well = made(call<Styled>(Id::CreateColorWell, dialog, PIGUI::PIColorWellAlpha, counter()));
    if (!trial.serves(Id::CreateColorWell, "creates a colour well", well != nullptr)) return;
    const auto red = static_cast<std::int32_t>(0xff0000ffU);
    if (trial.serves(Id::WindowSetInt, "sets its colour", set(well, red) != 0))
        reads(trial, well, Value::Integer, "opaque red is the negative integer whose bits are 0xff0000ff",
              red);
    destroyWidget(well);
}

}  // namespace

void tryChoices(Trial& trial, void* dialog) {
    called = 0;
    tryCheck(trial, dialog);
    tryRadio(trial, dialog);
    tryMenu(trial, dialog);
    trySpinner(trial, dialog);
    tryColour(trial, dialog);
    trial.expect(Id::WindowMapFunction, "no service has called a callback of these", called == 0,
                 std::to_string(called) + " calls");
}

}  // namespace probe
