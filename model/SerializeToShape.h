#pragma once

#include <memory>
#include <string>
#include <vector>

#include "format/Serializer.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// Turns descriptions into new editor shapes. A shape is attached to its platform before it gets its
/// points, so that they stay where they are. Offsets stay as they are given; those from another reference
/// than the point converter's are the shape's own.
class SerializeToShape final : public Serializer {
  public:
    explicit SerializeToShape(const Preferences& preferences) : preferences_(preferences) {}

    void beginShape(ShapeType type, unsigned long platformId) override;
    void endShape() override;
    void setItemName(const std::string& name) override;
    void addPoint(const halCore::Vec3& lla) override;
    void addPoints(std::span<const halCore::Vec3> llas) override;
    void takePoints(std::vector<halCore::Vec3> llas) override;
    void addCorner(const halCore::Vec3& lla) override;
    void setCenterPoint2(const halCore::Vec3& lla) override;
    void setMajorRadius(double meters) override;
    void setMinorRadius(double meters) override;
    void setHeight(double meters) override;
    void setStartEndAngles(double startRad, double endRad) override;
    void setLineColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) override;
    void setFillColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) override;
    void setFilled(bool filled) override;
    void setVisible(bool) override {}
    void setLineWidth(int pixels) override;
    void setPointSize(int) override {}
    void setLineStyle(LineStyle) override {}
    void setFontName(const std::string& fileName) override;
    void setTextSize(int points) override;
    void giveOffset(Use use, const halCore::Vec3& xyz, const PointConverter& frame, bool named) override;

    /// Hands the finished shapes over, in their order; they are the caller's, and gone from here.
    std::vector<std::unique_ptr<Shape>> shapes();
    /// The same of the one that was finished last, which must be there.
    std::unique_ptr<Shape> lastShape();
    /// Deletes the finished shapes that were not taken.
    void clearShapes() { finished_.clear(); }

  private:
    /// The current shape by what it can do; null where it cannot.
    struct Faces {
        explicit Faces(Shape* shape);

        BaseLineShape* line = nullptr;
        BaseFilledShape* filled = nullptr;
        CylinderShape* cylinder = nullptr;
        OrbitShape* orbit = nullptr;
        PolygonShape* polygon = nullptr;
        RectangleShape* rectangle = nullptr;
        AnnotationShape* annotation = nullptr;
    };

    void take_(Use use, const PlacedPoint& point);

    const Preferences& preferences_;
    std::unique_ptr<Shape> current_;
    Faces as_{nullptr};
    int corners_ = 0;
    bool isFillGiven_ = false;
    /// The reference that a shape named last: the next one often names the same.
    std::shared_ptr<PointConverter> named_;
    std::vector<std::unique_ptr<Shape>> finished_;
};

}  // namespace OverlayEditor
