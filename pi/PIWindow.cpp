#include "pi/PIWindow.h"

#include "pi/CatchallCall.h"
#include "pi/PIBase.h"
#include "pi/PIDataRecords.h"

namespace PIGUI {

namespace {

void flag(PIServerFunctions_t service, void* handle, bool value) {
    if (!handle) return;
    PI_DATA_POINTER_AND_BOOL record(handle, value);
    ::handle(service, &record);
}

CatchallCall query(PISelector::WidgetValue selector, void* handle) {
    CatchallCall call(PIServerFunctions_t::WidgetValue, selector);
    if (handle) call.pointer(handle).perform();
    return call;
}

}  // namespace

PIWindow::~PIWindow() {
    if (!handle_) return;
    PI_DATA_POINTER_AND_POINTER record(handle_, nullptr);
    ::handle(PIServerFunctions_t::BindWidget, &record);
}

void PIWindow::bind(void* handle) {
    handle_ = handle;
    if (!handle_) return;
    PI_DATA_POINTER_AND_POINTER record(handle_, static_cast<PIObject*>(this));
    ::handle(PIServerFunctions_t::BindWidget, &record);
}

void PIWindow::show() {
    flag(PIServerFunctions_t::WindowShow, handle_, true);
}
void PIWindow::hide() {
    flag(PIServerFunctions_t::WindowShow, handle_, false);
}
bool PIWindow::shown() const {
    return handle_ && ::handle(PIServerFunctions_t::WindowShown, handle_) != 0;
}

void PIWindow::enable() {
    flag(PIServerFunctions_t::WindowEnable, handle_, true);
}
void PIWindow::disable() {
    flag(PIServerFunctions_t::WindowEnable, handle_, false);
}
void PIWindow::setEnabled(bool enabled) {
    enabled ? enable() : disable();
}

void PIWindow::check() {
    flag(PIServerFunctions_t::WindowCheck, handle_, true);
}
void PIWindow::uncheck() {
    flag(PIServerFunctions_t::WindowCheck, handle_, false);
}
void PIWindow::setCheck(bool checked) {
    checked ? check() : uncheck();
}

void PIWindow::mapFunction(FunctorTwoParams__* callback) {
    if (!handle_) return;
    PI_DATA_POINTER_AND_FUNCTION record(handle_, callback);
    ::handle(PIServerFunctions_t::WindowMapFunction, &record);
}

void PIWindow::setValue(std::int32_t value) {
    if (!handle_) return;
    PI_DATA_POINTER_AND_INT record(handle_, value);
    ::handle(PIServerFunctions_t::WindowSetInt, &record);
}

void PIWindow::setValue(double value) {
    if (!handle_) return;
    PI_DATA_POINTER_AND_DOUBLE record(handle_, value);
    ::handle(PIServerFunctions_t::WindowSetDouble, &record);
}

void PIWindow::setValue(const std::string& text) {
    if (!handle_) return;
    PI_DATA_POINTER_AND_STRING record(handle_, text);
    ::handle(PIServerFunctions_t::WindowSetString, &record);
}

void PIWindow::updateValue(const std::string& text) {
    if (getValueText() != text) setValue(text);
}

std::string PIWindow::getValueText() const {
    return query(PISelector::WidgetValue::Text, handle_).textResult(0);
}
std::int32_t PIWindow::getValueInt() const {
    return static_cast<std::int32_t>(query(PISelector::WidgetValue::Integer, handle_).integerResult(0));
}
double PIWindow::getValueDouble() const {
    return query(PISelector::WidgetValue::Real, handle_).realResult(0);
}
bool PIWindow::isChecked_() const {
    return query(PISelector::WidgetValue::Checked, handle_).integerResult(0) != 0;
}

}  // namespace PIGUI
