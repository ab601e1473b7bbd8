#include "model/SerializeToShape.h"

#include <utility>

namespace OverlayEditor {

namespace {

const char* kindOf(Serializer::ShapeType type) {
    switch (type) {
        case Serializer::Points:
            return "points";
        case Serializer::Line:
            return "line";
        case Serializer::LineSegs:
            return "line segments";
        case Serializer::Polygon:
            return "polygon";
        case Serializer::Rectangle:
            return "rectangle";
        case Serializer::Annotation:
            return "annotation";
        case Serializer::Orbit:
            return "orbit";
        default:
            return "shape";
    }
}

}  // namespace

void SerializeToShape::beginShape(ShapeType type, unsigned long platformId) {
    const auto cylinder = [&](CylinderShape::Subtype subtype) {
        auto shape = std::make_unique<CylinderShape>(preferences_, subtype);
        as_ = {shape.get(), shape.get(), shape.get()};
        current_ = std::move(shape);
    };
    current_ = nullptr;
    as_ = Faces{};
    leavingOut_ = false;
    switch (type) {
        case Circle:
            cylinder(CylinderShape::Circle);
            break;
        case Ellipse:
            cylinder(CylinderShape::Ellipse);
            break;
        case Arc:
            cylinder(CylinderShape::Arc);
            break;
        case Cylinder:
            cylinder(CylinderShape::Cylinder);
            break;
        case Wedge:
            cylinder(CylinderShape::Wedge);
            break;
        case Sphere:
            cylinder(CylinderShape::Sphere);
            break;
        case Hemisphere:
            cylinder(CylinderShape::Hemisphere);
            break;
        case Ellipsoid:
            cylinder(CylinderShape::Ellipsoid);
            break;
        case Cone:
            cylinder(CylinderShape::Cone);
            break;
        default:
            leftOut_.push_back(kindOf(type));
            leavingOut_ = true;
            return;
    }
    current_->setAttachedPlatformId(platformId, converter_, false);
}

void SerializeToShape::endShape() {
    if (current_) finished_.push_back(std::move(current_));
    current_ = nullptr;
    as_ = Faces{};
    leavingOut_ = false;
}

void SerializeToShape::setItemName(const std::string& name) {
    if (current_)
        current_->setName(name);
    else if (leavingOut_)
        leftOut_.back() += " \"" + name + "\"";
}

void SerializeToShape::addPoint(const halCore::Vec3& lla) {
    if (as_.cylinder) as_.cylinder->setCenter(lla);
}

void SerializeToShape::addCorner(const halCore::Vec3& lla) {
    addPoint(lla);
}

void SerializeToShape::setCenterPoint2(const halCore::Vec3&) {}

void SerializeToShape::setMajorRadius(double meters) {
    if (as_.cylinder) as_.cylinder->setMajorRadius(meters);
}

void SerializeToShape::setMinorRadius(double meters) {
    if (as_.cylinder) as_.cylinder->setMinorRadius(meters);
}

void SerializeToShape::setHeight(double meters) {
    if (as_.cylinder) as_.cylinder->setHeight(meters);
}

void SerializeToShape::setStartEndAngles(double startRad, double endRad) {
    if (!as_.cylinder) return;
    as_.cylinder->setStartAngle(startRad);
    as_.cylinder->setEndAngle(endRad);
}

void SerializeToShape::setLineColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    if (as_.line) as_.line->setLineColor(r, g, b, a);
}

void SerializeToShape::setFillColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    if (as_.filled) as_.filled->setFillColor(r, g, b, a);
}

void SerializeToShape::setFilled(bool filled) {
    if (as_.filled) as_.filled->setFilled(filled);
}

void SerializeToShape::setLineWidth(int pixels) {
    if (as_.line) as_.line->setLineWidth(pixels);
}

void SerializeToShape::setFontName(const std::string&) {}

void SerializeToShape::setTextSize(int) {}

std::vector<std::unique_ptr<Shape>> SerializeToShape::shapes() {
    return std::exchange(finished_, {});
}

}  // namespace OverlayEditor
