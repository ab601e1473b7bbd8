#pragma once

#include <cstdint>
#include <string>

#include "pi/PIServiceTable.h"

/// Set by HPI_InitializeFunctionMap, null before it and after clean-up. The host's; never deleted here.
extern PIServiceTable* g_FunctionMap;
/// The host's handle for this plug-in instance, passed back on every service call.
extern void* g_This;

/// The funnel through which every service call leaves the plug-in. It throws nothing: a service that does
/// counts as refused, with a message.
/// Without a service table it writes two lines to standard error and returns 0.
PIServiceResult handle(PIServerFunctions_t service, void* args);

/// Facts of the plug-in interface, and the identity under which calls are made.
class PIBase {
  public:
    static constexpr std::int32_t majorVersion = 1;
    static constexpr std::int32_t minorVersion = 30;
    static constexpr std::int32_t revisionVersion = 0;
    static constexpr std::int32_t buildNumber = 13000;

    /// "1.30.0"
    static std::string versionString();

    /// One double for a version, as hosts compare them: major 0 gives minor * 0.01; 1.0 to 1.9 give
    /// 1.0 + 0.1 * minor + 0.001 * revision; from 1.10 on 1.9 + 0.0001 * minor + 0.000001 * revision
    /// (1.20.0 is 1.902); from 2.0 on major + 0.01 * minor + 0.0001 * revision.
    static double legacyApiVersion(std::int32_t major, std::int32_t minor, std::int32_t revision);

    /// The identity pushed last, null when there is none. The host keeps the stack.
    static void* getOverriddenThisPointer();
    static void pushOverrideThisPointer(void* identity);
    static void popOverrideThisPointer();
};
