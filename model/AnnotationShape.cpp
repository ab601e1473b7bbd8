#include "model/AnnotationShape.h"

#include "model/ColorBytes.h"

namespace OverlayEditor {

AnnotationShape::AnnotationShape(const Preferences& preferences) : Shape(preferences) {
    Shape::setName("Text");
    mouseTool_ = (ownTool_ = ShapeEquipment::toolFor(preferences_, *this)).get();
}

AnnotationShape::AnnotationShape(const AnnotationShape& other)
    : Shape(other),
      hasPoint_(other.hasPoint_),
      position_(other.position_),
      color_(other.color_),
      fontSize_(other.fontSize_),
      fontName_(other.fontName_) {
    mouseTool_ = (ownTool_ = ShapeEquipment::toolFor(preferences_, *this)).get();
}

AnnotationShape::~AnnotationShape() {
    mouseTool_ = nullptr;
}

Shape* AnnotationShape::clone() const {
    return new AnnotationShape(*this);
}

int AnnotationShape::serialize(Serializer& serializer) {
    if (!hasPoint_) return 1;
    const ColorBytes color(color_);
    serializer.beginShape(Serializer::Annotation, attachedPlatformId_);
    serializer.setItemName(name());
    serializer.addPoint(position_);
    serializer.setLineColor(color.r, color.g, color.b, color.a);
    serializer.setFontName(fontName_);
    serializer.setTextSize(fontSize_);
    serializer.endShape();
    return 0;
}

void AnnotationShape::setName(const std::string& name) {
    Shape::setName(name);
    dirty_();
}

void AnnotationShape::setPosition(const halCore::Vec3& lla) {
    position_ = lla;
    hasPoint_ = true;
}

void AnnotationShape::mouseSetPosition(const halCore::Vec3& lla) {
    setPosition(lla);
    dirty_();
}

void AnnotationShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    if (!takeAttachment_(id, converter)) return;
    if (hasPoint_ && converter && anchorCenter) converter->getReferenceLla(position_);
    dirty_();
}

std::pair<halCore::Vec3, halCore::Vec3> AnnotationShape::boundingBox() const {
    return {position_, position_};
}

void AnnotationShape::createGui(Preferences*, PIGUI::PICanvas*) {}
void AnnotationShape::notifyPrefsUpdate() {}
void AnnotationShape::fillGui() {}
void AnnotationShape::deleteGui() {}

}  // namespace OverlayEditor
