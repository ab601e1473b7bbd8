#include "model/PlacedPoints.h"

#include <algorithm>
#include <utility>

#include "geo/OffsetGrid.h"

namespace OverlayEditor {

using halCore::Vec3;

const std::vector<Vec3>& PlacedPoints::places() const {
    if (!frame_) return given_;
    if (isDerived_()) return aside_->places;
    Aside& aside = aside_.change();
    aside.places.resize(size());
    std::ranges::transform(given_, aside.places.begin(), [this](const Vec3& offset) {
        return placeOf(*frame_, offset).value_or(kNoPlace);
    });
    aside.derivedAt = frame_->revision();
    return aside.places;
}

Vec3 PlacedPoints::place(std::size_t index) const {
    if (!frame_) return given_[index];
    return isDerived_() ? aside_->places[index] : placeOf(*frame_, given_[index]).value_or(kNoPlace);
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
    forgetLeft_();
    const bool derived = frame_ && isDerived_();
    if (index >= size()) {
        for (std::size_t gap = size(); gap < std::min(index, kSlots); ++gap) missing_ |= 1U << gap;
        given_.resize(index + 1, kNoPlace);
        if (derived) aside_.change().places.resize(index + 1, kNoPlace);
    }
    if (index < kSlots) missing_ &= ~(1U << index);
    given_[index] = *given;
    if (derived) aside_.change().places[index] = point.place;
    return true;
}

void PlacedPoints::append(std::vector<Vec3> places) {
    forgetLeft_();
    if (!given_.empty()) {
        given_.insert(given_.end(), places.begin(), places.end());
        return;
    }
    given_ = std::move(places);
    // Room that nobody needs is not kept for as long as the shape lives.
    given_.shrink_to_fit();
}

bool PlacedPoints::insert(std::size_t index, const PlacedPoint& point) {
    const auto given = givenFor_(point);
    if (!given) return false;
    forgetLeft_();
    const auto at = static_cast<std::ptrdiff_t>(std::min(index, size()));
    if (frame_ && isDerived_()) {
        std::vector<Vec3>& places = aside_.change().places;
        places.insert(places.begin() + at, point.place);
    }
    given_.insert(given_.begin() + at, *given);
    return true;
}

void PlacedPoints::erase(std::size_t index) {
    forgetLeft_();
    const auto at = static_cast<std::ptrdiff_t>(index);
    if (frame_ && isDerived_()) {
        std::vector<Vec3>& places = aside_.change().places;
        places.erase(places.begin() + at);
    }
    given_.erase(given_.begin() + at);
}

void PlacedPoints::remove(std::size_t index) {
    if (!has(index)) return;
    forgetLeft_();
    missing_ |= 1U << index;
}

void PlacedPoints::clear() {
    forgetLeft_();
    missing_ = 0;
    given_.clear();
    if (!aside_->places.empty()) aside_.change().places.clear();
}

bool PlacedPoints::moveTo(std::vector<Vec3> places) {
    std::vector<Vec3> offsets(frame_ ? places.size() : 0);
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        const auto offset = offsetOf(*frame_, places[i]);
        if (!offset) return false;
        offsets[i] = *offset;
    }
    forgetLeft_();
    if (frame_) {
        given_ = std::move(offsets);
        aside_.change().places = std::move(places);
        aside_.change().derivedAt = frame_->revision();
    } else {
        given_ = std::move(places);
    }
    return true;
}

void PlacedPoints::level(std::size_t index) {
    const double given = given_[index].z();
    const double place = this->place(index).alt();
    forgetLeft_();
    for (Vec3& position : given_) position.setZ(given);
    if (!frame_ || !isDerived_()) return;
    for (Vec3& position : aside_.change().places) position.setAlt(place);
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
    return frame_ && (isAdrift_() || ((!hasOwnReference() || stranded_) && reference_() == reference));
}

bool PlacedPoints::countsFrom(const Vec3& reference) const {
    return joins_(reference) || (!frame_ && aside_->left && aside_->left->reference == reference);
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
        const std::uint64_t derivedAt = isDerived_() && !isAdrift_() ? frame.revision() : 0;
        aside_.change().derivedAt = derivedAt;
    } else {
        auto offsets = !middle && countsFrom(reference) ? std::optional(aside_->left->offsets)
                                                        : offsetsIn_(frame, middle);
        if (!offsets) return false;
        if (!middle) places();
        Aside& aside = aside_.change();
        if (!middle && !frame_) aside.places = std::move(given_);
        aside.derivedAt = middle ? 0 : frame.revision();
        given_ = std::move(*offsets);
    }
    aside_.change().left.reset();
    aside_.change().own.reset();
    stranded_ = false;
    frame_ = &frame;
    return true;
}

void PlacedPoints::nameReference(std::shared_ptr<const PointConverter> reference) {
    frame_ = reference.get();
    aside_.change().own = std::move(reference);
    aside_.change().derivedAt = 0;
}

bool PlacedPoints::leave() {
    if (!frame_) return true;
    const Vec3 reference = reference_();
    if (!hasAllPlaces()) {
        if (hasOwnReference()) return false;
        auto own = std::make_shared<PointConverter>();
        own->setReferenceLla(reference, 0);
        nameReference(std::move(own));
        stranded_ = true;
        return false;
    }
    places();
    Aside& aside = aside_.change();
    aside.left = Left{reference, std::move(given_)};
    given_ = std::exchange(aside.places, {});
    frame_ = nullptr;
    aside.own.reset();
    stranded_ = false;
    return true;
}

void PlacedPoints::follow(const PointConverter& frame) {
    if (&frame == frame_ || hasOwnReference() || enter(frame, std::nullopt) || !frame_) return;
    frame_ = &frame;
    aside_.change().derivedAt = 0;
}

PlacedPoints::State PlacedPoints::state(const State* like) const {
    State state{.given = SharedPoints(given_, like ? &like->given : nullptr),
                .missing = missing_,
                .frame = !frame_             ? State::Frame::None
                         : hasOwnReference() ? State::Frame::Own
                                             : State::Frame::Others,
                .own = aside_->own,
                .stranded = stranded_,
                .left = {}};
    if (const auto& left = aside_->left) {
        const auto* const before = like && like->left ? &like->left->offsets : nullptr;
        state.left = std::make_shared<const State::Left>(
            State::Left{left->reference, SharedPoints(left->offsets, before)});
    }
    return state;
}

void PlacedPoints::restore(const State& state, const PointConverter& frame) {
    given_ = state.given.points();
    missing_ = state.missing;
    frame_ = state.frame == State::Frame::None ? nullptr : state.own ? state.own.get() : &frame;
    stranded_ = state.stranded;
    aside_ = {};
    if (state.own) aside_.change().own = state.own;
    if (state.left) aside_.change().left = Left{state.left->reference, state.left->offsets.points()};
}

}  // namespace OverlayEditor
