#include "pi/PIWindow.h"

#include <utility>

#include "pi/CatchallCall.h"
#include "pi/Guard.h"
#include "pi/PIBase.h"
#include "pi/PIDataRecords.h"

namespace PIGUI {

namespace {

CatchallCall query(PISelector::WidgetValue selector, void* handle) {
    CatchallCall call(PIServerFunctions_t::WidgetValue, selector);
    if (handle) call.pointer(handle).perform();
    return call;
}

}  // namespace

PIWindow::~PIWindow() {
    if (!handle_) return;
    guardedEnd([this] {
        PI_DATA_POINTER_AND_POINTER record(handle_, nullptr);
        ::handle(PIServerFunctions_t::BindWidget, &record);
    });
}

void PIWindow::bind(void* handle, Value value) {
    handle_ = handle;
    known_.value = std::move(value);
    if (!handle_) return;
    PI_DATA_POINTER_AND_POINTER record(handle_, static_cast<PIObject*>(this));
    ::handle(PIServerFunctions_t::BindWidget, &record);
}

// What the host calls back from inside a call is newer than what is sent: it is remembered first.

void PIWindow::setFlag_(PIServerFunctions_t service, std::optional<bool>& known, bool flag) {
    if (!handle_ || known == flag) return;
    known = flag;
    PI_DATA_POINTER_AND_BOOL record(handle_, flag);
    if (!::handle(service, &record)) known.reset();
}

template <typename Record, typename Given>
void PIWindow::setValue_(PIServerFunctions_t service, const Given& value) {
    if (!handle_ || known_.value == Value(value)) return;
    known_.value = value;
    Record record(handle_, value);
    if (!::handle(service, &record)) known_.value = {};
}

void PIWindow::show() {
    setFlag_(PIServerFunctions_t::WindowShow, known_.shown, true);
}
void PIWindow::hide() {
    setFlag_(PIServerFunctions_t::WindowShow, known_.shown, false);
}
void PIWindow::setShown(bool shown) {
    shown ? show() : hide();
}
bool PIWindow::shown() const {
    return handle_ && ::handle(PIServerFunctions_t::WindowShown, handle_) != 0;
}

void PIWindow::enable() {
    setEnabled(true);
}
void PIWindow::disable() {
    setEnabled(false);
}
void PIWindow::setEnabled(bool enabled) {
    setFlag_(PIServerFunctions_t::WindowEnable, known_.enabled, enabled);
}

void PIWindow::check() {
    setCheck(true);
}
void PIWindow::uncheck() {
    setCheck(false);
}
void PIWindow::setCheck(bool checked) {
    if (known_.checked && checkMoves_()) isChecked_();
    setFlag_(PIServerFunctions_t::WindowCheck, known_.checked, checked);
}

void PIWindow::setRoom(std::int32_t columns, std::int32_t rows) {
    if (!handle_) return;
    CatchallCall(PIServerFunctions_t::WidgetLooks, PISelector::WidgetLooks::Room)
        .integer(columns)
        .integer(rows)
        .pointer(handle_)
        .perform();
}
bool PIWindow::setMarked(bool marked) {
    if (!handle_) return false;
    if (known_.marked == marked) return true;
    const bool done = CatchallCall(PIServerFunctions_t::WidgetLooks, PISelector::WidgetLooks::Mark)
                          .integer(marked)
                          .pointer(handle_)
                          .perform() != 0;
    if (done) known_.marked = marked;
    return done;
}

void PIWindow::mapFunction(FunctorTwoParams__* callback) {
    if (!handle_) return;
    PI_DATA_POINTER_AND_FUNCTION record(handle_, callback);
    ::handle(PIServerFunctions_t::WindowMapFunction, &record);
}

void PIWindow::setValue(std::int32_t value) {
    setValue_<PI_DATA_POINTER_AND_INT>(PIServerFunctions_t::WindowSetInt, value);
}
void PIWindow::setValue(double value) {
    setValue_<PI_DATA_POINTER_AND_DOUBLE>(PIServerFunctions_t::WindowSetDouble, value);
}
void PIWindow::setValue(const std::string& text) {
    setValue_<PI_DATA_POINTER_AND_STRING>(PIServerFunctions_t::WindowSetString, text);
}
void PIWindow::updateValue(const std::string& text) {
    getValueText();
    setValue(text);
}

std::string PIWindow::getValueText() const {
    const CatchallCall call = query(PISelector::WidgetValue::Text, handle_);
    std::string text = call.textResult(0);
    known_.value = call.textResults() > 0 ? Value(text) : Value();
    return text;
}
std::int32_t PIWindow::getValueInt() const {
    const CatchallCall call = query(PISelector::WidgetValue::Integer, handle_);
    const auto value = static_cast<std::int32_t>(call.integerResult(0));
    known_.value = call.integerResults() > 0 ? Value(value) : Value();
    return value;
}
double PIWindow::getValueDouble() const {
    const CatchallCall call = query(PISelector::WidgetValue::Real, handle_);
    const double value = call.realResult(0);
    known_.value = call.hasRealResults(1) ? Value(value) : Value();
    return value;
}
bool PIWindow::isChecked_() const {
    const CatchallCall call = query(PISelector::WidgetValue::Checked, handle_);
    const bool checked = call.integerResult(0) != 0;
    known_.checked = call.integerResults() > 0 ? std::optional(checked) : std::nullopt;
    return checked;
}

}  // namespace PIGUI
