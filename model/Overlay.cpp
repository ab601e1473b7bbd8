#include "model/Overlay.h"

#include <algorithm>
#include <utility>

#include "model/Shape.h"

namespace OverlayEditor {

Overlay::~Overlay() {
    clearShapes(true);
}

void Overlay::addShape(Shape* shape) {
    if (!shape || contains(shape)) return;
    ++revision_;
    shape->setAttachedPlatformId(attachedPlatformId_, pointConverter_, false);
    shape->setActive(true);
    shape->setShown(true);
    const std::uint64_t order = nextOrder_++;
    places_.push_back({order, shape, {}});
    entries_.emplace(shape, byName_.insert({shape->name(), order, shape}).first);
    shape->setKeeper(this);
}

std::vector<Shape*> Overlay::shapes() const {
    std::vector<Shape*> shapes;
    shapes.reserve(entries_.size());
    for (const Place& place : places_)
        if (place.shape) shapes.push_back(place.shape);
    return shapes;
}

void Overlay::removeShape(Shape* shape) {
    if (forget_(shape)) shape->setKeeper(nullptr);
}

bool Overlay::forget_(const Shape* shape) {
    const auto known = entries_.find(shape);
    if (known == entries_.end()) return false;
    ++revision_;
    placeOf_(known->second).shape = nullptr;
    byName_.erase(known->second);
    entries_.erase(known);
    if (places_.size() > 2 * entries_.size())
        std::erase_if(places_, [](const Place& place) { return !place.shape; });
    return true;
}

Overlay::Place& Overlay::placeOf_(const Names::iterator& entry) {
    return *std::lower_bound(places_.begin(), places_.end(), entry->order,
                             [](const Place& place, auto wanted) { return place.order < wanted; });
}

void Overlay::touched(const Shape& shape) {
    ++revision_;
    const auto known = entries_.find(&shape);
    if (known != entries_.end()) placeOf_(known->second).written.reset();
}

void Overlay::touchAll_() {
    ++revision_;
    for (Place& place : places_) place.written.reset();
}

void Overlay::setReferenceWritten(bool written) {
    if (std::exchange(referenceWritten_, written) != written) touchAll_();
}

void Overlay::deleted(const Shape* shape) {
    forget_(shape);
}

void Overlay::renamed(Shape& shape) {
    touched(shape);
    auto& entry = entries_.at(&shape);
    const std::uint64_t order = entry->order;
    byName_.erase(entry);
    entry = byName_.insert({shape.name(), order, &shape}).first;
}

Shape* Overlay::findShape(const std::string& name) const {
    const auto found = byName_.lower_bound(std::string_view(name));
    return found != byName_.end() && found->name == name ? found->shape : nullptr;
}

void Overlay::clearShapes(bool destroying) {
    ++revision_;
    // Emptied first: a dying shape's tool may look at the overlay.
    const std::vector<Shape*> dying = shapes();
    for (Shape* shape : dying) shape->setKeeper(nullptr);
    places_.clear();
    byName_.clear();
    entries_.clear();
    for (Shape* shape : dying) {
        if (!destroying) shape->deleteGui();
        delete shape;
    }
}

void Overlay::setShown(bool shown) {
    for (Shape* shape : shapes()) shape->setShown(shown);
}

void Overlay::setActive(bool active) {
    for (Shape* shape : shapes()) shape->setActive(active);
}

void Overlay::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    touchAll_();
    attachedPlatformId_ = id;
    pointConverter_ = converter;
    for (Shape* shape : shapes()) shape->setAttachedPlatformId(id, converter, anchorCenter);
}

void Overlay::attachThoseFrom(const halCore::Vec3& reference, unsigned long id, PointConverter* converter) {
    for (Shape* shape : shapes())
        if (shape->placed().countsFrom(reference)) shape->setAttachedPlatformId(id, converter, false);
}

std::vector<std::string> Overlay::misfits(const PointConverter& converter, bool anchorCenter,
                                          const std::optional<halCore::Vec3>& staying) const {
    std::vector<std::string> names;
    for (const Shape* shape : shapes()) {
        const bool stays = staying && shape->placed().countsFrom(*staying);
        if (!stays && !shape->fits(converter, anchorCenter)) names.push_back(shape->name());
    }
    return names;
}

std::string Overlay::text(std::vector<std::string>* skipped) const {
    ShapeWriter writer(pointConverter_, referenceWritten_);
    for (std::size_t i = 0; i < places_.size(); ++i) {
        Shape* const shape = places_[i].shape;
        if (!shape) continue;
        const WrittenShape written = writer.add(*shape);
        places_[i].written = written;
        if (written.digest == 0 && skipped) skipped->push_back(shape->name());
    }
    return writer.text();
}

std::string Overlay::textWithReference() const {
    ShapeWriter writer(pointConverter_, true);
    for (Shape* shape : shapes()) writer.add(*shape);
    return writer.text();
}

void Overlay::sumUp_() const {
    if (sum_.revision == revision_) return;
    // Kept when it is whole: memory may run out on the way.
    Sum sum{.revision = revision_};
    for (std::size_t i = 0; i < places_.size(); ++i) {
        if (!places_[i].shape) continue;
        if (!places_[i].written)
            places_[i].written = ShapeWriter(pointConverter_, referenceWritten_).add(*places_[i].shape);
        const WrittenShape& written = *places_[i].written;
        // In their order: the same shapes in another order are another text.
        if (written.digest != 0) sum.digest = (sum.digest + written.digest) * 0x9E3779B97F4A7C15U | 1U;
    }
    sum_ = sum;
}

std::uint64_t Overlay::digest() const {
    sumUp_();
    return sum_.digest;
}

std::vector<std::string> Overlay::begun() const {
    sumUp_();
    std::vector<std::string> names;
    for (const Place& place : places_)
        if (place.shape && place.written->begun) names.push_back(place.shape->name());
    return names;
}

std::vector<std::string> Overlay::incomplete() const {
    sumUp_();
    std::vector<std::string> names;
    for (const Place& place : places_)
        if (place.shape && place.written->digest == 0) names.push_back(place.shape->name());
    return names;
}

int Overlay::serializeShapes(Serializer& serializer) const {
    serializer.setPointConverter(pointConverter());
    int result = -1;
    for (Shape* shape : shapes())
        if (shape->serialize(serializer) == 0) result = 0;
    return result;
}

}  // namespace OverlayEditor
