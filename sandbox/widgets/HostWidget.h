#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "pi/HostCallback.h"
#include "sandbox/HandleRegistry.h"

namespace sandbox {

class ContainerWidget;

/// A widget as a plug-in knows it: a Qt widget, the plug-in's wrapper and its callback.
///
/// What a kind of widget does not support answers false or nothing; the service reports it then.
class HostWidget : public HostObject {
  public:
    ~HostWidget() override;

    QString describe() const override;
    bool isPartOfAnother() const override { return parent_ != nullptr; }

    /// What the kind is called in messages: "button".
    virtual const char* kind() const = 0;
    /// The text by which a person tells the widget from others: its own caption, empty without one.
    virtual QString caption() const { return {}; }

    /// Null once Qt has destroyed it with its window.
    QWidget* widget() const { return widget_; }
    ContainerWidget* parent() const { return parent_; }

    /// Values, set by the plug-in: no callback is called.
    virtual bool setInteger(std::int32_t) { return false; }
    virtual bool setReal(double) { return false; }
    virtual bool setText(const QString&) { return false; }
    virtual bool setChecked(bool) { return false; }
    virtual std::optional<QString> text() const { return std::nullopt; }
    virtual std::optional<std::int64_t> integer() const { return std::nullopt; }
    virtual std::optional<double> real() const { return std::nullopt; }
    virtual std::optional<bool> checked() const { return std::nullopt; }

    virtual void setShown(bool shown);
    /// Also when it is new, and Qt shows it in a moment.
    virtual bool isShown() const;
    virtual void setEnabled(bool enabled) {
        if (widget_) widget_->setEnabled(enabled);
    }
    virtual bool isEnabled() const { return widget_ && widget_->isEnabled(); }

    /// Keeps room for so many letters and lines, whatever the widget holds; 0 as the contents need.
    virtual void setRoom(int columns, int rows);
    /// Shows that its text is not accepted. \return false for a widget without a text of the user's
    virtual bool setMarked(bool) { return false; }

    /// Whether the layout should give it the width (the height) that is left.
    virtual bool wantsWidth() const;
    virtual bool wantsHeight() const;

    PIObject* wrapper() const { return wrapper_; }
    void setWrapper(PIObject* wrapper) { wrapper_ = wrapper; }
    void setCallback(FunctorTwoParams__* callback) { callback_ = callback; }
    /// Calls the callback with the wrapper as sender. The widget may be gone when this returns.
    void activate(void* data = nullptr);

  protected:
    HostWidget() = default;
    void setWidget(QWidget* widget) { widget_ = widget; }

  private:
    friend class ContainerWidget;

    QPointer<QWidget> widget_;
    ContainerWidget* parent_ = nullptr;
    PIObject* wrapper_ = nullptr;
    FunctorTwoParams__* callback_ = nullptr;
};

/// A widget that holds others, in the order in which they were added.
class ContainerWidget : public HostWidget {
  public:
    ~ContainerWidget() override;

    const std::vector<HostWidget*>& children() const { return children_; }
    /// Puts the child behind those that are there.
    void adopt(HostWidget& child);
    /// The child is going.
    void release(HostWidget& child);
    /// The child wants another share of the room than when it was placed.
    virtual void roomChanged(HostWidget&) {}

    void setRoom(int columns, int rows) override;
    bool wantsWidth() const override { return fillsWidth_; }
    bool wantsHeight() const override { return fillsHeight_; }

  protected:
    /// Lays the child's Qt widget out; it is in `children()` already.
    virtual void place(HostWidget& child) = 0;
    virtual void removed(HostWidget&) {}
    void setFilling(std::uint32_t layoutOptions);

  private:
    std::vector<HostWidget*> children_;
    bool fillsWidth_ = false;
    bool fillsHeight_ = false;
};

}  // namespace sandbox
