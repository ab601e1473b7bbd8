#pragma once

#include <optional>
#include <vector>

#include "pi/HostStructures.h"

namespace sandbox {

/// Where a platform is at every time: points in the order of their times, never empty. Positions are
/// radians and metres, times seconds.
class Track {
  public:
    Track() : points_(1) {}
    explicit Track(const PIData::PIDataPoint& point) : points_{point} {}
    /// Points with the same time are kept; the last of them holds from then on.
    /// \param points at least one, in any order
    explicit Track(std::vector<PIData::PIDataPoint> points);

    const std::vector<PIData::PIDataPoint>& points() const { return points_; }
    double beginTime() const { return points_.front().timeSeconds; }
    double endTime() const { return points_.back().timeSeconds; }
    /// Whether it is ever anywhere else.
    bool moves() const { return points_.size() > 1 || points_.back().speedMetersPerSecond != 0.0; }

    /// Between two points it follows the geodesic at an even speed, with the altitude, heading, pitch and
    /// roll between theirs. After the last it goes on straight ahead with that point's speed. Before the
    /// first it is nowhere, but a single point without a speed holds at all times.
    std::optional<PIData::PIDataPoint> at(double seconds) const;

  private:
    std::vector<PIData::PIDataPoint> points_;
};

}  // namespace sandbox
