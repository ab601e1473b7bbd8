#pragma once

#include <cstdlib>
#include <memory>
#include <typeinfo>

#include <cxxabi.h>

#include "kit/Host.h"

namespace kit {

/// The record as the class that the contract names.
template <typename Record>
Record& Host::as_(void* record) {
    if (!record) throw Misuse("there is no record");
    auto* const base = static_cast<PI_DATA_BASE_CLASS*>(record);
    if (auto* const wanted = dynamic_cast<Record*>(base)) return *wanted;
    const auto name = [](const std::type_info& type) {
        const std::unique_ptr<char, void (*)(void*)> text(
            abi::__cxa_demangle(type.name(), nullptr, nullptr, nullptr), std::free);
        return std::string(text ? text.get() : type.name());
    };
    throw Misuse("its record is a " + name(typeid(*base)) + ", not a " + name(typeid(Record)));
}

/// \param last the greatest of the selectors
template <typename Selector>
Selector Host::selector_(const PI_DATA_CATCHALL& record, Selector last) {
    const std::int64_t selector = integer_(record, 0);
    if (selector < 0 || selector > static_cast<std::int64_t>(last))
        throw Misuse("there is no selector " + std::to_string(selector));
    return static_cast<Selector>(selector);
}

template <typename Map>
auto Host::known_(Map& map, void* handle, const char* kind) {
    const auto found = map.find(handle);
    if (found != map.end()) return found;
    if (answer && !handle) throw Gone();  // it was refused, and what it was for goes without
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    if (onCall && number % 16 == 0 && number > 0 && number / 16 <= lastHandle_) throw Gone();
    throw Misuse(std::string(handle ? "the handle is of no " : "a null handle for a ") + kind +
                 (handle ? " that there is" : ""));
}

}  // namespace kit
