#include "sandbox/widgets/Containers.h"

#include <QFrame>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "pi/HostStructures.h"
#include "sandbox/widgets/Caption.h"
#include "sandbox/widgets/Controls.h"

namespace sandbox {

namespace {

constexpr int kSpacing = 6;
constexpr int kMargin = 8;
constexpr int kHandle = 12;
/// A column behind those that are used. It takes the width that no child of the table wants.
constexpr int kSpareColumn = 64;

QWidget* frame(std::uint32_t layoutOptions) {
    auto* widget = new QFrame;
    if (layoutOptions & PIGUI::PILayoutFrame) widget->setFrameShape(QFrame::StyledPanel);
    return widget;
}

void collectTables(const ContainerWidget& container, std::vector<MatrixWidget*>& tables) {
    for (HostWidget* child : container.children()) {
        if (auto* table = dynamic_cast<MatrixWidget*>(child))
            tables.push_back(table);
        else if (const auto* box = dynamic_cast<const BoxWidget*>(child); box && !box->isRow())
            collectTables(*box, tables);
    }
}

}  // namespace

BoxWidget::BoxWidget(const char* kind, Direction direction, std::uint32_t layoutOptions)
    : BoxWidget(kind, frame(layoutOptions), direction, layoutOptions) {}

BoxWidget::BoxWidget(const char* kind, QWidget* widget, Direction direction, std::uint32_t layoutOptions)
    : kind_(kind), direction_(direction) {
    setWidget(widget);
    setFilling(layoutOptions);
    layout_ = new QBoxLayout(direction == Direction::Row ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom,
                             widget);
    const bool tight = (layoutOptions & PIGUI::PILayoutTight) != 0;
    const bool bordered = (layoutOptions & PIGUI::PILayoutFrame) != 0 || qobject_cast<QGroupBox*>(widget);
    layout_->setSpacing(tight ? 0 : kSpacing);
    const int margin = !tight && bordered ? kMargin : 0;
    layout_->setContentsMargins(margin, margin, margin, margin);
    // Takes what no child wants, so that the children stand together at the start.
    layout_->addStretch(0);
}

void BoxWidget::place(HostWidget& child) {
    layout_->insertWidget(layout_->count() - 1, child.widget());
    roomChanged(child);
}

void BoxWidget::roomChanged(HostWidget& child) {
    const bool row = layout_->direction() == QBoxLayout::LeftToRight;
    const bool along = row ? child.wantsWidth() : child.wantsHeight();
    const bool across = row ? child.wantsHeight() : child.wantsWidth();
    Qt::Alignment alignment;
    if (!across) alignment = row ? Qt::AlignVCenter : Qt::AlignLeft;
    layout_->setStretchFactor(child.widget(), along ? 1 : 0);
    layout_->setAlignment(child.widget(), alignment);
}

bool BoxWidget::holdsColumns() const {
    const auto isColumn = [](const HostWidget* child) {
        const auto* box = dynamic_cast<const BoxWidget*>(child);
        return box && !box->isRow();
    };
    return isRow() && children().size() > 1 && std::ranges::all_of(children(), isColumn);
}

void BoxWidget::stack(bool below) {
    layout_->setDirection(below ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    for (HostWidget* child : children()) roomChanged(*child);
    if (below) fold(false);
    if (handle_) handle_->setVisible(!below);
}

void BoxWidget::offerFolding(const QString& tooltip, std::function<void()> told) {
    if (handle_) return;
    handle_ = new QToolButton;
    handle_->setAutoRaise(true);
    handle_->setFocusPolicy(Qt::NoFocus);
    handle_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    handle_->setFixedWidth(kHandle);
    handle_->setArrowType(Qt::LeftArrow);
    handle_->setToolTip(tooltip);
    layout_->insertWidget(1, handle_);
    QObject::connect(handle_, &QToolButton::clicked, handle_, [this, told = std::move(told)] {
        fold(!folded_);
        told();
    });
}

void BoxWidget::toggleFold() {
    if (handle_ && handle_->isVisible()) handle_->click();
}

void BoxWidget::fold(bool folded) {
    if (!handle_ || folded == folded_) return;
    folded_ = folded;
    children().front()->setShown(!folded);
    // What it needs now counts at once, not with the next event.
    layout_->activate();
    widget()->updateGeometry();
    handle_->setArrowType(folded ? Qt::RightArrow : Qt::LeftArrow);
}

GroupBox::GroupBox(const QString& title, std::uint32_t layoutOptions)
    : BoxWidget("group box", new QGroupBox(Caption::escaped(title)), Direction::Column, layoutOptions),
      title_(title) {}

bool GroupBox::setText(const QString& text) {
    const Caption caption = Caption::parse(text.toStdString());
    title_ = caption.text;
    static_cast<QGroupBox*>(widget())->setTitle(caption.escapedText());
    widget()->setToolTip(caption.tooltip);
    return true;
}

void GroupBox::alignTables() {
    std::vector<MatrixWidget*> tables;
    collectTables(*this, tables);
    int width = 0;
    for (const MatrixWidget* table : tables) width = std::max(width, table->labelWidth().value_or(0));
    for (MatrixWidget* table : tables)
        if (table->labelWidth()) table->setFirstColumnWidth(width);
}

MatrixWidget::MatrixWidget(Fill fill, int count) : fill_(fill), count_(std::max(1, count)) {
    auto* widget = new QWidget;
    setWidget(widget);
    setFilling(PIGUI::PILayoutFillX);
    layout_ = new QGridLayout(widget);
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setHorizontalSpacing(kSpacing + 2);
    layout_->setVerticalSpacing(kSpacing);
    layout_->setColumnStretch(kSpareColumn, 1);
}

void MatrixWidget::place(HostWidget& child) {
    const Cell cell =
        fill_ == Fill::ByRow ? Cell{next_ / count_, next_ % count_} : Cell{next_ % count_, next_ / count_};
    ++next_;
    cells_[&child] = cell;
    layout_->addWidget(child.widget(), cell.row, cell.column);
    roomChanged(child);
    // A field without a tooltip of its own is explained by the label in front of it.
    auto* caption = dynamic_cast<LabelWidget*>(at({cell.row, cell.column - 1}));
    if (caption && !dynamic_cast<const LabelWidget*>(&child)) caption->explain(*child.widget());
}

void MatrixWidget::roomChanged(HostWidget& child) {
    Qt::Alignment alignment;
    // Menus below each other are equally wide.
    if (!child.wantsWidth() && !dynamic_cast<const OptionMenuWidget*>(&child)) alignment |= Qt::AlignLeft;
    if (!child.wantsHeight()) alignment |= Qt::AlignVCenter;
    if (child.wantsWidth()) {
        layout_->setColumnStretch(cells_.at(&child).column, 1);
        layout_->setColumnStretch(kSpareColumn, 0);
    }
    layout_->setAlignment(child.widget(), alignment);
}

void MatrixWidget::removed(HostWidget& child) {
    cells_.erase(&child);
    if (cells_.empty()) next_ = 0;
}

std::optional<MatrixWidget::Cell> MatrixWidget::cellOf(const HostWidget& child) const {
    const auto at = cells_.find(&child);
    if (at == cells_.end()) return std::nullopt;
    return at->second;
}

HostWidget* MatrixWidget::at(Cell cell) const {
    for (HostWidget* child : children()) {
        const Cell other = cells_.at(child);
        if (other.row == cell.row && other.column == cell.column) return child;
    }
    return nullptr;
}

std::optional<int> MatrixWidget::labelWidth() const {
    int width = 0;
    for (const auto& [child, cell] : cells_) {
        if (cell.column != 0) continue;
        if (!dynamic_cast<const LabelWidget*>(child)) return std::nullopt;
        if (child->widget() && !child->widget()->isHidden())
            width = std::max(width, child->widget()->sizeHint().width());
    }
    return width;
}

void MatrixWidget::setFirstColumnWidth(int width) {
    if (layout_->columnMinimumWidth(0) != width) layout_->setColumnMinimumWidth(0, width);
}

SwitcherWidget::SwitcherWidget(std::uint32_t layoutOptions) {
    setWidget(frame(layoutOptions));
    setFilling(layoutOptions);
    layout_ = new QVBoxLayout(widget());
    layout_->setContentsMargins(0, 0, 0, 0);
}

void SwitcherWidget::place(HostWidget& child) {
    layout_->addWidget(child.widget());
    if (current_) {
        child.widget()->hide();
    } else {
        current_ = &child;
    }
}

void SwitcherWidget::removed(HostWidget& child) {
    if (current_ == &child) current_ = nullptr;
}

bool SwitcherWidget::setCurrent(HostWidget* child) {
    if (std::ranges::find(children(), child) == children().end()) return false;
    if (current_ == child) return true;
    // Both changes in one go, so that the window does not flicker through a third layout.
    widget()->setUpdatesEnabled(false);
    if (current_ && current_->widget()) current_->widget()->hide();
    current_ = child;
    child->widget()->show();
    widget()->setUpdatesEnabled(true);
    return true;
}

bool SwitcherWidget::setCurrent(std::int64_t index) {
    if (index < 0 || index >= static_cast<std::int64_t>(children().size())) return false;
    return setCurrent(children()[static_cast<std::size_t>(index)]);
}

}  // namespace sandbox
