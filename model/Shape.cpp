#include "model/Shape.h"

#include <algorithm>
#include <limits>

#include "common/NumberText.h"
#include "format/SerializeToZel.h"
#include "format/TextBuffer.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

Shape::Shape(const Shape& other)
    : preferences_(other.preferences_),
      shown_(other.shown_),
      active_(other.active_),
      showPoints_(other.showPoints_),
      anchorCenter_(other.anchorCenter_),
      attachedPlatformId_(other.attachedPlatformId_),
      pointConverter_(other.pointConverter_),
      name_(other.name_) {}

Shape::~Shape() {
    if (keeper_) keeper_->deleted(this);
    Shape::hide_();
}

void Shape::setName(const std::string& name) {
    name_ = name;
    if (keeper_) keeper_->renamed(*this);
}

void Shape::setShown(bool shown) {
    shown_ = shown;
    if (!shown)
        if (MouseTool* const tool = mouseTool()) tool->deactivate();
    dirty_();
}

void Shape::setActive(bool active) {
    active_ = active;
    if (active) {
        dirty_();
        return;
    }
    if (MouseTool* const tool = mouseTool()) tool->deactivate();
    hide_();
}

void Shape::setShowPoints(bool shown) {
    if (shown == showPoints_) return;
    showPoints_ = shown;
    if (MouseTool* const tool = mouseTool()) tool->setShowPoints(shown);
    dirty_();
}

void Shape::setAnchorCenter(bool anchored) {
    if (anchored == anchorCenter_) return;
    anchorCenter_ = anchored;
    if (attachedPlatformId_ != 0) dirty_();
}

bool Shape::takeAttachment_(unsigned long id, PointConverter* converter) {
    pointConverter_ = converter;
    if (id == attachedPlatformId_) return false;
    if (id == 0) {
        attachedPlatformId_ = 0;
        dirty_();
        return false;
    }
    if (attachedPlatformId_ != 0) return false;
    attachedPlatformId_ = id;
    return true;
}

halCore::Vec3 Shape::centerPoint() const {
    const auto [low, high] = boundingBox();
    const auto middle = [](double a, double b) { return a + 0.5 * (b - a); };
    return {middle(low.x(), high.x()), middle(low.y(), high.y()), middle(low.z(), high.z())};
}

void Shape::initBounds_(std::pair<halCore::Vec3, halCore::Vec3>& bounds) {
    constexpr double most = std::numeric_limits<double>::max();
    bounds = {halCore::Vec3(most, most, most), halCore::Vec3(-most, -most, -most)};
}

void Shape::updateBounds_(const halCore::Vec3& point, std::pair<halCore::Vec3, halCore::Vec3>& bounds) {
    auto& [low, high] = bounds;
    low.set(std::min(low.x(), point.x()), std::min(low.y(), point.y()), std::min(low.z(), point.z()));
    high.set(std::max(high.x(), point.x()), std::max(high.y(), point.y()), std::max(high.z(), point.z()));
}

void Shape::dirty_() {
    hide_();
    if (!shown_ || !active_) return;

    SerializeToZel serializer;
    serializer.setPointConverter(pointConverter_);
    if (serialize(serializer) != 0 || !serializer.hasShapes()) return;
    const auto text = TextBuffer::take();
    text->out().precision(UTILS::kSignificantDigits);
    serializer.writeTo(text->out(), static_cast<unsigned int>(std::max(preferences_.precision(), 0)));

    // A shape that was detached still has its converter, but its text is absolute.
    const unsigned long platform =
        attachedPlatformId_ != 0 && pointConverter_ ? pointConverter_->refPlatformId() : 0;
    hostOverlay_ = PIHALVIS::loadZELStream(text->in(), platform);
}

void Shape::hide_() {
    if (keeper_) keeper_->touched(*this);
    if (void* const overlay = std::exchange(hostOverlay_, nullptr)) PIHALVIS::unloadZELFile(overlay);
}

}  // namespace OverlayEditor
