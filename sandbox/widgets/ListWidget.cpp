#include "sandbox/widgets/ListWidget.h"

#include <QHeaderView>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <algorithm>
#include <memory>

#include "pi/HostStructures.h"
#include "sandbox/Plugin.h"

namespace sandbox {

namespace {

/// A tree widget of a moderate height; it grows where there is room.
class CompactTree final : public QTreeWidget {
  public:
    void setRoom(int columns, int rows) {
        columns_ = columns;
        rows_ = rows;
        updateGeometry();
    }
    QSize sizeHint() const override {
        constexpr int rowsShown = 6;
        // Several columns are apart only when each has its room.
        const int width = columnCount() > 1 ? 480 : 260;
        return {columns_ > 0 ? columns_ * fontMetrics().averageCharWidth() : width,
                heightOf(rows_ > 0 ? rows_ : rowsShown)};
    }
    QSize minimumSizeHint() const override {
        return {160, rows_ > 0 ? heightOf(rows_) : fontMetrics().height() * 4};
    }

  protected:
    /// The selected item stays in sight.
    void resizeEvent(QResizeEvent* event) override {
        QTreeWidget::resizeEvent(event);
        if (const auto selected = selectedItems(); !selected.isEmpty()) scrollToItem(selected.first());
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

ListWidget::ListWidget(std::int32_t style, const QString& headers) : list_(new CompactTree) {
    setWidget(list_);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setItemDelegate(new ModestWidths(list_));
    // Paths differ at their ends.
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setSelectionMode(style == PIGUI::PIListMultiple ? QAbstractItemView::ExtendedSelection
                                                           : QAbstractItemView::SingleSelection);
    if (!headers.isEmpty()) headers_ = headers.split('\t');
    showHeaders();
    QObject::connect(list_, &QTreeWidget::itemSelectionChanged, list_, [this] { activate(); });
    QObject::connect(list_, &QTreeWidget::itemActivated, list_, [this] {
        if (!chosen_) return;
        owner()->enter("choice in " + describe(),
                       [chosen = chosen_, wrapper = wrapper()] { chosen->Call(wrapper, nullptr); });
    });
}

void ListWidget::setRoom(int columns, int rows) {
    static_cast<CompactTree*>(list_)->setRoom(columns, rows);
}

void ListWidget::showHeaders() {
    list_->setHeaderHidden(headers_.isEmpty());
    if (headers_.isEmpty()) return;
    list_->setColumnCount(std::max(list_->columnCount(), static_cast<int>(headers_.size())));
    list_->setHeaderLabels(headers_);
    // The first column, which may hold paths, takes what the others leave.
    QHeaderView& header = *list_->header();
    header.setStretchLastSection(false);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(0, QHeaderView::Stretch);
}

void ListWidget::setColumns(QTreeWidgetItem& item, const QString& text) {
    const QStringList columns = text.split('\t');
    if (QTreeWidget* list = item.treeWidget(); list && columns.size() > list->columnCount())
        list->setColumnCount(static_cast<int>(columns.size()));
    const int count = std::max(static_cast<int>(columns.size()), item.columnCount());
    for (int i = 0; i < count; ++i) {
        item.setText(i, columns.value(i));
        item.setToolTip(i, columns.value(i));
    }
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
    const QSignalBlocker blocker(list_);
    // Whole before it is in the list, which looks at itself after each change.
    auto item = std::make_unique<QTreeWidgetItem>();
    item->setData(0, Qt::UserRole, QVariant::fromValue(reinterpret_cast<quintptr>(data)));
    setColumns(*item, text);
    list_->setColumnCount(std::max(list_->columnCount(), item->columnCount()));
    list_->addTopLevelItem(item.release());
    return count() - 1;
}

void ListWidget::appendHeader(const QString& text) {
    headers_ << text;
    showHeaders();
}

int ListWidget::selected() const {
    int first = -1;
    for (QTreeWidgetItem* item : list_->selectedItems()) {
        const int index = list_->indexOfTopLevelItem(item);
        if (first < 0 || index < first) first = index;
    }
    return first;
}

void ListWidget::select(int index) {
    const QSignalBlocker blocker(list_);
    QTreeWidgetItem* item = list_->topLevelItem(index);
    list_->setCurrentItem(item, 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    list_->scrollToItem(item);
}

void ListWidget::deselectAll() {
    const QSignalBlocker blocker(list_);
    list_->clearSelection();
}

void ListWidget::remove(int index) {
    const QSignalBlocker blocker(list_);
    QTreeWidgetItem* item = list_->topLevelItem(index);
    // Qt would move the selection on to a neighbour.
    const bool wasSelected = item->isSelected();
    delete item;
    if (wasSelected && list_->selectionMode() == QAbstractItemView::SingleSelection) list_->clearSelection();
}

void ListWidget::clear() {
    const QSignalBlocker blocker(list_);
    list_->clear();
}

QString ListWidget::itemText(int index) const {
    const QTreeWidgetItem* item = list_->topLevelItem(index);
    QStringList columns;
    for (int i = 0; i < item->columnCount(); ++i) columns << item->text(i);
    while (columns.size() > 1 && columns.last().isEmpty()) columns.removeLast();
    return columns.join('\t');
}

void ListWidget::setItemText(int index, const QString& text) {
    setColumns(*list_->topLevelItem(index), text);
}

void* ListWidget::itemData(int index) const {
    return reinterpret_cast<void*>(list_->topLevelItem(index)->data(0, Qt::UserRole).value<quintptr>());
}

}  // namespace sandbox
