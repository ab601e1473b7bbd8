#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <string>
#include <vector>

namespace sandbox {

/// The rows of a list, of which there may be very many: each is a text, whose columns are separated by tabs,
/// and a pointer of the plug-in's.
class ListRows final : public QAbstractTableModel {
  public:
    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    /// One at least, and as many as any row or the headers have had.
    int columnCount(const QModelIndex& parent = {}) const override;
    /// What a column may cut off is told by its tip.
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void append(const QString& text, void* data);
    void remove(int row);
    void clear();
    /// Without the tabs at its end.
    QString text(int row) const;
    void setText(int row, const QString& text);
    void* dataOf(int row) const { return rows_[static_cast<std::size_t>(row)].data; }
    const QStringList& headers() const { return headers_; }
    void setHeaders(const QStringList& headers);

  private:
    struct Row {
        std::string text;  ///< UTF-8
        void* data = nullptr;
    };
    void makeRoomFor(int columns);

    std::vector<Row> rows_;
    QStringList headers_;
    int columns_ = 1;
};

}  // namespace sandbox
