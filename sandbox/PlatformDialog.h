#pragma once

#include <QDialog>
#include <cstdint>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace sandbox {

class Scenario;

/// Asks for one of very many platforms by a part of its name. A few hundred of those that have it are listed
/// at a time.
class PlatformDialog : public QDialog {
    Q_OBJECT

  public:
    PlatformDialog(const Scenario& scenario, const QString& title, QWidget* parent);

    /// What was chosen, once the dialog was accepted.
    std::uint64_t platform() const;

  protected:
    /// The arrows of the field go through the list.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void list();

    const Scenario& scenario_;
    QLineEdit* part_;
    QListWidget* names_;
    QLabel* others_;
    QPushButton* accept_;
};

}  // namespace sandbox
