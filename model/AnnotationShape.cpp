#include "model/AnnotationShape.h"

#include "model/ColorBytes.h"
#include "model/ShapeKinds.h"
#include "model/Utils.h"

namespace OverlayEditor {

AnnotationShape::AnnotationShape(const Preferences& preferences) : Equipped(preferences) {
    Shape::setName(shapeKind(ShapeKind::Text).name);
}

AnnotationShape::AnnotationShape(const AnnotationShape& other)
    : Equipped(other),
      hasPoint_(other.hasPoint_),
      position_(other.position_),
      color_(other.color_),
      fontSize_(other.fontSize_),
      fontName_(other.fontName_) {}

int AnnotationShape::serialize(Serializer& serializer) {
    if (!hasPoint_) return 1;
    const ColorBytes color(color_);
    serializer.beginShape(shapeKind(ShapeKind::Text).written, attachedPlatformId_);
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
    if (panel_()) panel_()->setPosition(lla);
    dirty_();
}

void AnnotationShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    if (takeAttachment_(id, converter)) {
        if (hasPoint_ && converter && anchorCenter) converter->getReferenceLla(position_);
        dirty_();
    }
    fillGui();
}

void AnnotationShape::carry(const ReferenceMove& move) {
    if (hasPoint_) position_ = move(position_).value_or(position_);
    fillGui();
}

std::pair<halCore::Vec3, halCore::Vec3> AnnotationShape::boundingBox() const {
    return {position_, position_};
}

void AnnotationShape::showIn_(AnnotationPanel& panel) {
    if (hasPoint_)
        shownPosition_ = position_;
    else
        Utils::getDefaultLla(shownPosition_);
    panel.setDraw(shown());
    panel.setPosition(shownPosition_);
    panel.setColor(color_);
    panel.setFontName(fontName_);
    panel.setFontSize(fontSize_);
}

void AnnotationShape::takeFrom_(AnnotationPanel& panel) {
    const auto position = panel.position();
    const bool changed =
        position || panel.color() != color_ || panel.fontName() != fontName_ || panel.fontSize() != fontSize_;
    if (position) setPosition(*position);
    setColor(panel.color());
    setFontName(panel.fontName());
    setFontSize(panel.fontSize());
    const bool drawn = panel.isDrawn();
    if (drawn != shown())
        setShown(drawn);
    else if (changed)
        dirty_();
}

}  // namespace OverlayEditor
