#include "Gallery.h"

#include <sstream>

namespace probe {

namespace {

using Id = PIServerFunctions_t;

std::vector<std::string> split(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

}  // namespace

Gallery::Gallery() {
    menuItem_ = reinterpret_cast<void*>(call<PI_DATA_POINTER_STRING_AND_FUNCTION>(
        Id::CreateMenuItem, nullptr, "Probe & Gallery...\tOpens the probe's dialog",
        callback([this](PIObject*, void*) {
            if (!dialog_) buildDialog();
            call(Id::DialogShow, dialog_);
        })));
}

void* Gallery::keep(const std::string& name, PIServiceResult handle) {
    void* widget = reinterpret_cast<void*>(handle);
    widgets_.push_back({name, widget, std::make_unique<int>(0)});
    call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, widget, widgets_.back().wrapper.get());
    return widget;
}

void* Gallery::widget(const std::string& name) const {
    for (const Entry& entry : widgets_)
        if (entry.name == name) return entry.handle;
    return nullptr;
}

void Gallery::destroy(const std::string& name) {
    for (auto entry = widgets_.begin(); entry != widgets_.end(); ++entry) {
        if (entry->name != name) continue;
        call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, entry->handle, nullptr);
        widgets_.erase(entry);
        // What stood in the dialog went with it.
        if (name == "dialog") dialog_ = answerField_ = nullptr;
        return;
    }
}

Functor* Gallery::report(const std::string& name) {
    return callback([this, name](PIObject* sender, void*) {
        const Entry* own = nullptr;
        for (const Entry& entry : widgets_)
            if (entry.name == name) own = &entry;
        const bool isOwn = own && reinterpret_cast<int*>(sender) == own->wrapper.get();
        const auto value = ask(Id::WidgetValue, PISelector::WidgetValue::Text, {.pointers = {own->handle}});
        say(name + (isOwn ? "" : " of a foreign sender") + ": " +
            (value.texts.empty() ? "no text" : value.texts.front()));
    });
}

void Gallery::buildDialog() {
    dialog_ = keep("dialog", call<PI_DATA_POINTER_AND_STRING>(Id::CreateDialogBox, nullptr, "Probe"));
    call<PI_DATA_POINTER_AND_POINTER>(Id::DialogRegisterCloseObserver, dialog_,
                                      static_cast<PIGUI::PICloseObserver*>(&closeObserver_));
    void* controls = keep("box", call<PI_DATA_POINTER_INT_AND_STRING>(Id::CreateGroupBox, dialog_,
                                                                      PIGUI::PILayoutFillX, "Controls"));
    buildControls(controls);
    buildCommandField(dialog_);
}

void Gallery::buildControls(void* box) {
    using Text = PI_DATA_POINTER_STRING_AND_FUNCTION;
    using Style = PI_DATA_POINTER_INT_AND_FUNCTION;
    const auto label = [](void* parent, const char* caption) {
        call<PI_DATA_POINTER_AND_STRING>(Id::CreateLabel, parent, caption);
    };
    void* matrix = keep("matrix", call<PI_DATA_POINTER_AND_INT>(Id::CreateHorizontalMatrix, box, 2));
    label(matrix, "Text:\tA line of text");
    keep("text", call<Style>(Id::CreateTextField, matrix, PIGUI::PITextFieldNormal, report("text")));
    label(matrix, "Locked:");
    keep("locked", call<Style>(Id::CreateTextField, matrix, PIGUI::PITextFieldReadOnly, report("locked")));
    label(matrix, "Count:");
    keep("count", call<Style>(Id::CreateSpinner, matrix, PIGUI::PISpinnerSigned, report("count")));
    label(matrix, "Colour:");
    keep("colour", call<Style>(Id::CreateColorWell, matrix, PIGUI::PIColorWellAlpha, report("colour")));
    label(matrix, "Fruit:");
    void* fruit = keep("fruit", call<Text>(Id::CreateOptionMenu, matrix, "\tWhat to eat", report("fruit")));
    for (const char* name : {"Apple", "Cherry"})
        call<PI_DATA_POINTER_INT_AND_STRING>(Id::OptionMenuAppendOption, fruit, 99, name);
    call<PI_DATA_POINTER_INT_AND_STRING>(Id::OptionMenuAppendOption, fruit, 1, "Banana");
    label(matrix, "Draw:\tDraws it");
    keep("draw", call<Text>(Id::CreateCheckButton, matrix, "\tDraws it", report("draw")));

    void* row = keep("row", call<PI_DATA_POINTER_AND_OPTS>(Id::CreateHorizontalFrame, box, 0U));
    keep("left", call<Text>(Id::CreateRadioButton, row, "Left", report("left")));
    keep("right", call<Text>(Id::CreateRadioButton, row, "Right", report("right")));
    keep("push", call<Text>(Id::CreateButton, row, "Push & Pull\tA button", report("push")));
    void* toggle = keep("toggle", call<Text>(Id::CreateButton, row, "Toggle", report("toggle")));
    call<PI_DATA_POINTER_AND_BOOL>(Id::WindowCheck, toggle, false);

    void* table = keep("table", call<PI_DATA_POINTER_AND_INT>(Id::CreateVerticalMatrix, box, 2));
    label(table, "First:");
    label(table, "Second:");
    keep("first", call<Style>(Id::CreateTextField, table, PIGUI::PITextFieldNormal, report("first")));
    keep("second", call<Style>(Id::CreateTextField, table, PIGUI::PITextFieldNormal, report("second")));

    void* list = keep("list", call<PI_DATA_POINTER_INT_AND_STRING>(Id::CreateList, box, PIGUI::PIListSingle,
                                                                   "Name\tPlace"));
    call<PI_DATA_POINTER_AND_FUNCTION>(Id::WindowMapFunction, list, report("list"));

    void* switcher = keep("switcher", call<PI_DATA_POINTER_AND_OPTS>(Id::CreateSwitcher, box, 0U));
    for (const char* page : {"Page one", "Page two"}) {
        void* canvas = keep(page, call<PI_DATA_POINTER_AND_OPTS>(Id::CreateCanvas, switcher, 0U));
        label(canvas, page);
    }
}

