#pragma once

#include "format/FillableShape.h"

namespace halCore::ZEL {

enum class TessellationStyle : unsigned char { None, RhumbLine, GreatCircle };

/// A shape made of a list of points.
class PointBasedShape : public FillableShape {
  public:
    const std::vector<Vec3>& points() const { return points_; }
    std::vector<Vec3>& points() { return points_; }
    void addPoint(const Vec3& point) { points_.push_back(point); }
    void setPoints(std::vector<Vec3> points) { points_ = std::move(points); }

    int getTessellation(TessellationStyle& out) const;
    void setTessellation(TessellationStyle style) { tessellation_ = style; }

  protected:
    explicit PointBasedShape(bool relative) : FillableShape(relative, true, true) {}
    void serializeToStream_(std::ostream& out) const override;

  private:
    std::vector<Vec3> points_;
    std::optional<TessellationStyle> tessellation_;
};

/// Points joined in order; two at least.
class Line : public PointBasedShape {
  public:
    explicit Line(bool relative) : PointBasedShape(relative) {}
    ShapeType shapeType() const override { return ShapeType::Line; }
};

/// Points joined in pairs; two at least.
class LineSegs : public PointBasedShape {
  public:
    explicit LineSegs(bool relative) : PointBasedShape(relative) {}
    ShapeType shapeType() const override { return ShapeType::LineSegs; }
};

/// A closed area; three points at least.
class Polygon : public PointBasedShape {
  public:
    explicit Polygon(bool relative) : PointBasedShape(relative) {}
    ShapeType shapeType() const override { return ShapeType::Polygon; }
};

}  // namespace halCore::ZEL
