#include "pi/PIBase.h"

#include <iostream>

#include "pi/EntryScope.h"
#include "pi/HostFaults.h"
#include "pi/PIDataRecords.h"

PIServiceTable* g_FunctionMap = nullptr;
void* g_This = nullptr;

namespace {

/// The one place that calls the table. A host written in C makes it from plain structures, so the sanitizer's
/// look at its C++ type is switched off here. A service that throws, which it must not, has refused: many are
/// called where nothing may be thrown, in destructors.
__attribute__((no_sanitize("vptr"))) PIServiceResult callTable(void* identity, PIServerFunctions_t service,
                                                               void* args) {
    try {
        const bool dialog = service == PIServerFunctions_t::FileDialog;
        const CallToOthers call(dialog ? EntryScope::At::Dialog : EntryScope::At::Others);
        return g_FunctionMap->handle(identity, service, args);
    } catch (...) {
        HostFaults::reportException(service);
        return 0;
    }
}

}  // namespace

PIServiceResult handle(PIServerFunctions_t service, void* args) {
    // First of all: from within this very question the host may take its table back.
    void* const identity = PIBase::getOverriddenThisPointer();
    if (!g_FunctionMap) {
        std::cerr << "Invalid Plug-in API Support Function Map.  "
                     "Plug-in API calls are being made outside of the context of a loaded plug-in.\n"
                  << "API service request has not been processed." << std::endl;
        return 0;
    }
    return callTable(identity ? identity : g_This, service, args);
}

std::string PIBase::versionString() {
    return std::to_string(majorVersion) + "." + std::to_string(minorVersion) + "." +
           std::to_string(revisionVersion);
}

double PIBase::legacyApiVersion(std::int32_t major, std::int32_t minor, std::int32_t revision) {
    if (major == 0) return minor * 0.01;
    if (major == 1 && minor <= 9) return 1.0 + 0.1 * minor + 0.001 * revision;
    if (major == 1) return 1.9 + 0.0001 * minor + 0.000001 * revision;
    return major + 0.01 * minor + 0.0001 * revision;
}

void* PIBase::getOverriddenThisPointer() {
    if (!g_FunctionMap) return nullptr;
    PI_DATA_CATCHALL record;
    record.integers.push_back(static_cast<std::int64_t>(PISelector::IdentityOverride::Query));
    // Through the table itself: the funnel asks this very question before each call.
    callTable(nullptr, PIServerFunctions_t::IdentityOverride, &record);
    return record.pointers.empty() ? nullptr : record.pointers.front();
}

namespace {

void changeOverride(PISelector::IdentityOverride selector, void* identity) {
    if (!g_FunctionMap) return;
    PI_DATA_CATCHALL record;
    record.integers.push_back(static_cast<std::int64_t>(selector));
    record.pointers.push_back(identity);
    callTable(nullptr, PIServerFunctions_t::IdentityOverride, &record);
}

}  // namespace

void PIBase::pushOverrideThisPointer(void* identity) {
    changeOverride(PISelector::IdentityOverride::Push, identity);
}

void PIBase::popOverrideThisPointer() {
    changeOverride(PISelector::IdentityOverride::Pop, nullptr);
}
