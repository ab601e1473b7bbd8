#pragma once

#include "format/FillableShape.h"

namespace halCore::ZEL {

/// A box between two parallels and two meridians. Its sides and its altitude are always there.
class LatLonAltBox : public FillableShape {
  public:
    explicit LatLonAltBox(bool relative) : FillableShape(relative, true, false) {}
    ShapeType shapeType() const override { return ShapeType::LatLonAltBox; }

    /// Radians.
    double north() const { return north_; }
    double south() const { return south_; }
    double west() const { return west_; }
    double east() const { return east_; }
    /// Metres.
    double altitude() const { return altitude_; }
    void setNorth(double radians) { north_ = radians; }
    void setSouth(double radians) { south_ = radians; }
    void setWest(double radians) { west_ = radians; }
    void setEast(double radians) { east_ = radians; }
    void setAltitude(double metres) { altitude_ = metres; }

    int getHeight(double& metres) const;
    void setHeight(double metres) { height_ = metres; }

  protected:
    void serializeToStream_(std::ostream& out) const override;

  private:
    double north_ = 0.0;
    double south_ = 0.0;
    double west_ = 0.0;
    double east_ = 0.0;
    double altitude_ = 0.0;
    std::optional<double> height_;
};

}  // namespace halCore::ZEL
