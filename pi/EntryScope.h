#pragma once

#include <functional>

/// One entry of the host into the plug-in: a dispatch, a callback or an observer. The host may enter again
/// from inside each service that it serves; what would take away what the outer entry works on waits until
/// that is over.
class EntryScope {
  public:
    EntryScope();
    /// The outermost one calls the listener, and then what waits for its end.
    ~EntryScope();
    EntryScope(const EntryScope&) = delete;
    EntryScope& operator=(const EntryScope&) = delete;

    /// Whether the host is being served from inside another entry.
    static bool isNested();
    /// Called at the end of each outermost entry, as a part of it; empty for nobody.
    static void setListener(std::function<void()> listener);
    /// Has something done once, when the outermost entry ends.
    static void atEnd(std::function<void()> last);
};
