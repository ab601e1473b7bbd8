#include "sandbox/widgets/ListRows.h"

#include <cstddef>

namespace sandbox {

int ListRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ListRows::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns_;
}

QVariant ListRows::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
    return text(index.row()).section('\t', index.column(), index.column());
}

QVariant ListRows::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return section < headers_.size() ? headers_[section] : QString::number(section + 1);
}

void ListRows::append(const QString& text, void* data) {
    const int row = rowCount();
    beginInsertRows({}, row, row);
    rows_.push_back({text.toStdString(), data});
    endInsertRows();
    makeRoomFor(static_cast<int>(text.count('\t')) + 1);
}

void ListRows::remove(int row) {
    beginRemoveRows({}, row, row);
    rows_.erase(rows_.begin() + row);
    endRemoveRows();
}

void ListRows::clear() {
    beginResetModel();
    rows_ = {};
    endResetModel();
}

QString ListRows::text(int row) const {
    const std::string& text = rows_[static_cast<std::size_t>(row)].text;
    const std::size_t end = text.find_last_not_of('\t');
    return QString::fromUtf8(text.data(), end == std::string::npos ? 0 : static_cast<int>(end) + 1);
}

void ListRows::setText(int row, const QString& text) {
    rows_[static_cast<std::size_t>(row)].text = text.toStdString();
    makeRoomFor(static_cast<int>(text.count('\t')) + 1);
    emit dataChanged(index(row, 0), index(row, columns_ - 1));
}

void ListRows::setHeaders(const QStringList& headers) {
    headers_ = headers;
    makeRoomFor(static_cast<int>(headers.size()));
    emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
}

void ListRows::makeRoomFor(int columns) {
    if (columns <= columns_) return;
    beginInsertColumns({}, columns_, columns - 1);
    columns_ = columns;
    endInsertColumns();
}

}  // namespace sandbox
