#include "model/PlacedPoints.h"

#include <algorithm>
#include <utility>

#include "geo/OffsetGrid.h"

namespace OverlayEditor {

using halCore::Vec3;

const std::vector<Vec3>& PlacedPoints::places() const {
    if (!frame_) return given_;
    if (isDerived_()) return places_;
    places_.resize(size());
    std::ranges::transform(given_, places_.begin(), [this](const Vec3& offset) {
        return placeOf(*frame_, offset).value_or(kNoPlace);
    });
    derivedAt_ = frame_->revision();
    return places_;
}

Vec3 PlacedPoints::place(std::size_t index) const {
    if (!frame_) return given_[index];
    return isDerived_() ? places_[index] : placeOf(*frame_, given_[index]).value_or(kNoPlace);
}

PlacedPoint PlacedPoints::at(std::size_t index) const {
    return frame_ ? PlacedPoint(given_[index], place(index)) : PlacedPoint(given_[index]);
}

bool PlacedPoints::hasAllPlaces() const {
    if (!frame_) return true;
    const std::vector<Vec3>& all = places();
    for (std::size_t i = 0; i < size(); ++i)
        if (has(i) && !isPlace(all[i])) return false;
    return true;
}

std::optional<Vec3> PlacedPoints::givenFor_(const PlacedPoint& point) const {
    if (!frame_) return point.place;
    return point.offset ? point.offset : offsetOf(*frame_, point.place);
}

bool PlacedPoints::put(std::size_t index, const PlacedPoint& point) {
    const auto given = givenFor_(point);
    if (!given) return false;
    left_.reset();
    const bool derived = frame_ && isDerived_();
    if (index >= size()) {
        for (std::size_t gap = size(); gap < std::min(index, kSlots); ++gap) missing_ |= 1U << gap;
        given_.resize(index + 1, kNoPlace);
        if (derived) places_.resize(index + 1, kNoPlace);
    }
    if (index < kSlots) missing_ &= ~(1U << index);
    given_[index] = *given;
    if (derived) places_[index] = point.place;
    return true;
}

void PlacedPoints::append(std::span<const Vec3> places) {
    left_.reset();
    given_.insert(given_.end(), places.begin(), places.end());
}

bool PlacedPoints::insert(std::size_t index, const PlacedPoint& point) {
    const auto given = givenFor_(point);
    if (!given) return false;
    left_.reset();
    const auto at = static_cast<std::ptrdiff_t>(std::min(index, size()));
    if (frame_ && isDerived_()) places_.insert(places_.begin() + at, point.place);
    given_.insert(given_.begin() + at, *given);
    return true;
}

void PlacedPoints::erase(std::size_t index) {
    left_.reset();
    const auto at = static_cast<std::ptrdiff_t>(index);
    if (frame_ && isDerived_()) places_.erase(places_.begin() + at);
    given_.erase(given_.begin() + at);
}

void PlacedPoints::remove(std::size_t index) {
    if (!has(index)) return;
    left_.reset();
    missing_ |= 1U << index;
}

void PlacedPoints::clear() {
    left_.reset();
    missing_ = 0;
    given_.clear();
    places_.clear();
}

bool PlacedPoints::moveTo(std::vector<Vec3> places) {
    std::vector<Vec3> offsets(frame_ ? places.size() : 0);
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        const auto offset = offsetOf(*frame_, places[i]);
        if (!offset) return false;
        offsets[i] = *offset;
    }
    left_.reset();
    if (frame_) {
        given_ = std::move(offsets);
        places_ = std::move(places);
        derivedAt_ = frame_->revision();
    } else {
        given_ = std::move(places);
    }
    return true;
}

void PlacedPoints::level(std::size_t index) {
    const double given = given_[index].z();
    const double place = this->place(index).alt();
    left_.reset();
    for (Vec3& position : given_) position.setZ(given);
    if (!frame_ || !isDerived_()) return;
    for (Vec3& position : places_) position.setAlt(place);
}

// Frames

Vec3 PlacedPoints::reference_() const {
    Vec3 reference;
    frame_->getReferenceLla(reference);
    return reference;
}

