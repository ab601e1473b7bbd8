#pragma once

#include <memory>
#include <vector>

class PIObject;

/// A command callback. The host calls Call(sender, data) for a widget, menu item, action or timeout.
class FunctorTwoParams__ {
  public:
    FunctorTwoParams__() = default;
    virtual ~FunctorTwoParams__() = default;
    FunctorTwoParams__(const FunctorTwoParams__&) = delete;
    FunctorTwoParams__& operator=(const FunctorTwoParams__&) = delete;

    /// \param sender the wrapper bound to the widget, null when there is none
    /// \param data what the contract says of the service
    /// \return 1 when handled
    virtual int operator()(PIObject* sender, void* data) = 0;
    virtual int Call(PIObject* sender, void* data) = 0;
};

/// Owns every callback object from its creation until clean-up.
extern std::vector<FunctorTwoParams__*> g_FunctorList;

/// Deletes every callback object, front to back, and empties the list; its storage is kept.
void freeFunctors();

/// Calls one member function of one object. Once disconnected it does nothing and returns 0, so that the
/// host may still hold it when its object is gone.
template <typename Object>
class CustomCallbackFunctor final : public FunctorTwoParams__ {
  public:
    using Handler = int (Object::*)(PIObject*, void*);

    CustomCallbackFunctor(Object* object, Handler handler) : object_(object), handler_(handler) {}

    int operator()(PIObject* sender, void* data) override {
        return object_ ? (object_->*handler_)(sender, data) : 0;
    }
    int Call(PIObject* sender, void* data) override { return (*this)(sender, data); }

    void disconnect() { object_ = nullptr; }

  private:
    Object* object_;
    Handler handler_;
};

/// The callbacks that one object has handed out. g_FunctorList owns them; this list makes them inert
/// when the object dies. Make it the object's last member, so that it goes first; an object whose widgets
/// are members behind the list calls disconnect() at the start of its destructor.
template <typename Object>
class CallbackList {
  public:
    explicit CallbackList(Object* object) : object_(object) {}
    ~CallbackList() { disconnect(); }
    CallbackList(const CallbackList&) = delete;
    CallbackList& operator=(const CallbackList&) = delete;

    /// A new callback of the object's handler, appended to g_FunctorList.
    FunctorTwoParams__* make(typename CustomCallbackFunctor<Object>::Handler handler) {
        auto functor = std::make_unique<CustomCallbackFunctor<Object>>(object_, handler);
        functors_.push_back(functor.get());
        g_FunctorList.push_back(functor.get());
        return functor.release();
    }

    /// Makes all of them inert. A host may call a callback from inside the call that destroys its widget.
    void disconnect() {
        for (auto* functor : functors_) functor->disconnect();
    }

  private:
    Object* object_;
    std::vector<CustomCallbackFunctor<Object>*> functors_;
};
