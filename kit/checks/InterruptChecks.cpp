#include <string>

#include "kit/checks/Checks.h"

namespace kit {

void checkInterrupted(Context& context) {
    // How many kinds there are, and their names.
    std::size_t count = 1;
    for (std::size_t kind = 0; kind < count; ++kind)
        for (int every = 1; every <= 3; ++every) {
            // All together are tried in the thorough way; else each kind once, some more often.
            if (!context.settings.thorough && static_cast<int>(kind + context.settings.seed) % 3 + 1 != every)
                continue;
            Session session(context);
            session.steps /= 2;
            session.seed += kind;
            // A plug-in that puts all of them off would never end, one that takes all at once have no stack.
            int calls = 0, left = 3000, depth = 0;
            session.prepare = [&](Plugin&, Hands& hands) {
                auto incidents = hands.incidents();
                count = incidents.size();
                context.situation.setRound(incidents[kind].first + " from inside every " +
                                           std::to_string(every) + ". service call");
                session.host.onCall = [&, incident = incidents[kind].second](Service) {
                    constexpr int kDeepest = 20;
                    const bool due = ++calls % every == 0 && session.host.phase == Phase::Started;
                    if (!due || depth == kDeepest || left-- <= 0) return;
                    ++depth;
                    incident();
                    --depth;
                };
            };
            session.play();
        }
    context.situation.setRound({});
    context.findings.figure("incidents", static_cast<double>(count));
}

void checkClosedInside(Context& context) {
    Session whole(context);
    whole.play();
    const int calls = whole.host.calls;
    const int tries = context.settings.thorough ? calls : 30;
    const char* const names[] = {"Close", "clean-up", "a second start"};
    for (int i = 0; i < tries; ++i) {
        const int at = 1 + (i * calls) / tries, what = i % 3;
        context.situation.setRound(names[what] + std::string(" from inside service call ") +
                                   std::to_string(at));
        Host other(context.findings, context.situation, &context);
        Session session(context);
        session.prepare = [&](Plugin& plugin, Hands&) {
            session.host.onCall = [&](Service) {
                if (session.host.calls != at || session.host.phase != Phase::Started) return;
                if (what == 0) plugin.close(i % 2 != 0);
                if (what == 1) plugin.cleanUp();
                if (what == 2) plugin.initialise(other);
            };
        };
        session.play();
        if (other.calls != 0) context.findings.fault("the second host is called, whose start came too early");
    }
    context.situation.setRound({});
}

}  // namespace kit
