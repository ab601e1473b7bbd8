#include "kit/probe/Trials.h"

namespace probe {

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

}  // namespace probe
