#include "sandbox/HandleRegistry.h"

namespace sandbox {

void HandleRegistry::insert(std::unique_ptr<HostObject> object, Plugin* owner) {
    last_ += kStep;
    object->handle_ = reinterpret_cast<void*>(last_);
    object->owner_ = owner;
    objects_.emplace_hint(objects_.end(), last_, std::move(object));
}

HostObject* HandleRegistry::find(void* handle) const {
    const auto at = objects_.find(reinterpret_cast<std::uintptr_t>(handle));
    return at == objects_.end() ? nullptr : at->second.get();
}

bool HandleRegistry::wasGivenOut(void* handle) const {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    return value >= kFirst && value <= last_ && (value - kFirst) % kStep == 0;
}

void HandleRegistry::remove(void* handle) {
    const auto at = objects_.find(reinterpret_cast<std::uintptr_t>(handle));
    if (at == objects_.end()) return;
    // Out of the map first: the object's destructor may look around.
    const auto object = std::move(at->second);
    objects_.erase(at);
}

std::vector<HostObject*> HandleRegistry::ownedBy(const Plugin* owner) const {
    std::vector<HostObject*> found;
    for (const auto& [handle, object] : objects_)
        if (object->owner() == owner) found.push_back(object.get());
    return found;
}

}  // namespace sandbox
