#pragma once

#include "format/CircularShape.h"

namespace halCore::ZEL {

/// A circular shape with a height.
class CircularHeightShape : public CircularShape {
  public:
    int getHeight(double& metres) const;
    void setHeight(double metres) { height_ = metres; }

  protected:
    explicit CircularHeightShape(bool relative) : CircularShape(relative, false, true) {}
    void serializeCircularHeight_(TextWriter& writer) const;
    void serializeToStream_(std::ostream& out) const override;

  private:
    std::optional<double> height_;
};

class Cone : public CircularHeightShape {
  public:
    explicit Cone(bool relative) : CircularHeightShape(relative) {}
    ShapeType shapeType() const override { return ShapeType::Cone; }
};

/// Axes are whole axes, not halves.
class Ellipsoid : public CircularHeightShape {
  public:
    explicit Ellipsoid(bool relative) : CircularHeightShape(relative) {}
    ShapeType shapeType() const override { return ShapeType::Ellipsoid; }

    int getMajorAxis(double& metres) const;
    void setMajorAxis(double metres) { majorAxis_ = metres; }

    int getMinorAxis(double& metres) const;
    void setMinorAxis(double metres) { minorAxis_ = metres; }

  protected:
    void serializeToStream_(std::ostream& out) const override;

  private:
    std::optional<double> majorAxis_;
    std::optional<double> minorAxis_;
};

}  // namespace halCore::ZEL
