#pragma once

#include <QObject>
#include <cstdint>
#include <map>

#include "globe/OverlayScene.h"

namespace sandbox {

class Scenario;

/// Shows where platforms come from and go to: a thin line along the track of each platform that a file
/// gave one.
class TrackLines : public QObject {
    Q_OBJECT

  public:
    TrackLines(OverlayScene& scene, const Scenario& scenario);
    ~TrackLines() override;

    void setShown(bool shown);

  private:
    void update(std::uint64_t platform);
    void remove(std::uint64_t platform);

    OverlayScene& scene_;
    const Scenario& scenario_;
    std::map<std::uint64_t, OverlayScene::Id> lines_;
    bool shown_ = true;
};

}  // namespace sandbox
