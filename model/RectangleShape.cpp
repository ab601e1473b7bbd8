#include "model/RectangleShape.h"

#include <algorithm>
#include <cmath>

#include "geo/Angles.h"
#include "model/LongitudeWalk.h"
#include "model/ReferenceMove.h"
#include "model/ShapeKinds.h"
#include "model/Utils.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

const ShapeKind& kindOf(RectangleShape::Subtype subtype) {
    return shapeKind(subtype == RectangleShape::Rectangle ? ShapeKind::Rectangle : ShapeKind::Triangle);
}

}  // namespace

RectangleShape::RectangleShape(const Preferences& preferences, Subtype subtype)
    : Equipped(preferences), subtype_(subtype) {
    setName(kindOf(subtype).name);
}

RectangleShape::RectangleShape(const RectangleShape& other)
    : Equipped(other), subtype_(other.subtype_), first_(other.first_), last_(other.last_), set_(other.set_) {}

int RectangleShape::serialize(Serializer& serializer) {
    if (!isComplete()) return 1;
    const double alt = first_->alt();
    if (subtype_ == Rectangle) {
        serializer.beginShape(kindOf(subtype_).written, attachedPlatformId_);
        serializer.setVisible(shown());
        serializer.addCorner(*first_);
        serializer.addCorner({first_->lat(), last_->lon(), alt});
        serializer.addCorner(*last_);
        serializer.addCorner({last_->lat(), first_->lon(), alt});
    } else {
        const auto [low, high] = boundingBox();
        serializer.beginShape(kindOf(subtype_).written, attachedPlatformId_);
        serializer.setVisible(shown());
        serializer.addPoint({low.lat(), first_->lon(), alt});
        serializer.addPoint({low.lat(), last_->lon(), alt});
        serializer.addPoint({high.lat(), halCore::wrapToPi(0.5 * (low.lon() + high.lon())), alt});
    }
    BaseFilledShape::serialize(serializer);
    serializer.endShape();
    return 0;
}

void RectangleShape::level_(double altitude) {
    if (first_) first_->setAlt(altitude);
    if (last_) last_->setAlt(altitude);
}

void RectangleShape::setFirstCorner(const Vec3& lla) {
    first_ = lla;
    level_(lla.alt());
    dirty_();
}

void RectangleShape::setLastCorner(const Vec3& lla) {
    last_ = lla;
    level_(lla.alt());
    dirty_();
}

const RectangleShape::SetSize* RectangleShape::kept_() const {
    const auto samePlace = [](const Vec3& a, const Vec3& b) {
        return a.lat() == b.lat() && a.lon() == b.lon();
    };
    const bool stands = set_ && isComplete() && samePlace(set_->corners.first, *first_) &&
                        samePlace(set_->corners.last, *last_);
    return stands ? &*set_ : nullptr;
}

double RectangleShape::width() const {
    if (!isComplete()) return 0.0;
    const SetSize* const kept = kept_();
    return kept ? kept->size.width : RectangleGeometry::calcWidthHeight(*first_, *last_).width;
}

double RectangleShape::height() const {
    if (!isComplete()) return 0.0;
    const SetSize* const kept = kept_();
    return kept ? kept->size.height : RectangleGeometry::calcWidthHeight(*first_, *last_).height;
}

Vec3 RectangleShape::center() const {
    if (!isComplete()) return {};
    const SetSize* const kept = kept_();
    if (kept && kept->center) return {kept->center->lat(), kept->center->lon(), first_->alt()};
    const Vec3 middle = centerPoint();
    return {middle.lat(), halCore::wrapToPi(middle.lon()), middle.alt()};
}

void RectangleShape::setFromCorner(const Vec3& first, double width, double height) {
    if (!std::isfinite(width) || !std::isfinite(height)) return;
    const RectangleGeometry::Corners corners{first, RectangleGeometry::calcCornerPoint(first, width, height)};
    first_ = corners.first;
    last_ = corners.last;
    set_ = SetSize{{width, height}, std::nullopt, corners};
    dirty_();
}

