#include "model/FreeDrawShape.h"

#include <algorithm>

#include "model/LongitudeWalk.h"
#include "model/ShapeKinds.h"
#include "model/ShapeState.h"

namespace OverlayEditor {

using halCore::Vec3;

FreeDrawShape::FreeDrawShape(const Preferences& preferences) : Equipped(preferences) {
    setName(shapeKind(ShapeKind::FreeDraw).name);
}

FreeDrawShape::FreeDrawShape(const FreeDrawShape& other)
    : PointsContainer(other), Equipped(other), lines_(other.lines_), pixelPrecision_(other.pixelPrecision_) {}

bool FreeDrawShape::isComplete() const {
    return std::any_of(lines_.begin(), lines_.end(), [](const LinePoints& line) { return line.size() >= 2; });
}

int FreeDrawShape::serialize(Serializer& serializer) {
    int result = 1;
    for (const LinePoints& line : lines_) {
        if (line.size() < 2) continue;
        serializer.beginShape(shapeKind(ShapeKind::FreeDraw).written, 0);
        serializer.setVisible(shown());
        serializer.addPoints(line);
        BaseFilledShape::serialize(serializer);
        serializer.endShape();
        result = 0;
    }
    return result;
}

void FreeDrawShape::append_(const Vec3& lla) {
    if (lines_.empty()) lines_.emplace_back();
    lines_.back().push_back(lla);
}

void FreeDrawShape::startLine(const Vec3& lla) {
    lines_.push_back({lla});
    // A single point shows nothing: the host keeps the lines it has.
    changed_();
}

void FreeDrawShape::removeLastLine() {
    if (!lines_.empty()) lines_.pop_back();
    dirty_();
}

void FreeDrawShape::addPoint(const Vec3& lla) {
    append_(lla);
    dirty_();
}

void FreeDrawShape::setPoints(std::span<const Vec3> points) {
    for (LinePoints& line : lines_) {
        std::ranges::copy(points.first(line.size()), line.begin());
        points = points.subspan(line.size());
    }
    dirty_();
}

FreeDrawShape::Place FreeDrawShape::placeOf_(unsigned long index) const {
    Place place{0, index};
    while (place.line < lines_.size() && place.point >= lines_[place.line].size())
        place.point -= lines_[place.line++].size();
    return place;
}

std::size_t FreeDrawShape::getNumPoints() const {
    std::size_t count = 0;
    for (const LinePoints& line : lines_) count += line.size();
    return count;
}

Vec3 FreeDrawShape::pointAtIndex(unsigned long index) const {
    const Place place = placeOf_(index);
    if (place.line < lines_.size()) return lines_[place.line][place.point];
    Vec3 reference;
    if (pointConverter_) pointConverter_->getReferenceLla(reference);
    return reference;
}

void FreeDrawShape::setPointAtIndex(unsigned long index, const Vec3& point) {
    const Place place = placeOf_(index);
    if (place.line < lines_.size())
        lines_[place.line][place.point] = point;
    else
        append_(point);
    dirty_();
}

void FreeDrawShape::insertPointAtIndex(unsigned long index, const Vec3& point) {
    const Place place = placeOf_(index);
    if (place.line < lines_.size()) {
        LinePoints& line = lines_[place.line];
        line.insert(line.begin() + static_cast<std::ptrdiff_t>(place.point), point);
    } else {
        append_(point);
    }
    dirty_();
}

void FreeDrawShape::deletePointAtIndex(unsigned long index) {
    const Place place = placeOf_(index);
    if (place.line < lines_.size()) {
        LinePoints& line = lines_[place.line];
        line.erase(line.begin() + static_cast<std::ptrdiff_t>(place.point));
        if (line.empty()) lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(place.line));
    }
    dirty_();
}

void FreeDrawShape::clear() {
    lines_.clear();
    hide_();
    changed_();
}

void FreeDrawShape::setAttachedPlatformId(unsigned long, PointConverter* converter, bool) {
    pointConverter_ = converter;
}

std::pair<Vec3, Vec3> FreeDrawShape::boundingBox() const {
    std::pair<Vec3, Vec3> bounds;
    initBounds_(bounds);
    LongitudeWalk walk;
    for (const LinePoints& line : lines_)
        for (const Vec3& point : line)
            updateBounds_({point.lat(), walk.next(point.lon()), point.alt()}, bounds);
    return bounds;
}

void FreeDrawShape::saveState_(ShapeState& state, const ShapeState* like) const {
    BaseFilledShape::saveState_(state, like);
    state.kind = ShapeKind::FreeDraw;
    FreeDrawState own;
    std::vector<Vec3> all;
    all.reserve(getNumPoints());
    for (const LinePoints& line : lines_) {
        own.lines.push_back(line.size());
        all.insert(all.end(), line.begin(), line.end());
    }
    own.points = SharedPoints(all, like ? &std::get<Shared<FreeDrawState>>(like->own)->points : nullptr);
    own.pixelPrecision = pixelPrecision_;
    state.own.emplace<Shared<FreeDrawState>>(std::move(own));
}

void FreeDrawShape::takeState_(const ShapeState& state) {
    BaseFilledShape::takeState_(state);
    const FreeDrawState& own = *std::get<Shared<FreeDrawState>>(state.own);
    const std::vector<Vec3> all = own.points.points();
    lines_.clear();
    auto next = all.begin();
    for (const std::size_t length : own.lines) {
        const auto end = next + static_cast<std::ptrdiff_t>(length);
        lines_.emplace_back(next, end);
        next = end;
    }
    pixelPrecision_ = own.pixelPrecision;
}

void FreeDrawShape::showIn_(FreeDrawPanel& panel) {
    panel.setDrawCheck(shown());
    panel.setPixelPrecision(pixelPrecision_);
    showLine_(panel.lineStyle());
}

void FreeDrawShape::takeFrom_(FreeDrawPanel& panel) {
    setPixelPrecision(panel.pixelPrecision());
    const bool drawn = panel.drawCheck();
    if (drawn != shown()) setShown(drawn);
    setLineFromGui(panel.lineStyle());
}

}  // namespace OverlayEditor
