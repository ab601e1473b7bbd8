#include "model/Overlay.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/Notify.h"
#include "common/Strings.h"
#include "model/BlockRewriter.h"
#include "model/Shape.h"
#include "pi/EntryScope.h"
#include "pi/Guard.h"

namespace OverlayEditor {
namespace {

/// Of two numbers in their order.
std::uint64_t mixed(std::uint64_t a, std::uint64_t b) {
    std::uint64_t mix = a * 0x9E3779B97F4A7C15U + b;
    mix = (mix ^ mix >> 30U) * 0xBF58476D1CE4E5B9U;
    mix = (mix ^ mix >> 27U) * 0x94D049BB133111EBU;
    return mix ^ mix >> 31U;
}

/// Of a slice.
constexpr std::size_t kUnitsToDelete = 10;

std::size_t unitsToDisplay(const Shape& shape) {
    constexpr std::size_t units = 20;
    constexpr std::size_t pointsOfAUnit = 10;
    return units + shape.placed().size() / pointsOfAUnit;
}

}  // namespace

Overlay::~Overlay() {
    // Nothing is allocated: it ends also when there is no memory left.
    const auto dying = std::exchange(places_, {});
    names_.clear();
    numbers_.clear();
    for (const auto& place : dying)
        if (place.shape) place.shape->setKeeper(nullptr);
    for (const auto& place : dying) delete place.shape;
}

void Overlay::addShape(Shape* shape) {
    if (!shape || contains(shape)) return;
    shape->setAttachedPlatformId(attachedPlatformId_, pointConverter_, false);
    shape->setActive(true);
    shape->setShown(true);
    append_(shape);
}

void Overlay::addInactive(Shape* shape) {
    shape->setAttachedPlatformId(attachedPlatformId_, pointConverter_, false);
    append_(shape);
}

void Overlay::append_(Shape* shape) {
    const std::uint64_t number = nextOrder_++;
    places_.push_back({.order = number});
    enter_(number, shape);
}

void Overlay::insertShape(std::uint64_t number, Shape* shape) {
    auto place = placeOf_(number);
    if (place == places_.end() || place->order != number) places_.insert(place, {.order = number});
    enter_(number, shape);
}

void Overlay::enter_(std::uint64_t number, Shape* shape) {
    numbers_.emplace(shape, number);
    const auto place = placeOf_(number);
    place->shape = shape;
    place->isKnown = false;
    // From here on it leaves by itself, should there be no memory for the rest.
    shape->setKeeper(this);
    noteName_(*shape, number);
    touched_(number);
}

void Overlay::noteName_(const Shape& shape, std::uint64_t number) {
    constexpr std::size_t fewStale = 100;
    if (names_.size() > 2 * numbers_.size() + fewStale)
        names_.keepOnly([this](std::uint64_t known, std::size_t hash) {
            const Shape* const named = shapeOf(known);
            return named && ShapeNames::hashOf(named->name()) == hash;
        });
    names_.add(shape.name(), number);
}

std::uint64_t Overlay::numberOf(const Shape* shape) const {
    const auto known = numbers_.find(shape);
    return known != numbers_.end() ? known->second : 0;
}

Shape* Overlay::shapeOf(std::uint64_t number) const {
    const auto place = std::ranges::lower_bound(places_, number, {}, &Place::order);
    return place != places_.end() && place->order == number ? place->shape : nullptr;
}

std::vector<Shape*> Overlay::shapes(std::uint64_t behind) const {
    std::vector<Shape*> shapes;
    shapes.reserve(numbers_.size());
    for (auto place = std::ranges::upper_bound(places_, behind, {}, &Place::order); place != places_.end();
         ++place)
        if (place->shape) shapes.push_back(place->shape);
    return shapes;
}

void Overlay::removeShape(Shape* shape) {
    if (forget_(shape)) shape->setKeeper(nullptr);
}

bool Overlay::forget_(const Shape* shape) {
    const auto known = numbers_.find(shape);
    if (known == numbers_.end()) return false;
    const std::uint64_t number = known->second;
    const auto place = placeOf_(number);
    place->shape = nullptr;
    setWaits_(*place, false);
    numbers_.erase(known);
    if (places_.size() > 2 * numbers_.size())
        std::erase_if(places_, [](const Place& place) { return !place.shape; });
    touched_(number);
    return true;
}

void Overlay::touched(const Shape& shape) {
    const std::uint64_t number = numberOf(&shape);
    if (number == 0) return;
    placeOf_(number)->isKnown = false;
    touched_(number);
}

void Overlay::touched_(std::uint64_t number) {
    ++revision_;
    if (watcher_) watcher_->shapeTouched(number);
}

void Overlay::touchAll_() {
    for (Place& place : places_) place.isKnown = false;
    ++revision_;
    if (watcher_) watcher_->attachmentTouched();
}

void Overlay::setReferenceWritten(bool written) {
    if (std::exchange(referenceWritten_, written) != written) touchAll_();
}

void Overlay::deleted(const Shape* shape) {
    forget_(shape);
}

void Overlay::renamed(Shape& shape) {
    touched(shape);
    noteName_(shape, numberOf(&shape));
}

Shape* Overlay::findShape(const std::string& name) const {
    return shapeOf(names_.find(name, [&](std::uint64_t number) {
        const Shape* const shape = shapeOf(number);
        return shape && shape->name() == name;
    }));
}

void Overlay::clearShapes(bool destroying) {
    // Emptied first: a dying shape's tool may look at the overlay.
    const std::vector<Shape*> dying = shapes();
    std::vector<std::uint64_t> numbers;
    for (Shape* shape : dying) {
        numbers.push_back(numberOf(shape));
        shape->setKeeper(nullptr);
    }
    places_.clear();
    names_.clear();
    numbers_.clear();
    waiting_ = 0;
    for (Shape* shape : dying) {
        std::unique_ptr<Shape> gone(shape);
        if (destroying) continue;
        shape->deleteGui();
        delete_(std::move(gone));
    }
    for (const std::uint64_t number : numbers) touched_(number);
}

void Overlay::deleteShape(Shape* shape) {
    shape->deleteGui();
    removeShape(shape);
    delete_(std::unique_ptr<Shape>(shape));
}

void Overlay::deleteShapes(Overlay& of) {
    const auto dying = std::exchange(of.places_, {});
    of.names_.clear();
    of.numbers_.clear();
    of.waiting_ = 0;
    for (const Place& place : dying)
        if (place.shape) place.shape->setKeeper(nullptr);
    for (const Place& place : dying) {
        if (!place.shape) continue;
        std::unique_ptr<Shape> gone(place.shape);
        gone->deleteGui();
        delete_(std::move(gone));
    }
}

// What waits

bool Overlay::isLate_(std::size_t units) {
    if (!soon_ || !EntryScope::isOpen()) return false;
    if (!*entry_) {
        entry_->emplace(unitsAtOnce_, timeAtOnce_);
        EntryScope::atEnd([entry = entry_] { entry->reset(); });
    }
    return (*entry_)->isOver(units) && soon_();
}

bool Overlay::displaysLater(const Shape& shape) {
    const std::uint64_t number = numberOf(&shape);
    if (number == 0) return false;
    const bool anything = shape.isDisplayed() || (shape.shown() && shape.active());
    const bool later = anything && isLate_(unitsToDisplay(shape));
    setWaits_(*placeOf_(number), later);
    return later;
}

void Overlay::setWaits_(Place& place, bool waits) {
    if (std::exchange(place.waits, waits) == waits) return;
    if (!waits) {
        --waiting_;
        return;
    }
    waitFrom_ = waiting_++ == 0 ? place.order : std::min(waitFrom_, place.order);
}

Shape* Overlay::takeWaiting_() {
    const auto place = std::ranges::find_if(placeOf_(waitFrom_), places_.end(), &Place::waits);
    waitFrom_ = place->order;
    setWaits_(*place, false);
    return place->shape;
}

void Overlay::nothingWaits_() {
    if (waiting_ == 0) return;
    for (Place& place : places_) place.waits = false;
    waiting_ = 0;
}

void Overlay::delete_(std::unique_ptr<Shape> shape) {
    // What the mouse draws goes with its tool, and all goes at once where there is no memory for waiting.
    guardedEnd([&] {
        if (!shape->isInHand() && isLate_(kUnitsToDelete)) toDelete_.push_back(std::move(shape));
    });
}

bool Overlay::workOff(Slice& slice) {
    while (!toDelete_.empty()) {
        toDelete_.pop_back();
        if (slice.isOver(kUnitsToDelete)) return false;
    }
    while (waiting_ > 0) {
        Shape* const shape = takeWaiting_();
        guarded("A shape on its way to the host", 0, [&] {
            shape->displayNow();
            return 0;
        });
        // What cannot be displayed is marked in other ways.
        if (!shape->isDisplayed()) ++revision_;
        if (slice.isOver(unitsToDisplay(*shape))) return waiting_ == 0;
    }
    return true;
}

void Overlay::exchange(Overlay& other) {
    std::swap(places_, other.places_);
    std::swap(names_, other.names_);
    std::swap(numbers_, other.numbers_);
    std::swap(source_, other.source_);
    std::swap(loadedIncomplete_, other.loadedIncomplete_);
    std::swap(pointConverter_, other.pointConverter_);
    std::swap(attachedPlatformId_, other.attachedPlatformId_);
    std::swap(referenceWritten_, other.referenceWritten_);
    nothingWaits_();
    other.nothingWaits_();
    for (Overlay* const overlay : {this, &other}) {
        for (const Place& place : overlay->places_)
            if (place.shape) place.shape->setKeeper(overlay);
        ++overlay->revision_;
    }
}

void Overlay::setShown(bool shown) {
    for (Shape* shape : shapes()) shape->setShown(shown);
}

void Overlay::setActive(bool active) {
    active_ = active;
    for (Shape* shape : shapes()) shape->setActive(active);
}

void Overlay::setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) {
    attachedPlatformId_ = id;
    pointConverter_ = converter;
    for (Shape* shape : shapes()) {
        shape->setAttachedPlatformId(id, converter, anchorCenter);
        touched(*shape);
    }
    touchAll_();
}

