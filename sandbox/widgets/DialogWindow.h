#pragma once

#include <QBoxLayout>
#include <QScrollArea>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace sandbox {

/// The Qt window of a dialog: one column of widgets or two that scroll when the screen is too small, and a
/// footer that does not.
class DialogWindow final : public QWidget {
  public:
    explicit DialogWindow(QWidget* owner);

    std::function<void()> closed;
    std::function<void()> contentsChanged;
    std::function<void()> focusAboutToMove;
    std::function<void()> placedByUser;  ///< moved, or made larger or smaller
    void forgetCallbacks() { closed = contentsChanged = focusAboutToMove = placedByUser = nullptr; }

    void addToColumns(QWidget& widget, bool wantsWidth, bool wantsHeight);
    void setFooter(QWidget& widget);
    /// The widget is going, or moves elsewhere.
    void forget(QWidget& widget);

    /// Arranges the widgets for the screen, and grows to what they need, as far as there is room.
    void fit() { fit(false); }
    /// The next fit() may go back to one column; while the window is shown it would jump.
    void startWithOneColumn() { columns_ = 1; }
    /// Whether the screen is too narrow for the contents, however they are arranged.
    bool isTooWide() const;
    /// At least so large, as the user had it before, where the screen has the room.
    void give(QSize size);
    QSize given() const { return given_; }
    /// The contents are others: as large as they need, as the user had them, and as `least`. The side that is
    /// nearer to the edge of the screen stays where it is.
    void refit(QSize given, QSize least);
    /// Moves the window back where it can be seen whole; once more when its frame is known.
    void keepOnScreen();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    struct Item {
        QWidget* widget = nullptr;
        bool wantsWidth = false;
        bool wantsHeight = false;
    };

    /// With the frame that a window manager has given it, or will.
    QRect whole() const;
    QSize room() const;
    /// What the columns need when the items of `second` (a bit for each) stand in the second one.
    QSize need(std::uint32_t second) const;
    /// The items for the second column: those behind some item when that fits the height, otherwise
    /// whichever make the taller column as short as can be.
    std::uint32_t secondColumn(int height) const;
    void arrange(std::uint32_t second);
    void fit(bool mayShrink);
    QSize wanted() const;

    std::vector<Item> items_;
    int columns_ = 1;
    /// Nothing when the items are to be put into their columns anew.
    std::optional<std::uint32_t> arranged_;
    bool fitting_ = false;
    /// As large as the user has made it, or larger; nothing as long as he has not.
    QSize given_{0, 0};
    /// The window manager has placed it: what moves it from then on is the user.
    bool settled_ = false;
    QScrollArea* scroll_;
    QWidget* content_;
    QVBoxLayout* column_[2];
    QWidget* footer_;
    QVBoxLayout* footerLayout_;
};

}  // namespace sandbox
