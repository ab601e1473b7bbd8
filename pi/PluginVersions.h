#pragma once

/// For plug-ins, included by the one source that defines their other entry points: how these are exported,
/// and the six that say what the library was built for, which is the same for all plug-ins of this interface.

#include <cstdint>

/// Exports an entry point, without a C++ name.
#define HPI_EXPORT extern "C" __attribute__((visibility("default")))

/// The smallest host build number that will do. Defined before the include, another one.
#ifndef HPI_MINIMUM_HOST
#define HPI_MINIMUM_HOST 12000
#endif

/// 1.20.0 in the legacy encoding.
HPI_EXPORT double HPI_VersionInfo() {
    return 1.902;
}

HPI_EXPORT std::int32_t HPI_VersionInfoEx(std::int32_t selector) {
    return selector == 1 ? 20 : selector == 2 ? 0 : 1;
}

HPI_EXPORT std::int32_t HPI_MinimumVersion() {
    return HPI_MINIMUM_HOST;
}

/// The release of the compiler that the interface fixes, 8.3.1, whatever built this library.
HPI_EXPORT std::int32_t HPI_GetCompilerVersion() {
    return 831;
}

HPI_EXPORT std::int32_t HPI_GetBitWidth() {
    return 64;
}

HPI_EXPORT std::int32_t HPI_IsDebugMode() {
    return 0;
}
