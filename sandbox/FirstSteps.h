#pragma once

#include <QFrame>

namespace sandbox {

/// A note over the view that tells a newcomer how to draw. It stays until it is closed.
class FirstSteps : public QFrame {
    Q_OBJECT

  public:
    /// \param view that it lies over, at its lower left corner
    explicit FirstSteps(QWidget& view);

  signals:
    /// The reader has closed it.
    void understood();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void place();
};

}  // namespace sandbox
