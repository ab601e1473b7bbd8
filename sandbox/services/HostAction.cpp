#include "sandbox/services/HostAction.h"

#include "sandbox/Plugin.h"
#include "sandbox/widgets/Caption.h"

namespace sandbox {

HostAction::HostAction(QMenu& menu, const QString& ownerName, const QString& label,
                       FunctorTwoParams__* callback)
    : action_(new QAction(Caption::escaped(label), &menu)),
      ownerName_(ownerName),
      label_(label),
      callback_(callback) {
    action_->setStatusTip(ownerName);
    QObject::connect(action_, &QAction::triggered, action_, [this] { triggered(); });
}

HostAction::~HostAction() {
    if (!action_) return;
    action_->setVisible(false);
    action_->setShortcuts(QList<QKeySequence>());
    action_->disconnect();
    action_->deleteLater();
}

void HostAction::setChecked(bool checked) {
    if (!action_) return;
    action_->setCheckable(true);
    action_->setChecked(checked);
}

void HostAction::triggered() {
    std::int32_t asked = 1;
    if (action_->isCheckable()) {
        // Qt has changed the mark already.
        asked = action_->isChecked() ? 1 : 0;
        action_->setChecked(asked == 0);
    }
    owner()->enter("callback of " + describe(),
                   [callback = callback_, &asked] { callback->Call(nullptr, &asked); });
}

}  // namespace sandbox
