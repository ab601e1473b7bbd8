#pragma once

#include <QRegularExpressionMatch>

#include "pi/HostObservers.h"
#include "sandbox/widgets/Containers.h"

namespace sandbox {

class DialogWindow;
class Settings;

/// A window of a plug-in's, not modal, hidden at the start. Its children stand in a column; in two when one
/// is too tall for the screen, and what is still too tall scrolls. A row of buttons that comes last stays
/// below them, always in sight. The Tab key follows the order in which the widgets stand. Of columns beside
/// each other the user can fold the first one away, so that more of the view is seen.
class DialogBox final : public ContainerWidget {
  public:
    /// What folds its first column.
    static constexpr Qt::Key kFoldKey = Qt::Key_F9;

    /// \param sizes where the place and size that the user gave it are kept from run to run; must outlive it
    DialogBox(QWidget* owner, const std::string& title, Settings& sizes);
    ~DialogBox() override;

    const char* kind() const override { return "dialog"; }
    QString caption() const override { return widget() ? widget()->windowTitle() : QString(); }
    bool isPartOfAnother() const override { return false; }
    bool setText(const QString& text) override;
    std::optional<QString> text() const override { return caption(); }

    /// Shows the dialog in front of the others.
    void open();
    void setCloseObserver(PIGUI::PICloseObserver* observer) { observer_ = observer; }
    /// What the window's close button does: hides, then tells the observer.
    void userClosed();

  protected:
    void place(HostWidget& child) override;
    void removed(HostWidget& child) override;

  private:
    DialogWindow& window_() const;
    /// Puts the children into one column or two, and makes the window large enough for them.
    void fit_();
    /// The columns of rows of columns, below or beside each other.
    void stackColumns_(bool below) const;
    void orderFocus_() const;

    PIGUI::PICloseObserver* observer_ = nullptr;
    /// Beside what is looked at: where it covers least of the view.
    void place_();
    bool isFolded_() const;
    /// The settings have a place and a size for each of its two shapes.
    QString sizeKey_() const { return (isFolded_() ? "FoldedDialogs/" : "Dialogs/") + caption(); }
    QString foldKey_() const { return "Folded/" + caption(); }
    void keepPlace_();
    QRegularExpressionMatch kept_() const;
    QSize keptSize_() const { return {kept_().captured(1).toInt(), kept_().captured(2).toInt()}; }
    /// The row of columns; null when it has none, or they stand below each other.
    BoxWidget* columns_() const;
    void folded_();

    Settings& sizes_;
    HostWidget* footer_ = nullptr;
    bool wasOpen_ = false;
    QSize unfolded_{0, 0};  ///< as large as it was before it was folded
};

}  // namespace sandbox
