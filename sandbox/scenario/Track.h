#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "pi/HostStructures.h"
#include "sandbox/scenario/TrackRows.h"

namespace sandbox {

/// Where a platform is at every time: points in the order of their times, never empty. Positions are
/// radians and metres, times seconds.
class Track {
  public:
    /// A point's heading or speed that follows from the places before and after it.
    static constexpr double kFollows = std::numeric_limits<double>::quiet_NaN();

    Track() : Track(PIData::PIDataPoint()) {}
    explicit Track(const PIData::PIDataPoint& point) : Track(std::vector{point}) {}
    /// Points with the same time are kept; the last of them holds from then on.
    /// \param points at least one, in any order
    explicit Track(std::vector<PIData::PIDataPoint> points);
    /// Some of the rows that tracks share, one at least, in the order of their times.
    Track(std::shared_ptr<const TrackRows> rows, std::uint32_t first, std::uint32_t count)
        : rows_(std::move(rows)), first_(first), count_(count) {}

    std::size_t size() const { return count_; }
    PIData::PIDataPoint point(std::size_t index) const { return rows_->at(first_ + index); }
    double beginTime() const { return timeOf(0); }
    double endTime() const { return timeOf(size() - 1); }
    /// Whether it is ever anywhere else.
    bool moves() const;

    /// Between two points it follows the geodesic at an even speed, with the altitude, heading, pitch and
    /// roll between theirs. After the last it goes on straight ahead with that point's speed. Before the
    /// first it is nowhere, but a single point without a speed holds at all times. The result names a heading
    /// and a speed in any case.
    std::optional<PIData::PIDataPoint> at(double seconds) const;

  private:
    double timeOf(std::size_t index) const { return rows_->time(first_ + index); }
    PIData::PIDataPoint inLeg(std::size_t from, double seconds) const;
    PIData::PIDataPoint afterEnd(double seconds) const;
    /// The course on arrival at a point that has others before it, 0 when it never moved.
    double arrivalCourse(std::size_t at) const;

    std::shared_ptr<const TrackRows> rows_;
    std::uint32_t first_ = 0;
    std::uint32_t count_ = 0;
};

}  // namespace sandbox
