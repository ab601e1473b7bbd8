#include "sandbox/UserFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/Files.h"
#include "common/Notify.h"
#include "sandbox/Log.h"
#include "sandbox/MainWindow.h"
#include "sandbox/OverlayFiles.h"
#include "sandbox/Settings.h"
#include "sandbox/scenario/PlatformFile.h"
#include "sandbox/scenario/Scenario.h"
#include "sandbox/services/FileDialogs.h"

namespace sandbox {

namespace {

constexpr int kRecentFiles = 10;
const char* const kRecentKey = "Host/RecentFiles";
/// Programs write a file in several steps, or put another in its place.
constexpr int kSettleMilliseconds = 200;
constexpr int kMostOfOneName = 10'000;
/// Of attaching one.
constexpr std::size_t kUnitsOfAnOverlay = 500;

/// Those that the zel command makes overlays of; ".csv" is taken by platforms.
bool isOfOtherProgram(const QString& path) {
    const QStringList suffixes = {"geojson", "json", "kml", "kmz", "gpx", "gpkg", "shp"};
    return suffixes.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive);
}

/// The zel command: beside this program, as in a build, or on the user's path.
QString findZel() {
    const QString beside = QStandardPaths::findExecutable("zel", {QCoreApplication::applicationDirPath()});
    return beside.isEmpty() ? QStandardPaths::findExecutable("zel") : beside;
}

}  // namespace

UserFiles::UserFiles(OverlayFiles& overlays, Scenario& scenario, MainWindow& window, FileDialogs& dialogs,
                     Settings& settings, Log& log)
    : overlays_(overlays),
      scenario_(scenario),
      window_(window),
      dialogs_(dialogs),
      settings_(settings),
      log_(log),
      queue_(log) {
    connect(&window_, &MainWindow::openOverlayRequested, this, [this] {
        ask("Open Overlay", "LastOverlay",
            {"Overlays\t*.zel *.ll *.lla *.xy *.xyz *.rxy *.rxyz", "All files\t*"});
    });
    connect(&window_, &MainWindow::openPlatformsRequested, this,
            [this] { ask("Open Platforms", "LastPlatforms", {"Platforms\t*.csv"}); });
    connect(&window_, &MainWindow::filesGiven, this, [this](const QStringList& paths) {
        for (const bool platforms : {true, false})
            for (const QString& path : paths)
                if (isPlatformFile(path) == platforms) openSoon(path);
    });
    // Very many may come one by one.
    watchSoon_.setSingleShot(true);
    connect(&watchSoon_, &QTimer::timeout, this, &UserFiles::watch);
    connect(&overlays_, &OverlayFiles::filesChanged, &watchSoon_, qOverload<>(&QTimer::start));
    connect(&queue_, &FileQueue::reading, &window_, &MainWindow::showReading);
    connect(&window_, &MainWindow::readingCanceled, &queue_, &FileQueue::cancel);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, [this](const QString& path) {
        changed_.insert(path);
        readSoon_.start();
    });
    readSoon_.setSingleShot(true);
    readSoon_.setInterval(kSettleMilliseconds);
    connect(&readSoon_, &QTimer::timeout, this, &UserFiles::readChanged);
    window_.setRecentFiles(recent());
}

bool UserFiles::open(const QString& path) {
    const QString whole = QFileInfo(path).absoluteFilePath();
    const auto file = coming(whole);
    if (!file) return false;
    file->finish();
    if (file->isShown()) remember(whole);
    return file->isShown();
}

void UserFiles::openSoon(const QString& path, std::function<void(bool)> then) {
    const QString whole = QFileInfo(path).absoluteFilePath();
    queue_.add(
        whole, [this, whole] { return coming(whole); },
        [this, whole, then = std::move(then)](bool shown) {
            if (shown) remember(whole);
            if (then) then(shown);
        });
}

void UserFiles::closeAll() {
    queue_.cancelAll();
    for (LoadedOverlay* overlay : overlays_.files()) overlays_.unload(*overlay);
    platformFiles_.clear();
    scenario_.clear(PIApplicationEvents_t::ScenarioCleared);
    watch();
}

/// The platforms of a file, while they are read.
class UserFiles::ComingPlatforms final : public ComingFile {
  public:
    ComingPlatforms(UserFiles& files, const QString& path)
        : files_(files), path_(path), file_(path.toStdString()) {
        tellUnread();
    }
    bool isOpen() const { return file_.error().empty(); }

