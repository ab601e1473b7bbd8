#pragma once

#include "format/ZelShape.h"

namespace halCore::ZEL {

/// A picture between two parallels and two meridians. It has no lines of its own: a file holds it in
/// "kml_..." comments, which are written back with the other comments.
class ImageOverlay : public ZelShape {
  public:
    explicit ImageOverlay(bool relative) : ZelShape(relative, false, false) {}
    ShapeType shapeType() const override { return ShapeType::ImageOverlay; }

    /// Radians.
    double north() const { return north_; }
    double south() const { return south_; }
    double east() const { return east_; }
    double west() const { return west_; }
    void setNorth(double radians) { north_ = radians; }
    void setSouth(double radians) { south_ = radians; }
    void setEast(double radians) { east_ = radians; }
    void setWest(double radians) { west_ = radians; }

    int getRotation(double& radians) const;
    void setRotation(double radians) { rotation_ = radians; }

    const std::string& imageFile() const { return imageFile_; }
    void setImageFile(std::string_view file) { imageFile_ = std::string(file); }

  protected:
    void serializeToStream_(std::ostream&) const override {}

  private:
    double north_ = 0.0;
    double south_ = 0.0;
    double east_ = 0.0;
    double west_ = 0.0;
    std::optional<double> rotation_;
    std::string imageFile_;
};

}  // namespace halCore::ZEL
