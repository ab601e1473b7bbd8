#pragma once

#include <QFileDialog>
#include <QObject>
#include <QTimer>
#include <functional>

namespace sandbox {

/// Answers one file dialog as a person would: types the name, presses the button, and replies when asked
/// whether to replace a file. Lives as long as the dialog.
class FileDialogAnswer : public QObject {
    Q_OBJECT

  public:
    /// \param path empty: cancels
    /// \param report takes what went wrong; the dialog is cancelled then
    FileDialogAnswer(QFileDialog& dialog, const QString& path, bool overwrite,
                     std::function<void(const QString&)> report);

  private:
    void act();
    void giveUp(const QString& why);

    QFileDialog& dialog_;
    QString path_;
    bool overwrite_;
    std::function<void(const QString&)> report_;
    int typedAt_ = 0;  ///< the tick of the last attempt, 0 before the first
    bool gaveUp_ = false;
    int ticks_ = 0;
};

}  // namespace sandbox
