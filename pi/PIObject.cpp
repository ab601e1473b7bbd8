#include "pi/PIObject.h"

#include <algorithm>

PIGarbageCollector* g_PI_GarbageCollector = nullptr;

PIObject::~PIObject() {
    if (collector_) collector_->remove(this);
}

PIGarbageCollector::~PIGarbageCollector() {
    beingDestroyed_ = true;
    for (auto at = objects_.size(); at-- > 0;) {
        PIObject* object = objects_[at];
        if (!object) continue;
        object->collector_ = nullptr;
        delete object;
    }
}

void PIGarbageCollector::add(PIObject* object) {
    if (!object || object->collector_ == this) return;
    if (object->collector_) object->collector_->remove(object);
    object->collector_ = this;
    objects_.push_back(object);
}

void PIGarbageCollector::remove(PIObject* object) {
    const auto at = std::find(objects_.begin(), objects_.end(), object);
    if (at == objects_.end()) return;
    object->collector_ = nullptr;
    // While the collector dies it walks this array: leave a hole, keep the places.
    if (beingDestroyed_)
        *at = nullptr;
    else
        objects_.erase(at);
}
