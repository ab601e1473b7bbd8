#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/Slice.h"
#include "model/HostTurns.h"
#include "model/Shape.h"
#include "model/ShapeNames.h"
#include "model/ShapeState.h"
#include "model/ShapeWriter.h"

namespace OverlayEditor {

/// Told of what may have changed in an overlay, once it has. Shapes are told by their numbers.
class OverlayWatcher {
  public:
    virtual void shapeTouched(std::uint64_t number) = 0;
    virtual void attachmentTouched() = 0;

  protected:
    ~OverlayWatcher() = default;
};

/// The document that the editor edits: an ordered list of shapes that share one attachment. It owns its
/// shapes from addShape until removeShape or clearShapes.
class Overlay final : private ShapeKeeper {
  public:
    using Losses = std::vector<halCore::ZEL::ParseMessage>;

    Overlay() = default;
    ~Overlay();
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;

    /// Takes ownership; the shape takes on the attachment and is displayed at once.
    void addShape(Shape* shape);
    /// The same with a shape that is displayed once it is active.
    void addInactive(Shape* shape);
    /// Gives ownership back, without hiding or deactivating; an unknown pointer is ignored, also one to a
    /// shape that is gone. (A shape that somebody deletes leaves the overlay by itself.)
    void removeShape(Shape* shape);
    /// The first shape of exactly that name, null when there is none.
    Shape* findShape(const std::string& name) const;
    /// In their order.
    /// \param behind only those with larger numbers
    std::vector<Shape*> shapes(std::uint64_t behind = 0) const;
    /// Whether the shape is in the overlay; of the pointer only the address is used.
    bool contains(const Shape* shape) const { return numbers_.contains(shape); }
    /// A shape's number in the overlay, 0 when it is not there. They follow the order, and none is given
    /// twice: a shape that has gone may come back under its own.
    std::uint64_t numberOf(const Shape* shape) const;
    /// Null for none.
    Shape* shapeOf(std::uint64_t number) const;
    /// Takes ownership of a shape that is what it was when it had the number, which is free: it is neither
    /// attached nor displayed anew.
    void insertShape(std::uint64_t number, Shape* shape);
    /// Makes room for so many shapes in all, once for those that come one by one.
    void expect(std::size_t count) {
        // To reserve less than there is would put all of them anew.
        if (count > numbers_.bucket_count()) numbers_.reserve(count);
    }
    /// The next so many numbers are given to nobody here. \return the first of them
    std::uint64_t reserveNumbers(std::size_t count) { return std::exchange(nextOrder_, nextOrder_ + count); }
    /// The next shape's number, of an overlay that is made to take another's place.
    void setNextNumber(std::uint64_t number) { nextOrder_ = number; }
    /// Shapes, attachment and text become another overlay's, and the other way round. What the host displays
    /// of the shapes stays; nobody is told.
    void exchange(Overlay& other);
    /// Who is told of changes, null for nobody. Not owned.
    void setWatcher(OverlayWatcher* watcher) { watcher_ = watcher; }
    /// Deletes every shape; their panels first, unless the overlay itself is going.
    void clearShapes(bool destroying);
    /// Deletes one.
    void deleteShape(Shape* shape);
    /// Takes another's shapes, and deletes them.
    void deleteShapes(Overlay& of);

    /// Many shapes at once would let the interface stand still: those that are to be displayed, and those
    /// that are to be deleted, wait beyond the first ones of an entry. They are out of the overlay and its
    /// text, or in them, at once.
    /// \param soon has workOff called soon; false when it cannot. Without it nothing waits
    /// \param units how much an entry does at least, see Slice \param time how long it goes on beyond that
    void setLater(std::function<bool()> soon, std::size_t units = 20'000,
                  std::chrono::milliseconds time = HostTurns::kAtOnce) {
        soon_ = std::move(soon);
        unitsAtOnce_ = units;
        timeAtOnce_ = time;
    }
    /// Displays and deletes shapes that wait. \return whether none is left
    bool workOff(Slice& slice);

    void setShown(bool shown);
    void setActive(bool active);
    /// As it was set last.
    bool active() const { return active_; }
    unsigned long attachedPlatformId() const { return attachedPlatformId_; }
    /// What the attached shapes' offsets count from; null when the overlay is not attached.
    PointConverter* pointConverter() const { return attachedPlatformId_ != 0 ? pointConverter_ : nullptr; }
    /// Whether a file of the overlay names what its offsets count from: the overlay stands about a fixed
    /// point, not about what a platform of the scenario is. Not at first; means nothing when not attached.
    bool referenceWritten() const { return referenceWritten_; }
    void setReferenceWritten(bool written);
    /// Whether offsets count from a converter's reference, be it without a platform.
    bool counts() const { return pointConverter_ != nullptr; }
    /// \see Shape::setAttachedPlatformId
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter);

