#pragma once

#include <QString>
#include <cstdint>
#include <map>
#include <memory>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace sandbox {

class Plugin;

/// Something that the host made for a plug-in, which knows it by a handle only.
class HostObject {
  public:
    HostObject() = default;
    virtual ~HostObject() = default;
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;

    /// For messages: `dialog "Overlay Editor"`.
    virtual QString describe() const = 0;
    /// Whether the plug-in has to give it back before it is closed.
    virtual bool isPluginsOwn() const { return true; }
    /// Whether another object destroys it; such objects are not named one by one when they are left.
    virtual bool isPartOfAnother() const { return false; }

    void* handle() const { return handle_; }
    /// Who asked for it; null for the host's own.
    Plugin* owner() const { return owner_; }

  private:
    friend class HandleRegistry;
    void* handle_ = nullptr;
    Plugin* owner_ = nullptr;
};

/// Owns every HostObject and hands out their handles. A handle is never used twice, so one that outlived
/// its object is told apart from a live one.
class HandleRegistry {
  public:
    /// Takes ownership.
    template <typename Object>
    Object* add(std::unique_ptr<Object> object, Plugin* owner) {
        Object* added = object.get();
        insert(std::move(object), owner);
        return added;
    }

    /// Null for a handle that was never given out or whose object is gone.
    HostObject* find(void* handle) const;
    template <typename Object>
    Object* find(void* handle) const {
        return dynamic_cast<Object*>(find(handle));
    }
    /// Whether an object once had this handle.
    bool wasGivenOut(void* handle) const;

    /// Destroys the object; an unknown handle is ignored.
    void remove(void* handle);

    /// In the order of their creation.
    std::vector<HostObject*> ownedBy(const Plugin* owner) const;
    template <typename Object>
    std::vector<Object*> all() const {
        std::vector<Object*> found;
        static_assert(std::is_final_v<Object>, "what it is tells whether it is one, at once");
        for (const auto& [handle, object] : objects_)
            if (typeid(*object) == typeid(Object)) found.push_back(static_cast<Object*>(object.get()));
        return found;
    }

  private:
    void insert(std::unique_ptr<HostObject> object, Plugin* owner);

    std::map<std::uintptr_t, std::unique_ptr<HostObject>> objects_;
    std::uintptr_t last_ = kFirst - kStep;
    static constexpr std::uintptr_t kFirst = 0x10000;
    static constexpr std::uintptr_t kStep = 16;
};

}  // namespace sandbox
