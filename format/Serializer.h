#pragma once

#include <span>
#include <string>
#include <vector>

#include "common/Vec3.h"
#include "geo/PointConverter.h"

namespace OverlayEditor {

/// Receives the description of a shape, call by call. Every shape's serialize() calls beginShape, its
/// style and geometry in the order its own class fixes, then endShape. A call without a current shape is
/// ignored. Positions are geodetic (radians, metres), lengths metres, angles radians; radii are halves. A
/// position that is known as an offset is told as one.
class Serializer {
  public:
    enum ShapeType {
        None = 0,
        Points = 1,
        Line = 2,
        LineSegs = 3,
        Polygon = 4,
        Rectangle = 5,
        Circle = 6,
        Ellipse = 7,
        Arc = 8,
        Cylinder = 9,
        Sphere = 10,
        Hemisphere = 11,
        Ellipsoid = 12,
        Annotation = 13,
        Cone = 14,
        Orbit = 15,
        Wedge = 16
    };
    enum LineStyle { Solid = 0, Dashed = 1, Dotted = 2 };

    virtual ~Serializer() = default;
    virtual void beginShape(ShapeType type, unsigned long platformId) = 0;
    virtual void endShape() = 0;
    virtual void setItemName(const std::string& name) = 0;
    virtual void addPoint(const halCore::Vec3& lla) = 0;
    virtual void addCorner(const halCore::Vec3& lla) = 0;
    /// The orbit's second centre.
    virtual void setCenterPoint2(const halCore::Vec3& lla) = 0;
    virtual void setMajorRadius(double meters) = 0;
    virtual void setMinorRadius(double meters) = 0;
    virtual void setHeight(double meters) = 0;
    virtual void setStartEndAngles(double startRad, double endRad) = 0;
    virtual void setLineColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) = 0;
    virtual void setFillColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) = 0;
    virtual void setFilled(bool filled) = 0;
    virtual void setVisible(bool visible) = 0;
    virtual void setLineWidth(int pixels) = 0;
    virtual void setPointSize(int pixels) = 0;
    /// Not owned; null for absolute positions.
    virtual void setPointConverter(PointConverter* converter) { converter_ = converter; }
    PointConverter* pointConverter() const { return converter_; }
    virtual void setLineStyle(LineStyle style) = 0;
    virtual void setFontName(const std::string& fileName) = 0;
    virtual void setTextSize(int points) = 0;

    /// What a position is told for.
    enum class Use { Point, Corner, Center2 };
    /// addPoint, addCorner or setCenterPoint2.
    void give(Use use, const halCore::Vec3& lla);
    /// addPoint for each of them.
    virtual void addPoints(std::span<const halCore::Vec3> llas);
    /// The same with a list that is the target's from now on.
    virtual void takePoints(std::vector<halCore::Vec3> llas) { addPoints(llas); }
    /// A position that is an offset from a frame's reference. For who takes no offsets it is the place where
    /// it leads, if there is one. \param named whether the shape names the reference; otherwise it is the
    /// point converter's
    virtual void giveOffset(Use use, const halCore::Vec3& xyz, const PointConverter& frame, bool named);

  protected:
    PointConverter* converter_ = nullptr;
};

}  // namespace OverlayEditor
