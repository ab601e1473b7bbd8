#pragma once

#include <QAction>
#include <QMenu>
#include <QPointer>

#include "pi/HostCallback.h"
#include "sandbox/HandleRegistry.h"

namespace sandbox {

/// A named command of a plug-in's; PluginActions puts it into the actions menu. The plug-in alone sets its
/// check mark: choosing the command only tells which state is asked for.
class HostAction final : public HostObject {
  public:
    HostAction(QMenu& menu, const QString& ownerName, const QString& label, FunctorTwoParams__* callback);
    ~HostAction() override;

    QString describe() const override { return QString("action \"%1\"").arg(label_); }
    const QString& ownerName() const { return ownerName_; }
    const QString& label() const { return label_; }
    QAction* action() const { return action_; }
    void setChecked(bool checked);
    bool isChecked() const { return action_ && action_->isChecked(); }

  private:
    void triggered();

    QPointer<QAction> action_;
    QString ownerName_;
    QString label_;
    FunctorTwoParams__* callback_;
};

}  // namespace sandbox
