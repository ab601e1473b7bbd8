#pragma once

#include <cstdint>
#include <string>

#include "pi/FunctorTwoParams.h"
#include "pi/PIObject.h"
#include "pi/PIServerFunctions.h"

/// Widgets. Every wrapper holds a handle of the host; with a null handle (the host refused) each
/// operation does nothing and returns the neutral value. Destroying a wrapper destroys its widget, so
/// children are destroyed before their parents. Captions hold the shown text, a tab and the tooltip.
/// Programmatic changes never call the widget's callback back. All: [ui thread]
namespace PIGUI {

class PIWindow : public PIObject {
  public:
    ~PIWindow() override;

    virtual void show();
    virtual void hide();
    /// False for a hidden widget, also when only its parent is hidden.
    virtual bool shown() const;

    void enable();
    void disable();
    void setEnabled(bool enabled);

    void check();
    void uncheck();
    void setCheck(bool checked);

    /// Replaces the widget's callback; null removes it.
    void mapFunction(FunctorTwoParams__* callback);

    void setValue(std::int32_t value);
    void setValue(double value);
    void setValue(const std::string& text);
    /// Sets the text only where it differs, so that a cursor or selection in the field survives.
    void updateValue(const std::string& text);

    std::string getValueText() const;
    std::int32_t getValueInt() const;
    double getValueDouble() const;

    void* handle() const { return handle_; }

  protected:
    PIWindow() = default;
    /// Takes the handle that a creating service returned and binds it to this wrapper.
    void bind(void* handle);
    bool isChecked_() const;

  private:
    void* handle_ = nullptr;
};

}  // namespace PIGUI
