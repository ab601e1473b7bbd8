#include "model/Shape.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

#include "common/Notify.h"
#include "common/NumberText.h"
#include "format/LabelText.h"
#include "format/SerializeToZel.h"
#include "format/ShapeExtras.h"
#include "format/ShapeFields.h"
#include "format/TextBuffer.h"
#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "model/Anchored.h"
#include "model/MouseTool.h"
#include "model/ShapeState.h"
#include "model/Stateful.h"
#include "model/Utils.h"
#include "pi/Guard.h"
#include "pi/PICommon.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

/// The largest change of a distance between neighbours, the last and the first among them, as a part of it.
double largestChange(std::span<const halCore::Vec3> before, std::span<const halCore::Vec3> after) {
    double change = 0.0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const std::size_t next = (i + 1) % before.size();
        const double was = halCore::Sodano::inverse(before[i], before[next]).distance;
        const double is = halCore::Sodano::inverse(after[i], after[next]).distance;
        if (was > 0.0) change = std::max(change, std::abs(is / was - 1.0));
    }
    return change;
}

}  // namespace

Shape::Shape(const Shape& other)
    : preferences_(other.preferences_),
      shown_(other.shown_),
      active_(other.active_),
      showPoints_(other.showPoints_),
      anchorCenter_(other.anchorCenter_),
      keepsPlaces_(other.keepsPlaces_),
      attachedPlatformId_(other.attachedPlatformId_),
      pointConverter_(other.pointConverter_),
      points_(other.points_),
      name_(other.name_),
      source_(other.source_) {}

Shape::~Shape() {
    guardedEnd([this] {
        if (keeper_) keeper_->deleted(this);
    });
    guardedEnd([this] { Shape::hide_(); });
}

void Shape::setName(const std::string& name) {
    rename_(halCore::ZEL::nameInLine(name));
}

void Shape::rename_(std::string name) {
    name_ = std::move(name);
    if (keeper_) keeper_->renamed(*this);
}

void Shape::setShown(bool shown) {
    shown_ = shown;
    if (!shown)
        if (mouseTool_) mouseTool_->deactivate();
    dirty_();
}

void Shape::setActive(bool active) {
    active_ = active;
    if (!active && mouseTool_) mouseTool_->deactivate();
    display_();
}

void Shape::setShowPoints(bool shown) {
    if (shown == showPoints_) return;
    showPoints_ = shown;
    if (mouseTool_) mouseTool_->setShowPoints(shown);
    dirty_();
}

void Shape::setAnchorCenter(bool anchored) {
    if (anchored == anchorCenter_) return;
    anchorCenter_ = anchored;
    changed_();
    if (attachedPlatformId_ != 0) dirty_();
}

bool Shape::fits(const PointConverter& converter, bool anchorCenter) const {
    // What counts from where nothing leads anywhere, as a pole, stays with the reference that it names.
    const bool stays = points_.namesReference() && !points_.hasAllPlaces();
    return stays || points_.fits(converter, middle_(anchorCenter));
}

std::optional<halCore::Vec3> Shape::middle_(bool anchorCenter) const {
    const auto* const anchored = dynamic_cast<const Anchored*>(this);
    if (!anchorCenter || !anchored || points_.size() == 0) return std::nullopt;
    return anchored->anchorPlace();
}

bool Shape::accepted_(bool taken) const {
    if (!taken)
        halNotify::notify(halNotify::Error)
            << "\"" << name() << "\" stays as it was: no offset from its platform leads there";
    return taken;
}

unsigned long Shape::writtenPlatform_() const {
    constexpr unsigned long unattached = ~0UL;
    return attachedPlatformId_ == 0 && points_.frame() ? unattached : attachedPlatformId_;
}

bool Shape::takeAttachment_(unsigned long id, PointConverter* converter, bool anchorCenter) {
    pointConverter_ = converter;
    if (id == 0) keepsPlaces_ = false;
    if (id != 0 && attachedPlatformId_ != 0 && converter) points_.follow(*converter);
    if (id == attachedPlatformId_ || keepsPlaces_) return false;
    if (id == 0) {
        attachedPlatformId_ = 0;
        if (!points_.leave())
            halNotify::notify(halNotify::Warning)
                << "\"" << name()
                << "\" keeps its offsets, and its file will name what they count from: they lead to no place";
        dirty_();
        return false;
    }
    if (attachedPlatformId_ != 0) return false;
    if (converter && !points_.namesReference()) {
        const auto middle = middle_(anchorCenter);
        const std::vector<halCore::Vec3> before = middle ? points_.places() : std::vector<halCore::Vec3>();
        if (!points_.enter(*converter, middle)) {
            halNotify::notify(halNotify::Error)
                << "\"" << name() << "\" is not attached to " << Utils::platformName(id)
                << ": no offsets from there lead to all of it";
            return false;
        }
        changed_();
        const double percent = 100.0 * largestChange(before, points_.places());
        if (percent > 1.0)
            halNotify::notify(halNotify::Warning)
                << "\"" << name() << "\": centered on " << Utils::platformName(id)
                << ", distances between its points change by up to " << std::lround(percent) << " %";
    }
    attachedPlatformId_ = id;
    changed_();
    return true;
}

