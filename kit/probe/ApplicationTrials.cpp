#include <utility>

#include "kit/probe/Trials.h"

namespace probe {

namespace {

// A PNG image of one pixel.
unsigned char kPng[] = {137, 80, 78, 71,  13, 10,  26,  10, 0,   0,   0,   13,  73,  72,  68,  82,  0, 0,
                        0,   1,  0,  0,   0,  1,   8,   6,  0,   0,   0,   31,  21,  196, 137, 0,   0, 0,
                        13,  73, 68, 65,  84, 120, 156, 99, 248, 223, 192, 240, 31,  0,   6,   128, 2, 127,
                        16,  76, 27, 225, 0,  0,   0,   0,  73,  69,  78,  68,  174, 66,  96,  130};

void tryIdentity(Trial& trial) {
    // Always with a null identity; its own is one that the host knows.
    void* const own = std::exchange(instance, nullptr);
    using Op = PISelector::IdentityOverride;
    ask(Id::IdentityOverride, Op::Push, {.pointers = {own}});
    const Answer query = ask(Id::IdentityOverride, Op::Query);
    if (trial.serves(Id::IdentityOverride, "takes another identity", query.handle() != nullptr)) {
        trial.expect(Id::IdentityOverride, "tells the identity pushed last", query.handle() == own, query);
        ask(Id::IdentityOverride, Op::Pop, {.pointers = {nullptr}});
        const Answer none = ask(Id::IdentityOverride, Op::Query);
        trial.expect(Id::IdentityOverride, "tells none once it is popped", none.handle() == nullptr, none);
    }
    instance = own;
}

void trySettings(Trial& trial) {
    const std::string key = "HostProbe/key", value = "a b\t\xc3\xa4\n=1";
    const auto stored = call<PI_DATA_POINTER_STRING_AND_STRING>(Id::RegistrySetValue, nullptr, key, value);
    trial.serves(Id::RegistrySetValue, "stores a setting", stored != 0);
    PI_DATA_POINTER_AND_STRING read(nullptr, key);
    const auto got = call(Id::RegistryGetValue, static_cast<void*>(&read));
    if (!trial.serves(Id::RegistryGetValue, "reads a setting", got != 0)) return;
    if (stored)
        trial.expect(Id::RegistryGetValue, "it is the one that was stored", read.text == value, read.text);
    PI_DATA_POINTER_AND_STRING unset(nullptr, "HostProbe/never stored");
    call(Id::RegistryGetValue, static_cast<void*>(&unset));
    trial.expect(Id::RegistryGetValue, "one that is unset is empty", unset.text.empty(), unset.text);
}

void tryIcon(Trial& trial, void* dialog) {
    using Op = PISelector::Icon;
    const Answer icon =
        ask(Id::Icon, Op::LoadPng, {{static_cast<std::int64_t>(sizeof kPng)}, {}, {}, {kPng}});
    if (!trial.serves(Id::Icon, "loads an icon", icon.handle() != nullptr)) return;
    const Answer set = ask(Id::Icon, Op::SetDialogIcon, {.pointers = {dialog, icon.handle()}});
    trial.expect(Id::Icon, "shows it on a dialog", set.result != 0, set);
    const Answer gone = ask(Id::Icon, Op::Destroy, {.pointers = {icon.handle()}});
    trial.expect(Id::Icon, "destroys it", gone.result != 0, gone);
    trial.refuses(Id::Icon, "an icon that is gone",
                  ask(Id::Icon, Op::Destroy, {.pointers = {icon.handle()}}).result);
}

/// The one that is to fire, and in which of the runs: a host may refuse to cancel it.
void* armed = nullptr;
int run = 0;

void tryTimeout(Trial& trial) {
    using Op = PISelector::Timeout;
    constexpr std::int64_t kSoon = 50, kLater = 60000;
    const auto create = [](std::int64_t milliseconds, FunctorTwoParams__* function, void* data) {
        return ask(Id::Timeout, Op::Create, {{milliseconds}, {}, {}, {function, data}});
    };
    const int here = ++run;
    const Answer later = create(kLater, callback([](PIObject*, void*) {}), nullptr);
    if (!trial.serves(Id::Timeout, "arms a timeout", later.handle() != nullptr)) return;
    const Answer cancelled = ask(Id::Timeout, Op::Cancel, {.pointers = {later.handle()}});
    trial.expect(Id::Timeout, "cancels it", cancelled.result != 0, cancelled);
    trial.refuses(Id::Timeout, "a timeout that is cancelled",
                  ask(Id::Timeout, Op::Cancel, {.pointers = {later.handle()}}).result);
    Report& report = trial.report();
    static int own = 0;
    const auto fires = report.add(static_cast<int>(Id::Timeout), "it fires once, with its data and no sender",
                                  Verdict::Waits);
    const Answer soon = create(kSoon, callback([&report, fires, here](PIObject* sender, void* data) {
                                   if (here != run) return;
                                   armed = nullptr;
                                   const bool first = report.verdictOf(fires) == Verdict::Waits;
                                   const bool right = first && !sender && data == &own;
                                   report.decide(fires, right ? Verdict::Holds : Verdict::Wrong,
                                                 !first         ? "it fires again"
                                                 : sender       ? "there is a sender"
                                                 : data != &own ? "the data is another"
                                                                : "");
                               }),
                               &own);
    armed = soon.handle();
}

void tryAction(Trial& trial) {
    using Op = PISelector::Action;
    const std::string owner = "HostProbe", label = "Probed Action";
    const Answer action =
        ask(Id::Action, Op::Create, {{}, {}, {owner, label}, {callback([](PIObject*, void*) {})}});
    if (!trial.serves(Id::Action, "creates an action", action.handle() != nullptr)) return;
    const Answer checked = ask(Id::Action, Op::SetChecked, {.integers = {1}, .strings = {owner, label}});
    trial.expect(Id::Action, "gives it a mark", checked.result != 0, checked);
    const Answer gone = ask(Id::Action, Op::Destroy, {.pointers = {action.handle()}});
    trial.expect(Id::Action, "destroys it", gone.result != 0, gone);
    trial.refuses(Id::Action, "an action that is gone",
                  ask(Id::Action, Op::Destroy, {.pointers = {action.handle()}}).result);
}

void tryService(Trial& trial) {
    using Op = PISelector::Service;
    int interface = 0;
    const std::string name = "org.overlayeditor/HALVIS/HostProbe/1.0";
    const auto operation = [&](Op op, void* pointer) {
        Arguments arguments{.strings = {name}};
        if (pointer) arguments.pointers = {pointer};
        return ask(Id::Service, op, arguments);
    };
    const Answer published = operation(Op::Register, &interface);
    if (!trial.serves(Id::Service, "publishes an interface", published.result != 0)) return;
    const Answer found = operation(Op::Find, nullptr);
    trial.expect(Id::Service, "finds it by its name", found.handle() == &interface, found);
    trial.expect(Id::Service, "a name that is taken is refused", operation(Op::Register, &trial).result == 0);
    operation(Op::Unregister, &interface);
    const Answer none = operation(Op::Find, nullptr);
    trial.expect(Id::Service, "what is not published any more is not found", none.handle() == nullptr, none);
}

void tryLooks(Trial& trial, void* dialog) {
    using Op = PISelector::WidgetLooks;
    void* const spinner = reinterpret_cast<void*>(
        call<PI_DATA_POINTER_INT_AND_FUNCTION>(Id::CreateSpinner, dialog, 0, nullptr));
    if (!spinner) return;
    const Answer limits = ask(Id::WidgetLooks, Op::Limits, {.integers = {2, 5}, .pointers = {spinner}});
    if (trial.serves(Id::WidgetLooks, "sets the limits of a spinner", limits.result != 0)) {
        const Answer marked = ask(Id::WidgetLooks, Op::Mark, {.integers = {1}, .pointers = {spinner}});
        trial.expect(Id::WidgetLooks, "marks its text", marked.result != 0, marked);
        const Answer room = ask(Id::WidgetLooks, Op::Room, {.integers = {8, 1}, .pointers = {spinner}});
        trial.expect(Id::WidgetLooks, "keeps room", room.result != 0, room);
    }
    call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, spinner, nullptr);
    void* const field = reinterpret_cast<void*>(
        call<PI_DATA_POINTER_INT_AND_FUNCTION>(Id::CreateTextField, dialog, 8, nullptr));
    if (!field) return;
    const Answer line = ask(Id::WidgetLooks, Op::Line, {.pointers = {field, nullptr}});
    if (trial.serves(Id::WidgetLooks, "makes a text field a line that is entered", line.result != 0))
        trial.refuses(Id::WidgetLooks, "to make a line of what is no text field",
                      ask(Id::WidgetLooks, Op::Line, {.pointers = {dialog, nullptr}}).result);
    call<PI_DATA_POINTER_AND_POINTER>(Id::BindWidget, field, nullptr);
}

}  // namespace

