#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <vector>

#include "pi/HostContract.h"

/// Raw calls of services, and what comes back.
namespace probe {

using Id = PIServerFunctions_t;

/// The host's, between HPI_InitializeFunctionMap and clean-up.
extern PIServiceTable* services;
extern void* instance;

/// What is wrong with the last call, whatever it answered: it threw, or put its results elsewhere than behind
/// the arguments. Empty for nothing.
extern std::string fault;

/// Told of each call before it is made; empty for nobody.
extern std::function<void(Id service)> onCall;

/// No exception goes further. 0 when one came.
PIServiceResult call(Id service, void* record);
template <typename Record, typename... Arguments>
PIServiceResult call(Id service, Arguments... arguments) {
    Record record(arguments...);
    return call(service, static_cast<void*>(&record));
}

/// Arguments of a catch-all record, its selector first.
struct Arguments {
    std::vector<std::int64_t> integers = {};
    std::vector<double> doubles = {};
    std::vector<std::string> strings = {};
    std::vector<void*> pointers = {};
};

/// What a catch-all record brings: the results alone.
struct Answer : Arguments {
    PIServiceResult result = 0;
    std::string fault = {};  ///< of its call

    bool isRefused() const {
        return result == 0 && integers.empty() && doubles.empty() && strings.empty() && pointers.empty();
    }
    void* handle() const { return pointers.empty() ? nullptr : pointers.front(); }
    /// For the report.
    std::string text() const;
};
Answer ask(Id service, const Arguments& arguments);
template <typename Selector>
requires std::is_enum_v<Selector> Answer ask(Id service, Selector selector, Arguments arguments = {}) {
    arguments.integers.insert(arguments.integers.begin(), static_cast<std::int64_t>(selector));
    return ask(service, arguments);
}

/// A callback that calls a function; it lives until clean-up, and does nothing once the probe is closed.
using Function = std::function<void(PIObject* sender, void* data)>;
FunctorTwoParams__* callback(Function function);
/// To be asked first by what the host enters, which does nothing when it answers false: that of another
/// thread than the first one's cannot be judged at once, but is kept. \param event its number, -1 for a
/// callback
bool isHostsThread(int event);
/// What came on another thread; empty for nothing.
std::string strayEntry();

/// Between StartUp and Close.
extern bool isOpen;
void freeCallbacks();

}  // namespace probe
