#include "model/RectangleShape.h"

#include <algorithm>
#include <cmath>

#include "common/Notify.h"
#include "geo/Angles.h"
#include "geo/OffsetGrid.h"
#include "model/LongitudeWalk.h"
#include "model/ShapeKinds.h"
#include "model/ShapeState.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

ShapeKind::Id idOf(RectangleShape::Subtype subtype) {
    return subtype == RectangleShape::Rectangle ? ShapeKind::Rectangle : ShapeKind::Triangle;
}

const ShapeKind& kindOf(RectangleShape::Subtype subtype) {
    return shapeKind(idOf(subtype));
}

/// Whether the corners tell the size again: not when they lie about a pole, or the way between them leads
/// round the other side of the earth.
bool comesBack(const RectangleGeometry::Size& size, const RectangleGeometry::Corners& corners,
               bool centered) {
    // Without a height the rule is another.
    if (0.5 * size.height == 0.0) return true;
    const auto back = centered ? RectangleGeometry::spanBetween(corners).size
                               : RectangleGeometry::calcWidthHeight(corners.first, corners.last);
    const double near = 1e-3 + 1e-6 * std::hypot(size.width, size.height);
    return std::abs(back.width - size.width) < near && std::abs(back.height - size.height) < near;
}

}  // namespace

RectangleShape::RectangleShape(const Preferences& preferences, Subtype subtype)
    : Equipped(preferences), subtype_(subtype) {
    setName(kindOf(subtype).name);
}

RectangleShape::RectangleShape(const RectangleShape& other)
    : Equipped(other), subtype_(other.subtype_), setSize_(other.setSize_) {}

