#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "pi/HostStructures.h"
#include "pi/PIEvents.h"

namespace sandbox {

class Plugin;

/// The host's scenario: platforms and a clock. Positions are radians and metres, times seconds since the
/// start of the reference year.
class Scenario : public QObject {
    Q_OBJECT

  public:
    struct Platform {
        PIData::PIPlatformHeader header;
        PIData::PIDataPoint point;  ///< where it is at the point's own time
        Plugin* owner = nullptr;    ///< who created it through a service
    };

    Scenario();

    static constexpr int kReferenceYear = 2026;
    double beginTime() const { return 0.0; }
    double time() const { return time_; }
    void setTime(double seconds);
    /// Lets the clock run with the wall clock.
    void setRunning(bool running);

    /// \return the new platform's id, never 0
    std::uint64_t add(const PIData::PIPlatformHeader& header, const PIData::PIDataPoint& point,
                      Plugin* owner = nullptr);
    /// False for an unknown id, as below.
    bool move(std::uint64_t id, const PIData::PIDataPoint& point);
    bool remove(std::uint64_t id);
    /// Removes every platform and tells why in one event.
    void clear(PIApplicationEvents_t why);

    /// In the order of their creation.
    const std::map<std::uint64_t, Platform>& platforms() const { return platforms_; }
    const Platform* find(std::uint64_t id) const;
    /// A platform's place at a time: with a speed it follows the geodesic that its heading starts. It has
    /// data from its point's time on, without a speed at all times.
    std::optional<PIData::PIDataPoint> at(std::uint64_t id, double seconds) const;

  signals:
    void platformAdded(std::uint64_t id);
    /// Also sent as time passes for a platform with a speed.
    void platformMoved(std::uint64_t id);
    void platformRemoved(std::uint64_t id);
    void cleared(PIApplicationEvents_t why);
    void timeChanged();

  private:
    std::map<std::uint64_t, Platform> platforms_;
    std::uint64_t lastId_ = 0;
    double time_ = 0.0;
    QTimer tick_;
    QElapsedTimer sinceTick_;
};

}  // namespace sandbox
