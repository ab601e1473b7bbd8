#pragma once

#include "format/Color.h"
#include "format/OutlinedShape.h"

namespace halCore::ZEL {

/// Single points.
class Points : public OutlinedShape {
  public:
    explicit Points(bool relative) : OutlinedShape(relative, true, true) {}
    ShapeType shapeType() const override { return ShapeType::Points; }

    const std::vector<Vec3>& points() const { return points_; }
    std::vector<Vec3>& points() { return points_; }
    void addPoint(const Vec3& point) { points_.push_back(point); }
    void setPoints(std::vector<Vec3> points) { points_ = std::move(points); }

    /// Pixels; default 1.
    int getPointSize(int& out) const;
    void setPointSize(int pixels) { pointSize_ = pixels; }

    int getColor(Color& out) const;
    void setColor(const Color& color) { color_ = color; }

  protected:
    void serializeToStream_(std::ostream& out) const override;

  private:
    std::vector<Vec3> points_;
    std::optional<int> pointSize_;
    std::optional<Color> color_;
};

}  // namespace halCore::ZEL
