#include "pi/PICommon.h"

#include "pi/CatchallCall.h"
#include "pi/Guard.h"

namespace PICommon {

namespace {

using Id = PIServerFunctions_t;

std::string fileDialog(PISelector::FileDialog selector, const FileDialogRequest& request) {
    CatchallCall call(Id::FileDialog, selector);
    call.text(request.title)
        .text(request.settingsGroup)
        .text(request.settingsKey)
        .text(request.startDirectory);
    for (const auto& row : request.filters) call.text(row);
    call.perform();
    return call.textResult(0);
}

}  // namespace

std::string showFileLoadDialog(const FileDialogRequest& request) {
    return fileDialog(PISelector::FileDialog::Load, request);
}
std::string showFileSaveDialog(const FileDialogRequest& request) {
    return fileDialog(PISelector::FileDialog::Save, request);
}
std::string showDirectorySelectDialog(const FileDialogRequest& request) {
    return fileDialog(PISelector::FileDialog::Directory, request);
}

void createTimeout(Timeout& timeout, std::int32_t milliseconds, FunctorTwoParams__* callback) {
    timeout.cancel();
    CatchallCall call(Id::Timeout, PISelector::Timeout::Create);
    call.integer(milliseconds).pointer(callback).pointer(static_cast<PIObject*>(&timeout)).perform();
    // From within the call the host may have had another one armed.
    timeout.replace_(call.pointerResult(0));
}

void Timeout::replace_(void* handle) {
    // Forgotten before the call, from within which the host may call back.
    void* const armed = std::exchange(handle_, handle);
    if (armed) CatchallCall(Id::Timeout, PISelector::Timeout::Cancel).pointer(armed).perform();
}

void Timeout::cancel() {
    replace_(nullptr);
}

Timeout::~Timeout() {
    guardedEnd([this] { cancel(); });
}

Action::~Action() {
    if (!handle_) return;
    guardedEnd([this] { CatchallCall(Id::Action, PISelector::Action::Destroy).pointer(handle_).perform(); });
}

void createAction(Action& action, const std::string& owner, const std::string& label,
                  FunctorTwoParams__* callback) {
    CatchallCall call(Id::Action, PISelector::Action::Create);
    call.text(owner).text(label).pointer(callback).perform();
    void* previous = std::exchange(action.handle_, call.pointerResult(0));
    if (previous) CatchallCall(Id::Action, PISelector::Action::Destroy).pointer(previous).perform();
}

void setActionChecked(const std::string& owner, const std::string& label, bool checked) {
    CatchallCall(Id::Action, PISelector::Action::SetChecked)
        .text(owner)
        .text(label)
        .integer(checked ? 1 : 0)
        .perform();
}

Service::~Service() {
    guardedEnd([this] { unregisterSelf(); });
}

bool Service::registerSelf() {
    if (registered_) return true;
    CatchallCall call(Id::Service, PISelector::Service::Register);
    registered_ = call.text(name_).pointer(published_).perform() != 0;
    return registered_;
}

void Service::unregisterSelf() {
    if (!registered_) return;
    registered_ = false;
    CatchallCall(Id::Service, PISelector::Service::Unregister).text(name_).pointer(published_).perform();
}

void* Service::find(const std::string& name) {
    CatchallCall call(Id::Service, PISelector::Service::Find);
    call.text(name).perform();
    return call.pointerResult(0);
}

void notify(std::int32_t severity, const std::string& source, const std::string& text) {
    CatchallCall(Id::Notify, PISelector::Notify::Message).integer(severity).text(source).text(text).perform();
}

Notify::~Notify() {
    guardedEnd([this] { notify(severity_, "OverlayEditor", text_.str()); });
}

void debugPrint(const std::string& text) {
    CatchallCall(Id::Notify, PISelector::Notify::Debug).integer(0).text("OverlayEditor").text(text).perform();
}

void forceOpenGLRedraw() {
    handle(Id::ForceRedraw, nullptr);
}

}  // namespace PICommon
