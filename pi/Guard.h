#pragma once

#include <exception>
#include <utility>

#include "common/Notify.h"
#include "pi/EntryScope.h"

inline constexpr const char* kFaultOfOurs = "A fault in the plug-in, save under another name: ";

/// Runs one entry from the host so that no exception crosses the boundary: what was thrown becomes an
/// error message that names the entry, and `fallback` is returned.
template <typename Result, typename Body>
Result guarded(const char* entry, Result fallback, Body&& body) noexcept {
    try {
        return body();
    } catch (const std::exception& problem) {
        try {
            halNotify::notify(halNotify::Error) << kFaultOfOurs << entry << ": " << problem.what();
        } catch (...) {
            // Not even the message could be built; the neutral result is all that is left to give.
        }
    } catch (...) {
        try {
            halNotify::notify(halNotify::Error) << kFaultOfOurs << entry << ": unknown failure";
        } catch (...) {
        }
    }
    return fallback;
}

/// What is told to the host as an object dies: without the memory for that it is left to the host's end.
template <typename Body>
void guardedEnd(Body&& body) noexcept {
    guarded("The end of an object", 0, [&] {
        std::forward<Body>(body)();
        return 0;
    });
}

/// Runs what an observer of the host does as an entry of its own; no exception crosses the boundary.
template <typename Body>
void guardedEntry(const char* name, Body&& body) noexcept {
    const EntryScope scope;
    guarded(name, 0, [&] {
        std::forward<Body>(body)();
        return 0;
    });
}
