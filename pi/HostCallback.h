#pragma once

class PIObject;

/// A command callback. The host calls Call(sender, data) when the user uses a widget, menu item or action,
/// and when a timeout is due. The plug-in makes it and owns it; it lives until HPI_CleanUpPlugin, also when
/// the widget that it was given with is gone. The host keeps the pointer as long as that widget, item, action
/// or timeout lives, and never deletes it.
class FunctorTwoParams__ {
  public:
    FunctorTwoParams__() = default;
    virtual ~FunctorTwoParams__() = default;
    FunctorTwoParams__(const FunctorTwoParams__&) = delete;
    FunctorTwoParams__& operator=(const FunctorTwoParams__&) = delete;

    /// \param sender the wrapper bound to the widget (service 100), null when there is none
    /// \param data null; of an action the check state asked for, const std::int32_t*; of a timeout the user
    ///        data
    /// \return 1 when handled
    virtual int operator()(PIObject* sender, void* data) = 0;
    virtual int Call(PIObject* sender, void* data) = 0;
};