    /// The same without a word to the shapes: they are told by whoever restores them.
    void restoreAttachment(unsigned long id, PointConverter* converter);

    /// The converter's reference has moved. Offsets stay, and so does what is written of them, unless it
    /// names the reference; places are derived anew when somebody asks, and nothing is displayed anew.
    void referenceMoved() {
        if (referenceWritten_) touchAll_();
    }
    /// Detached shapes whose offsets counted from a reference are attached to it again, to the digit.
    void attachThoseFrom(const halCore::Vec3& reference, unsigned long id, PointConverter* converter);
    /// The names of shapes that could not be attached there. \see Shape::fits
    /// \param staying shapes whose offsets count from there keep them, and fit
    std::vector<std::string> misfits(const PointConverter& converter, bool anchorCenter,
                                     const std::optional<halCore::Vec3>& staying) const;

    /// Another number whenever something of the overlay may have changed: the shapes need not be looked at as
    /// long as it is the same.
    std::uint64_t revision() const { return revision_; }

    /// From now on the shapes' blocks of a text stand for what the shapes are written as now. Null for no
    /// text. \see ShapeSource
    void adopt(std::shared_ptr<const halCore::ZEL::SourceText> source);
    const std::shared_ptr<const halCore::ZEL::SourceText>& source() const { return source_; }
    /// The same with the shape that was added last, of the text that is the overlay's already.
    /// \param writer the overlay's; what it has written is forgotten
    void adoptLast(ShapeWriter& writer);
    /// What writes a shape as a file of the overlay has it.
    ShapeWriter writer() const { return {pointConverter_, referenceWritten_}; }

    /// The same with shapes that have been told of their blocks.
    void restoreSource(std::shared_ptr<const halCore::ZEL::SourceText> source);

    /// The text of a file with the shapes; empty when there is nothing to write. What was adopted is the
    /// text, with other blocks for shapes that have changed, without those of shapes that are gone, and with
    /// new shapes behind it; without one, the shapes in their order.
    /// \param skipped gets the names of the shapes that are not complete
    /// \param lost gets what is not in the text any more of blocks that are changed, by line
    std::string text(std::vector<std::string>* skipped = nullptr, Losses* lost = nullptr) const {
        return text_({.referenceWritten = referenceWritten_}, skipped, lost);
    }
    /// The same with the reference named, so that it is found again without its platform.
    std::string textWithReference(std::vector<std::string>* skipped = nullptr, Losses* lost = nullptr) const {
        return text_({.referenceWritten = true}, skipped, lost);
    }
    /// The same with every block written anew, as if the editor knew nothing but the shapes.
    std::string textAnew(Losses& lost) const {
        return text_({.referenceWritten = referenceWritten_, .anew = true}, nullptr, &lost);
    }
    /// The blocks of the text that no shape stands for, as a text for the host; empty for none.
    std::string keptBlocks() const { return source_ ? source_->keptBlocks() : std::string(); }
    /// What is left of the text when the last shape is gone.
    std::string textWithoutShapes() const;
    /// Tells texts apart without making them: the same text has the same number, no text has 0. Of the
    /// shapes only those are written that may have changed since somebody asked.
    std::uint64_t digest() const;
    /// The names of shapes that have a place and are not complete, so that they are in no text.
    std::vector<std::string> begun() const;
    /// Those and the ones without a place that have no block: all that are in no text.
    std::vector<std::string> incomplete() const;
    /// Whether any shape of the text has offsets from what the overlay counts from.
    bool hasOffsets() const;
    /// The names of shapes that are not drawn.
    std::vector<std::string> hidden() const;
    /// A file holds the text as it is now.
    void keep() { kept_ = digest(); }
    /// Whether the text is as it was when it was kept last; at first there was none.
    bool isKept() const { return digest() == kept_; }
    /// The digest of the text that was kept, to be kept again.
    std::uint64_t kept() const { return kept_; }
    void setKept(std::uint64_t digest) { kept_ = digest; }

    /// Writes every shape in order. \return 0 when at least one was written, otherwise -1
    int serializeShapes(Serializer& serializer) const;

    /// The host's overlay that is being edited; stored, never interpreted.
    void* zelId() const { return zelId_; }
    void setZelId(void* id) { zelId_ = id; }

