#include "sandbox/widgets/DialogBox.h"

#include "pi/HostStructures.h"
#include "sandbox/Plugin.h"
#include "sandbox/widgets/Caption.h"
#include "sandbox/widgets/DialogWindow.h"

namespace sandbox {

namespace {

/// The widgets of a tree that take the focus, in the order in which they stand.
void collectFocusable(const ContainerWidget& container, std::vector<QWidget*>& found) {
    for (HostWidget* child : container.children()) {
        if (const auto* inner = dynamic_cast<const ContainerWidget*>(child)) {
            collectFocusable(*inner, found);
        } else if (QWidget* widget = child->widget()) {
            QList<QWidget*> candidates = widget->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
            candidates.prepend(widget);
            for (QWidget* candidate : candidates) {
                if (!(candidate->focusPolicy() & Qt::TabFocus)) continue;
                found.push_back(candidate);
                break;
            }
        }
    }
}

}  // namespace

DialogBox::DialogBox(QWidget* owner, const std::string& title) {
    auto* window = new DialogWindow(owner);
    setWidget(window);
    setFilling(PIGUI::PILayoutFillX | PIGUI::PILayoutFillY);
    setText(QString::fromStdString(title));
    window->closed = [this] { userClosed(); };
    window->contentsChanged = [this] {
        if (widget() && widget()->isVisible()) fit_();
    };
    window->focusAboutToMove = [this] { orderFocus_(); };
}

DialogBox::~DialogBox() {
    // The window outlives this by an event or two.
    if (widget()) window_().closed = window_().contentsChanged = window_().focusAboutToMove = nullptr;
}

DialogWindow& DialogBox::window_() const {
    return *static_cast<DialogWindow*>(widget());
}

bool DialogBox::setText(const QString& text) {
    widget()->setWindowTitle(Caption::parse(text.toStdString()).text);
    return true;
}

void DialogBox::place(HostWidget& child) {
    if (footer_) {
        window_().addToColumns(*footer_->widget(), footer_->wantsWidth(), footer_->wantsHeight());
        footer_ = nullptr;
    }
    const auto* box = dynamic_cast<const BoxWidget*>(&child);
    if (box && box->isRow() && children().size() > 1) {
        footer_ = &child;
        window_().setFooter(*child.widget());
    } else {
        window_().addToColumns(*child.widget(), child.wantsWidth(), child.wantsHeight());
    }
}

void DialogBox::removed(HostWidget& child) {
    if (&child == footer_) footer_ = nullptr;
    if (widget() && child.widget()) window_().forget(*child.widget());
}

void DialogBox::fit_() {
    for (HostWidget* child : children())
        if (auto* group = dynamic_cast<GroupBox*>(child)) group->alignTables();
    window_().fit();
}

void DialogBox::orderFocus_() const {
    std::vector<QWidget*> order;
    collectFocusable(*this, order);
    for (std::size_t i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
}

void DialogBox::open() {
    DialogWindow& window = window_();
    window.startWithOneColumn();
    fit_();
    if (!wasOpen_) {
        wasOpen_ = true;
        // Over the left edge of the view, each further dialog a little lower and to the right.
        int step = 0;
        for (const auto* other : window.parentWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
            if (other->isWindow() && other->isVisible()) ++step;
        const QRect owner = window.parentWidget()->geometry();
        window.move(owner.topLeft() + QPoint(24 + 28 * step, 64 + 28 * step));
        window.keepOnScreen();
    }
    window.show();
    window.raise();
    window.activateWindow();
}

void DialogBox::userClosed() {
    widget()->hide();
    if (!observer_) return;
    owner()->enter("close observer of " + describe(),
                   [observer = observer_, wrapper = wrapper()] { observer->onClose(wrapper); });
}

}  // namespace sandbox
