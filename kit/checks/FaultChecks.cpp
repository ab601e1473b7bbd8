#include <limits>
#include <stdexcept>
#include <string>

#include "kit/checks/Checks.h"

namespace kit {

namespace {

void* const kGarbage = reinterpret_cast<void*>(std::uintptr_t{0xBAD0});

std::optional<PIServiceResult> answerFalsely(Answer kind, void* record) {
    if (kind == Answer::Refused) return 0;
    if (kind == Answer::Exception) throw std::runtime_error("deliberate");
    const bool garbage = kind == Answer::Garbage;
    auto* const results = dynamic_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(record));
    // Where the result is a handle, none is brought; or garbage is one, too.
    if (!results) return garbage ? reinterpret_cast<PIServiceResult>(kGarbage) : 0;
    if (kind == Answer::Empty) return 1;
    results->integers.push_back(garbage ? std::numeric_limits<std::int64_t>::max() : 0);
    for (int i = 0; i < 3; ++i)
        results->doubles.push_back(garbage ? std::numeric_limits<double>::quiet_NaN() : 0.0);
    results->strings.push_back(garbage ? "\xff\n\t" : "");
    results->pointers.push_back(garbage ? kGarbage : nullptr);
    return 1;
}

}  // namespace

template <Answer kind, bool once>
void checkFault(Context& context) {
    // How many calls there are to choose from.
    Session whole(context);
    whole.play();
    const int calls = whole.host.calls;
    context.findings.figure("service-calls", calls);
    constexpr int kSome = 40;
    const bool all = context.settings.thorough || calls <= kSome;
    const int tries = all ? calls : kSome;
    for (int i = 0; i < tries; ++i) {
        Session session(context);
        // Spread over the session, at other places for each seed and kind; and over sessions.
        const auto skip =
            static_cast<int>((session.seed + (once ? 3U : 0U) + static_cast<unsigned>(kind)) % 7);
        const int at = all ? i + 1 : 1 + (i * calls) / tries + skip;
        if (!all) session.seed += static_cast<std::uint64_t>(i % 8);
        context.situation.setRound("service call " + std::to_string(at) + " of --seed " +
                                   std::to_string(session.seed));
        Host& host = session.host;
        host.lies = kind == Answer::Garbage || kind == Answer::Null;
        host.answersIdentity = !once && kind != Answer::Garbage;
        host.answer = [&host, at](Service, void* record) -> std::optional<PIServiceResult> {
            if (once ? host.calls != at : host.calls < at) return std::nullopt;
            return answerFalsely(kind, record);
        };
        session.play();
    }
    context.situation.setRound({});
    context.findings.figure("sessions", tries);
}

template void checkFault<Answer::Refused, true>(Context&);
template void checkFault<Answer::Refused, false>(Context&);
template void checkFault<Answer::Empty, true>(Context&);
template void checkFault<Answer::Empty, false>(Context&);
template void checkFault<Answer::Null, true>(Context&);
template void checkFault<Answer::Null, false>(Context&);
template void checkFault<Answer::Garbage, true>(Context&);
template void checkFault<Answer::Garbage, false>(Context&);
template void checkFault<Answer::Exception, true>(Context&);
template void checkFault<Answer::Exception, false>(Context&);

}  // namespace kit
