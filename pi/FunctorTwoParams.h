#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "pi/EntryScope.h"
#include "pi/HostCallback.h"

/// Owns every callback object from its creation until clean-up.
extern std::vector<FunctorTwoParams__*> g_FunctorList;

/// Deletes every callback object, front to back, and empties the list; its storage is kept.
void freeFunctors();

/// To be called in a catch block: makes a message of what was thrown, and returns the neutral result.
int callbackFailed() noexcept;

/// While one exists callbacks do nothing and return 0. To be opened where the things that callbacks work on
/// are made, replaced or destroyed: what the host calls from inside the services of that would find them half
/// there.
class CallbackPause {
  public:
    CallbackPause() { ++open_; }
    ~CallbackPause() { --open_; }
    CallbackPause(const CallbackPause&) = delete;
    CallbackPause& operator=(const CallbackPause&) = delete;
    static bool isOn() { return open_ > 0; }

  private:
    static int open_;
};

/// What a callback does during a CallbackPause. Those that only look at what is there may go on.
enum class WhenPaused { Skip, Call };

/// Calls one member function of one object, and lets no exception out to the host. Once the object is
/// disconnected it does nothing and returns 0, so that the host may still hold it when its object is gone.
template <typename Object>
class CustomCallbackFunctor final : public FunctorTwoParams__ {
  public:
    using Handler = int (Object::*)(PIObject*, void*);

    /// \param object shared with the list that made the callback, which sets it null to disconnect
    CustomCallbackFunctor(std::shared_ptr<Object*> object, Handler handler, WhenPaused whenPaused)
        : object_(std::move(object)), handler_(handler), whenPaused_(whenPaused) {}

    int operator()(PIObject* sender, void* data) override {
        Object* const object = *object_;
        if (!object || (whenPaused_ == WhenPaused::Skip && CallbackPause::isOn())) return 0;
        const EntryScope scope;
        try {
            return (object->*handler_)(sender, data);
        } catch (...) {
            return callbackFailed();
        }
    }
    int Call(PIObject* sender, void* data) override { return (*this)(sender, data); }

  private:
    std::shared_ptr<Object*> object_;
    Handler handler_;
    WhenPaused whenPaused_;
};

/// Makes the callbacks that one object hands out. g_FunctorList owns them and may free them before the
/// object goes; this list makes them inert when the object dies. Make it the object's last member, so that
/// it goes first; an object whose widgets are members behind the list calls disconnect() at the start of
/// its destructor.
template <typename Object>
class CallbackList {
  public:
    explicit CallbackList(Object* object) : object_(std::make_shared<Object*>(object)) {}
    ~CallbackList() { disconnect(); }
    CallbackList(const CallbackList&) = delete;
    CallbackList& operator=(const CallbackList&) = delete;

    /// A new callback of the object's handler, appended to g_FunctorList.
    FunctorTwoParams__* make(typename CustomCallbackFunctor<Object>::Handler handler,
                             WhenPaused whenPaused = WhenPaused::Skip) {
        auto functor = std::make_unique<CustomCallbackFunctor<Object>>(object_, handler, whenPaused);
        g_FunctorList.push_back(functor.get());
        return functor.release();
    }

    /// Makes all of them inert. A host may call a callback from inside the call that destroys its widget.
    void disconnect() { *object_ = nullptr; }

  private:
    std::shared_ptr<Object*> object_;
};
