#include "kit/checks/Checks.h"

namespace kit {

namespace {

constexpr bool kBeyond = true;

constexpr Check kChecks[] = {
    {"exports", "the nine entry points are there, and nothing else is visible", checkExports},
    {"versions", "the versions fit each other and the contract, in every state", checkVersions},
    {"loading", "the library is unmapped by dlclose, and the process is as it was", checkLoading},
    {"texts", "Name and the other texts are answered from init to Close", checkTexts},
    {"dispatch", "each number in each state, with no record, an empty and a foreign one", checkDispatch},
    {"use", "a user's sessions: each service is called rightly, and nothing is left", checkUse},
    {"orders", "a life in a wrong order: second starts, early ends, late events", checkOrders},
    {"refused-once", "one service call is answered with 0", checkFault<Answer::Refused, true>},
    {"refused", "all service calls from one on are answered with 0", checkFault<Answer::Refused, false>},
    {"empty-once", "one service call is done, and brings no result", checkFault<Answer::Empty, true>},
    {"empty", "all service calls from one on bring no result", checkFault<Answer::Empty, false>},
    {"throwing-once", "one service call throws", checkFault<Answer::Exception, true>},
    {"throwing", "all service calls from one on throw", checkFault<Answer::Exception, false>},
    {"interrupted", "whatever a host may do comes from inside the services", checkInterrupted},
    {"rounds", "memory stays flat over many lives of the library", checkRounds},
    {"null-once", "one service call brings zeros and null handles", checkFault<Answer::Null, true>, kBeyond},
    {"null", "all service calls from one on do", checkFault<Answer::Null, false>, kBeyond},
    {"garbage-once", "one service call brings garbage", checkFault<Answer::Garbage, true>, kBeyond},
    {"garbage", "all service calls from one on do", checkFault<Answer::Garbage, false>, kBeyond},
    {"closed-inside", "Close, clean-up or another start from inside a service", checkClosedInside, kBeyond},
};

}  // namespace

std::span<const Check> checks() {
    return kChecks;
}

}  // namespace kit
