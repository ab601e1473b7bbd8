#include "sandbox/widgets/ListWidget.h"

#include <QHeaderView>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <algorithm>

#include "pi/HostStructures.h"
#include "sandbox/Plugin.h"

namespace sandbox {

namespace {

/// A tree view of a moderate height; it grows where there is room.
class CompactTree final : public QTreeView {
  public:
    void setRoom(int columns, int rows) {
        columns_ = columns;
        rows_ = rows;
        updateGeometry();
    }
    QSize sizeHint() const override {
        constexpr int rowsShown = 6;
        // Several columns are apart only when each has its room.
        const int width = model()->columnCount() > 1 ? 480 : 260;
        return {columns_ > 0 ? columns_ * fontMetrics().averageCharWidth() : width,
                heightOf(rows_ > 0 ? rows_ : rowsShown)};
    }
    QSize minimumSizeHint() const override {
        return {160, rows_ > 0 ? heightOf(rows_) : fontMetrics().height() * 4};
    }

  protected:
    /// The selected item stays in sight.
    void resizeEvent(QResizeEvent* event) override {
        QTreeView::resizeEvent(event);
        if (const auto selected = selectionModel()->selection(); !selected.isEmpty())
            scrollTo(selected.first().topLeft());
    }

  private:
    int heightOf(int rows) const {
        // Not asked of the rows and the header, which answer another height once they are shown.
        const int header = isHeaderHidden() ? 0 : fontMetrics().height() + 8;
        return header + rows * (fontMetrics().height() + 2) + 2 * frameWidth();
    }

    int columns_ = 0;
    int rows_ = 0;
};

/// A column is as wide as its widest text, within reason.
class ModestWidths final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        constexpr int widest = 180;
        return QStyledItemDelegate::sizeHint(option, index).boundedTo({widest, QWIDGETSIZE_MAX});
    }
};

}  // namespace

ListWidget::ListWidget(std::int32_t style, const QString& headers)
    : list_(new CompactTree), rows_(new ListRows(list_)) {
    list_->setModel(rows_);
    setWidget(list_);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setItemDelegate(new ModestWidths(list_));
    // Paths differ at their ends.
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setSelectionMode(style == PIGUI::PIListMultiple ? QAbstractItemView::ExtendedSelection
                                                           : QAbstractItemView::SingleSelection);
    if (!headers.isEmpty()) rows_->setHeaders(headers.split('\t'));
    showHeaders();
    QObject::connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, list_, [this] {
        if (!quiet_) activate();
    });
    QObject::connect(list_, &QTreeView::activated, list_, [this] {
        if (!chosen_) return;
        owner()->enter("choice in " + describe(),
                       [chosen = chosen_, wrapper = wrapper()] { chosen->Call(wrapper, nullptr); });
    });
}

void ListWidget::setRoom(int columns, int rows) {
    static_cast<CompactTree*>(list_)->setRoom(columns, rows);
}

void ListWidget::showHeaders() {
    list_->setHeaderHidden(rows_->headers().isEmpty());
    if (rows_->headers().isEmpty()) return;
    // The first column, which may hold paths, takes what the others leave.
    QHeaderView& header = *list_->header();
    header.setStretchLastSection(false);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(0, QHeaderView::Stretch);
}

bool ListWidget::setInteger(std::int32_t value) {
    if (value == -1) {
        deselectAll();
        return true;
    }
    if (!isIndex(value)) return false;
    select(value);
    return true;
}

std::optional<QString> ListWidget::text() const {
    const int index = selected();
    return index < 0 ? QString() : itemText(index);
}

int ListWidget::append(const QString& text, void* data) {
    rows_->append(text, data);
    return count() - 1;
}

void ListWidget::appendHeader(const QString& text) {
    rows_->setHeaders(rows_->headers() + QStringList(text));
    showHeaders();
}

int ListWidget::selected() const {
    int first = -1;
    for (const QItemSelectionRange& range : list_->selectionModel()->selection())
        if (first < 0 || range.top() < first) first = range.top();
    return first;
}

void ListWidget::select(int index) {
    const QScopedValueRollback<bool> quiet(quiet_, true);
    const QModelIndex row = rows_->index(index, 0);
    list_->selectionModel()->setCurrentIndex(row,
                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    list_->scrollTo(row);
}

void ListWidget::deselectAll() {
    const QScopedValueRollback<bool> quiet(quiet_, true);
    list_->clearSelection();
}

void ListWidget::remove(int index) {
    const QScopedValueRollback<bool> quiet(quiet_, true);
    // Qt would move the selection on to a neighbour.
    const bool wasSelected = list_->selectionModel()->isRowSelected(index, {});
    rows_->remove(index);
    if (wasSelected && list_->selectionMode() == QAbstractItemView::SingleSelection) list_->clearSelection();
}

void ListWidget::clear() {
    const QScopedValueRollback<bool> quiet(quiet_, true);
    rows_->clear();
}

QString ListWidget::itemText(int index) const {
    return rows_->text(index);
}

void ListWidget::setItemText(int index, const QString& text) {
    rows_->setText(index, text);
}

void* ListWidget::itemData(int index) const {
    return rows_->dataOf(index);
}

}  // namespace sandbox
