#pragma once

#include <limits>
#include <optional>
#include <vector>

#include "pi/HostStructures.h"

namespace sandbox {

/// Where a platform is at every time: points in the order of their times, never empty. Positions are
/// radians and metres, times seconds.
class Track {
  public:
    /// A point's heading or speed that follows from the places before and after it.
    static constexpr double kFollows = std::numeric_limits<double>::quiet_NaN();

    Track() : points_(1) {}
    explicit Track(const PIData::PIDataPoint& point) : points_{point} {}
    /// Points with the same time are kept; the last of them holds from then on.
    /// \param points at least one, in any order
    explicit Track(std::vector<PIData::PIDataPoint> points);

    const std::vector<PIData::PIDataPoint>& points() const { return points_; }
    double beginTime() const { return points_.front().timeSeconds; }
    double endTime() const { return points_.back().timeSeconds; }
    /// Whether it is ever anywhere else.
    bool moves() const;

    /// Between two points it follows the geodesic at an even speed, with the altitude, heading, pitch and
    /// roll between theirs. After the last it goes on straight ahead with that point's speed. Before the
    /// first it is nowhere, but a single point without a speed holds at all times. The result names a heading
    /// and a speed in any case.
    std::optional<PIData::PIDataPoint> at(double seconds) const;

  private:
    PIData::PIDataPoint inLeg(std::size_t from, double seconds) const;
    PIData::PIDataPoint afterEnd(double seconds) const;
    /// The course on arrival at a point that has others before it, 0 when it never moved.
    double arrivalCourse(std::size_t at) const;

    std::vector<PIData::PIDataPoint> points_;
};

}  // namespace sandbox
