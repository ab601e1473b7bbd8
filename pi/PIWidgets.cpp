#include "pi/PIWidgets.h"

#include "pi/CatchallCall.h"
#include "pi/Guard.h"
#include "pi/PIBase.h"
#include "pi/PIDataRecords.h"

namespace PIGUI {

namespace {

using Service = PIServerFunctions_t;

std::vector<PITextField*> textFields;

void* handleOf(const PIWindow* window) {
    return window ? window->handle() : nullptr;
}

/// Calls a creating service with a record made of the arguments; the handle of the new widget.
template <typename Record, typename... Arguments>
void* create(Service service, Arguments&&... arguments) {
    Record record(std::forward<Arguments>(arguments)...);
    return reinterpret_cast<void*>(handle(service, &record));
}

}  // namespace

PICanvas::PICanvas(PICanvas* parent, std::uint32_t options) {
    bind(create<PI_DATA_POINTER_AND_OPTS>(Service::CreateCanvas, handleOf(parent), options));
}
PIHorizontalFrame::PIHorizontalFrame(PICanvas* parent, std::uint32_t options) {
    bind(create<PI_DATA_POINTER_AND_OPTS>(Service::CreateHorizontalFrame, handleOf(parent), options));
}
PIVerticalFrame::PIVerticalFrame(PICanvas* parent, std::uint32_t options) {
    bind(create<PI_DATA_POINTER_AND_OPTS>(Service::CreateVerticalFrame, handleOf(parent), options));
}
PIHorizontalMatrix::PIHorizontalMatrix(PICanvas* parent, std::int32_t columns) {
    bind(create<PI_DATA_POINTER_AND_INT>(Service::CreateHorizontalMatrix, handleOf(parent), columns));
}
PIVerticalMatrix::PIVerticalMatrix(PICanvas* parent, std::int32_t rows) {
    bind(create<PI_DATA_POINTER_AND_INT>(Service::CreateVerticalMatrix, handleOf(parent), rows));
}
PIGroupBox::PIGroupBox(PICanvas* parent, const std::string& title, std::uint32_t options) {
    bind(create<PI_DATA_POINTER_INT_AND_STRING>(Service::CreateGroupBox, handleOf(parent),
                                                static_cast<std::int32_t>(options), title));
}
PISwitcher::PISwitcher(PICanvas* parent, std::uint32_t options) {
    bind(create<PI_DATA_POINTER_AND_OPTS>(Service::CreateSwitcher, handleOf(parent), options));
}
void PISwitcher::setCurrent(PIWindow* child, std::int32_t index) {
    if (!handle()) return;
    CatchallCall(Service::SwitcherSetCurrent)
        .pointer(handle())
        .pointer(handleOf(child))
        .integer(index)
        .perform();
}

PILabel::PILabel(PICanvas* parent, const std::string& caption) {
    bind(create<PI_DATA_POINTER_AND_STRING>(Service::CreateLabel, handleOf(parent), caption), caption);
}
PIButton::PIButton(PICanvas* parent, const std::string& caption, FunctorTwoParams__* callback) {
    bind(create<PI_DATA_POINTER_STRING_AND_FUNCTION>(Service::CreateButton, handleOf(parent), caption,
                                                     callback),
         caption);
}
PICheckButton::PICheckButton(PICanvas* parent, const std::string& caption, FunctorTwoParams__* callback) {
    bind(create<PI_DATA_POINTER_STRING_AND_FUNCTION>(Service::CreateCheckButton, handleOf(parent), caption,
                                                     callback),
         caption);
}
PIRadioButton::PIRadioButton(PICanvas* parent, const std::string& caption, FunctorTwoParams__* callback) {
    bind(create<PI_DATA_POINTER_STRING_AND_FUNCTION>(Service::CreateRadioButton, handleOf(parent), caption,
                                                     callback),
         caption);
}
PITextField::PITextField(PICanvas* parent, std::int32_t style, FunctorTwoParams__* callback) {
    bind(create<PI_DATA_POINTER_INT_AND_FUNCTION>(Service::CreateTextField, handleOf(parent), style,
                                                  callback));
    textFields.push_back(this);
}
PITextField::~PITextField() {
    std::erase(textFields, this);
}
bool PITextField::setLine(FunctorTwoParams__* typing) {
    if (!handle()) return false;
    return CatchallCall(Service::WidgetLooks, PISelector::WidgetLooks::Line)
               .pointer(handle())
               .pointer(typing)
               .perform() != 0;
}
bool PITextField::dropTyped() {
    bool dropped = false;
    for (PITextField* const field : textFields) {
        const Value told = field->known_.value;
        const auto* const text = std::get_if<std::string>(&told);
        if (!text || field->getValueText() == *text) continue;
        field->setValue(*text);
        dropped = true;
    }
    return dropped;
}
PISpinner::PISpinner(PICanvas* parent, std::int32_t style, FunctorTwoParams__* callback) {
    bind(create<PI_DATA_POINTER_INT_AND_FUNCTION>(Service::CreateSpinner, handleOf(parent), style, callback));
}
void PISpinner::setLimits(std::int32_t least, std::int32_t most) {
    if (!handle()) return;
    CatchallCall(Service::WidgetLooks, PISelector::WidgetLooks::Limits)
        .integer(least)
        .integer(most)
        .pointer(handle())
        .perform();
}
PIColorWell::PIColorWell(PICanvas* parent, std::int32_t style, FunctorTwoParams__* callback) {
    bind(create<PI_DATA_POINTER_INT_AND_FUNCTION>(Service::CreateColorWell, handleOf(parent), style,
                                                  callback));
}

PIOptionMenu::PIOptionMenu(PICanvas* parent, const std::string& caption, FunctorTwoParams__* callback) {
    bind(create<PI_DATA_POINTER_STRING_AND_FUNCTION>(Service::CreateOptionMenu, handleOf(parent), caption,
                                                     callback));
}
void PIOptionMenu::appendOption(std::int32_t index, const std::string& text) {
    if (!handle()) return;
    // The index of the chosen option may be another one now.
    known_.value = {};
    PI_DATA_POINTER_INT_AND_STRING record(handle(), index, text);
    ::handle(Service::OptionMenuAppendOption, &record);
}
std::string PIOptionMenu::getOptionText(std::int32_t index) const {
    if (!handle()) return {};
    PI_DATA_POINTER_INT_AND_STRING record(handle(), index, std::string());
    ::handle(Service::OptionMenuGetOptionText, &record);
    return record.text;
}

namespace {

CatchallCall items(PISelector::ListItems selector, void* list) {
    CatchallCall call(Service::ListItems, selector);
    call.pointer(list);
    return call;
}

}  // namespace

PIList::PIList(PICanvas* parent, std::int32_t style, const std::string& headers) {
    bind(create<PI_DATA_POINTER_INT_AND_STRING>(Service::CreateList, handleOf(parent), style, headers));
}
std::int32_t PIList::appendItem(const std::string& text, void* data) {
    if (!handle()) return -1;
    items_.reset();
    auto call = items(PISelector::ListItems::Append, handle());
    call.text(text).pointer(data).perform();
    return static_cast<std::int32_t>(call.integerResult(0, -1));
}
void PIList::appendHeader(const std::string& text) {
    if (handle()) items(PISelector::ListItems::AppendHeader, handle()).text(text).perform();
}
void PIList::removeItem(std::int32_t index) {
    items_.reset();
    if (handle()) items(PISelector::ListItems::Remove, handle()).integer(index).perform();
}
void PIList::clearItems() {
    items_.reset();
    if (handle()) items(PISelector::ListItems::Clear, handle()).perform();
}
std::int32_t PIList::getNumItems() const {
    if (!handle()) return 0;
    auto call = items(PISelector::ListItems::Count, handle());
    call.perform();
    return static_cast<std::int32_t>(call.integerResult(0));
}
std::int32_t PIList::getSelectedItem() const {
    if (!handle()) return -1;
    auto call = items(PISelector::ListItems::Selected, handle());
    call.perform();
    return static_cast<std::int32_t>(call.integerResult(0, -1));
}
void PIList::setSelectedItem(std::int32_t index) {
    if (handle()) items(PISelector::ListItems::Select, handle()).integer(index).perform();
}
void PIList::deselectAll() {
    if (handle()) items(PISelector::ListItems::DeselectAll, handle()).perform();
}
std::string PIList::getItemText(std::int32_t index) const {
    if (!handle()) return {};
    auto call = items(PISelector::ListItems::GetText, handle());
    call.integer(index).perform();
    return call.textResult(0);
}
void PIList::setItemText(std::int32_t index, const std::string& text) {
    items_.reset();
    if (handle()) items(PISelector::ListItems::SetText, handle()).integer(index).text(text).perform();
}
void* PIList::getItemData(std::int32_t index) const {
    if (!handle()) return nullptr;
    auto call = items(PISelector::ListItems::GetData, handle());
    call.integer(index).perform();
    return call.pointerResult(0);
}
void PIList::setChosenCallback(FunctorTwoParams__* callback) {
    if (!handle()) return;
    CatchallCall(Service::WidgetLooks, PISelector::WidgetLooks::Chosen)
        .pointer(handle())
        .pointer(callback)
        .perform();
}
void PIList::setItems(std::vector<Item> items) {
    if (items_ == items) return;
    const std::int32_t selected = getSelectedItem();
    void* const data = selected < 0 ? nullptr : getItemData(selected);
    clearItems();
    bool taken = true;
    for (const Item& item : items) {
        const std::int32_t index = appendItem(item.text, item.data);
        taken = taken && index >= 0;
        if (selected >= 0 && item.data == data) setSelectedItem(index);
    }
    if (taken) items_ = std::move(items);
}

PIIcon::~PIIcon() {
    if (!handle_) return;
    guardedEnd([this] { CatchallCall(Service::Icon, PISelector::Icon::Destroy).pointer(handle_).perform(); });
}
bool PIIcon::loadPNGByArray(const unsigned char* bytes, std::size_t size) {
    CatchallCall call(Service::Icon, PISelector::Icon::LoadPng);
    call.pointer(const_cast<unsigned char*>(bytes)).integer(static_cast<std::int64_t>(size)).perform();
    void* loaded = call.pointerResult(0);
    if (!loaded) return false;
    if (handle_) CatchallCall(Service::Icon, PISelector::Icon::Destroy).pointer(handle_).perform();
    handle_ = loaded;
    return true;
}

PIMenuItem::PIMenuItem(PIWindow* parent, const std::string& caption, FunctorTwoParams__* callback) {
    bind(create<PI_DATA_POINTER_STRING_AND_FUNCTION>(Service::CreateMenuItem, handleOf(parent), caption,
                                                     callback));
}
void PIMenuItem::setIcon(const PIIcon& icon) {
    if (!handle() || !icon.handle()) return;
    CatchallCall(Service::Icon, PISelector::Icon::SetMenuItemIcon)
        .pointer(handle())
        .pointer(icon.handle())
        .perform();
}

PIDialogBox::PIDialogBox(PIWindow* parent, const std::string& title) {
    known_.shown = false;
    bind(create<PI_DATA_POINTER_AND_STRING>(Service::CreateDialogBox, handleOf(parent), title));
}
PIDialogBox::~PIDialogBox() {
    guardedEnd([this] { registerCloseObserver(nullptr); });
}
void PIDialogBox::show() {
    if (!handle()) return;
    known_.shown = true;
    ::handle(Service::DialogShow, handle());
}
bool PIDialogBox::shown() const {
    return known_.shown != false && PIWindow::shown();
}
void PIDialogBox::setIcon(const PIIcon& icon) {
    if (!handle() || !icon.handle()) return;
    CatchallCall(Service::Icon, PISelector::Icon::SetDialogIcon)
        .pointer(handle())
        .pointer(icon.handle())
        .perform();
}
void PIDialogBox::registerCloseObserver(PICloseObserver* observer) {
    if (!handle()) return;
    PI_DATA_POINTER_AND_POINTER record(handle(), observer);
    ::handle(Service::DialogRegisterCloseObserver, &record);
}

void grabMouse() {
    CatchallCall(Service::MouseGrab, PISelector::MouseGrab::Grab).perform();
}
void ungrabMouse() {
    CatchallCall(Service::MouseGrab, PISelector::MouseGrab::Ungrab).perform();
}

void PIRegistry::setValue(const std::string& key, const std::string& value) {
    PI_DATA_POINTER_STRING_AND_STRING record(nullptr, key, value);
    handle(Service::RegistrySetValue, &record);
}
std::string PIRegistry::getValue(const std::string& key) {
    PI_DATA_POINTER_AND_STRING record(nullptr, key);
    // The host replaces the key by the value. Where the key still stands the call was not served, whatever
    // the host answered.
    const bool served = handle(Service::RegistryGetValue, &record) && record.text != key;
    return served ? record.text : std::string();
}

}  // namespace PIGUI