  private:
    void renamed(Shape& shape) override;
    void touched(const Shape& shape) override;
    void deleted(const Shape* shape) override;
    bool displaysLater(const Shape& shape) override;
    /// Whether an entry has done so much that the rest of it waits.
    bool isLate_(std::size_t units);
    void delete_(std::unique_ptr<Shape> shape);
    /// Needs no more than the address. \return whether the shape was here
    bool forget_(const Shape* shape);

    OverlayWatcher* watcher_ = nullptr;
    PointConverter* pointConverter_ = nullptr;
    unsigned long attachedPlatformId_ = 0;
    bool active_ = true;
    std::uint64_t revision_ = 0;
    bool referenceWritten_ = false;
    void* zelId_ = nullptr;
    /// In the order of adding. A shape that goes leaves a hole, null, until there are more holes than shapes:
    /// closing each at once would move all that follow.
    struct Place {
        std::uint64_t order = 0;
        Shape* shape = nullptr;
        /// As long as it is known.
        mutable WrittenShape written{};
        /// Its block of the text, kNoBlock for none, and what it was written as when that was read: beside
        /// the shapes, so that nobody need look at those that have not changed. \see learnBlock_
        mutable std::size_t block = kNoBlock;
        mutable std::uint64_t loaded = 0;
        /// Whether the shape has not changed since it was written.
        mutable bool isKnown = false;
        /// Whether it has been told that its block becomes another one.
        mutable bool told = false;
        /// Whether the shape is to be displayed, see setWaits_.
        bool waits = false;
        bool hasBlock() const { return block != kNoBlock; }
    };
    /// The place of a number, or the one behind which it would stand.
    std::vector<Place>::iterator placeOf_(std::uint64_t number) {
        return std::ranges::lower_bound(places_, number, {}, &Place::order);
    }
    void setWaits_(Place& place, bool waits);
    /// The first one that is to be displayed, while there is any; it waits no more.
    Shape* takeWaiting_();
    void nothingWaits_();
    void append_(Shape* shape);
    void enter_(std::uint64_t number, Shape* shape);
    void touched_(std::uint64_t number);
    void noteName_(const Shape& shape, std::uint64_t number);
    struct How {
        bool referenceWritten = false;
        bool anew = false;
    };
    std::string text_(const How& how, std::vector<std::string>* skipped, Losses* lost) const;
    /// For each block of the text the place of the shape that it stands for, null for none.
    std::vector<const Place*> placesOfBlocks_() const;
    /// Whether the shape was not complete when it was loaded, and is as it was: its block says all of it.
    bool staysInBlock_(const Place& place) const;
    /// Remembers what a shape was that is not complete, when it was loaded.
    void rememberIncomplete_(const Place& place);
    /// Looks which block of the text is the shape's.
    void learnBlock_(const Place& place) const;
    void learnBlocks_();
    /// What a shape is written as is known from now on.
    void write_(const Place& place, ShapeWriter& writer) const;
    void touchAll_();
    /// Says it when a shape has been changed that stays what it is only until then.
    void tellWhatItBecomes_(const Place& place) const;
    /// Brings what is known of the text up to date.
    void sumUp_() const;
    std::vector<Place> places_;
    /// Find shapes by name, and their numbers, without a walk over all of them.
    mutable ShapeNames names_;
    std::unordered_map<const Shape*, std::uint64_t> numbers_;
    std::uint64_t nextOrder_ = 1;
    /// The text as it was at a revision.
    struct Sum {
        std::optional<std::uint64_t> revision;
        std::uint64_t digest = 0;
    };
    mutable Sum sum_;
    /// By their numbers, those that were not complete when they were loaded.
    std::map<std::uint64_t, std::shared_ptr<const ShapeState>> loadedIncomplete_;
    std::uint64_t kept_ = 0;
    std::function<bool()> soon_;
    std::size_t unitsAtOnce_ = 0;
    std::chrono::milliseconds timeAtOnce_{};
    /// What the running entry has of the time, none before it needs any.
    std::shared_ptr<std::optional<Slice>> entry_ = std::make_shared<std::optional<Slice>>();
    /// How many are to be displayed, and a number before which none of them is.
    std::size_t waiting_ = 0;
    std::uint64_t waitFrom_ = 0;
    /// What is to be deleted.
    std::vector<std::unique_ptr<Shape>> toDelete_;
    std::shared_ptr<const halCore::ZEL::SourceText> source_;
};

}  // namespace OverlayEditor
