#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

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
    /// What is not there is answered with 0: a handle that was never given out, or is gone; an index; a
    /// number.
    void refuses(Id service, const std::string& what, PIServiceResult result);
    Report& report() { return report_; }

  private:
    Report& report_;
};

/// A handle that no host gives out.
inline void* strange() {
    return reinterpret_cast<void*>(std::uintptr_t{0x7ead});
}

// Each in the file that is named after it. `dialog` is the probe's window, which is shown; widgets can be
// made in it.
void tryWidgets(Trial& trial, void* dialog);
void tryFields(Trial& trial, void* dialog);
void tryChoices(Trial& trial, void* dialog);
void tryLists(Trial& trial, void* dialog);
/// \param item the probe's menu item
void tryApplication(Trial& trial, void* dialog, void* item);
/// Takes the timeout back that has not fired yet: it would decide in a report that is gone.
void cancelTimeout();
void tryScenario(Trial& trial);
/// \param path of an overlay file that is written, and removed again
void tryOverlays(Trial& trial, const std::string& path);
/// \return whether the view is left straight above a place, of which tryMiddle can tell
bool tryView(Trial& trial);
/// \param width, height of the view
void tryMiddle(Trial& trial, int width, int height);

/// An overlay file with two shapes, which a host may write in its own way.
extern const char* const kOverlay;
/// A new platform's id; nothing when the host makes none.
std::optional<std::int64_t> createPlatform(double latitude, double longitude);
/// \return whether the host has done it
bool destroyWidget(void* widget);
/// The widget that a creating service has returned.
inline void* made(PIServiceResult handle) {
    return reinterpret_cast<void*>(handle);
}

/// The host has dispatched it; trials look at it.
struct Seen {
    std::vector<std::uint64_t> removed;  ///< by EntityRemoved
    std::vector<std::uint64_t> added;    ///< by PlatformAdded
    std::function<void()> onAdded = {}, onRemoved = {};
};
extern Seen seen;

}  // namespace probe
