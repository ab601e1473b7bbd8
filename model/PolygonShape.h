#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "model/Anchored.h"
#include "model/BaseFilledShape.h"
#include "model/Equipped.h"
#include "model/PointsContainer.h"
#include "model/Stateful.h"

namespace OverlayEditor {

/// A line or a polygon: an ordered list of geodetic points.
class PolygonShape : public PointsContainer,
                     public Equipped<PolygonShape, BaseFilledShape, PolygonPanel>,
                     public Anchored,
                     public Stateful {
  public:
    enum Subtype { Line = 0, Polygon = 1 };

    PolygonShape(const Preferences& preferences, Subtype subtype);
    PolygonShape(const PolygonShape& other);

    Subtype subtype() const { return subtype_; }
    /// Radians and metres; kNoPlace for an offset that leads nowhere.
    const std::vector<halCore::Vec3>& points() const { return points_.places(); }
    /// A line with two points at least, a polygon with three.
    bool isComplete() const;

    int serialize(Serializer& serializer) override;
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) override;
    halCore::Vec3 anchorPlace() const override { return centerPoint(); }
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;
    /// Removes all points; the shape disappears at once.
    void clear() override;

    std::size_t getNumPoints() const override { return points_.size(); }
    /// Behind the last point: the converter's reference position, (0, 0, 0) without one.
    halCore::Vec3 pointAtIndex(unsigned long index) const override;
    void setPointAtIndex(unsigned long index, const halCore::Vec3& point) override;
    void insertPointAtIndex(unsigned long index, const halCore::Vec3& point) override;
    void deletePointAtIndex(unsigned long index) override;
    PlacedPoint placedPointAtIndex(unsigned long index) const override { return points_.at(index); }
    void setPlacedPointAtIndex(unsigned long index, const PlacedPoint& point) override;
    std::optional<double> altitudeAhead() const override { return Shape::altitudeAhead(); }
    void setAltitudeAhead(double meters) override { Shape::setAltitudeAhead(meters); }
    void replacePointAtIndex(unsigned long index, std::span<const PlacedPoint> points) override;

    /// The point that the panel shows; 0 without one.
    unsigned long shownPoint() const { return panel_() ? panel_()->shownPoint() : 0; }
    void showPoint(unsigned long index) {
        if (panel_()) panel_()->refreshPoint(index);
    }
    /// For the tool while a point is dragged: as setPointAtIndex, but the tool keeps its points.
    void mouseSetPointAtIndex(unsigned long index, const halCore::Vec3& point);
    /// The same with all points at once; as many as there are.
    void mouseSetPoints(PlacedPoints points);
    /// Appends without showing anything anew: for a shape under construction.
    void addPoint(const halCore::Vec3& point) { addPoint(PlacedPoint(point)); }
    void addPoint(const PlacedPoint& point) { putPlaced_(points_.size(), point); }
    void addPoints(std::vector<halCore::Vec3> places);

  private:
    friend Equipped;

    /// Behind the last point: appends.
    void putPoint_(unsigned long index, const PlacedPoint& point);
    /// Refreshes after a change of the list, at an index, that the tool did not make.
    void pointsChanged_(unsigned long index);
    void resetToolPoints_();
    void saveState_(ShapeState& state, const ShapeState* like) const override;
    void takeState_(const ShapeState& state) override;
    void showIn_(PolygonPanel& panel);
    void takeFrom_(PolygonPanel& panel);

    Subtype subtype_;
    Equipment<PolygonPanel> equipment_;
};

}  // namespace OverlayEditor
