#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <istream>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "format/ParseReport.h"
#include "globe/OverlayScene.h"
#include "pi/HostObservers.h"
#include "pi/HostStructures.h"
#include "sandbox/ComingFile.h"
#include "sandbox/HandleRegistry.h"

namespace sandbox {

class Log;
class Scenario;
struct OverlayNote;

/// One loaded overlay: a file of the host's, or a text that a plug-in shows.
class LoadedOverlay final : public HostObject {
  public:
    LoadedOverlay(OverlayScene& scene) : scene_(scene) {}
    ~LoadedOverlay() override { scene_.remove(sceneId); }

    QString describe() const override;
    bool isPluginsOwn() const override { return isStream(); }
    bool isStream() const { return path.empty(); }

    std::string path;                                  ///< absolute; empty for a stream
    std::string text;                                  ///< as it was read
    std::vector<halCore::ZEL::ParseMessage> messages;  ///< of its reading
    std::uint64_t platform = 0;                        ///< that it is attached to, or 0
    bool shown = true;
    bool wanted = true;  ///< shown, if it were only for the user: a plug-in hides what it shows itself
    OverlayScene::Id sceneId = 0;

  private:
    OverlayScene& scene_;
};

/// The overlays that the host shows, and who wants to hear of them. Parser messages and everything that
/// fails go to the log.
class OverlayFiles : public QObject {
    Q_OBJECT

  public:
    OverlayFiles(OverlayScene& scene, const Scenario& scenario, HandleRegistry& handles, Log& log);

    /// Null when the file cannot be read or holds no shape.
    LoadedOverlay* loadFile(const std::string& path, std::uint64_t platform, bool shown);
    /// The same for a file that the user waits for, on no platform; what shows the file already, wherever,
    /// shows what it holds now. Null, with a message, when it cannot be read.
    /// \param again nothing is shown of a file that is not shown any more by then
    std::unique_ptr<ComingFile> comingFile(const std::string& path, bool again = false);
    /// Cheap enough for every mouse move: nothing but the scene hears of it. Null when there is no shape.
    LoadedOverlay* loadStream(std::istream& stream, std::uint64_t platform, Plugin* owner);
    /// Reads the file again; the overlay stays what it is to those who know it. What was read last stands
    /// when the file cannot be read or holds no shape: false then.
    bool reload(LoadedOverlay& overlay);
    void unload(LoadedOverlay& overlay);
    void show(LoadedOverlay& overlay, bool shown);
    /// The same for a plug-in: what it hides, for as long as it edits it, the user goes on wanting.
    void showForPlugin(LoadedOverlay& overlay, bool shown);
    /// Puts a file's overlay on another platform, or on none (0): it is unloaded, and loaded there.
    void attach(LoadedOverlay& overlay, std::uint64_t platform);

    /// The file's overlays, found whatever way its path is written: one for each platform that it was
    /// loaded for.
    std::vector<LoadedOverlay*> findAll(const std::string& path) const;
    /// The first of them; null when the file is not loaded.
    LoadedOverlay* find(const std::string& path) const;
    /// Files, in the order of their loading.
    std::vector<LoadedOverlay*> files() const;
    std::vector<LoadedOverlay*> streams() const;

    /// False for an observer that is registered already.
    bool addObserver(PIHALVIS::ZELEventObserver* observer, Plugin* owner);
    /// False for an observer that the plug-in has not registered.
    bool removeObserver(PIHALVIS::ZELEventObserver* observer, const Plugin* owner);
    /// Removes the plug-in's observers. \return how many there were
    int removeObservers(const Plugin* owner);

    /// A line along places on or above the ground, `width` pixels wide.
    /// \param place gives them by their numbers
    static OverlayScene::Shapes line(std::size_t count,
                                     const std::function<PIData::PIDataPoint(std::size_t)>& place,
                                     std::uint32_t rgba, int width);

  signals:
    /// The files or what is shown of them have changed.
    void filesChanged();

  private:
    struct Observer {
        PIHALVIS::ZELEventObserver* observer;
        Plugin* owner;
    };

    /// The overlays on a platform, some of which may be gone: there may be as many as platforms.
    struct Carried {
        std::vector<void*> handles;
        std::size_t most = 16;  ///< then those that are gone are left out
    };

    class Coming;
    /// One of a file that nobody has read yet.
    std::unique_ptr<LoadedOverlay> unread(const std::string& path, std::uint64_t platform, bool shown);
    void tellUnread(const LoadedOverlay& overlay, const std::string& error);
    /// Null, with a message, when the file cannot be read.
    std::unique_ptr<LoadedOverlay> open(const std::string& path, std::uint64_t platform, bool shown);
    /// Takes what reading had to say, and reports it.
    void report(LoadedOverlay& overlay, halCore::ZEL::ParseReport report, const OverlayScene::Shapes& shapes,
                std::vector<OverlayNote> notes);
    OverlayScene::Shapes read(LoadedOverlay& overlay);
    LoadedOverlay* add(std::unique_ptr<LoadedOverlay> overlay, OverlayScene::Shapes shapes, Plugin* owner);
    LoadedOverlay* addFile(std::unique_ptr<LoadedOverlay> overlay, OverlayScene::Shapes shapes);
    /// What was read takes the place of what an overlay was; that stands when nothing was read.
    bool renew(LoadedOverlay& overlay, LoadedOverlay& read, halCore::ZEL::ParseReport report,
               OverlayScene::Shapes shapes, std::vector<OverlayNote> notes);
    void noteCarried(const LoadedOverlay& overlay);
    std::vector<LoadedOverlay*> carriedBy(std::uint64_t platform) const;
    void platformChanged(std::uint64_t id);
    void platformRemoved(std::uint64_t id);
    template <typename Event>
    void tell(const char* what, Event event);

    OverlayScene& scene_;
    const Scenario& scenario_;
    HandleRegistry& handles_;
    Log& log_;
    std::vector<Observer> observers_;
    std::unordered_map<std::uint64_t, Carried> carried_;  ///< by their platforms
};

}  // namespace sandbox
