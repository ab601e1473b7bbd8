#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "pi/HostContract.h"

/// A plug-in that uses the host with raw service calls, for tests of the host. It knows the contract's
/// headers and nothing else.
namespace probe {

/// What the host gave in HPI_InitializeFunctionMap.
extern PIServiceTable* services;
extern void* instance;

/// One call with a ready record (or a bare handle).
PIServiceResult call(PIServerFunctions_t service, void* record);

/// One call with a record of the type named.
template <typename Record, typename... Arguments>
PIServiceResult call(PIServerFunctions_t service, Arguments&&... arguments) {
    Record record(std::forward<Arguments>(arguments)...);
    return call(service, &record);
}

/// One call with a catch-all record; the results are what the host appended.
struct Catchall {
    std::vector<std::int64_t> integers = {};
    std::vector<double> reals = {};
    std::vector<std::string> texts = {};
    std::vector<void*> pointers = {};
};
struct Answer : Catchall {
    PIServiceResult result = 0;

    void* handle() const { return pointers.empty() ? nullptr : pointers.front(); }
};
Answer ask(PIServerFunctions_t service, const Catchall& arguments);
/// The same with a selector in front of the integers.
template <typename Selector>
Answer ask(PIServerFunctions_t service, Selector selector, Catchall arguments) {
    arguments.integers.insert(arguments.integers.begin(), static_cast<std::int64_t>(selector));
    return ask(service, arguments);
}

/// A callback that calls a function; it lives until clean-up.
class Functor final : public FunctorTwoParams__ {
  public:
    using Function = std::function<void(PIObject* sender, void* data)>;

    explicit Functor(Function function) : function_(std::move(function)) {}
    int operator()(PIObject* sender, void* data) override {
        function_(sender, data);
        return 1;
    }
    int Call(PIObject* sender, void* data) override { return (*this)(sender, data); }

  private:
    Function function_;
};
Functor* callback(Functor::Function function);
void freeCallbacks();

/// Writes a line to the host's log, as the probe.
void say(const std::string& text);

}  // namespace probe
