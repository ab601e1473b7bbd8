#include "sandbox/widgets/DialogWindow.h"

#include <QCloseEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <algorithm>

namespace sandbox {

namespace {

constexpr int kSpacing = 6;
constexpr int kMargin = 8;
/// What a window manager's frame takes, before there is one to ask.
constexpr int kFrameHeight = 36;

/// So many items may stand in the second column.
constexpr std::size_t kMovable = 12;

bool inSecond(std::uint32_t second, std::size_t item) {
    return item < kMovable && (second >> item & 1U) != 0;
}

}  // namespace

DialogWindow::DialogWindow(QWidget* owner)
    : QWidget(owner, Qt::Dialog),
      scroll_(new QScrollArea),
      content_(new QWidget),
      column_{new QVBoxLayout, new QVBoxLayout},
      footer_(new QWidget),
      footerLayout_(new QVBoxLayout(footer_)) {
    auto* columns = new QHBoxLayout(content_);
    columns->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    columns->setSpacing(0);
    for (QVBoxLayout* column : column_) {
        column->setSpacing(kSpacing);
        column->addStretch(0);
        columns->addLayout(column, 1);
    }
    columns->setStretchFactor(column_[1], 0);
    footerLayout_->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    footer_->hide();

    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->setWidget(content_);
    content_->installEventFilter(this);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->addWidget(scroll_, 1);
    outer->addWidget(footer_);
}

void DialogWindow::addToColumns(QWidget& widget, bool wantsWidth, bool wantsHeight) {
    forget(widget);
    arranged_.reset();
    items_.push_back({&widget, wantsWidth, wantsHeight});
    arrange(0);
}

void DialogWindow::setFooter(QWidget& widget) {
    footerLayout_->addWidget(&widget);
    footer_->show();
    content_->layout()->setContentsMargins(kMargin, kMargin, kMargin, 0);
}

void DialogWindow::forget(QWidget& widget) {
    std::erase_if(items_, [&widget](const Item& item) { return item.widget == &widget; });
    if (footerLayout_->indexOf(&widget) < 0) return;
    footerLayout_->removeWidget(&widget);
    footer_->hide();
    content_->layout()->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
}

void DialogWindow::arrange(std::uint32_t second) {
    if (arranged_ == second) return;
    arranged_ = second;
    for (QVBoxLayout* column : column_)
        for (const Item& item : items_) column->removeWidget(item.widget);
    for (std::size_t i = 0; i < items_.size(); ++i) {
        const Item& item = items_[i];
        QVBoxLayout* column = column_[inSecond(second, i)];
        // Before the stretch, which takes what no item wants.
        column->insertWidget(column->count() - 1, item.widget, item.wantsHeight ? 1 : 0,
                             item.wantsWidth ? Qt::Alignment() : Qt::AlignLeft);
    }
    const bool two = second != 0;
    static_cast<QHBoxLayout*>(content_->layout())->setSpacing(two ? 2 * kMargin : 0);
    static_cast<QHBoxLayout*>(content_->layout())->setStretchFactor(column_[1], two ? 1 : 0);
}

QRect DialogWindow::whole() const {
    QRect frame = frameGeometry();
    frame.setHeight(std::max(frame.height(), height() + kFrameHeight));
    return frame;
}

QSize DialogWindow::room() const {
    return screen()->availableGeometry().size() - QSize(0, whole().height() - height());
}

QSize DialogWindow::need(std::uint32_t second) const {
    QSize columns[2];
    for (QSize& column : columns) column = QSize(0, 2 * kMargin);
    for (std::size_t i = 0; i < items_.size(); ++i) {
        const QWidget& widget = *items_[i].widget;
        if (widget.isHidden()) continue;
        QSize& column = columns[inSecond(second, i)];
        column.setWidth(std::max(column.width(), widget.minimumSizeHint().width()));
        column.rheight() += widget.minimumSizeHint().height() + kSpacing;
    }
    return {columns[0].width() + columns[1].width() + 4 * kMargin,
            std::max(columns[0].height(), columns[1].height())};
}

std::uint32_t DialogWindow::secondColumn(int height) const {
    const std::uint32_t all = (1U << std::min(items_.size(), kMovable)) - 1U;
    std::uint32_t best = 0;
    const auto shorter = [&](std::uint32_t second) { return need(second).height() < need(best).height(); };
    for (std::uint32_t behind = all & (all << 1U); behind != 0; behind = all & (behind << 1U))
        if (shorter(behind)) best = behind;
    if (need(best).height() <= height) return best;
    for (std::uint32_t second = 2; second <= all; second += 2)
        if (shorter(second)) best = second;
    return best;
}

QSize DialogWindow::wanted() const {
    const QSize contents = content_->sizeHint();
    const int footer = footer_->isHidden() ? 0 : footer_->sizeHint().height();
    const int footerWidth = footer_->isHidden() ? 0 : footer_->sizeHint().width();
    QSize size(std::max(contents.width(), footerWidth), contents.height() + footer);
    const QSize available = room();
    if (content_->minimumSizeHint().height() + footer > available.height())
        size.rwidth() += style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return size.boundedTo(available);
}

void DialogWindow::fit(bool mayShrink) {
    if (fitting_) return;
    fitting_ = true;
    const int before = columns_;
    content_->layout()->activate();
    const QSize available = room();
    const int footer = footer_->isHidden() ? 0 : footer_->sizeHint().height();
    const int height = available.height() - footer;
    std::uint32_t second = columns_ == 2 || need(0).height() > height ? secondColumn(height) : 0;
    if (need(second).width() > available.width()) second = 0;
    columns_ = second != 0 ? 2 : 1;
    arrange(second);
    content_->layout()->activate();
    const QSize size = wanted();
    scroll_->setMinimumWidth(std::min(content_->minimumSizeHint().width(), available.width()));
    const QSize old = this->size();
    layout()->activate();
    resize(columns_ == before && isVisible() && !mayShrink ? size.expandedTo(old)
                                                           : size.expandedTo(given_).boundedTo(available));
    if (isVisible() && this->size() != old) keepOnScreen();
    fitting_ = false;
}

bool DialogWindow::isTooWide() const {
    content_->layout()->activate();
    return content_->minimumSizeHint().width() > room().width();
}

void DialogWindow::give(QSize size) {
    given_ = size;
    fit();
}

void DialogWindow::refit(QSize given, QSize least) {
    const QRect before = frameGeometry();
    const bool onTheRight = before.center().x() > screen()->availableGeometry().center().x();
    given_ = given;
    fit(true);
    resize(size().expandedTo(least).boundedTo(room()));
    if (onTheRight) move(before.right() + 1 - frameGeometry().width(), before.top());
    keepOnScreen();
}

void DialogWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (settled_) return;
    constexpr int kFramed = 300;
    QTimer::singleShot(kFramed, this, [this] {
        if (isVisible()) keepOnScreen();
        settled_ = true;
    });
}

void DialogWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (event->spontaneous() && settled_ && placedByUser) placedByUser();
}

void DialogWindow::keepOnScreen() {
    const QRect area = screen()->availableGeometry();
    const QRect frame = whole();
    QPoint corner = frame.topLeft();
    corner.setX(std::max(area.left(), std::min(corner.x(), area.right() + 1 - frame.width())));
    corner.setY(std::max(area.top(), std::min(corner.y(), area.bottom() + 1 - frame.height())));
    if (corner != frame.topLeft()) move(corner);
}

void DialogWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // Qt makes room for its contents by itself, too.
    if (!event->spontaneous() && isVisible()) keepOnScreen();
    if (fitting_ || !event->spontaneous()) return;
    given_ = size();
    if (placedByUser) placedByUser();
}

void DialogWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (closed) closed();
}

bool DialogWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == content_ && event->type() == QEvent::LayoutRequest && !fitting_)
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (contentsChanged) contentsChanged();
            },
            Qt::QueuedConnection);
    return QWidget::eventFilter(watched, event);
}

bool DialogWindow::focusNextPrevChild(bool next) {
    if (focusAboutToMove) focusAboutToMove();
    if (!QWidget::focusNextPrevChild(next)) return false;
    if (QWidget* focused = focusWidget(); focused && content_->isAncestorOf(focused))
        scroll_->ensureWidgetVisible(focused);
    return true;
}

}  // namespace sandbox
