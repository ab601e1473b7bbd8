#include "model/AnnotationShape.h"

#include "model/ColorBytes.h"
#include "model/Utils.h"

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
    const Survival survives(*this);
    if (panel_) panel_->setPosition(lla);
    if (survives) dirty_();
}

void AnnotationShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    const Survival survives(*this);
    if (takeAttachment_(id, converter)) {
        if (hasPoint_ && converter && anchorCenter) converter->getReferenceLla(position_);
        dirty_();
    }
    if (survives) fillGui();
}

void AnnotationShape::carry(const ReferenceMove& move) {
    if (hasPoint_) position_ = move(position_).value_or(position_);
    fillGui();
}

std::pair<halCore::Vec3, halCore::Vec3> AnnotationShape::boundingBox() const {
    return {position_, position_};
}

void AnnotationShape::createGui(Preferences* preferences, PIGUI::PICanvas* canvas) {
    auto* const equipment = ShapeEquipment::installed();
    if (!equipment || !preferences || !canvas) return;
    panel_ = equipment->makePanel(*this, *preferences, *canvas, GuiChange([this] { refreshFromGui_(); }));
    fillGui();
}

void AnnotationShape::deleteGui() {
    panel_.reset();
}

void AnnotationShape::notifyPrefsUpdate() {
    if (panel_) panel_->notifyPrefsUpdate();
    fillGui();
}

void AnnotationShape::fillGui() {
    if (!panel_) return;
    if (hasPoint_)
        shownPosition_ = position_;
    else
        Utils::getDefaultLla(shownPosition_);
    panel_->setPointConverter(attachedPlatformId_ != 0 ? pointConverter_ : nullptr);
    panel_->setDraw(shown());
    panel_->setPosition(shownPosition_);
    panel_->setColor(color_);
    panel_->setFontName(fontName_);
    panel_->setFontSize(fontSize_);
}

void AnnotationShape::refreshFromGui_() {
    if (!panel_) return;
    if (const auto position = panel_->position()) setPosition(*position);
    setColor(panel_->color());
    setFontName(panel_->fontName());
    setFontSize(panel_->fontSize());
    const bool drawn = panel_->isDrawn();
    const Survival survives(*this);
    if (drawn != shown())
        setShown(drawn);
    else
        dirty_();
    if (survives) fillGui();
}

}  // namespace OverlayEditor
