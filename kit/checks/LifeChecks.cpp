#include <functional>
#include <string>

#include "kit/checks/Checks.h"

namespace kit {

namespace {

using Event = Plugin::Event;

constexpr int kFewSteps = 40;

/// One wrong order. The plug-in is initialised with the first host; the second one is there for a second
/// start.
struct Life {
    Context& context;
    Host& host;
    Host& second;
    Plugin& plugin;
    Hands& hands;

    void startAndUse() {
        plugin.start();
        hands.use(kFewSteps);
    }
    void everyEvent() {
        for (const auto& [name, incident] : hands.incidents()) incident();
    }
};

struct Order {
    const char* name;
    void (*play)(Life&);
};

const Order kOrders[] = {
    {"clean-up without a StartUp", [](Life& life) { life.plugin.cleanUp(); }},
    {"events without a StartUp", [](Life& life) { life.everyEvent(); }},
    {"two StartUps",
     [](Life& life) {
         life.plugin.start();
         life.startAndUse();
     }},
    {"Close without a record",
     [](Life& life) {
         life.startAndUse();
         life.plugin.close(false);
     }},
    {"events, StartUp and Close after Close",
     [](Life& life) {
         life.startAndUse();
         life.plugin.close();
         life.everyEvent();
         if (life.plugin.dispatch(Event::StartUp) != kStatusClosed)
             life.context.findings.fault("a StartUp after Close does not say that the plug-in is closed");
         life.plugin.dispatch(Event::Close);
     }},
    {"clean-up without a Close",
     [](Life& life) {
         life.startAndUse();
         life.plugin.cleanUp();
         life.plugin.cleanUp();
         life.everyEvent();
     }},
    {"a second HPI_InitializeFunctionMap without a Close",
     [](Life& life) {
         life.startAndUse();
         life.plugin.initialise(life.second);
         if (life.second.calls != 0)
             life.context.findings.fault(
                 "the instance of the first host is closed through the second's table");
         if (!life.plugin.start()) life.context.findings.fault("the second instance does not start");
     }},
    {"a second life after Close, without a clean-up",
     [](Life& life) {
         life.startAndUse();
         life.plugin.close();
         life.plugin.initialise(life.second);
         if (!life.plugin.start()) life.context.findings.fault("the second instance does not start");
     }},
    {"a second life after clean-up, without unloading",
     [](Life& life) {
         life.startAndUse();
         life.plugin.close();
         life.plugin.cleanUp();
         life.plugin.initialise(life.second);
         if (!life.plugin.start()) life.context.findings.fault("the second instance does not start");
     }},
};

}  // namespace

void checkUse(Context& context) {
    const int sessions = context.settings.thorough ? 200 : 8;
    std::set<Service> numbers;
    int calls = 0;
    for (int i = 0; i < sessions; ++i) {
        Session session(context);
        session.seed += static_cast<std::uint64_t>(i);
        session.steps = 4 * Session::kSteps;
        context.situation.setRound("--seed " + std::to_string(session.seed));
        if (!session.play()) context.findings.fault("StartUp fails");
        numbers.insert(session.host.numbers.begin(), session.host.numbers.end());
        calls += session.host.calls;
    }
    context.situation.setRound({});
    context.findings.figure("sessions", sessions);
    context.findings.figure("service-calls", calls);
    context.findings.figure("service-numbers", static_cast<double>(numbers.size()));
}

void checkOrders(Context& context) {
    for (const Order& order : kOrders) {
        context.situation.setRound(order.name);
        resetFiles(context.settings.home);
        Host first(context.findings, context.situation, &first),
            second(context.findings, context.situation, &second);
        Plugin plugin(context.settings.library, context.findings, context.situation);
        Hands hands(plugin, first, context.settings.seed);
        plugin.initialise(first);
        Life life{context, first, second, plugin, hands};
        order.play(life);
    }
    context.situation.setRound({});
}

}  // namespace kit
