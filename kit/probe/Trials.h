#pragma once

#include <string>

#include "kit/probe/Calls.h"
#include "kit/probe/Report.h"

/// What the probe asks of a host, service by service. Each trial makes what it needs and destroys it again;
/// what has to come later is decided in the report when it comes.
namespace probe {

/// Where trials put what they find. A trial of a service begins with one call that any host which serves it
/// answers; refused, it counts as left out, and the rest of that trial is not made.
class Trial {
  public:
    explicit Trial(Report& report) : report_(report) {}

    /// \return `served`, after the report has it
    bool serves(Id service, const std::string& what, bool served);
    void expect(Id service, const std::string& expectation, bool holds, const std::string& answer = {});
    /// The same, unless there is something wrong with the answer's call whatever it answered.
    void expect(Id service, const std::string& expectation, bool holds, const Answer& answer);
    /// A handle that was never given out is answered with 0.
    void refuses(Id service, const std::string& what, PIServiceResult result);
    Report& report() { return report_; }

  private:
    Report& report_;
};

/// A handle that no host gives out.
inline void* strange() {
    return reinterpret_cast<void*>(std::uintptr_t{0x7ead});
}

/// \param dialog the probe's window, in which widgets can be made
void tryWidgets(Trial& trial, void* dialog);
void tryChoices(Trial& trial, void* dialog);
void tryApplication(Trial& trial, void* dialog);
/// Takes the timeout back that has not fired yet: it would decide in a report that is gone.
void cancelTimeout();
void tryScenario(Trial& trial);
/// \param path of an overlay file that is written, and removed again
void tryScene(Trial& trial, const std::string& path);

/// The host has dispatched it; trials look at it.
struct Seen {
    int removed = 0;  ///< EntityRemoved
    std::uint64_t lastRemoved = 0;
    int added = 0;  ///< PlatformAdded
};
extern Seen seen;

}  // namespace probe
