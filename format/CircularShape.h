#pragma once

#include "format/FillableShape.h"

namespace halCore::ZEL {

/// A shape about a centre.
class CircularShape : public FillableShape {
  public:
    int getCenterPosition(Vec3& out) const;
    void setCenterPosition(const Vec3& position) { center_ = position; }

    int getRadius(double& metres) const;
    void setRadius(double metres) { radius_ = metres; }

  protected:
    CircularShape(bool relative, bool canExtrude, bool canFollow)
        : FillableShape(relative, canExtrude, canFollow) {}
    /// The keyword, the fillable lines, centre and radius.
    void serializeCircular_(TextWriter& writer) const;
    void serializeToStream_(std::ostream& out) const override;

  private:
    std::optional<Vec3> center_;
    std::optional<double> radius_;
};

class Circle : public CircularShape {
  public:
    explicit Circle(bool relative) : CircularShape(relative, true, true) {}
    ShapeType shapeType() const override { return ShapeType::Circle; }
};

class Sphere : public CircularShape {
  public:
    explicit Sphere(bool relative) : CircularShape(relative, false, true) {}
    ShapeType shapeType() const override { return ShapeType::Sphere; }
};

class Hemisphere : public CircularShape {
  public:
    explicit Hemisphere(bool relative) : CircularShape(relative, false, true) {}
    ShapeType shapeType() const override { return ShapeType::Hemisphere; }
};

/// A racetrack: two half circles about two centres, joined by straight lines.
class Orbit : public CircularShape {
  public:
    explicit Orbit(bool relative) : CircularShape(relative, true, true) {}
    ShapeType shapeType() const override { return ShapeType::Orbit; }

    int getCenterPosition2(Vec3& out) const;
    void setCenterPosition2(const Vec3& position) { center2_ = position; }

  protected:
    void serializeToStream_(std::ostream& out) const override;

  private:
    std::optional<Vec3> center2_;
};

}  // namespace halCore::ZEL
