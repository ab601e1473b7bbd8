#include "sandbox/WindowPlaces.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScreen>
#include <QTimer>
#include <algorithm>

#include "sandbox/HandleRegistry.h"
#include "sandbox/MainWindow.h"
#include "sandbox/Plugin.h"
#include "sandbox/Settings.h"
#include "sandbox/widgets/DialogBox.h"
#include "sandbox/widgets/MenuItem.h"

namespace sandbox {

namespace {

const char* const kGeometryKey = "Host/Window";
const char* const kScreenKey = "Host/Screen";
const char* const kLayoutKey = "Host/Layout";
const char* const kDialogsKey = "Host/Dialogs";

QString screenOf(const QWidget& window) {
    const QSize size = window.screen()->availableSize();
    return QString("%1x%2").arg(size.width()).arg(size.height());
}

/// The place and size that a window had may have been those of a larger screen.
void fitIntoScreen(QWidget& window) {
    if (window.isMaximized() || window.isFullScreen()) return;
    // What a window manager's frame takes, and whether it counts, there is nothing to ask yet.
    constexpr int kTitle = 30;
    constexpr int kSide = 8;
    const QRect screen = window.screen()->availableGeometry().adjusted(0, kTitle, 0, 0);
    const QSize size = window.size().boundedTo(screen.size() - QSize(kSide, kTitle + kSide));
    const QRect room = screen.adjusted(0, 0, -size.width() - kSide, -size.height() - kTitle - kSide);
    const QPoint place(std::clamp(window.x(), room.left(), room.right() + 1),
                       std::clamp(window.y(), room.top(), room.bottom() + 1));
    window.resize(size);
    if (place != window.pos()) window.move(place);
}

/// By what a dialog and its menu item are known: "OverlayEditor: Overlay Editor".
QString nameOf(const HostWidget& widget) {
    QString caption = widget.caption();
    if (caption.endsWith("...")) caption.chop(3);
    return widget.owner() ? widget.owner()->name() + ": " + caption : QString();
}

}  // namespace

WindowPlaces::WindowPlaces(MainWindow& window, const HandleRegistry& handles, Settings& settings)
    : window_(window), handles_(handles), settings_(settings) {
    QCoreApplication::instance()->installEventFilter(this);
}

void WindowPlaces::keep() {
    settings_.setValue(kGeometryKey, window_.saveGeometry().toBase64());
    settings_.setValue(kScreenKey, screenOf(window_));
    settings_.setValue(kLayoutKey, window_.saveState().toBase64());
    QStringList open;
    for (const DialogBox* dialog : handles_.all<DialogBox>())
        if (dialog->isShown()) open << nameOf(*dialog);
    settings_.setValue(kDialogsKey, open.join('\n'));
}

void WindowPlaces::restoreWindow() {
    const auto bytes = [this](const char* key) {
        return QByteArray::fromBase64(settings_.value(key).toLatin1());
    };
    const bool known = window_.restoreGeometry(bytes(kGeometryKey));
    if (known && settings_.value(kScreenKey) != screenOf(window_)) fitIntoScreen(window_);
    window_.restoreState(bytes(kLayoutKey));
}

void WindowPlaces::reopenDialogs() {
    const QStringList open = settings_.value(kDialogsKey).split('\n', Qt::SkipEmptyParts);
    // When the event loop runs, as for a person's choice.
    for (MenuItem* item : handles_.all<MenuItem>())
        if (open.contains(nameOf(*item)))
            QTimer::singleShot(0, &item->action(), [action = &item->action()] { action->trigger(); });
}

bool WindowPlaces::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool placed = type == QEvent::Move || type == QEvent::Resize || type == QEvent::WindowStateChange;
    if (watched == &window_ ? placed
                            : (type == QEvent::Show || type == QEvent::Hide) && watched->isWidgetType() &&
                                  static_cast<QWidget*>(watched)->isWindow())
        emit changed();
    return false;
}

}  // namespace sandbox
