#pragma once

#include <QTreeView>

#include "sandbox/widgets/HostWidget.h"
#include "sandbox/widgets/ListRows.h"

namespace sandbox {

/// A list with columns; each item carries a pointer of the plug-in's. Texts have their columns separated
/// by tabs. Calls back when the user changes the selection.
class ListWidget final : public HostWidget {
  public:
    ListWidget(std::int32_t style, const QString& headers);

    const char* kind() const override { return "list"; }
    bool setInteger(std::int32_t value) override;
    void setRoom(int columns, int rows) override;
    /// Called when a row is double-clicked, or Enter pressed on it.
    void setChosen(FunctorTwoParams__* chosen) { chosen_ = chosen; }
    /// The first selected item's text.
    std::optional<QString> text() const override;
    std::optional<std::int64_t> integer() const override { return selected(); }

    int append(const QString& text, void* data);
    void appendHeader(const QString& text);
    int count() const { return rows_->rowCount(); }
    bool isIndex(std::int64_t index) const { return index >= 0 && index < count(); }
    /// Index of the first selected item, -1 when there is none.
    int selected() const;
    void select(int index);
    void deselectAll();
    void remove(int index);
    void clear();
    QString itemText(int index) const;
    void setItemText(int index, const QString& text);
    void* itemData(int index) const;
    QTreeView* list() const { return list_; }

  private:
    void showHeaders();

    QTreeView* list_;
    ListRows* rows_;
    /// What changes now is not the user's doing.
    bool quiet_ = false;
    FunctorTwoParams__* chosen_ = nullptr;
};

}  // namespace sandbox