bool Trial::serves(Id service, const std::string& what, bool served) {
    report_.add(static_cast<int>(service), what,
                !fault.empty() ? Verdict::Wrong
                : served       ? Verdict::Holds
                               : Verdict::LeftOut,
                fault);
    return served && fault.empty();
}

void Trial::expect(Id service, const std::string& expectation, bool holds, const std::string& answer) {
    if (!fault.empty() && answer != fault) return expect(service, expectation, false, fault);
    report_.add(static_cast<int>(service), expectation, holds ? Verdict::Holds : Verdict::Wrong,
                holds ? "" : answer);
}

void Trial::expect(Id service, const std::string& expectation, bool holds, const Answer& answer) {
    // A host may refuse whatever it likes, also of what it serves a part.
    if (!holds && answer.fault.empty() && answer.isRefused())
        report_.add(static_cast<int>(service), expectation, Verdict::LeftOut);
    else
        expect(service, expectation, holds && answer.fault.empty(),
               answer.fault.empty() ? answer.text() : answer.fault);
}

void Trial::refuses(Id service, const std::string& what, PIServiceResult result) {
    expect(service, "refuses " + what, result == 0 && fault.empty(),
           fault.empty() ? "returned " + std::to_string(result) : fault);
}

void cancelTimeout() {
    if (void* const timeout = std::exchange(armed, nullptr))
        ask(Id::Timeout, PISelector::Timeout::Cancel, {.pointers = {timeout}});
}

void tryApplication(Trial& trial, void* dialog) {
    tryIdentity(trial);
    trySettings(trial);
    using Mouse = PISelector::MouseGrab;
    if (trial.serves(Id::MouseGrab, "grabs the mouse", ask(Id::MouseGrab, Mouse::Grab).result != 0)) {
        const Answer free = ask(Id::MouseGrab, Mouse::Ungrab);
        trial.expect(Id::MouseGrab, "lets it go", free.result != 0, free);
    }
    tryIcon(trial, dialog);
    tryTimeout(trial);
    tryAction(trial);
    tryService(trial);
    tryLooks(trial, dialog);
    const Answer said = ask(Id::Notify, PISelector::Notify::Message,
                            {.integers = {4}, .strings = {"HostProbe", "The host is being probed."}});
    trial.serves(Id::Notify, "shows a message", said.result != 0);
}

}  // namespace probe
