#include "kit/probe/Trials.h"

namespace probe {

namespace {

using Labelled = PI_DATA_POINTER_STRING_AND_FUNCTION;

bool isShown(void* widget) {
    return call(Id::WindowShown, widget) != 0;
}
PIServiceResult show(void* widget, bool shown) {
    return call<PI_DATA_POINTER_AND_BOOL>(Id::WindowShow, widget, shown);
}
void* label(void* parent, const char* caption) {
    return made(call<PI_DATA_POINTER_AND_STRING>(Id::CreateLabel, parent, caption));
}

/// Creates, destroys, and sees that it has gone.
void tryWidget(Trial& trial, Id service, const char* name, void* widget) {
    if (!trial.serves(service, std::string("creates a ") + name, widget != nullptr)) return;
    const auto gone = call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, widget, nullptr);
    if (!trial.serves(Id::BindWidget, std::string("destroys a ") + name, gone != 0)) return;
    trial.refuses(Id::BindWidget, std::string("a ") + name + " that is gone",
                  call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, widget, nullptr));
}

/// What is shown, and what only seems so.
void tryShowing(Trial& trial, void* dialog) {
    void* const frame = made(call<PI_DATA_POINTER_AND_OPTS>(Id::CreateCanvas, dialog, 0U));
    void* const widget = label(frame ? frame : dialog, "Shown");
    const bool sees =
        widget && trial.serves(Id::WindowShown, "says that a new widget is shown", isShown(widget));
    trial.refuses(Id::WindowShown, "a widget that is none", call(Id::WindowShown, strange()));
    if (widget && trial.serves(Id::WindowShow, "hides a widget", show(widget, false) != 0)) {
        trial.expect(Id::WindowShown, "what is hidden is not shown", !isShown(widget));
        trial.serves(Id::WindowShow, "shows it again", show(widget, true) != 0);
        if (sees) trial.expect(Id::WindowShown, "what is shown again is shown", isShown(widget));
    }
    if (sees && frame && show(frame, false))
        trial.expect(Id::WindowShown, "what stands in something hidden is not shown", !isShown(widget));
    destroyWidget(widget);
    destroyWidget(frame);

    void* const other = made(call<PI_DATA_POINTER_AND_STRING>(Id::CreateDialogBox, nullptr, "Another"));
    if (!other) return;
    trial.expect(Id::WindowShown, "a new dialog is not shown", !isShown(other));
    if (trial.serves(Id::DialogShow, "shows a dialog", call(Id::DialogShow, other) != 0) && sees)
        trial.expect(Id::WindowShown, "a dialog that was shown is shown", isShown(other));
    if (destroyWidget(other))
        trial.refuses(Id::DialogShow, "a dialog that is gone", call(Id::DialogShow, other));
}

void trySwitcher(Trial& trial, void* dialog) {
    void* const switcher = made(call<PI_DATA_POINTER_AND_OPTS>(Id::CreateSwitcher, dialog, 0U));
    if (!switcher) return;
    void* const first = label(switcher, "First");
    void* const second = label(switcher, "Second");
    const auto turn = [&](std::int64_t index, void* child) {
        return ask(Id::SwitcherSetCurrent, {{index}, {}, {}, {switcher, child}}).result;
    };
    if (trial.serves(Id::SwitcherSetCurrent, "turns to a child by its index", turn(1, nullptr) != 0)) {
        const bool sees = isShown(second);
        if (sees) trial.expect(Id::WindowShown, "another child of a switcher is not shown", !isShown(first));
        trial.serves(Id::SwitcherSetCurrent, "turns to a child by its handle", turn(0, first) != 0);
        if (sees)
            trial.expect(Id::SwitcherSetCurrent, "the child that it has turned to is shown",
                         isShown(first) && !isShown(second));
        trial.refuses(Id::SwitcherSetCurrent, "a child that is not there", turn(7, nullptr));
        trial.refuses(Id::SwitcherSetCurrent, "what is no child of it", turn(0, dialog));
    }
    for (void* const widget : {second, first, switcher}) destroyWidget(widget);
}

}  // namespace

bool destroyWidget(void* widget) {
    return widget && call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, widget, nullptr) != 0;
}

void tryWidgets(Trial& trial, void* dialog) {
    const auto options = [&](Id service) {
        return made(call<PI_DATA_POINTER_AND_OPTS>(service, dialog, 0U));
    };
    tryWidget(trial, Id::CreateSwitcher, "switcher", options(Id::CreateSwitcher));
    tryWidget(trial, Id::CreateCanvas, "canvas", options(Id::CreateCanvas));
    void* const parent = options(Id::CreateCanvas);
    void* const child = label(parent, "Child");
    if (destroyWidget(parent) && child)
        trial.refuses(Id::BindWidget, "a widget whose parent is gone",
                      call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, child, nullptr));
    tryWidget(trial, Id::CreateHorizontalFrame, "horizontal frame", options(Id::CreateHorizontalFrame));
    tryWidget(trial, Id::CreateVerticalFrame, "vertical frame", options(Id::CreateVerticalFrame));
    tryWidget(trial, Id::CreateHorizontalMatrix, "horizontal matrix",
              made(call<PI_DATA_POINTER_AND_INT>(Id::CreateHorizontalMatrix, dialog, 2)));
    tryWidget(trial, Id::CreateVerticalMatrix, "vertical matrix",
              made(call<PI_DATA_POINTER_AND_INT>(Id::CreateVerticalMatrix, dialog, 2)));
    tryWidget(trial, Id::CreateGroupBox, "group box",
              made(call<PI_DATA_POINTER_INT_AND_STRING>(Id::CreateGroupBox, dialog, 0, "Group")));
    tryWidget(trial, Id::CreateDialogBox, "dialog",
              made(call<PI_DATA_POINTER_AND_STRING>(Id::CreateDialogBox, nullptr, "Another")));
    tryWidget(trial, Id::CreateMenuItem, "menu item",
              made(call<Labelled>(Id::CreateMenuItem, nullptr, "Another", nullptr)));
    tryWidget(trial, Id::CreateRadioButton, "radio button",
              made(call<Labelled>(Id::CreateRadioButton, dialog, "Radio", nullptr)));
    tryWidget(trial, Id::CreateButton, "button",
              made(call<Labelled>(Id::CreateButton, dialog, "Button", nullptr)));
    const auto orphan = call<Labelled>(Id::CreateButton, strange(), "Button", nullptr);
    trial.refuses(Id::CreateButton, "a parent that is none", orphan);
    destroyWidget(made(orphan));
    tryShowing(trial, dialog);
    trySwitcher(trial, dialog);
}

}  // namespace probe
