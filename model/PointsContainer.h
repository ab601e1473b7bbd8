#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "model/PlacedPoint.h"

namespace OverlayEditor {

/// A shape that is an editable list of geodetic points (radians, metres), as the point editor sees it.
class PointsContainer {
  public:
    virtual ~PointsContainer() = default;
    virtual std::size_t getNumPoints() const = 0;
    /// Behind the last point: a position to start a new point from.
    virtual halCore::Vec3 pointAtIndex(unsigned long index) const = 0;
    /// Behind the last point: appends.
    virtual void setPointAtIndex(unsigned long index, const halCore::Vec3& point) = 0;
    /// Inserts before the point at the index; behind the last point: appends.
    virtual void insertPointAtIndex(unsigned long index, const halCore::Vec3& point) = 0;
    /// Behind the last point: nothing is deleted.
    virtual void deletePointAtIndex(unsigned long index) = 0;
    /// A point as it was given, which must be there; and the same with one that may be an offset.
    virtual PlacedPoint placedPointAtIndex(unsigned long index) const {
        return PlacedPoint(pointAtIndex(index));
    }
    virtual void setPlacedPointAtIndex(unsigned long index, const PlacedPoint& point) {
        setPointAtIndex(index, point.place);
    }
    /// The altitude that was typed before there is a point. \see Shape
    virtual std::optional<double> altitudeAhead() const { return std::nullopt; }
    virtual void setAltitudeAhead(double /*meters*/) {}
    /// Several points, one or more, in the place of one; behind the last point they are appended.
    virtual void replacePointAtIndex(unsigned long index, std::span<const PlacedPoint> points) {
        setPlacedPointAtIndex(index, points.front());
        for (const PlacedPoint& point : points.subspan(1)) insertPointAtIndex(++index, point.place);
    }
};

}  // namespace OverlayEditor
