#include "model/AnnotationShape.h"

#include "model/ColorBytes.h"
#include "model/ShapeKinds.h"
#include "model/ShapeState.h"

namespace OverlayEditor {

AnnotationShape::AnnotationShape(const Preferences& preferences) : Equipped(preferences) {
    rename_(shapeKind(ShapeKind::Text).name);
}

AnnotationShape::AnnotationShape(const AnnotationShape& other)
    : Equipped(other), color_(other.color_), fontSize_(other.fontSize_), fontName_(other.fontName_) {}

int AnnotationShape::serialize(Serializer& serializer) {
    // One that is begun waits for its place; of a file it is written as it was.
    if (!hasPoint() && source().block == kNoBlock) return 1;
    const ColorBytes color(color_);
    serializer.beginShape(shapeKind(ShapeKind::Text).written, writtenPlatform_());
    serializer.setItemName(name());
    if (hasPoint()) give_(serializer, Serializer::Use::Point, points_.given()[0]);
    serializer.setLineColor(color.r, color.g, color.b, color.a);
    serializer.setFontName(fontName_);
    serializer.setTextSize(fontSize_);
    serializer.endShape();
    return 0;
}

void AnnotationShape::setName(const std::string& name) {
    rename_(name);
    dirty_();
}

void AnnotationShape::showPosition(const PlacedPoint& point) {
    setPosition(point);
    if (panel_() && hasPoint()) panel_()->setPosition(points_.at(0));
    dirty_();
}

void AnnotationShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    if (takeAttachment_(id, converter, anchorCenter)) dirty_();
    fillGui();
}

std::pair<halCore::Vec3, halCore::Vec3> AnnotationShape::boundingBox() const {
    return {position(), position()};
}

void AnnotationShape::saveState_(ShapeState& state, const ShapeState* like) const {
    Shape::saveState_(state, like);
    state.kind = ShapeKind::Text;
    state.own = LabelState{color_, fontSize_, fontName_};
}

void AnnotationShape::takeState_(const ShapeState& state) {
    const auto& own = std::get<LabelState>(state.own);
    color_ = own.color;
    fontSize_ = own.fontSize;
    fontName_ = own.fontName;
}

void AnnotationShape::showIn_(AnnotationPanel& panel) {
    panel.setDraw(shown());
    panel.setPosition(hasPoint() ? points_.at(0) : start_());
    panel.setColor(color_);
    panel.setFontName(fontName_);
    panel.setFontSize(fontSize_);
}

void AnnotationShape::takeFrom_(AnnotationPanel& panel) {
    auto position = panel.position();
    if (position && !hasPoint() && !panel.places()) {
        setAltitudeAhead(position->place.alt());
        position.reset();
    }
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