std::shared_ptr<const ShapeState> Shape::state(const ShapeState* like) const {
    const auto state = std::make_shared<ShapeState>();
    dynamic_cast<const Stateful&>(*this).saveState_(*state, like);
    return state;
}

void Shape::saveState_(ShapeState& state, const ShapeState* like) const {
    state.name = name_;
    state.shown = shown_;
    state.showPoints = showPoints_;
    state.anchorCenter = anchorCenter_;
    state.keepsPlaces = keepsPlaces_;
    state.attached = attachedPlatformId_ != 0;
    state.source = source_;
    state.positions = points_.state(like ? &like->positions : nullptr);
}

void Shape::restore(const ShapeState& state, const PointConverter& frame, unsigned long platform,
                    PointConverter* converter) {
    // Ends what the mouse does with the shape, which may change it once more.
    if (mouseTool_ && shown_ && !state.shown) mouseTool_->deactivate();
    name_ = state.name;
    shown_ = state.shown;
    anchorCenter_ = state.anchorCenter;
    keepsPlaces_ = state.keepsPlaces;
    attachedPlatformId_ = state.attached ? platform : 0;
    pointConverter_ = converter;
    source_ = state.source;
    points_.restore(state.positions, frame);
    dynamic_cast<Stateful&>(*this).takeState_(state);
    if (keeper_) keeper_->renamed(*this);
    dirty_();
    if (std::exchange(showPoints_, state.showPoints) != state.showPoints && mouseTool_)
        mouseTool_->setShowPoints(showPoints_);
    fillGui();
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
    if (!isPlace(point)) return;
    auto& [low, high] = bounds;
    low.set(std::min(low.x(), point.x()), std::min(low.y(), point.y()), std::min(low.z(), point.z()));
    high.set(std::max(high.x(), point.x()), std::max(high.y(), point.y()), std::max(high.z(), point.z()));
}

int Shape::write(SerializeToZel& zel) {
    zel.setExtras(source_.extras.get());
    return serialize(zel);
}

void Shape::setExtras(std::shared_ptr<const halCore::ZEL::ZelShape> extras) {
    if (source_.extras == extras) return;
    source_.extras = std::move(extras);
    dirty_();
}

double Shape::heading() const {
    double radians = 0.0;
    if (source_.extras) source_.extras->getYawOffset(radians);
    return radians;
}

void Shape::setHeading(double radians) {
    SerializeToZel zel;
    zel.setPointConverter(pointConverter_);
    if (write(zel) != 0 || !zel.hasShapes()) return;
    const auto& written = zel.shapes().back();
    written->setYawOffset(halCore::wrapToPi(radians));
    setExtras(halCore::ZEL::extrasOf(written));
}

PlacedPoint Shape::start_() const {
    PlacedPoint start{halCore::Vec3()};
    Utils::getDefaultLla(start.place);
    start.place.setAlt(altitudeAhead_.value_or(0.0));
    return start;
}

void Shape::redrawPoints_() const {
    if (isInHand()) PICommon::forceOpenGLRedraw();
}

void Shape::dirty_() {
    ++changes_;
    if (keeper_) keeper_->touched(*this);
    display_();
}

void Shape::display_() {
    redrawPoints_();
    displayPends_ = keeper_ && keeper_->displaysLater(*this);
    if (!displayPends_) displayNow();
}

void Shape::displayNow() {
    displayPends_ = false;
    hide_();
    if (!shown_ || !active_) return;

    SerializeToZel serializer;
    serializer.setPointConverter(pointConverter_);
    if (write(serializer) != 0 || !serializer.hasShapes()) return;
    if (halCore::ZEL::isPlaceless(*serializer.shapes().back())) return;
    const auto text = TextBuffer::take();
    text->out().precision(UTILS::kSignificantDigits);
    serializer.writeTo(text->out(), static_cast<unsigned int>(std::max(preferences_.precision(), 0)));

    const unsigned long platform = points_.frame() ? points_.frame()->refPlatformId() : 0;
    hostOverlay_ = PIHALVIS::loadZELStream(text->in(), platform);
}

void Shape::hide_() {
    if (void* const overlay = std::exchange(hostOverlay_, nullptr)) PIHALVIS::unloadZELFile(overlay);
}

}  // namespace OverlayEditor
