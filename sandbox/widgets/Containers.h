#pragma once

#include <QBoxLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <functional>
#include <map>

#include "sandbox/widgets/HostWidget.h"

class QToolButton;

namespace sandbox {

/// Canvas, horizontal and vertical frame, group box: children in a column or a row.
class BoxWidget : public ContainerWidget {
  public:
    enum class Direction { Column, Row };

    BoxWidget(const char* kind, Direction direction, std::uint32_t layoutOptions);

    const char* kind() const override { return kind_; }
    bool isRow() const { return direction_ == Direction::Row; }
    /// Whether it is a row of columns.
    bool holdsColumns() const;
    /// The columns of a row stand below each other, as on a screen that is too narrow for both.
    void stack(bool below);
    /// Puts a handle behind the first column, with which the user hides and shows it. `told` hears of it.
    void offerFolding(const QString& tooltip, std::function<void()> told);
    /// What the handle does, where it is shown.
    void toggleFold();
    void fold(bool folded);
    bool isFolded() const { return folded_; }

  protected:
    BoxWidget(const char* kind, QWidget* widget, Direction direction, std::uint32_t layoutOptions);
    void place(HostWidget& child) override;

  public:
    void roomChanged(HostWidget& child) override;

  private:
    const char* kind_;
    Direction direction_;
    QBoxLayout* layout_;
    QPointer<QToolButton> handle_;
    bool folded_ = false;
};

class GroupBox final : public BoxWidget {
  public:
    GroupBox(const QString& title, std::uint32_t layoutOptions);
    QString caption() const override { return title_; }
    bool setText(const QString& text) override;
    std::optional<QString> text() const override { return title_; }
    /// The tables that stand below each other begin with columns of the same width, when these hold labels.
    void alignTables();

  private:
    QString title_;
};

/// A table whose columns are aligned, filled row by row or column by column.
class MatrixWidget final : public ContainerWidget {
  public:
    enum class Fill { ByRow, ByColumn };

    /// \param count columns when filled by row, rows when filled by column
    MatrixWidget(Fill fill, int count);

    const char* kind() const override { return "matrix"; }
    struct Cell {
        int row = 0;
        int column = 0;
    };
    /// Nothing for a widget that is no child.
    std::optional<Cell> cellOf(const HostWidget& child) const;
    HostWidget* at(Cell cell) const;
    void roomChanged(HostWidget& child) override;
    /// What the first column needs; nothing when it holds more than labels.
    std::optional<int> labelWidth() const;
    void setFirstColumnWidth(int width);

  protected:
    void place(HostWidget& child) override;
    void removed(HostWidget& child) override;

  private:
    Fill fill_;
    int count_;
    int next_ = 0;
    QGridLayout* layout_;
    std::map<const HostWidget*, Cell> cells_;
};

/// Shows one child at a time, the first one at the start, and is as large as that.
class SwitcherWidget final : public ContainerWidget {
  public:
    explicit SwitcherWidget(std::uint32_t layoutOptions);

    const char* kind() const override { return "switcher"; }
    /// \return false for a widget that is no child
    bool setCurrent(HostWidget* child);
    bool setCurrent(std::int64_t index);

  protected:
    void place(HostWidget& child) override;
    void removed(HostWidget& child) override;

  private:
    HostWidget* current_ = nullptr;
    QVBoxLayout* layout_;
};

}  // namespace sandbox
