#pragma once

#include <QFileDialog>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

namespace sandbox {

class Settings;

/// The host's file dialogs: modal, remembering the last path in the settings.
class FileDialogs : public QObject {
    Q_OBJECT

  public:
    enum class Kind { Load, Save, Directory };

    struct Request {
        Kind kind = Kind::Load;
        QString title;
        QString group;  ///< with `key`, where the settings remember the path
        QString key;
        QString startDirectory;
        QStringList filterRows;  ///< a text, a tab, patterns separated by blanks
    };

    FileDialogs(QWidget& owner, Settings& settings) : owner_(owner), settings_(settings) {}

    /// The chosen path, empty when the user cancelled.
    QString ask(const Request& request);

  signals:
    /// The dialog is about to be shown and to run its own event loop.
    void opening(QFileDialog* dialog);

  private:
    QWidget& owner_;
    Settings& settings_;
};

}  // namespace sandbox