    bool goOn(Slice& slice) override {
        constexpr std::size_t copied = std::size_t{1} << 20;
        constexpr std::size_t copiedOfAUnit = 2048;
        constexpr std::size_t bytes = std::size_t{16} << 10;
        constexpr std::size_t bytesOfAUnit = 16;
        while (!reading_) {
            if (file_.goOn(copied)) {
                text_ = file_.takeContents();
                tellUnread();
                reading_.emplace(text_, Scenario::kReferenceYear);
            }
            if (slice.isOver(copied / copiedOfAUnit)) return false;
        }
        while (!reading_->goOn(bytes))
            if (slice.isOver(bytes / bytesOfAUnit)) return false;
        return true;
    }
    int percent() const override {
        // To show them takes about as long as to read them.
        const auto half = [](std::size_t done, std::size_t all) {
            return static_cast<int>(50 * done / std::max<std::size_t>(all, 1));
        };
        if (!reading_) return 0;
        return half(text_.size() - reading_->left(), text_.size()) +
               half(shown_, shown_ + platforms_.platforms.size());
    }
    bool show(Slice& slice) override {
        if (!isOpen()) return true;
        if (!showing_) {
            platforms_ = reading_->take();
            showing_.emplace(files_.showing(path_, platforms_, shown_));
        }
        return showing_->goOn(slice);
    }
    bool isShown() const override { return shown_ > 0; }

  private:
    void tellUnread() {
        if (isOpen()) return;
        files_.log_.add(halNotify::Error, "host",
                        QString("platform file %1 cannot be opened: %2")
                            .arg(path_, QString::fromStdString(file_.error())));
    }

    UserFiles& files_;
    QString path_;
    UTILS::FileReading file_;
    std::string text_;
    std::optional<PlatformFileReading> reading_;  ///< once it is in memory
    PlatformFile platforms_;
    std::optional<Work> showing_;  ///< once all is read
    std::size_t shown_ = 0;
};

/// An overlay that the zel command makes of a file of another program.
class UserFiles::ComingConverted final : public ComingFile {
  public:
    ComingConverted(UserFiles& files, const QString& program, const QString& path, const QString& overlay)
        : files_(files), path_(path), overlay_(overlay) {
        zel_.setProcessChannelMode(QProcess::MergedChannels);
        zel_.start(program, {"convert", path, overlay});
    }
    ~ComingConverted() override {
        if (zel_.state() != QProcess::NotRunning) {
            zel_.kill();
            zel_.waitForFinished(-1);
        }
        if (!isShown()) QFile::remove(overlay_);
    }

    bool goOn(Slice& slice) override {
        if (zel_.state() != QProcess::NotRunning) return false;
        if (!std::exchange(isMade_, true)) {
            const QStringList messages = said();
            // Up to 1 it has only something to say of what it has made.
            if (zel_.exitStatus() == QProcess::NormalExit && zel_.exitCode() < 2 &&
                QFileInfo(overlay_).size() > 0) {
                for (const QString& message : messages) files_.log_.add(halNotify::Warning, "host", message);
                made_ = files_.overlays_.comingFile(overlay_.toStdString());
            } else {
                const QString why = messages.join("; ");
                files_.log_.add(halNotify::Error, "host",
                                path_ + " cannot be opened: " +
                                    (why.isEmpty() ? "the zel command has made no overlay of it" : why));
            }
        }
        return !made_ || made_->goOn(slice);
    }
    void finish() override {
        zel_.waitForFinished(-1);
        ComingFile::finish();
    }
    int percent() const override { return made_ ? made_->percent() : 0; }
    int pauseMilliseconds() const override { return isMade_ ? 0 : kLookMilliseconds; }
    bool show(Slice& slice) override { return !made_ || made_->show(slice); }
    bool isShown() const override { return made_ && made_->isShown(); }

  private:
    static constexpr int kLookMilliseconds = 20;

    /// What the command says, a line each. Of what becomes of the file, the user knows the file.
    QStringList said() {
        QStringList lines;
        for (QString line : QString::fromUtf8(zel_.readAll()).split('\n')) {
            line = line.trimmed();
            if (line.startsWith(overlay_)) line.replace(0, overlay_.size(), path_);
            for (const QString& known : {QString("zel: "), path_ + ": "})
                if (zel_.exitCode() > 1 && line.startsWith(known)) line.remove(0, known.size());
            if (!line.isEmpty()) lines << line;
        }
        return lines;
    }

    UserFiles& files_;
    QString path_;
    QString overlay_;
    QProcess zel_;
    bool isMade_ = false;
    std::unique_ptr<ComingFile> made_;
};

std::unique_ptr<ComingFile> UserFiles::coming(const QString& path) {
    if (isOfOtherProgram(path)) return comingConverted(path);
    if (!isPlatformFile(path)) return overlays_.comingFile(path.toStdString());
    auto platforms = std::make_unique<ComingPlatforms>(*this, path);
    return platforms->isOpen() ? std::move(platforms) : nullptr;
}

