#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace sandbox {

/// While it lives the mouse's shape tells that something takes time: Qt::WaitCursor when nothing else goes on
/// meanwhile, Qt::BusyCursor when all else does.
class BusyCursor {
  public:
    explicit BusyCursor(Qt::CursorShape shape) { QGuiApplication::setOverrideCursor(shape); }
    ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

}  // namespace sandbox
