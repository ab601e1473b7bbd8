#include "sandbox/widgets/DialogBox.h"

#include <QCloseEvent>
#include <QScreen>

#include "pi/HostStructures.h"
#include "sandbox/widgets/Caption.h"

namespace sandbox {

namespace {

/// The Qt window; it hands the user's closing on.
class DialogWindow final : public QWidget {
  public:
    explicit DialogWindow(QWidget* owner) : QWidget(owner, Qt::Dialog) {}
    std::function<void()> closed;

  protected:
    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        if (closed) closed();
    }
};

}  // namespace

DialogBox::DialogBox(QWidget* owner, const std::string& title)
    : BoxWidget("dialog", new DialogWindow(owner), Direction::Column,
                PIGUI::PILayoutFillX | PIGUI::PILayoutFillY) {
    setText(QString::fromStdString(title));
    static_cast<DialogWindow*>(widget())->closed = [this] { userClosed(); };
}

bool DialogBox::setText(const QString& text) {
    widget()->setWindowTitle(Caption::parse(text.toStdString()).text);
    return true;
}

void DialogBox::open() {
    QWidget* window = widget();
    if (!wasOpen_) {
        wasOpen_ = true;
        // Over the left edge of the view, each further dialog a little lower and to the right.
        int step = 0;
        for (const auto* other : window->parentWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
            if (other->isWindow() && other->isVisible()) ++step;
        const QRect owner = window->parentWidget()->geometry();
        window->adjustSize();
        const QRect room = window->screen()->availableGeometry();
        QPoint corner = owner.topLeft() + QPoint(24 + 28 * step, 64 + 28 * step);
        corner.setX(std::max(room.left(), std::min(corner.x(), room.right() - window->width())));
        corner.setY(std::max(room.top(), std::min(corner.y(), room.bottom() - window->height())));
        window->move(corner);
    }
    window->show();
    window->raise();
    window->activateWindow();
}

void DialogBox::userClosed() {
    widget()->hide();
    if (observer_) observer_->onClose(wrapper());
}

}  // namespace sandbox
