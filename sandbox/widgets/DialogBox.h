#pragma once

#include <functional>

#include "pi/HostObservers.h"
#include "sandbox/widgets/Containers.h"

namespace sandbox {

/// A window of a plug-in's, not modal, hidden at the start.
class DialogBox final : public BoxWidget {
  public:
    DialogBox(QWidget* owner, const std::string& title);

    QString caption() const override { return widget() ? widget()->windowTitle() : QString(); }
    bool isPartOfAnother() const override { return false; }
    bool setText(const QString& text) override;
    std::optional<QString> text() const override { return caption(); }

    /// Shows the dialog in front of the others.
    void open();
    void setCloseObserver(PIGUI::PICloseObserver* observer) { observer_ = observer; }
    /// What the window's close button does: hides, then tells the observer.
    void userClosed();

  private:
    PIGUI::PICloseObserver* observer_ = nullptr;
    bool wasOpen_ = false;
};

}  // namespace sandbox