bool PlacedPoints::isAdrift_() const {
    return stranded_ && !placeOf(*frame_, Vec3());
}

bool PlacedPoints::joins_(const Vec3& reference) const {
    return frame_ && (isAdrift_() || ((!own_ || stranded_) && reference_() == reference));
}

bool PlacedPoints::countsFrom(const Vec3& reference) const {
    return joins_(reference) || (!frame_ && left_ && left_->reference == reference);
}

std::optional<std::vector<Vec3>> PlacedPoints::offsetsIn_(const PointConverter& frame,
                                                          const std::optional<Vec3>& middle) const {
    PointConverter about;
    if (middle) about.setReferenceLla(*middle, 0);
    std::vector<Vec3> offsets(size());
    for (std::size_t i = 0; i < size(); ++i) {
        if (!has(i)) continue;
        const Vec3 lla = place(i);
        const auto offset = !middle ? offsetOf(frame, lla) : lla == *middle ? Vec3() : offsetOf(about, lla);
        if (!offset || (middle && !placeOf(frame, *offset))) return std::nullopt;
        offsets[i] = *offset;
    }
    return offsets;
}

bool PlacedPoints::fits(const PointConverter& frame, const std::optional<Vec3>& middle) const {
    Vec3 reference;
    frame.getReferenceLla(reference);
    return (!middle && countsFrom(reference)) || offsetsIn_(frame, middle);
}

bool PlacedPoints::enter(const PointConverter& frame, const std::optional<Vec3>& middle) {
    Vec3 reference;
    frame.getReferenceLla(reference);
    if (!middle && joins_(reference)) {
        derivedAt_ = isDerived_() && !isAdrift_() ? frame.revision() : 0;
    } else {
        auto offsets = !middle && countsFrom(reference) ? std::optional(std::move(left_->offsets))
                                                        : offsetsIn_(frame, middle);
        if (!offsets) return false;
        if (!middle && places().data() == given_.data()) places_ = std::move(given_);
        derivedAt_ = middle ? 0 : frame.revision();
        given_ = std::move(*offsets);
    }
    left_.reset();
    own_.reset();
    stranded_ = false;
    frame_ = &frame;
    return true;
}

void PlacedPoints::nameReference(std::shared_ptr<const PointConverter> reference) {
    own_ = std::move(reference);
    frame_ = own_.get();
    derivedAt_ = 0;
}

bool PlacedPoints::leave() {
    if (!frame_) return true;
    const Vec3 reference = reference_();
    if (!hasAllPlaces()) {
        if (own_) return false;
        auto own = std::make_shared<PointConverter>();
        own->setReferenceLla(reference, 0);
        nameReference(std::move(own));
        stranded_ = true;
        return false;
    }
    places();
    left_ = Left{reference, std::move(given_)};
    given_ = std::exchange(places_, {});
    frame_ = nullptr;
    own_.reset();
    stranded_ = false;
    return true;
}

void PlacedPoints::follow(const PointConverter& frame) {
    if (&frame == frame_ || own_ || enter(frame, std::nullopt) || !frame_) return;
    frame_ = &frame;
    derivedAt_ = 0;
}

PlacedPoints::State PlacedPoints::state(const State* like) const {
    State state{.given = SharedPoints(given_, like ? &like->given : nullptr),
                .missing = missing_,
                .frame = !frame_ ? State::Frame::None
                         : own_  ? State::Frame::Own
                                 : State::Frame::Others,
                .own = own_,
                .stranded = stranded_,
                .left = {}};
    if (left_) {
        const auto* const before = like && like->left ? &like->left->offsets : nullptr;
        state.left = State::Left{left_->reference, SharedPoints(left_->offsets, before)};
    }
    return state;
}

void PlacedPoints::restore(const State& state, const PointConverter& frame) {
    given_ = state.given.points();
    places_.clear();
    missing_ = state.missing;
    own_ = state.own;
    frame_ = state.frame == State::Frame::None ? nullptr : own_ ? own_.get() : &frame;
    stranded_ = state.stranded;
    derivedAt_ = 0;
    left_.reset();
    if (state.left) left_ = Left{state.left->reference, state.left->offsets.points()};
}

}  // namespace OverlayEditor
