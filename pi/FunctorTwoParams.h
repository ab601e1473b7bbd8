#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "pi/EntryScope.h"
#include "pi/HostCallback.h"

/// Owns every callback object from its creation until clean-up.
extern std::vector<FunctorTwoParams__*> g_FunctorList;

/// Deletes every callback object, front to back, and empties the list; its storage is kept.
void freeFunctors();

/// How many commands the user has given with widgets: calls with a sender. Timeouts and observers have none.
std::uint64_t commandsGiven();
/// \param sender what the user has used, null for what is no widget of ours
void countCommand(PIObject* sender = nullptr);
/// Told of each command before it does anything; empty for nobody. The sender is as in countCommand.
void setCommandListener(std::function<void(PIObject* sender)> listener);

/// To be called in a catch block: makes a message of what was thrown, and returns the neutral result.
int callbackFailed() noexcept;

/// What becomes of a call that comes while others are at work, see EntryScope.
enum class Arrival {
    Waits,  ///< called later, without a sender, and with a copy of the check state that an action's data is
    AtOnce  ///< called now: it only notes something, as that a timeout has fired, and hands on to one that
            ///< waits
};

/// Has a callback called when the running entry is over, once however often it is asked with the same state.
/// \param state null, or the check state that an action's callback is given
void callLater(FunctorTwoParams__* callback, const std::int32_t* state = nullptr);

/// Calls one member function of one object, and lets no exception out to the host. Once the object is
/// disconnected it does nothing and returns 0, so that the host may still hold it when its object is gone.
template <typename Object>
class CustomCallbackFunctor final : public FunctorTwoParams__ {
  public:
    using Handler = int (Object::*)(PIObject*, void*);

    /// \param object shared with the list that made the callback, which sets it null to disconnect
    CustomCallbackFunctor(std::shared_ptr<Object*> object, Handler handler, Arrival arrival)
        : object_(std::move(object)), handler_(handler), arrival_(arrival) {}

    int operator()(PIObject* sender, void* data) override {
        if (!*object_) return 0;
        if (!EntryScope::isNested()) {
            const EntryScope scope;
            if (sender) countCommand(sender);
            return call_(sender, data);
        }
        if (sender) countCommand(sender);
        if (arrival_ == Arrival::AtOnce) return call_(sender, data);
        callLater(this, static_cast<const std::int32_t*>(data));
        return 1;
    }
    int Call(PIObject* sender, void* data) override { return (*this)(sender, data); }

  private:
    int call_(PIObject* sender, void* data) {
        try {
            return ((*object_)->*handler_)(sender, data);
        } catch (...) {
            return callbackFailed();
        }
    }

    std::shared_ptr<Object*> object_;
    Handler handler_;
    Arrival arrival_;
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
                             Arrival arrival = Arrival::Waits) {
        auto functor = std::make_unique<CustomCallbackFunctor<Object>>(object_, handler, arrival);
        g_FunctorList.push_back(functor.get());
        return functor.release();
    }

    /// Makes all of them inert, also those that wait.
    void disconnect() { *object_ = nullptr; }

  private:
    std::shared_ptr<Object*> object_;
};
