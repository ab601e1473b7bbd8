#pragma once

#include <QObject>
#include <cstdint>
#include <istream>
#include <string>
#include <vector>

#include "pi/HostObservers.h"
#include "pi/HostStructures.h"
#include "sandbox/HandleRegistry.h"
#include "sandbox/view/OverlayScene.h"

namespace sandbox {

class Log;
class Scenario;

/// One loaded overlay: a file of the host's, or a text that a plug-in shows.
class LoadedOverlay final : public HostObject {
  public:
    LoadedOverlay(OverlayScene& scene) : scene_(scene) {}
    ~LoadedOverlay() override { scene_.remove(sceneId); }

    QString describe() const override;
    bool isPluginsOwn() const override { return isStream(); }
    bool isStream() const { return path.empty(); }

    std::string path;            ///< absolute; empty for a stream
    std::string text;            ///< as it was read
    std::uint64_t platform = 0;  ///< that it is attached to, or 0
    bool shown = true;
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
    /// Cheap enough for every mouse move: nothing but the scene hears of it. Null when there is no shape.
    LoadedOverlay* loadStream(std::istream& stream, std::uint64_t platform, Plugin* owner);
    void unload(LoadedOverlay& overlay);
    void show(LoadedOverlay& overlay, bool shown);

    /// The file's overlay, found whatever way its path is written; null when it is not loaded.
    LoadedOverlay* find(const std::string& path) const;
    /// Files, in the order of their loading.
    std::vector<LoadedOverlay*> files() const;
    std::vector<LoadedOverlay*> streams() const;

    void addObserver(PIHALVIS::ZELEventObserver* observer, Plugin* owner);
    /// False for an observer that is not registered.
    bool removeObserver(PIHALVIS::ZELEventObserver* observer);
    /// Removes the plug-in's observers. \return how many there were
    int removeObservers(const Plugin* owner);

    /// A line between two places on or above the ground.
    static OverlayScene::Shapes line(const PIData::PIDataPoint& from, const PIData::PIDataPoint& to,
                                     std::uint32_t rgba);

  signals:
    /// The files or what is shown of them have changed.
    void filesChanged();

  private:
    struct Observer {
        PIHALVIS::ZELEventObserver* observer;
        Plugin* owner;
    };

    LoadedOverlay* add(std::unique_ptr<LoadedOverlay> overlay, Plugin* owner);
    void platformChanged(std::uint64_t id);
    void platformRemoved(std::uint64_t id);
    std::optional<OverlayReference> reference(std::uint64_t platform) const;
    template <typename Event>
    void tell(const char* what, Event event);

    OverlayScene& scene_;
    const Scenario& scenario_;
    HandleRegistry& handles_;
    Log& log_;
    std::vector<Observer> observers_;
};

}  // namespace sandbox
