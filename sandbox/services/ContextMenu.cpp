#include "sandbox/services/ContextMenu.h"

#include <algorithm>

#include "sandbox/widgets/Caption.h"

namespace sandbox {

void ContextMenu::add(std::int64_t position, const QString& label, bool enabled,
                      std::function<void()> command) {
    const auto at = std::ranges::upper_bound(items_, position, {}, &Item::position);
    items_.insert(at, {position, label, enabled, std::move(command)});
}

void ContextMenu::fill(QMenu& menu) const {
    for (const Item& item : items_) {
        QAction* action = menu.addAction(Caption::escaped(item.label));
        action->setEnabled(item.enabled);
        QObject::connect(action, &QAction::triggered, &menu, item.command);
    }
}

}  // namespace sandbox
