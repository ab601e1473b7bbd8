#include "Services.h"

namespace probe {

PIServiceTable* services = nullptr;
void* instance = nullptr;

namespace {

std::vector<std::unique_ptr<Functor>>* callbacks = nullptr;

template <typename Value>
std::vector<Value> tail(const std::vector<Value>& list, std::size_t arguments) {
    return {list.begin() + static_cast<std::ptrdiff_t>(arguments), list.end()};
}

}  // namespace

PIServiceResult call(PIServerFunctions_t service, void* record) {
    return services->handle(instance, service, record);
}

Answer ask(PIServerFunctions_t service, const Catchall& arguments) {
    PI_DATA_CATCHALL record;
    record.integers = arguments.integers;
    record.doubles = arguments.reals;
    record.strings = arguments.texts;
    record.pointers = arguments.pointers;
    Answer answer;
    answer.result = call(service, &record);
    answer.integers = tail(record.integers, arguments.integers.size());
    answer.reals = tail(record.doubles, arguments.reals.size());
    answer.texts = tail(record.strings, arguments.texts.size());
    answer.pointers = tail(record.pointers, arguments.pointers.size());
    return answer;
}

Functor* callback(Functor::Function function) {
    if (!callbacks) callbacks = new std::vector<std::unique_ptr<Functor>>;
    callbacks->push_back(std::make_unique<Functor>(std::move(function)));
    return callbacks->back().get();
}

void freeCallbacks() {
    delete std::exchange(callbacks, nullptr);
}

void say(const std::string& text) {
    ask(PIServerFunctions_t::Notify, PISelector::Notify::Message,
        {.integers = {5}, .texts = {"probe", text}});
}

}  // namespace probe
