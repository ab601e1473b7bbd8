#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "geo/PointConverter.h"
#include "model/PlacedPoint.h"
#include "model/Shared.h"
#include "model/SharedPoints.h"

namespace OverlayEditor {

/// The positions of a shape. As they were given they are the truth: places on the globe, or, in a frame,
/// offsets from its reference. In a frame the places are derived when somebody asks, and derived anew after
/// the reference has moved; the offsets stay whatever it does.
///
/// A frame is somebody else's point converter, or a reference that the shape itself names.
class PlacedPoints {
  public:
    using Vec3 = halCore::Vec3;

    std::size_t size() const { return given_.size(); }
    /// Of the first few a shape may lack some.
    bool has(std::size_t index) const {
        return index < size() && (index >= kSlots || !(missing_ >> index & 1U));
    }
    const std::vector<Vec3>& given() const { return given_; }
    /// One for each; kNoPlace where there is none.
    const std::vector<Vec3>& places() const;
    /// The same of one, which must be there; the others are not derived.
    Vec3 place(std::size_t index) const;
    PlacedPoint at(std::size_t index) const;
    bool hasAllPlaces() const;

    /// Puts a position there; behind the last one it is the new last one.
    /// \return false when no offset leads there: nothing has changed
    bool put(std::size_t index, const PlacedPoint& point);
    /// Puts places behind the last one, in no frame.
    void append(std::vector<Vec3> places);
    bool insert(std::size_t index, const PlacedPoint& point);
    void erase(std::size_t index);
    /// The shape lacks it from now on.
    void remove(std::size_t index);
    void clear();
    /// Puts all positions anew, none of which may be missing.
    /// \param places one for each
    /// \return false when no offset leads to one of them: nothing has changed
    bool moveTo(std::vector<Vec3> places);
    /// Gives all the height of one.
    void level(std::size_t index);

    /// What offsets count from; null for places.
    const PointConverter* frame() const { return frame_; }
    /// Whether they count from a reference that the shape names; and whether it was given that one.
    bool hasOwnReference() const { return aside_->own != nullptr; }
    bool namesReference() const { return hasOwnReference() && !stranded_; }
    /// Whether the offsets count from there, or did until the frame was left last, or from nowhere.
    bool countsFrom(const Vec3& reference) const;
    /// Changes whenever the reference moves.
    std::uint64_t revision() const { return frame_ ? frame_->revision() : 0; }

    /// From now on offsets in a frame, which must outlive the stay there. The places stay, or, about a
    /// middle, the form: what lay about the middle lies about the reference. Offsets that counted from a
    /// reference at the same place, or at one that leads nowhere, stay to the digit. \return false when an
    /// offset does not lead there or back: nothing has changed
    bool enter(const PointConverter& frame, const std::optional<Vec3>& middle);
    /// Whether enter would succeed.
    bool fits(const PointConverter& frame, const std::optional<Vec3>& middle) const;
    /// Offsets from a reference of the shape's own, before it has any position. Not owned alone: copies of
    /// the shape, and other shapes, may share it.
    void nameReference(std::shared_ptr<const PointConverter> reference);
    /// From now on places, as they are.
    /// \return false when a position has none: the offsets stay, and the shape names their reference
    bool leave();
    /// Another converter takes the frame's part; the places stay where that is possible.
    void follow(const PointConverter& frame);

    /// All that is not derived.
    struct State {
        enum class Frame { None, Others, Own };
        struct Left {
            Vec3 reference;
            SharedPoints offsets;
            bool operator==(const Left&) const = default;
        };

        SharedPoints given;
        std::uint32_t missing = 0;
        Frame frame = Frame::None;
        std::shared_ptr<const PointConverter> own;
        bool stranded = false;
        /// Null for none.
        std::shared_ptr<const Left> left;
        bool operator==(const State& other) const {
            return given == other.given && missing == other.missing && frame == other.frame &&
                   own == other.own && stranded == other.stranded &&
                   (left && other.left ? *left == *other.left : left == other.left);
        }
    };
    /// \param like null, or a state with which it shares what is the same
    State state(const State* like) const;
    /// \param frame stands for one that is somebody else's; must outlive the stay there
    void restore(const State& state, const PointConverter& frame);

  private:
    /// Positions that a shape may lack.
    static constexpr std::size_t kSlots = 8;

    struct Left {
        Vec3 reference;
        std::vector<Vec3> offsets;
    };

    Vec3 reference_() const;
    /// Whether the frame was left where nothing in it has a place, as on a pole.
    bool isAdrift_() const;
    bool isDerived_() const { return !frame_ || aside_->derivedAt == frame_->revision(); }
    bool joins_(const Vec3& reference) const;
    /// What the positions are in a frame; nothing when one cannot be.
    std::optional<std::vector<Vec3>> offsetsIn_(const PointConverter& frame,
                                                const std::optional<Vec3>& middle) const;
    /// The given form of a position; nothing when no offset leads there.
    std::optional<Vec3> givenFor_(const PlacedPoint& point) const;

    /// What few shapes have: most are places, and have always been.
    struct Aside {
        std::shared_ptr<const PointConverter> own;
        /// In a frame: the places as they were when it had this revision.
        std::vector<Vec3> places;
        std::uint64_t derivedAt = 0;
        /// The offsets until the frame was left, as long as no position has been put anew.
        std::optional<Left> left;
    };
    void forgetLeft_() {
        if (aside_->left) aside_.change().left.reset();
    }

    std::vector<Vec3> given_;
    const PointConverter* frame_ = nullptr;
    mutable Shared<Aside> aside_;
    /// A bit for each slot that is empty.
    std::uint32_t missing_ = 0;
    /// The frame was to be left while a position had no place.
    bool stranded_ = false;
};

}  // namespace OverlayEditor
