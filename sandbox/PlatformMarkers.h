#pragma once

#include <QObject>
#include <cstdint>

#include "sandbox/WorkInTurns.h"

namespace sandbox {

class GlobeView;
class Scenario;

/// Keeps the view's platforms where the scenario has them. As time passes very many of them follow it in
/// turns, between which the window's events are heard; a few are there at once.
class PlatformMarkers : public QObject {
    Q_OBJECT

  public:
    PlatformMarkers(GlobeView& view, const Scenario& scenario);

    /// Whether some have yet to follow.
    bool follows() const { return following_.goesOn(); }

  signals:
    /// A platform has come to be anywhere, or nowhere.
    void presenceChanged();

  private:
    void show(std::uint64_t id);
    Work follow();

    GlobeView& view_;
    const Scenario& scenario_;
    WorkInTurns following_;
    std::uint64_t last_ = 0;  ///< that has followed
};

}  // namespace sandbox