std::unique_ptr<ComingFile> UserFiles::comingConverted(const QString& path) {
    const QString program = findZel();
    const QFileInfo file(path);
    QDir directory(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    const auto refuse = [&](const char* why) {
        log_.add(halNotify::Error, "host", QString("%1 cannot be opened: %2").arg(path, why));
        return nullptr;
    };
    if (program.isEmpty()) return refuse("the zel command, which reads such files, is not installed");
    const char* const noRoom = "there is no room for its overlay";
    if (!directory.mkpath("converted") || !directory.cd("converted")) return refuse(noRoom);
    // It may be edited and saved, so it stays, and another one takes no other's place, of another program's
    // neither.
    QString overlay = directory.absoluteFilePath(file.completeBaseName() + ".zel");
    for (int i = 2; QFileInfo::exists(overlay) || !QFile(overlay).open(QIODevice::NewOnly); ++i) {
        if (i > kMostOfOneName) return refuse(noRoom);
        overlay = directory.absoluteFilePath(QString("%1-%2.zel").arg(file.completeBaseName()).arg(i));
    }
    return std::make_unique<ComingConverted>(*this, program, path, overlay);
}

Work UserFiles::showing(const QString& path, PlatformFile& file, std::size_t& shown) {
    const std::string name = path.toStdString();
    {
        FileMessages told(log_, path);
        for (const PlatformFile::Message& message : file.messages)
            told.add(halNotify::Error, message.line, message.text);
    }
    if (file.platforms.empty()) {
        log_.add(halNotify::Error, "host", QString("platform file %1 holds no platform").arg(path));
        co_return;
    }
    platformFiles_.insert(path);
    watch();
    std::unordered_map<std::string, SharedText> overlays;
    for (Pieces some(file.platforms.size(), 100); some.next(); co_yield some.units())
        for (std::size_t i = some.first; i < some.last; ++i)
            if (const PlatformFile::Platform& platform = file.platforms[i]; !platform.overlay.empty())
                overlays[platform.name] = platform.overlay;
    co_await scenario_.loading(name, file.platforms, shown);
    if (overlays.empty()) co_return;
    std::vector<std::uint64_t> ids;
    for (const auto& [id, platform] : scenario_.platforms())
        if (platform.file.text() == name) ids.push_back(id);
    const QDir directory = QFileInfo(path).dir();
    for (const std::uint64_t id : ids) {
        // Others may have removed it meanwhile.
        const Scenario::Platform* platform = scenario_.find(id);
        const auto at = platform ? overlays.find(platform->name) : overlays.end();
        const bool has = at != overlays.end();
        if (has) attach(directory.absoluteFilePath(QString::fromStdString(at->second.text())), id);
        co_yield has ? kUnitsOfAnOverlay : 1;
    }
}

void UserFiles::attach(const QString& path, std::uint64_t platform) {
    LoadedOverlay* unattached = nullptr;
    for (LoadedOverlay* loaded : overlays_.findAll(path.toStdString())) {
        if (loaded->platform == platform) return;
        if (loaded->platform == 0) unattached = loaded;
    }
    if (unattached)
        overlays_.attach(*unattached, platform);
    else
        overlays_.loadFile(path.toStdString(), platform, true);
}

void UserFiles::ask(const QString& title, const QString& key, const QStringList& filterRows) {
    const QString path = dialogs_.ask({.kind = FileDialogs::Kind::Load,
                                       .title = title,
                                       .group = "Host",
                                       .key = key,
                                       .startDirectory = {},
                                       .filterRows = filterRows});
    if (!path.isEmpty()) openSoon(path);
}

QStringList UserFiles::recent() const {
    return settings_.value(kRecentKey).split('\n', Qt::SkipEmptyParts);
}

void UserFiles::remember(const QString& path) {
    QStringList paths = recent();
    paths.removeAll(path);
    paths.prepend(path);
    paths = paths.mid(0, kRecentFiles);
    settings_.setValue(kRecentKey, paths.join('\n'));
    window_.setRecentFiles(paths);
}

void UserFiles::watch() {
    QSet<QString> wanted = platformFiles_;
    for (const LoadedOverlay* overlay : overlays_.files())
        wanted.insert(QString::fromStdString(overlay->path));
    for (const QString& path : watcher_.files())
        if (!wanted.remove(path)) watcher_.removePath(path);
    for (const QString& path : wanted)
        if (QFileInfo::exists(path)) watcher_.addPath(path);
}

void UserFiles::readChanged() {
    for (const QString& path : std::exchange(changed_, {})) {
        if (!QFileInfo::exists(path)) {
            log_.add(halNotify::Warning, "host", path + " is gone from the disk; it stays as it was read");
            continue;
        }
        // Given up meanwhile, it does not come back.
        const auto open = [this, path]() -> std::unique_ptr<ComingFile> {
            if (platformFiles_.contains(path)) return coming(path);
            return overlays_.comingFile(path.toStdString(), true);
        };
        queue_.add(path, open, [this](bool) { watch(); });
    }
    // A file that was replaced is not watched any more.
    watch();
}

}  // namespace sandbox