int RectangleShape::serialize(Serializer& serializer) {
    if (!isComplete()) return 1;
    const Vec3 first = points_.given()[First];
    const Vec3 last = points_.given()[Last];
    // Offsets have east first, places have north first.
    const bool isOffset = points_.frame() != nullptr;
    const auto north = [&](const Vec3& given) { return isOffset ? given.y() : given.x(); };
    const auto east = [&](const Vec3& given) { return isOffset ? given.x() : given.y(); };
    const auto give = [&](Serializer::Use use, double toNorth, double toEast) {
        const double alt = first.z();
        give_(serializer, use, isOffset ? Vec3(toEast, toNorth, alt) : Vec3(toNorth, toEast, alt));
    };
    serializer.beginShape(kindOf(subtype_).written, writtenPlatform_());
    serializer.setVisible(shown());
    if (subtype_ == Rectangle) {
        give(Serializer::Use::Corner, north(first), east(first));
        give(Serializer::Use::Corner, north(first), east(last));
        give(Serializer::Use::Corner, north(last), east(last));
        give(Serializer::Use::Corner, north(last), east(first));
    } else {
        const double base = std::min(north(first), north(last));
        const double across = east(last) - east(first);
        const double end = isOffset ? east(last) : east(first) + halCore::wrapToPi(across);
        const double middle = 0.5 * (east(first) + end);
        give(Serializer::Use::Point, base, east(first));
        give(Serializer::Use::Point, base, east(last));
        give(Serializer::Use::Point, std::max(north(first), north(last)),
             isOffset ? middle : halCore::wrapToPi(middle));
    }
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

std::optional<Vec3> RectangleShape::placeOf_(Position position) const {
    if (!points_.has(position)) return std::nullopt;
    const Vec3 place = points_.place(position);
    return isPlace(place) ? std::optional(place) : std::nullopt;
}

void RectangleShape::setCorner_(Position position, const PlacedPoint& point) {
    const bool stands = points_.has(position) && point.place.lat() == points_.place(position).lat() &&
                        point.place.lon() == points_.place(position).lon();
    if (!putPlaced_(position, point)) return;
    points_.level(position);
    if (!stands) {
        setSize_.reset();
        points_.remove(Center);
    }
    dirty_();
}

void RectangleShape::setCorners_(const PlacedPoint& first, const PlacedPoint& last,
                                 const std::optional<RectangleGeometry::Size>& size,
                                 const std::optional<PlacedPoint>& center) {
    const bool isPoint = size == RectangleGeometry::Size() ||
                         (first.place.lat() == last.place.lat() && first.place.lon() == last.place.lon());
    if (isPoint || (size && !comesBack(*size, {first.place, last.place}, center.has_value()))) {
        halNotify::notify(halNotify::Warning)
            << "\"" << name() << "\": "
            << (isPoint ? "both corners would be one point" : "no rectangle of that size lies there")
            << "; nothing is changed";
        return;
    }
    accepted_(span_(first, last, size, center));
}

bool RectangleShape::span_(const PlacedPoint& first, const PlacedPoint& last,
                           const std::optional<RectangleGeometry::Size>& size,
                           const std::optional<PlacedPoint>& center) {
    PlacedPoints points = points_;
    points.remove(Center);
    points.remove(TypedAnchor);
    if (!points.put(First, first) || !points.put(Last, last) || (center && !points.put(Center, *center)))
        return false;
    points.level(First);
    points_ = std::move(points);
    setSize_.reset();
    if (size) setSize_ = SetSize{*size, center.has_value()};
    dirty_();
    return true;
}

bool RectangleShape::carry(const Vec3& anchor) {
    const bool centered = anchorCenter();
    const auto size = size_();
    const auto corners = centered ? RectangleGeometry::cornersAbout(anchor, size)
                                  : RectangleGeometry::Corners{anchor, RectangleGeometry::calcCornerPoint(
                                                                           anchor, size.width, size.height)};
    return comesBack(size, corners, centered) &&
           span_(PlacedPoint(corners.first), PlacedPoint(corners.last), size,
                 centered ? std::optional(PlacedPoint(anchor)) : std::nullopt);
}

void RectangleShape::putBack(PlacedPoints points, std::optional<RectangleState::SetSize> size) {
    points_ = std::move(points);
    setSize_ = size;
    dirty_();
}

RectangleGeometry::Size RectangleShape::size_() const {
    if (setSize_ && setSize_->aboutCenter == anchorCenter()) return setSize_->size;
    const auto first = firstCorner();
    const auto last = lastCorner();
    return first && last ? sizeBetween_({*first, *last}) : RectangleGeometry::Size{};
}

RectangleGeometry::Size RectangleShape::sizeBetween_(const RectangleGeometry::Corners& corners) const {
    return anchorCenter() ? RectangleGeometry::spanBetween(corners).size
                          : RectangleGeometry::calcWidthHeight(corners.first, corners.last);
}

PlacedPoint RectangleShape::placedCenter_() const {
    if (points_.has(Center)) return points_.at(Center);
    const PointConverter* const frame = points_.frame();
    const auto first = firstCorner();
    const auto last = lastCorner();
    if (first && last) {
        const Vec3 middle = RectangleGeometry::spanBetween({*first, *last}).center;
        if (!frame) return PlacedPoint(middle);
        if (const auto offset = offsetOf(*frame, middle)) return {*offset, middle};
    }
    const Vec3& from = points_.given()[First];
    const Vec3& to = points_.given()[Last];
    return {Vec3(0.5 * (from.x() + to.x()), 0.5 * (from.y() + to.y()), from.z()), kNoPlace};
}

Vec3 RectangleShape::center() const {
    return isComplete() ? placedCenter_().place : Vec3();
}

std::vector<Vec3> RectangleShape::corners() const {
    const auto first = firstCorner();
    const auto last = lastCorner();
    if (!first || !last) return {};
    const double alt = first->alt();
    if (subtype_ == Rectangle)
        return {*first, {first->lat(), last->lon(), alt}, *last, {last->lat(), first->lon(), alt}};
    const double base = std::min(first->lat(), last->lat());
    const double middle = first->lon() + 0.5 * halCore::wrapToPi(last->lon() - first->lon());
    return {{base, first->lon(), alt},
            {base, last->lon(), alt},
            {std::max(first->lat(), last->lat()), halCore::wrapToPi(middle), alt}};
}

Vec3 RectangleShape::anchorPlace() const {
    return anchorCenter() && isComplete() ? center() : firstCorner().value_or(center());
}

void RectangleShape::setFromCorner(const Vec3& first, double width, double height) {
    if (!std::isfinite(width) || !std::isfinite(height)) return;
    setCorners_(PlacedPoint(first), PlacedPoint(RectangleGeometry::calcCornerPoint(first, width, height)),
                RectangleGeometry::Size{width, height}, std::nullopt);
}

void RectangleShape::setFromCenter(const Vec3& center, double width, double height) {
    if (!std::isfinite(width) || !std::isfinite(height)) return;
    const auto corners = RectangleGeometry::cornersAbout(center, {width, height});
    setCorners_(PlacedPoint(corners.first), PlacedPoint(corners.last), RectangleGeometry::Size{width, height},
                PlacedPoint(center));
}

void RectangleShape::clear() {
    points_.clear();
    setSize_.reset();
    hide_();
    changed_();
}

std::pair<Vec3, Vec3> RectangleShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    LongitudeWalk walk;
    for (const auto& corner : {firstCorner(), lastCorner()})
        if (corner) updateBounds_({corner->lat(), walk.next(corner->lon()), corner->alt()}, bounds);
    return bounds;
}

void RectangleShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchor) {
    // That it is to stand on the reference is given from now on.
    const bool centered = anchor && id != 0 && isComplete() && !points_.has(Center);
    if (centered) points_.put(Center, placedCenter_());
    const bool taken = takeAttachment_(id, converter, anchor);
    if (centered && !taken) points_.remove(Center);
    if (taken) dirty_();
    fillGui();
}

std::string RectangleShape::getShortPointText_(const Vec3& corner, bool isFirst) const {
    const auto opposite = isFirst ? lastCorner() : firstCorner();
    if (!opposite) return {};
    const auto size = isFirst ? sizeBetween_({corner, *opposite}) : sizeBetween_({*opposite, corner});
    const UTILS::TspiUnitsProviderAdapter& units = *preferences_.unitsProvider();
    const std::string unit(UTILS::unitsGetAbbreviation(units.rangeUnits()));
    return " Width: " + units.formatRange(std::abs(size.width)) + " " + unit +
           " Height: " + units.formatRange(std::abs(size.height)) + " " + unit;
}

void RectangleShape::saveState_(ShapeState& state, const ShapeState* like) const {
    BaseFilledShape::saveState_(state, like);
    state.kind = idOf(subtype_);
    state.own = RectangleState{setSize_};
}

void RectangleShape::takeState_(const ShapeState& state) {
    BaseFilledShape::takeState_(state);
    setSize_ = std::get<RectangleState>(state.own).size;
}

void RectangleShape::showIn_(RectanglePanel& panel) {
    PlacedPoint anchor{Vec3()};
    if (isComplete())
        anchor = anchorCenter() ? placedCenter_() : points_.at(First);
    else if (points_.has(TypedAnchor))
        anchor = points_.at(TypedAnchor);
    else if (points_.has(First))
        anchor = points_.at(First);
    else
        anchor = start_();
    panel.setDrawCheck(shown());
    panel.setAnchorCenter(anchorCenter());
    panel.setAnchor(anchor);
    panel.setLastCorner(points_.has(Last) ? points_.at(Last) : anchor);
    panel.updateWidthHeight(width(), height());
    showStyles_(panel.lineStyle(), panel.fillStyle());
}

void RectangleShape::takeGeometry_(const RectanglePanel& panel) {
    const RectangleGeometry::Size size{panel.getWidth(), panel.getHeight()};
    const PlacedPoint anchor = panel.anchor();
    if (isComplete() && !panel.reshaped()) {
        PlacedPoint first = points_.at(First);
        first.place.setAlt(anchor.place.alt());
        if (first.offset && anchor.offset) first.offset->setZ(anchor.offset->z());
        setFirstCorner(first);
        return;
    }
    if (!isComplete() && (!panel.spanned() || (size.width == 0.0 && size.height == 0.0))) {
        // A place without a size is no rectangle yet; the other corner goes along until it is typed.
        if (!panel.reshaped() && !points_.has(TypedAnchor) && !points_.has(First))
            return setAltitudeAhead(anchor.place.alt());
        putPlaced_(TypedAnchor, anchor);
        return;
    }
    const bool isGiven = panel.isSized() || (size.width == 0.0 && size.height == 0.0);
    setCorners_(panel.getFirstCorner(), panel.getLastCorner(), isGiven ? std::optional(size) : std::nullopt,
                panel.isAnchorCenter() ? std::optional(anchor) : std::nullopt);
}

void RectangleShape::takeFrom_(RectanglePanel& panel) {
    const bool drawn = panel.drawCheck();
    const bool centered = panel.isAnchorCenter();
    if (panel.edited()) takeGeometry_(panel);
    if (centered != anchorCenter()) setAnchorCenter(centered);
    if (drawn != shown()) setShown(drawn);
    takeStyles_(panel.lineStyle(), panel.fillStyle());
}

}  // namespace OverlayEditor
