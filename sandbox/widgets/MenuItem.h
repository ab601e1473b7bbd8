#pragma once

#include <QAction>
#include <QMenu>

#include "sandbox/widgets/HostWidget.h"

namespace sandbox {

/// An entry of the plug-in menu, or of the submenu that another entry becomes thereby.
class MenuItem final : public HostWidget {
  public:
    MenuItem(QMenu& menu, const std::string& caption);
    ~MenuItem() override;

    const char* kind() const override { return "menu item"; }
    QString caption() const override { return caption_; }
    bool setText(const QString& text) override;
    bool setChecked(bool checked) override;
    std::optional<QString> text() const override { return caption_; }
    std::optional<bool> checked() const override { return action_ && action_->isChecked(); }
    void setShown(bool shown) override { action_->setVisible(shown); }
    bool isShown() const override { return action_ && action_->isVisible(); }
    void setEnabled(bool enabled) override { action_->setEnabled(enabled); }
    bool isEnabled() const override { return action_ && action_->isEnabled(); }

    QAction& action() const { return *action_; }
    /// The submenu of this entry, made on first use.
    QMenu& submenu();
    /// Whether the item stands in it.
    bool holds(const MenuItem& item) const {
        return submenu_ && item.action_ && item.action_->parent() == submenu_;
    }

  private:
    QPointer<QAction> action_;
    QPointer<QMenu> submenu_;
    QString caption_;
};

}  // namespace sandbox