void RectangleShape::setFromCenter(const Vec3& center, double width, double height) {
    if (!std::isfinite(width) || !std::isfinite(height)) return;
    const RectangleGeometry::Corners corners = RectangleGeometry::cornersAbout(center, {width, height});
    first_ = corners.first;
    last_ = corners.last;
    set_ = SetSize{{width, height}, center, corners};
    dirty_();
}

void RectangleShape::clear() {
    first_.reset();
    last_.reset();
    typedAnchor_.reset();
    hide_();
}

std::pair<Vec3, Vec3> RectangleShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    LongitudeWalk walk;
    for (const auto* corner : {&first_, &last_})
        if (*corner) updateBounds_({(*corner)->lat(), walk.next((*corner)->lon()), (*corner)->alt()}, bounds);
    return bounds;
}

void RectangleShape::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchor) {
    if (!takeAttachment_(id, converter)) {
        fillGui();
        return;
    }
    if (first_ && converter && anchor) {
        moveAll_(ReferenceMove(anchorCenter() && last_ ? center() : *first_, *converter));
    }
    dirty_();
    fillGui();
}

void RectangleShape::moveAll_(const ReferenceMove& move) {
    const auto first = first_ ? move(*first_) : std::nullopt;
    const auto last = last_ ? move(*last_) : std::nullopt;
    if (first.has_value() != first_.has_value() || last.has_value() != last_.has_value()) return;
    // The form stays, and so do its numbers.
    if (const SetSize* const kept = kept_()) {
        const SetSize moved{kept->size, kept->center ? move(*kept->center) : std::nullopt, {*first, *last}};
        set_ = moved;
    }
    if (typedAnchor_) typedAnchor_ = move(*typedAnchor_);
    first_ = first;
    last_ = last;
}

void RectangleShape::carry(const ReferenceMove& move) {
    moveAll_(move);
    fillGui();
}

std::string RectangleShape::getShortPointText_(const Vec3& corner, bool isFirst) const {
    const auto& opposite = isFirst ? last_ : first_;
    if (!opposite) return {};
    const auto size = isFirst ? RectangleGeometry::calcWidthHeight(corner, *opposite)
                              : RectangleGeometry::calcWidthHeight(*opposite, corner);
    const UTILS::TspiUnitsProviderAdapter& units = *preferences_.unitsProvider();
    const std::string unit(UTILS::unitsGetAbbreviation(units.rangeUnits()));
    return " Width: " + units.formatRange(std::abs(size.width)) + " " + unit +
           " Height: " + units.formatRange(std::abs(size.height)) + " " + unit;
}

void RectangleShape::showIn_(RectanglePanel& panel) {
    Vec3 anchor;
    if (isComplete())
        anchor = anchorCenter() ? center() : *first_;
    else if (typedAnchor_)
        anchor = *typedAnchor_;
    else if (first_)
        anchor = *first_;
    else
        Utils::getDefaultLla(anchor);
    panel.setDrawCheck(shown());
    panel.setAnchorCenter(anchorCenter());
    panel.setAnchor(anchor);
    panel.setLastCorner(last_.value_or(anchor));
    panel.updateWidthHeight(width(), height());
    showStyles_(panel.lineStyle(), panel.fillStyle());
}

void RectangleShape::takeGeometry_(const RectanglePanel& panel) {
    const RectangleGeometry::Size size{panel.getWidth(), panel.getHeight()};
    const Vec3 anchor = panel.anchor();
    if (isComplete() && !panel.reshaped()) {
        level_(anchor.alt());
        dirty_();
        return;
    }
    if (!isComplete() && (!panel.spanned() || (size.width == 0.0 && size.height == 0.0))) {
        // A place without a size is no rectangle yet; the other corner goes along until it is typed.
        typedAnchor_ = anchor;
        return;
    }
    const RectangleGeometry::Corners corners{panel.getFirstCorner(), panel.getLastCorner()};
    first_ = corners.first;
    last_ = corners.last;
    set_ = SetSize{size, panel.isAnchorCenter() ? std::optional(anchor) : std::nullopt, corners};
    typedAnchor_.reset();
    dirty_();
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