void Gallery::buildCommandField(void* parent) {
    using Style = PI_DATA_POINTER_INT_AND_FUNCTION;
    void* frame = keep(
        "frame", call<PI_DATA_POINTER_AND_OPTS>(Id::CreateVerticalFrame, parent,
                                                std::uint32_t{PIGUI::PILayoutFillX | PIGUI::PILayoutFrame}));
    call<PI_DATA_POINTER_AND_STRING>(Id::CreateLabel, frame, "Command:");
    commandField_ = keep(
        "command",
        call<Style>(Id::CreateTextField, frame, PIGUI::PITextFieldNormal, callback([this](PIObject*, void*) {
                        const auto text = ask(Id::WidgetValue, PISelector::WidgetValue::Text,
                                              {.pointers = {commandField_}});
                        const std::string answer = perform(split(text.texts.at(0)));
                        if (!answerField_) return;
                        call<PI_DATA_POINTER_AND_STRING>(Id::WindowSetString, answerField_, answer);
                    })));
    call<PI_DATA_POINTER_AND_STRING>(Id::CreateLabel, frame, "Answer:");
    answerField_ =
        keep("answer", call<Style>(Id::CreateTextField, frame, PIGUI::PITextFieldReadOnly, nullptr));
}

void Gallery::close() {
    if (leaves_) return;
    if (dialog_) call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, dialog_, nullptr);
    if (menuItem_) call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, menuItem_, nullptr);
}

void Gallery::refresh(int width, int height) {
    if (!streamsInHook_) return;
    // What a rubber band does: the overlay of the last frame goes, a new one comes.
    if (void* last = std::exchange(handles_["band"], nullptr))
        ask(Id::OverlayFiles, PISelector::OverlayFiles::Unload, {.pointers = {last}});
    std::istringstream text("start\nline\nll 10 10\nll 11 " + std::to_string(10 + (width + height) % 2) +
                            "\nend\n");
    handles_["band"] = ask(Id::OverlayFiles, PISelector::OverlayFiles::LoadStream,
                           {.integers = {0}, .pointers = {static_cast<std::istream*>(&text)}})
                           .handle();
}

void Gallery::MenuObserver::menuRequested(const std::string& list, const PIHALVIS::ContextMenuData* data,
                                          void* menu) {
    const auto* overlays = dynamic_cast<const PIHALVIS::ZelMenuData*>(data);
    const std::size_t count = overlays ? overlays->overlays.size() : 0;
    say("menu of " + list + " with " + std::to_string(count) + " overlays");
    ask(Id::ContextMenu, PISelector::ContextMenu::AddItem,
        {.integers = {400, 1}, .texts = {"Probe It"}, .pointers = {menu, callback([](PIObject*, void*) {
                                                                       say("probed");
                                                                   })}});
    ask(Id::ContextMenu, PISelector::ContextMenu::AddItem,
        {.integers = {50, 0}, .texts = {"Not Now"}, .pointers = {menu, callback([](PIObject*, void*) {})}});
}

}  // namespace probe
