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
    const auto push = [](void* identity) {
        return ask(Id::IdentityOverride, Op::Push, {.pointers = {identity}}).result;
    };
    const auto pop = [] { return ask(Id::IdentityOverride, Op::Pop, {.pointers = {nullptr}}); };
    const auto query = [] { return ask(Id::IdentityOverride, Op::Query); };
    push(own);
    const Answer one = query();
    if (trial.serves(Id::IdentityOverride, "takes another identity", one.handle() != nullptr)) {
        trial.expect(Id::IdentityOverride, "tells the identity pushed last", one.handle() == own, one);
        // A host may take those alone that it knows.
        const bool both = push(strange()) != 0;
        const Answer last = query();
        if (both)
            trial.expect(Id::IdentityOverride, "tells the last one of two", last.handle() == strange(), last);
        else
            push(own);
        const bool popped = trial.serves(Id::IdentityOverride, "pops an identity", pop().result != 0);
        const Answer before = query();
        trial.expect(Id::IdentityOverride, "tells the one before once that is popped", before.handle() == own,
                     before);
        pop();
        const Answer none = query();
        if (popped)
            trial.expect(Id::IdentityOverride, "tells none once all are popped", none.handle() == nullptr,
                         none);
        trial.refuses(Id::IdentityOverride, "to pop where nothing was pushed", pop().result);
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
    const auto answered = call(Id::RegistryGetValue, static_cast<void*>(&unset));
    trial.expect(Id::RegistryGetValue, "one that is unset is read, and empty",
                 answered != 0 && unset.text.empty(),
                 "returned " + std::to_string(answered) + ", \"" + unset.text + "\"");
}

void tryGrabs(Trial& trial) {
    using Op = PISelector::MouseGrab;
    const auto does = [](Op op) { return ask(Id::MouseGrab, op).result; };
    if (!trial.serves(Id::MouseGrab, "grabs the mouse", does(Op::Grab) != 0)) return;
    does(Op::Grab);
    if (!trial.serves(Id::MouseGrab, "lets it go", does(Op::Ungrab) != 0)) return;
    trial.expect(Id::MouseGrab, "what was grabbed twice is let go twice", does(Op::Ungrab) != 0);
    trial.refuses(Id::MouseGrab, "to let go what is not grabbed", does(Op::Ungrab));
}

void tryIcon(Trial& trial, void* dialog, void* item) {
    using Op = PISelector::Icon;
    unsigned char text[] = "This is no picture.";
    trial.refuses(
        Id::Icon, "an icon that is no picture",
        ask(Id::Icon, Op::LoadPng, {{static_cast<std::int64_t>(sizeof text)}, {}, {}, {text}}).result);
    const Answer icon =
        ask(Id::Icon, Op::LoadPng, {{static_cast<std::int64_t>(sizeof kPng)}, {}, {}, {kPng}});
    if (!trial.serves(Id::Icon, "loads an icon", icon.handle() != nullptr)) return;
    const Answer set = ask(Id::Icon, Op::SetDialogIcon, {.pointers = {dialog, icon.handle()}});
    trial.expect(Id::Icon, "shows it on a dialog", set.result != 0, set);
    const Answer shown = ask(Id::Icon, Op::SetMenuItemIcon, {.pointers = {item, icon.handle()}});
    trial.expect(Id::Icon, "shows it on a menu item", shown.result != 0, shown);
    const Answer gone = ask(Id::Icon, Op::Destroy, {.pointers = {icon.handle()}});
    if (!trial.serves(Id::Icon, "destroys it", gone.result != 0)) return;
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
    const auto cancel = [](void* timeout) {
        return ask(Id::Timeout, Op::Cancel, {.pointers = {timeout}}).result;
    };
    if (trial.serves(Id::Timeout, "cancels it", cancel(later.handle()) != 0))
        trial.refuses(Id::Timeout, "a timeout that is cancelled", cancel(later.handle()));
    Report& report = trial.report();
    static int own = 0;
    static bool isArming = false;
    const auto fires = report.add(static_cast<int>(Id::Timeout), "it fires once, with its data and no sender",
                                  Verdict::Waits);
    isArming = true;
    const Answer soon = create(kSoon, callback([&report, cancel, fires, here](PIObject* sender, void* data) {
                                   if (here != run || report.verdictOf(fires) == Verdict::Wrong) return;
                                   void* const fired = std::exchange(armed, nullptr);
                                   const char* const wrong =
                                       report.verdictOf(fires) != Verdict::Waits ? "it fires again"
                                       : isArming      ? "it fires from inside the call that arms it"
                                       : sender        ? "there is a sender"
                                       : data != &own  ? "the data is another"
                                       : cancel(fired) ? "it can be cancelled although it has fired"
                                                       : "";
                                   report.decide(fires, *wrong ? Verdict::Wrong : Verdict::Holds, wrong);
                               }),
                               &own);
    isArming = false;
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
    trial.refuses(Id::Action, "a mark for an action that is none",
                  ask(Id::Action, Op::SetChecked, {.integers = {1}, .strings = {owner, "None"}}).result);
    const Answer gone = ask(Id::Action, Op::Destroy, {.pointers = {action.handle()}});
    if (!trial.serves(Id::Action, "destroys it", gone.result != 0)) return;
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
    trial.refuses(Id::Service, "to withdraw it with another interface",
                  operation(Op::Unregister, &trial).result);
    if (!trial.serves(Id::Service, "withdraws it", operation(Op::Unregister, &interface).result != 0)) return;
    const Answer none = operation(Op::Find, nullptr);
    trial.expect(Id::Service, "what is not published any more is not found", none.isRefused(), none);
}

