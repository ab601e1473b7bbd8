#pragma once

#include "format/CircularShape.h"

namespace halCore::ZEL {

/// A circular shape with axes, or a part of one. Axes are whole axes, not halves.
class EllipticalShape : public CircularShape {
  public:
    /// Clockwise from north, as read in [0, 2 pi).
    int getAngleStart(double& radians) const;
    void setAngleStart(double radians) { angleStart_ = radians; }

    /// The angle from start to end; never 0 as read.
    int getAngleSweep(double& radians) const;
    void setAngleSweep(double radians) { angleSweep_ = radians; }

    int getMajorAxis(double& metres) const;
    void setMajorAxis(double metres) { majorAxis_ = metres; }

    int getMinorAxis(double& metres) const;
    void setMinorAxis(double metres) { minorAxis_ = metres; }

  protected:
    EllipticalShape(bool relative, bool canExtrude) : CircularShape(relative, canExtrude, true) {}
    void serializeElliptical_(TextWriter& writer) const;
    void serializeToStream_(std::ostream& out) const override;

  private:
    std::optional<double> angleStart_;
    std::optional<double> angleSweep_;
    std::optional<double> majorAxis_;
    std::optional<double> minorAxis_;
};

class Arc : public EllipticalShape {
  public:
    explicit Arc(bool relative) : EllipticalShape(relative, true) {}
    ShapeType shapeType() const override { return ShapeType::Arc; }
};

class Ellipse : public EllipticalShape {
  public:
    explicit Ellipse(bool relative) : EllipticalShape(relative, true) {}
    ShapeType shapeType() const override { return ShapeType::Ellipse; }
};

class Cylinder : public EllipticalShape {
  public:
    explicit Cylinder(bool relative) : EllipticalShape(relative, false) {}
    ShapeType shapeType() const override { return ShapeType::Cylinder; }

    int getHeight(double& metres) const;
    void setHeight(double metres) { height_ = metres; }

  protected:
    void serializeToStream_(std::ostream& out) const override;

  private:
    std::optional<double> height_;
};

}  // namespace halCore::ZEL
