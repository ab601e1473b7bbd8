#pragma once

#include <vector>

class PIGarbageCollector;

/// Base of everything that the plug-in shows to the host under a handle.
class PIObject {
  public:
    PIObject() = default;
    /// Leaves its garbage collector, when it has one.
    virtual ~PIObject();
    PIObject(const PIObject&) = delete;
    PIObject& operator=(const PIObject&) = delete;

    PIGarbageCollector* collector() const { return collector_; }

  private:
    friend class PIGarbageCollector;
    PIGarbageCollector* collector_ = nullptr;
};

/// Owns host-facing wrappers that must outlive their creators. Clean-up destroys it.
class PIGarbageCollector {
  public:
    PIGarbageCollector() = default;
    /// Deletes the objects from the last to the first, each without its back-link.
    virtual ~PIGarbageCollector();
    PIGarbageCollector(const PIGarbageCollector&) = delete;
    PIGarbageCollector& operator=(const PIGarbageCollector&) = delete;

    /// Takes ownership.
    void add(PIObject* object);
    /// Gives ownership back to the caller; an object that is not owned here is ignored.
    void remove(PIObject* object);
    bool isBeingDestroyed() const { return beingDestroyed_; }

  private:
    std::vector<PIObject*> objects_;
    bool beingDestroyed_ = false;
};

/// Null until something needs it.
extern PIGarbageCollector* g_PI_GarbageCollector;
