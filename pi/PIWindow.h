#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "pi/FunctorTwoParams.h"
#include "pi/PIObject.h"
#include "pi/PIServerFunctions.h"

/// Widgets. Every wrapper holds a handle of the host; with a null handle (the host refused) each
/// operation does nothing and returns the neutral value. Destroying a wrapper destroys its widget, so
/// children are destroyed before their parents. Captions hold the shown text, a tab and the tooltip.
/// Programmatic changes never call the widget's callback back. All: [ui thread]
///
/// A wrapper remembers of its widget what it was last told, or has last read, and sends only what differs
/// from that. So nothing is sent that stands there already, and what a user is typing and has not handed
/// over stays. A handler reads its widget before it sets it: what it refuses was read, and the old value is
/// sent again.
namespace PIGUI {

class PIWindow : public PIObject {
  public:
    ~PIWindow() override;

    virtual void show();
    virtual void hide();
    /// False for a hidden widget, also when only its parent is hidden.
    virtual bool shown() const;
    void setShown(bool shown);

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
    /// Reads the text first: where somebody is typing, the text is set, too.
    void updateValue(const std::string& text);

    std::string getValueText() const;
    std::int32_t getValueInt() const;
    double getValueDouble() const;

    /// Keeps room for so many letters and lines, whatever the widget holds, so that nothing moves about it; 0
    /// as its contents need. Hosts may lack it.
    void setRoom(std::int32_t columns, std::int32_t rows);
    /// Shows that the text of a text field or a spinner is not accepted. While it is marked its callback is
    /// called also when it is left unchanged. \return false when the host cannot
    bool setMarked(bool marked);

    void* handle() const { return handle_; }

  protected:
    using Value = std::variant<std::monostate, std::int32_t, double, std::string>;
    /// What the widget is known to show; empty where that is not known.
    struct Known {
        Value value;
        std::optional<bool> checked;
        bool marked = false;
        std::optional<bool> shown = true;
        std::optional<bool> enabled = true;
    };

    PIWindow() = default;
    /// Takes the handle that a creating service returned and binds it to this wrapper.
    /// \param value what the new widget shows, where that was given to the service
    void bind(void* handle, Value value = {});
    bool isChecked_() const;
    /// Whether using the widget, or its neighbours, changes its check without a handler that reads it: the
    /// host is asked before the check is set.
    virtual bool checkMoves_() const { return false; }

    mutable Known known_;

  private:
    void setFlag_(PIServerFunctions_t service, std::optional<bool>& known, bool flag);
    template <typename Record, typename Given>
    void setValue_(PIServerFunctions_t service, const Given& value);

    void* handle_ = nullptr;
};

}  // namespace PIGUI
