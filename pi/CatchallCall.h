#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include "pi/PIBase.h"
#include "pi/PIDataRecords.h"

/// One service call with a catch-all record: arguments are appended in the order of the calls, then the
/// results that the host appended behind them are read. A result that the host did not give reads as the
/// fallback, so that a host that refuses or misbehaves, and a call that was not made, yield the neutral
/// value.
class CatchallCall {
  public:
    explicit CatchallCall(PIServerFunctions_t service) : service_(service) {}

    /// A call of a number that several operations share.
    template <typename Selector>
    requires std::is_enum_v<Selector> CatchallCall(PIServerFunctions_t service, Selector selector)
        : service_(service) {
        record_.integers.push_back(static_cast<std::int64_t>(selector));
    }

    CatchallCall& integer(std::int64_t value) {
        record_.integers.push_back(value);
        return *this;
    }
    CatchallCall& real(double value) {
        record_.doubles.push_back(value);
        return *this;
    }
    CatchallCall& text(std::string value) {
        record_.strings.push_back(std::move(value));
        return *this;
    }
    CatchallCall& pointer(void* value) {
        record_.pointers.push_back(value);
        return *this;
    }

    /// Makes the call, once, when all arguments are in.
    PIServiceResult perform() {
        integerArguments_ = record_.integers.size();
        realArguments_ = record_.doubles.size();
        textArguments_ = record_.strings.size();
        pointerArguments_ = record_.pointers.size();
        return handle(service_, &record_);
    }

    std::size_t integerResults() const { return results(record_.integers.size(), integerArguments_); }
    std::size_t textResults() const { return results(record_.strings.size(), textArguments_); }
    std::size_t pointerResults() const { return results(record_.pointers.size(), pointerArguments_); }

    std::int64_t integerResult(std::size_t index, std::int64_t fallback = 0) const {
        return resultOf(record_.integers, integerArguments_, index, fallback);
    }
    double realResult(std::size_t index, double fallback = 0.0) const {
        return resultOf(record_.doubles, realArguments_, index, fallback);
    }
    std::string textResult(std::size_t index) const {
        return resultOf(record_.strings, textArguments_, index, std::string());
    }
    void* pointerResult(std::size_t index) const {
        return resultOf(record_.pointers, pointerArguments_, index, static_cast<void*>(nullptr));
    }
    bool hasRealResults(std::size_t count) const {
        return results(record_.doubles.size(), realArguments_) >= count;
    }

  private:
    static std::size_t results(std::size_t size, std::size_t arguments) {
        return size > arguments ? size - arguments : 0;
    }
    template <typename List, typename Value>
    static Value resultOf(const List& list, std::size_t arguments, std::size_t index, Value fallback) {
        return index < results(list.size(), arguments) ? list[arguments + index] : fallback;
    }
    /// Before the call everything in the lists is an argument.
    static constexpr std::size_t kNotMade = std::numeric_limits<std::size_t>::max();

    PIServerFunctions_t service_;
    PI_DATA_CATCHALL record_;
    std::size_t integerArguments_ = kNotMade;
    std::size_t realArguments_ = kNotMade;
    std::size_t textArguments_ = kNotMade;
    std::size_t pointerArguments_ = kNotMade;
};
