#pragma once

#include <QDialog>

#include "sandbox/ViewPicture.h"

class QComboBox;
class QLabel;
class QPushButton;

namespace sandbox {

class Settings;

/// Asks how large a picture of the view shall be, how fine, and what shall lie behind it. A size that cannot
/// be is kept and named. What was chosen is in the settings and comes back.
class PictureDialog : public QDialog {
    Q_OBJECT

  public:
    PictureDialog(Settings& settings, QWidget* parent);

    /// What was chosen, once the dialog was accepted.
    const PictureLook& look() const { return look_; }

  private:
    void judge();

    Settings& settings_;
    QComboBox* size_;
    QComboBox* density_;
    QComboBox* background_;
    QLabel* problem_;
    QPushButton* save_;
    PictureLook look_;
};

}  // namespace sandbox
