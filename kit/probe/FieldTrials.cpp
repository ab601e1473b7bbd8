#include <cmath>

#include "kit/probe/Trials.h"

namespace probe {

namespace {

using Value = PISelector::WidgetValue;

Answer valueOf(Value value, void* widget) {
    return ask(Id::WidgetValue, value, {.pointers = {widget}});
}
PIServiceResult setText(void* widget, const char* text) {
    return call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, widget, text);
}

/// What a text field reads as, as a number. Only what says so itself is none.
void tryNumbers(Trial& trial, void* field) {
    const auto reads = [&](const char* expectation, double number) {
        const Answer real = valueOf(Value::Real, field);
        trial.expect(Id::WidgetValue, expectation,
                     real.doubles.size() == 1 && std::abs(real.doubles[0] - number) < 1e-9, real);
    };
    // In a coordinate each digit counts.
    setText(field, "21.123456789");
    if (!trial.serves(Id::WidgetValue, "reads a text field as a number",
                      !valueOf(Value::Real, field).isRefused()))
        return;
    reads("it is that of its text", 21.123456789);
    setText(field, "no number");
    reads("a text that is no number reads as 0", 0.0);
    setText(field, "12 apples");
    reads("a text that only begins as a number reads as 0", 0.0);
    const auto set = call<PI_DATA_POINTER_AND_DOUBLE>(Id::WindowSetDouble, field, -2.123456789);
    if (trial.serves(Id::WindowSetDouble, "sets a number", set != 0))
        reads("the number is the one that was set", -2.123456789);
}

}  // namespace

void tryFields(Trial& trial, void* dialog) {
    static int called;
    called = 0;
    auto* const counter = callback([](PIObject*, void*) { ++called; });
    void* const field = made(call<PI_DATA_POINTER_INT_AND_FUNCTION>(Id::CreateTextField, dialog, 0, counter));
    if (trial.serves(Id::CreateTextField, "creates a text field", field != nullptr)) {
        constexpr const char* kText = "21.5 \xc3\xa4";
        if (trial.serves(Id::WindowSetString, "sets a text", setText(field, kText) != 0)) {
            const Answer read = valueOf(Value::Text, field);
            if (trial.serves(Id::WidgetValue, "reads a text", !read.isRefused()))
                trial.expect(Id::WidgetValue, "the text is the one that was set",
                             read.strings == std::vector<std::string>{kText}, read);
            tryNumbers(trial, field);
        }
        trial.expect(Id::CreateTextField, "a change by a service calls no callback", called == 0,
                     std::to_string(called) + " calls");
        destroyWidget(field);
    }
    trial.refuses(Id::WindowSetString, "a widget that is none", setText(strange(), "x"));

    void* const label = made(call<PI_DATA_POINTER_AND_STRING>(Id::CreateLabel, dialog, "Shown\tTooltip"));
    if (!trial.serves(Id::CreateLabel, "creates a label", label != nullptr)) return;
    const auto reads = [&](const char* expectation, const char* caption) {
        const Answer shown = valueOf(Value::Text, label);
        trial.expect(Id::WidgetValue, expectation, shown.strings == std::vector<std::string>{caption}, shown);
    };
    reads("a caption is read without its tooltip", "Shown");
    if (setText(label, "Other\tTooltip")) reads("so is one that was set", "Other");
    destroyWidget(label);
}

}  // namespace probe
