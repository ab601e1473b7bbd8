#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <memory>

#include "common/Work.h"
#include "sandbox/FileQueue.h"

namespace sandbox {

class FileDialogs;
class Log;
class MainWindow;
class OverlayFiles;
struct PlatformFile;
class Scenario;
class Settings;

/// The files that the user opens: overlays and platforms. Everything that is wrong with one goes to the
/// log, with its line; what is good is shown. Files that change on disk are read again, and the menu of
/// recent ones is kept in the settings.
class UserFiles : public QObject {
    Q_OBJECT

  public:
    UserFiles(OverlayFiles& overlays, Scenario& scenario, MainWindow& window, FileDialogs& dialogs,
              Settings& settings, Log& log);

    static bool isPlatformFile(const QString& path) { return path.endsWith(".csv", Qt::CaseInsensitive); }
    /// Opens platforms by ".csv", files of other programs by their suffixes, overlays by every other name;
    /// what is open already is read again. \return whether anything of it is shown now
    bool open(const QString& path);
    /// The same for a user who waits: what is large is read in the pauses of the event loop. `then` is told
    /// what open() would have answered, at once or later.
    void openSoon(const QString& path, std::function<void(bool shown)> then = {});
    /// Those that were opened, in any order.
    QStringList platformFiles() const { return platformFiles_.values(); }
    /// Gives up all that is open.
    void closeAll();

  private:
    class ComingPlatforms;
    class ComingConverted;

    /// Null, with a message, when it cannot be read.
    std::unique_ptr<ComingFile> coming(const QString& path);
    std::unique_ptr<ComingFile> comingConverted(const QString& path);
    /// \param file its platforms are taken \param shown counts them
    Work showing(const QString& path, PlatformFile& file, std::size_t& shown);
    void attach(const QString& path, std::uint64_t platform);
    void ask(const QString& title, const QString& key, const QStringList& filterRows);
    void remember(const QString& path);
    QStringList recent() const;
    void watch();
    void readChanged();

    OverlayFiles& overlays_;
    Scenario& scenario_;
    MainWindow& window_;
    FileDialogs& dialogs_;
    Settings& settings_;
    Log& log_;
    QSet<QString> platformFiles_;
    QFileSystemWatcher watcher_;
    QSet<QString> changed_;
    QTimer watchSoon_;
    QTimer readSoon_;
    FileQueue queue_;
};

}  // namespace sandbox