/// What calls back in another way than others.
void tryLooks(Trial& trial, void* dialog) {
    using Op = PISelector::WidgetLooks;
    void* const field = made(call<PI_DATA_POINTER_INT_AND_FUNCTION>(Id::CreateTextField, dialog, 0, nullptr));
    void* const list = made(call<PI_DATA_POINTER_INT_AND_STRING>(Id::CreateList, dialog, 0, "Name"));
    auto* const silent = callback([](PIObject*, void*) {});
    const auto takes = [&](Op op, void* widget) {
        return ask(Id::WidgetLooks, op, {.pointers = {widget, silent}}).result;
    };
    if (field && trial.serves(Id::WidgetLooks, "makes a text field a line that is entered",
                              takes(Op::Line, field) != 0))
        trial.refuses(Id::WidgetLooks, "to make a line of what is no text field", takes(Op::Line, dialog));
    if (list && trial.serves(Id::WidgetLooks, "tells of a row that is chosen", takes(Op::Chosen, list) != 0))
        trial.refuses(Id::WidgetLooks, "to tell of rows of what is no list", takes(Op::Chosen, dialog));
    destroyWidget(list);
    destroyWidget(field);
}

/// Numbers and selectors that the contract does not have.
void tryUnknown(Trial& trial) {
    for (const int number : {1, 999})
        trial.refuses(Id(number), "a number that there is not", ask(Id(number), Arguments{}).result);
    // Not 163: a host that takes it for another may wait for an answer of the person's.
    for (const Id service :
         {Id::IdentityOverride, Id::MouseGrab, Id::Icon, Id::Clock, Id::CreateEntity, Id::Timeout, Id::Action,
          Id::Service, Id::Notify, Id::AnimatedLine, Id::Camera, Id::Cursor, Id::OverlayFiles, Id::ScreenText,
          Id::OverlayLists, Id::ContextMenu, Id::WidgetValue, Id::ListItems, Id::WidgetLooks}) {
        void* const own = instance;
        if (service == Id::IdentityOverride) instance = nullptr;
        trial.refuses(service, "a selector that there is not", ask(service, {.integers = {99}}).result);
        instance = own;
    }
}

}  // namespace

void cancelTimeout() {
    if (void* const timeout = std::exchange(armed, nullptr))
        ask(Id::Timeout, PISelector::Timeout::Cancel, {.pointers = {timeout}});
}

void tryApplication(Trial& trial, void* dialog, void* item) {
    tryIdentity(trial);
    trySettings(trial);
    tryGrabs(trial);
    tryIcon(trial, dialog, item);
    tryTimeout(trial);
    tryAction(trial);
    tryService(trial);
    tryLooks(trial, dialog);
    tryUnknown(trial);
    using Op = PISelector::Notify;
    const auto says = [](Op op, std::int64_t severity) {
        return ask(Id::Notify, op,
                   {.integers = {severity}, .strings = {"HostProbe", "The host is being probed."}});
    };
    trial.serves(Id::Notify, "shows a message", says(Op::Message, 4).result != 0);
    trial.serves(Id::Notify, "takes one for debugging", says(Op::Debug, 0).result != 0);
}

}  // namespace probe