void Overlay::restoreAttachment(unsigned long id, PointConverter* converter) {
    attachedPlatformId_ = id;
    pointConverter_ = converter;
    touchAll_();
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

void Overlay::adopt(std::shared_ptr<const halCore::ZEL::SourceText> source) {
    source_ = std::move(source);
    learnBlocks_();
    sumUp_();
    for (const Place& place : places_) {
        if (!place.shape || !place.hasBlock()) continue;
        ShapeSource own = place.shape->source();
        own.digest = place.written.digest;
        place.shape->setSource(std::move(own));
        rememberIncomplete_(place);
    }
    learnBlocks_();
}

void Overlay::adoptLast(ShapeWriter& writer) {
    const Place& place = places_.back();
    write_(place, writer);
    if (!place.hasBlock()) return;
    ShapeSource own = place.shape->source();
    own.digest = place.loaded = place.written.digest;
    place.shape->setSource(std::move(own));
    rememberIncomplete_(place);
}

void Overlay::rememberIncomplete_(const Place& place) {
    if (place.written.digest != 0) return;
    // Saving writes nothing of it: then it is still compared with what was loaded. A state with a number that
    // is none is not even the same as itself.
    if (const auto state = place.shape->state(); *state == *state)
        loadedIncomplete_.try_emplace(place.order, state);
}

bool Overlay::staysInBlock_(const Place& place) const {
    if (!place.hasBlock() || place.loaded != 0 || place.written.digest != 0) return false;
    const auto loaded = loadedIncomplete_.find(place.order);
    if (loaded == loadedIncomplete_.end()) return true;
    ShapeState now = *place.shape->state();
    now.source = loaded->second->source;
    return now == *loaded->second;
}

void Overlay::write_(const Place& place, ShapeWriter& writer) const {
    writer.clear();
    place.written = writer.add(*place.shape);
    place.isKnown = true;
    learnBlock_(place);
}

void Overlay::learnBlock_(const Place& place) const {
    const ShapeSource& own = place.shape->source();
    place.block = source_ && own.text == source_ ? own.block : kNoBlock;
    place.loaded = own.digest;
}

void Overlay::learnBlocks_() {
    ++revision_;
    for (const Place& place : places_)
        if (place.shape) learnBlock_(place);
}

void Overlay::restoreSource(std::shared_ptr<const halCore::ZEL::SourceText> source) {
    source_ = std::move(source);
    learnBlocks_();
}

std::vector<const Overlay::Place*> Overlay::placesOfBlocks_() const {
    std::vector<const Place*> places(source_ ? source_->blockCount() : 0);
    for (const Place& place : places_) {
        if (!place.shape || !place.hasBlock()) continue;
        // Of copies the first one has the block.
        const Place*& owner = places[place.block];
        if (!owner) owner = &place;
    }
    return places;
}

std::string Overlay::text_(const How& how, std::vector<std::string>* skipped, Losses* lost) const {
    ShapeWriter writer(pointConverter_, how.referenceWritten);
    sumUp_();
    const std::vector<const Place*> owners = placesOfBlocks_();
    std::vector<halCore::ZEL::SourceText::Change> changes;
    std::optional<BlockRewriter> rewriter;
    bool any = false;
    for (std::size_t block = 0; block < owners.size(); ++block) {
        if (!source_->isHeld(block)) continue;
        const Place* const owner = owners[block];
        if (!owner) {
            changes.push_back({block, {}});
            continue;
        }
        Shape& shape = *owner->shape;
        const std::uint64_t loaded = owner->loaded;
        std::uint64_t now = owner->written.digest;
        if (how.referenceWritten != referenceWritten_) {
            writer.clear();
            now = writer.add(shape).digest;
        }
        any = any || now != 0 || loaded == 0;
        if (now == loaded && (!how.anew || now == 0)) {
            if (now == 0 && skipped && !staysInBlock_(*owner)) skipped->push_back(shape.name());
            continue;
        }
        changes.push_back({block, {}});
        if (!writer.describe(shape)) {
            if (skipped) skipped->push_back(shape.name());
            if (lost)
                lost->push_back(
                    {source_->block(block).line, halNotify::Warning,
                     std::string("\"").append(shape.name()).append("\" is not complete any more")});
            continue;
        }
        if (!rewriter) rewriter.emplace();
        auto rewritten = rewriter->rewrite(*source_, block, *writer.last(), shape.preferences(), how.anew);
        changes.back().lines = std::move(rewritten.lines);
        if (!lost) continue;
        if (shape.source().becomes && !rewritten.sameKind)
            lost->push_back(
                {source_->block(block).line, halNotify::Warning,
                 std::string("\"").append(shape.name()).append("\" ").append(shape.source().becomes)});
        std::ranges::move(rewritten.lost, std::back_inserter(*lost));
    }
    writer.clear();
    for (const Place& place : places_) {
        if (!place.shape) continue;
        if (place.hasBlock() && owners[place.block] == &place) continue;
        if (!writer.write(*place.shape) && skipped) skipped->push_back(place.shape->name());
    }
    if (!any && !writer.any()) return {};
    return source_ ? source_->with(changes, writer.blocks()) : writer.text();
}

void Overlay::tellWhatItBecomes_(const Place& place) const {
    const ShapeSource& source = place.shape->source();
    if (place.told || !source.becomes || source.digest == 0 || place.written.digest == source.digest) return;
    // Only hidden, or shown again, it stays what it is.
    if (writer().add(*place.shape, !place.shape->shown()).digest == source.digest) return;
    place.told = true;
    halNotify::notify(halNotify::Warning)
        << "\"" << place.shape->name() << "\" is changed: it " << source.becomes;
}

std::string Overlay::textWithoutShapes() const {
    // No file is empty.
    const std::string head = ShapeWriter(nullptr, false).head();
    if (!source_) return head;
    std::vector<halCore::ZEL::SourceText::Change> changes;
    for (std::size_t block = 0; block < source_->blockCount(); ++block)
        if (source_->isHeld(block)) changes.push_back({block, {}});
    if (changes.empty()) return source_->text();
    const std::string rest = source_->with(changes, {});
    return UTILS::trimmed(rest).empty() ? source_->withLineEnds(head) : rest;
}

void Overlay::sumUp_() const {
    if (sum_.revision == revision_) return;
    // Kept when it is whole: memory may run out on the way.
    Sum sum{.revision = revision_};
    std::uint64_t fromBlocks = 0;
    bool any = false;
    std::vector<bool> owned(source_ ? source_->blockCount() : 0);
    std::optional<ShapeWriter> writer;
    for (const Place& place : places_) {
        if (!place.shape) continue;
        if (!place.isKnown) {
            if (!writer) writer.emplace(this->writer());
            write_(place, *writer);
            tellWhatItBecomes_(place);
        }
        const std::uint64_t written = place.written.digest;
        if (place.hasBlock() && !owned[place.block]) {
            owned[place.block] = true;
            if (written == 0 && place.loaded != 0) continue;
            // Blocks stand in the order of the text, whatever the order of the shapes.
            fromBlocks += mixed(place.block + 1, written);
            any = true;
        } else if (written != 0) {
            // In their order: the same shapes in another order are another text.
            sum.digest = mixed(sum.digest, written);
            any = true;
        }
    }
    if (any) sum.digest = mixed(sum.digest, fromBlocks) | 1U;
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
        if (place.shape && place.written.begun && !staysInBlock_(place)) names.push_back(place.shape->name());
    return names;
}

std::vector<std::string> Overlay::incomplete() const {
    sumUp_();
    std::vector<std::string> names;
    for (const Place& place : places_)
        if (place.shape && place.written.digest == 0 && !staysInBlock_(place))
            names.push_back(place.shape->name());
    return names;
}

bool Overlay::hasOffsets() const {
    sumUp_();
    return std::ranges::any_of(places_, [](const Place& place) {
        return place.shape && place.written.digest != 0 && place.shape->placed().frame() &&
               !place.shape->placed().hasOwnReference();
    });
}

std::vector<std::string> Overlay::hidden() const {
    sumUp_();
    std::vector<std::string> names;
    for (const Place& place : places_)
        if (place.shape && place.written.hidden) names.push_back(place.shape->name());
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
