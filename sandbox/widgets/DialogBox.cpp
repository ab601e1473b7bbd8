#include "sandbox/widgets/DialogBox.h"

#include <QMainWindow>
#include <QRegularExpression>
#include <QScreen>
#include <QShortcut>
#include <optional>

#include "pi/HostStructures.h"
#include "sandbox/Plugin.h"
#include "sandbox/Settings.h"
#include "sandbox/widgets/Caption.h"
#include "sandbox/widgets/DialogWindow.h"
#include "sandbox/widgets/Mnemonics.h"

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

void alignGroups(const ContainerWidget& container) {
    for (HostWidget* child : container.children()) {
        if (auto* group = dynamic_cast<GroupBox*>(child))
            group->alignTables();
        else if (const auto* inner = dynamic_cast<const ContainerWidget*>(child))
            alignGroups(*inner);
    }
}

}  // namespace

DialogBox::DialogBox(QWidget* owner, const std::string& title, Settings& sizes) : sizes_(sizes) {
    auto* window = new DialogWindow(owner);
    setWidget(window);
    setFilling(PIGUI::PILayoutFillX | PIGUI::PILayoutFillY);
    setText(QString::fromStdString(title));
    window->closed = [this] { userClosed(); };
    window->contentsChanged = [this] {
        if (widget() && widget()->isVisible()) fit_();
    };
    QObject::connect(new QShortcut(QKeySequence::Save, window), &QShortcut::activated, window,
                     [window] { pressButton(*window, "Save") || pressButton(*window, "Save As..."); });
    window->focusAboutToMove = [this] { orderFocus_(); };
    window->placedByUser = [this] { keepPlace_(); };
    QObject::connect(new QShortcut(kFoldKey, window), &QShortcut::activated, window, [this] {
        if (BoxWidget* columns = columns_()) columns->toggleFold();
    });
}

DialogBox::~DialogBox() {
    // The window outlives this by an event or two.
    if (widget()) window_().forgetCallbacks();
}

DialogWindow& DialogBox::window_() const {
    return *static_cast<DialogWindow*>(widget());
}

void DialogBox::keepPlace_() {
    const QSize size = window_().given();
    const QPoint corner = window_().pos();
    sizes_.setValue(sizeKey_(),
                    QString::asprintf("%dx%d%+d%+d", size.width(), size.height(), corner.x(), corner.y()));
}

QRegularExpressionMatch DialogBox::kept_() const {
    static const QRegularExpression form("^(\\d+)x(\\d+)(?:([+-]\\d+)([+-]\\d+))?$");
    return form.match(sizes_.value(sizeKey_()));
}

BoxWidget* DialogBox::columns_() const {
    for (HostWidget* child : children())
        if (auto* box = dynamic_cast<BoxWidget*>(child); box && box->holdsColumns()) return box;
    return nullptr;
}

bool DialogBox::isFolded_() const {
    const BoxWidget* columns = columns_();
    return columns && columns->isFolded();
}

void DialogBox::folded_() {
    sizes_.setValue(foldKey_(), isFolded_() ? "true" : "");
    // Unfolded again, nothing is narrower than before.
    if (isFolded_()) unfolded_ = window_().size();
    window_().refit(keptSize_(), isFolded_() ? QSize(0, 0) : unfolded_);
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
    alignGroups(*this);
    assignMnemonics(*widget());
    window_().fit();
}

void DialogBox::orderFocus_() const {
    std::vector<QWidget*> order;
    collectFocusable(*this, order);
    for (std::size_t i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
}

void DialogBox::stackColumns_(bool below) const {
    if (BoxWidget* columns = columns_()) columns->stack(below);
}

void DialogBox::open() {
    DialogWindow& window = window_();
    window.startWithOneColumn();
    stackColumns_(false);
    if (BoxWidget* columns = columns_(); columns && !wasOpen_) {
        columns->offerFolding("Hides the left column, or shows it (F9)", [this] { folded_(); });
        columns->fold(sizes_.value(foldKey_()) == "true");
    }
    fit_();
    if (window.isTooWide()) {
        stackColumns_(true);
        fit_();
    }
    if (!wasOpen_) {
        wasOpen_ = true;
        window.give(keptSize_());
        if (const auto place = kept_(); place.hasCaptured(3))
            window.move(place.captured(3).toInt(), place.captured(4).toInt());
        else
            place_();
    }
    window.show();
    // Only what is shown has its looks, and knows its size.
    fit_();
    window.keepOnScreen();
    window.raise();
    window.activateWindow();
}

void DialogBox::place_() {
    DialogWindow& window = window_();
    const QWidget* const owner = window.parentWidget();
    int step = 0;
    for (const auto* other : owner->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (other->isWindow() && other->isVisible()) ++step;
    // Each further dialog stands a little lower.
    const int top = owner->frameGeometry().top() + 28 * step;
    const QRect screen = owner->screen()->availableGeometry();
    const QRect frame = owner->frameGeometry();
    const QSize size = window.frameGeometry().size();
    const auto* const main = qobject_cast<const QMainWindow*>(owner);
    const QWidget& view = main && main->centralWidget() ? *main->centralWidget() : *owner;
    const QRect seen(view.mapToGlobal(QPoint(0, 0)), view.size());
    std::optional<QPoint> best;
    std::int64_t least = 0;
    // Left of the window, right of it, at the left edge of the screen and at the right one.
    for (const int left :
         {frame.left() - size.width(), frame.right() + 1, screen.left(), screen.right() + 1 - size.width()}) {
        const QRect place(QPoint(left, top), size);
        if (place.left() < screen.left() || place.right() > screen.right()) continue;
        const QRect covered = place & seen;
        const std::int64_t area = std::int64_t{covered.width()} * covered.height();
        if (best && area >= least) continue;
        best = place.topLeft();
        least = area;
    }
    window.move(best.value_or(QPoint(screen.left(), top)));
    window.keepOnScreen();
}

void DialogBox::userClosed() {
    widget()->hide();
    if (!observer_) return;
    owner()->enter("close observer of " + describe(),
                   [observer = observer_, wrapper = wrapper()] { observer->onClose(wrapper); });
}

}  // namespace sandbox
