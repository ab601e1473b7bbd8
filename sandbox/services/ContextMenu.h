#pragma once

#include <QMenu>
#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

#include "sandbox/HandleRegistry.h"

namespace sandbox {

/// The items of a context menu while host and plug-ins gather them. Its handle is good for that long.
class ContextMenu final : public HostObject {
  public:
    QString describe() const override { return "context menu"; }

    /// Items are ordered by their position; those of one position keep the order of their coming.
    void add(std::int64_t position, const QString& label, bool enabled, std::function<void()> command);
    void fill(QMenu& menu) const;

  private:
    struct Item {
        std::int64_t position;
        QString label;
        bool enabled;
        std::function<void()> command;
    };
    std::vector<Item> items_;
};

}  // namespace sandbox
