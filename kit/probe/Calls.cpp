#include "kit/probe/Calls.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>
#include <sstream>
#include <thread>
#include <utility>

namespace probe {

PIServiceTable* services = nullptr;
void* instance = nullptr;
std::string fault;
bool isOpen = false;
std::function<void(Id)> onCall;

namespace {

class Functor final : public FunctorTwoParams__ {
  public:
    explicit Functor(Function function) : function_(std::move(function)) {}
    int operator()(PIObject* sender, void* data) override {
        if (isHostsThread(-1) && isOpen) function_(sender, data);
        return 1;
    }
    int Call(PIObject* sender, void* data) override { return (*this)(sender, data); }

  private:
    Function function_;
};

std::vector<std::unique_ptr<Functor>> functors;

constexpr int kNone = -2;
std::atomic<int> stray{kNone};

/// Takes the arguments off. \return whether they stand there as they were
template <typename Value>
bool takeOff(std::vector<Value>& all, const std::vector<Value>& arguments) {
    const auto count = static_cast<std::ptrdiff_t>(arguments.size());
    if (all.size() < arguments.size() || !std::equal(arguments.begin(), arguments.end(), all.begin()))
        return false;
    all.erase(all.begin(), all.begin() + count);
    return true;
}

}  // namespace

bool isHostsThread(int event) {
    static const std::thread::id first = std::this_thread::get_id();
    if (std::this_thread::get_id() == first) return true;
    stray = event;
    return false;
}

std::string strayEntry() {
    const int event = stray;
    return event == kNone ? "" : event < 0 ? "a callback" : "event " + std::to_string(event);
}

PIServiceResult call(Id service, void* record) {
    fault.clear();
    if (onCall) onCall(service);
    try {
        return services ? services->handle(instance, service, record) : 0;
    } catch (const std::exception& error) {
        fault = std::string("it throws \"").append(error.what()).append("\"");
    } catch (...) {
        fault = "it throws something";
    }
    return 0;
}

Answer ask(Id service, const Arguments& arguments) {
    PI_DATA_CATCHALL record;
    record.integers = arguments.integers;
    record.doubles = arguments.doubles;
    record.strings = arguments.strings;
    record.pointers = arguments.pointers;
    Answer answer;
    answer.result = call(service, static_cast<void*>(&record));
    answer.integers = std::move(record.integers);
    answer.doubles = std::move(record.doubles);
    answer.strings = std::move(record.strings);
    answer.pointers = std::move(record.pointers);
    const bool kept[] = {
        takeOff(answer.integers, arguments.integers), takeOff(answer.doubles, arguments.doubles),
        takeOff(answer.strings, arguments.strings), takeOff(answer.pointers, arguments.pointers)};
    if (fault.empty() && !std::ranges::all_of(kept, [](bool each) { return each; }))
        fault = "the results do not stand behind the arguments: " + answer.text();
    answer.fault = fault;
    return answer;
}

std::string Answer::text() const {
    std::ostringstream text;
    text.precision(15);
    text << "returned " << result;
    for (const auto integer : integers) text << ", integer " << integer;
    for (const auto real : doubles) text << ", real " << real;
    for (const auto& string : strings) text << ", text \"" << string << '"';
    for (const auto* pointer : pointers) text << ", pointer " << pointer;
    return text.str();
}

FunctorTwoParams__* callback(Function function) {
    return functors.emplace_back(std::make_unique<Functor>(std::move(function))).get();
}

void freeCallbacks() {
    functors.clear();
}

}  // namespace probe
