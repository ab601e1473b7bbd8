#include "model/SerializeToShape.h"

#include <utility>

#include "format/Annotation.h"
#include "geo/OffsetGrid.h"
#include "model/ColorBytes.h"
#include "model/ShapeKinds.h"

namespace OverlayEditor {

namespace {

/// A label without a font of its own looks as its file means it, not as one that the user begins.
void useFontOfFiles(AnnotationShape& label) {
    const halCore::ZEL::Annotation unset(false);
    std::string name;
    int size = 0;
    unset.getFontName(name);
    unset.getTextSize(size);
    label.setFontName(name);
    label.setFontSize(size);
}

}  // namespace

SerializeToShape::Faces::Faces(Shape* shape) {
    // Most are lines and polygons; each question takes its time.
    if (!shape) return;
    if ((polygon = dynamic_cast<PolygonShape*>(shape)))
        filled = polygon;
    else if ((cylinder = dynamic_cast<CylinderShape*>(shape)))
        filled = cylinder, orbit = dynamic_cast<OrbitShape*>(shape);
    else if ((rectangle = dynamic_cast<RectangleShape*>(shape)))
        filled = rectangle;
    else if (!(annotation = dynamic_cast<AnnotationShape*>(shape)))
        filled = dynamic_cast<BaseFilledShape*>(shape);
    line = filled ? filled : dynamic_cast<BaseLineShape*>(shape);
}

void SerializeToShape::beginShape(ShapeType type, unsigned long platformId) {
    const ShapeKind* const kind = kindReadFrom(type);
    current_ = kind ? kind->make(preferences_) : nullptr;
    as_ = Faces(current_.get());
    corners_ = 0;
    isFillGiven_ = false;
    if (as_.annotation) useFontOfFiles(*as_.annotation);
    if (as_.cylinder) as_.cylinder->setRequiresAllPoints(false);
    if (current_) current_->setAttachedPlatformId(platformId, converter_, false);
}

void SerializeToShape::endShape() {
    if (current_) finished_.push_back(std::move(current_));
    current_ = nullptr;
    as_ = Faces(nullptr);
}

void SerializeToShape::setItemName(const std::string& name) {
    if (current_) current_->setName(name);
}

void SerializeToShape::addPoint(const halCore::Vec3& lla) {
    take_(Use::Point, PlacedPoint(lla));
}

void SerializeToShape::addPoints(std::span<const halCore::Vec3> llas) {
    if (as_.polygon)
        as_.polygon->addPoints({llas.begin(), llas.end()});
    else
        Serializer::addPoints(llas);
}

void SerializeToShape::takePoints(std::vector<halCore::Vec3> llas) {
    if (as_.polygon)
        as_.polygon->addPoints(std::move(llas));
    else
        Serializer::addPoints(llas);
}

void SerializeToShape::addCorner(const halCore::Vec3& lla) {
    take_(Use::Corner, PlacedPoint(lla));
}

void SerializeToShape::setCenterPoint2(const halCore::Vec3& lla) {
    take_(Use::Center2, PlacedPoint(lla));
}

void SerializeToShape::giveOffset(Use use, const halCore::Vec3& xyz, const PointConverter& frame,
                                  bool named) {
    if (!current_) return;
    if (current_->placed().size() == 0 && corners_ == 0) {
        if (!named) {
            current_->countFrom(frame);
        } else {
            halCore::Vec3 reference;
            halCore::Vec3 last;
            frame.getReferenceLla(reference);
            if (named_) named_->getReferenceLla(last);
            if (!named_ || last != reference) {
                named_ = std::make_shared<PointConverter>();
                named_->setReferenceLla(reference, 0);
            }
            current_->nameReference(named_);
        }
    }
    take_(use, {xyz, placeOf(frame, xyz).value_or(kNoPlace)});
}

void SerializeToShape::take_(Use use, const PlacedPoint& point) {
    if (use == Use::Center2) {
        if (as_.orbit) as_.orbit->setCenter2(point);
    } else if (as_.polygon) {
        as_.polygon->addPoint(point);
    } else if (as_.cylinder) {
        as_.cylinder->setCenter(point);
    } else if (as_.annotation) {
        as_.annotation->setPosition(point);
    } else if (as_.rectangle) {
        // All round: the third lies opposite of the first.
        ++corners_;
        if (corners_ == 1) as_.rectangle->setFirstCorner(point);
        if (corners_ == 3) as_.rectangle->setLastCorner(point);
    }
}

void SerializeToShape::setMajorRadius(double meters) {
    // An orbit's one radius stands where its other points have the minor one.
    if (as_.orbit)
        as_.orbit->setMinorRadius(meters);
    else if (as_.cylinder)
        as_.cylinder->setMajorRadius(meters);
}

void SerializeToShape::setMinorRadius(double meters) {
    if (as_.cylinder && !as_.orbit) as_.cylinder->setMinorRadius(meters);
}

void SerializeToShape::setHeight(double meters) {
    if (as_.cylinder && !as_.orbit) as_.cylinder->setHeight(meters);
}

void SerializeToShape::setStartEndAngles(double startRad, double endRad) {
    if (!as_.cylinder || as_.orbit) return;
    as_.cylinder->setStartAngle(startRad);
    as_.cylinder->setEndAngle(endRad);
}

void SerializeToShape::setLineColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    if (as_.line) as_.line->setLineColor(r, g, b, a);
    // As the format has it: single points name no fill.
    if (as_.filled && !isFillGiven_) as_.filled->setFillColor(r, g, b, a);
    if (as_.annotation) as_.annotation->setColor(ColorBytes{r, g, b, a}.packed());
}

void SerializeToShape::setFillColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    isFillGiven_ = true;
    if (as_.filled) as_.filled->setFillColor(r, g, b, a);
}

void SerializeToShape::setFilled(bool filled) {
    if (as_.filled) as_.filled->setFilled(filled);
}

void SerializeToShape::setLineWidth(int pixels) {
    if (as_.line) as_.line->setLineWidth(pixels);
}

void SerializeToShape::setFontName(const std::string& fileName) {
    if (as_.annotation) as_.annotation->setFontName(fileName);
}

void SerializeToShape::setTextSize(int points) {
    if (as_.annotation) as_.annotation->setFontSize(points);
}

std::vector<std::unique_ptr<Shape>> SerializeToShape::shapes() {
    return std::exchange(finished_, {});
}

std::unique_ptr<Shape> SerializeToShape::lastShape() {
    std::unique_ptr<Shape> last = std::move(finished_.back());
    finished_.pop_back();
    return last;
}

}  // namespace OverlayEditor
