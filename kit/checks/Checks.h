#pragma once

#include "kit/Session.h"

/// The checks, each told of in Checks.cpp. They find faults by what Plugin and Host see of each call; what
/// they add stands in their text.
namespace kit {

// LoadChecks.cpp
void checkExports(Context& context);
void checkVersions(Context& context);
void checkLoading(Context& context);
void checkRounds(Context& context);

// DispatchChecks.cpp
void checkTexts(Context& context);
void checkDispatch(Context& context);

// LifeChecks.cpp
void checkUse(Context& context);
void checkOrders(Context& context);

// FaultChecks.cpp
enum class Answer {
    Refused,   ///< 0
    Empty,     ///< "done", and no result
    Null,      ///< "done", and every result 0 or null
    Garbage,   ///< handles, numbers and texts that mean nothing
    Exception  ///< none; thrown instead
};
/// \param once at one call, else from it on
template <Answer kind, bool once>
void checkFault(Context& context);

// InterruptChecks.cpp
void checkInterrupted(Context& context);
void checkClosedInside(Context& context);

}  // namespace kit
