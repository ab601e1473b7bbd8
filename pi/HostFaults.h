#pragma once

#include <cstdint>
#include <string>

#include "pi/PIServerFunctions.h"

/// What the host does against the contract, as far as it can be seen from here. Each service is told of once,
/// when the running entry is over: no message comes from the midst of a call.
namespace HostFaults {

/// \param problem what is wrong with the service's answer
void report(PIServerFunctions_t service, const std::string& problem) noexcept;

/// The same of a service that has thrown. To be called in a catch block.
void reportException(PIServerFunctions_t service) noexcept;
/// How many calls have ended so.
std::uint64_t exceptions();

/// Another host: what is told of it is new.
void forget();

}  // namespace HostFaults
