// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

// Loads the installed plug-in and tells its version.
#include <cstdio>

#include <dlfcn.h>

#include "pi/HostContract.h"

namespace {

class Host final : public PIServiceTable {
  public:
    std::int32_t hostBuildNumber() override { return 13001; }
    PIServiceResult handle(void*, PIServerFunctions_t, void*) override { return 0; }
};

template <class Function>
Function* symbol(void* library, const char* name) {
    return reinterpret_cast<Function*>(dlsym(library, name));
}

}  // namespace

int main() {
    void* const library = dlopen(PLUGIN, RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        std::puts(dlerror());
        return 1;
    }
    Host host;
    symbol<void(PIServiceTable*, void*)>(library, "HPI_InitializeFunctionMap")(&host, &host);
    std::printf("%s: %.3f\n", PLUGIN, symbol<double()>(library, "HPI_VersionInfo")());
    symbol<void()>(library, "HPI_CleanUpPlugin")();
    return dlclose(library);
}
