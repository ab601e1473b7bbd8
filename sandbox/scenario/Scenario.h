#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "common/Work.h"
#include "pi/HostStructures.h"
#include "pi/PIEvents.h"
#include "sandbox/scenario/PlatformFile.h"
#include "sandbox/scenario/Track.h"

namespace sandbox {

class Plugin;

/// The host's scenario: platforms and a clock. Positions are radians and metres, times seconds since the
/// start of the reference year.
class Scenario : public QObject {
    Q_OBJECT

  public:
    struct Platform {
        std::string name;  ///< UTF-8
        SharedText icon;
        Track track;
        SharedText file;          ///< that it was loaded from; empty for all others
        Plugin* owner = nullptr;  ///< who created it through a service
    };

    Scenario();

    static constexpr int kReferenceYear = 2026;
    /// What the tracks of loaded platforms span; both 0 without any.
    double beginTime() const { return begin_; }
    double endTime() const { return end_; }
    double time() const { return time_; }
    void setTime(double seconds);

    /// Lets the clock run, `rate` times as fast as the clock on the wall. It stops by itself where the
    /// tracks end, but goes on when it is started there.
    void setRunning(bool running);
    bool isRunning() const { return tick_.isActive(); }
    void setRate(double rate);
    double rate() const { return rate_; }

    /// \return the new platform's id, never 0
    std::uint64_t add(const PIData::PIPlatformHeader& header, const PIData::PIDataPoint& point,
                      Plugin* owner = nullptr);
    /// Adds a file's platforms. Those that were loaded from the same file under the same name get the new
    /// track and stay what overlays are attached to; the clock goes to the begin when it is outside.
    void load(const std::string& file, std::deque<PlatformFile::Platform> platforms);
    /// The same in slices: the clock is set first, then each platform is added or changed, and told of.
    /// \param platforms are taken one by one \param done counts them
    Work loading(const std::string& file, std::deque<PlatformFile::Platform>& platforms, std::size_t& done);
    /// False for an unknown id, as below.
    bool move(std::uint64_t id, const PIData::PIDataPoint& point);
    bool remove(std::uint64_t id);
    /// Removes every platform and tells why in one event.
    void clear(PIApplicationEvents_t why);

    /// In the order of their creation.
    const std::map<std::uint64_t, Platform>& platforms() const { return platforms_; }
    const Platform* find(std::uint64_t id) const;
    /// Whether time moves it.
    bool moves(std::uint64_t id) const;
    /// A platform's place at a time, if it has one then; see Track.
    std::optional<PIData::PIDataPoint> at(std::uint64_t id, double seconds) const;

  signals:
    void platformAdded(std::uint64_t id);
    /// It was put somewhere else; not sent as time passes.
    void platformMoved(std::uint64_t id);
    /// It was given another track.
    void trackChanged(std::uint64_t id);
    void platformRemoved(std::uint64_t id);
    void cleared(PIApplicationEvents_t why);
    void timeChanged();
    /// The clock was started, stopped or given another rate, or the tracks span another time.
    void clockChanged();

  private:
    void tick();
    void include(const Track& track);
    void updateSpan();

    std::map<std::uint64_t, Platform> platforms_;
    std::uint64_t lastId_ = 0;
    double time_ = 0.0;
    std::set<std::string> files_;  ///< that were loaded
    bool spans_ = false;           ///< whether any platform is of a file
    double begin_ = 0.0;
    double end_ = 0.0;
    double rate_ = 1.0;
    QTimer tick_;
    QElapsedTimer sinceTick_;
};

}  // namespace sandbox
