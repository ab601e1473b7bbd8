#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "geo/PointConverter.h"
#include "model/Overlay.h"
#include "pi/Guard.h"

namespace OverlayEditor {

/// What the edited overlay is attached to, and where its offsets count from: a platform of the scenario, or a
/// reference platform of the editor's own that stands for a fixed point. Overlay and shapes are told by it
/// alone.
class Attachment {
  public:
    /// \param overlay must outlive the object
    explicit Attachment(Overlay& overlay) : overlay_(overlay) {}
    ~Attachment() {
        guardedEnd([this] { release(); });
    }
    Attachment(const Attachment&) = delete;
    Attachment& operator=(const Attachment&) = delete;

    /// Where the positions of an overlay on this platform count from: the platform's place now, or the ground
    /// below the view for platform 0 and for one without a place; nothing without a view.
    static std::optional<halCore::Vec3> findDefaultRefLla(unsigned long platform);

    /// Whether the platform is the editor's own.
    bool isReferencePlatform(unsigned long platform) const {
        return platform != 0 && platform == referencePlatform_;
    }
    /// Whether offsets that counted from nowhere were detached, so that they can be put on a platform again.
    bool holdsOffsets() const { return fromNowhere_.has_value(); }
    /// They are saved as positions.
    void forgetOffsets() { fromNowhere_.reset(); }

    /// The overlay, empty and attached to nothing, is attached to a platform as shapes that were read with
    /// this converter need it; to none with 0.
    void take(std::unique_ptr<PointConverter> converter, const halCore::Vec3& lla, unsigned long platform);
    /// The same with a reference platform, which is made if the host makes one.
    /// \param written whether shapes that are added name the reference
    void takeReference(std::unique_ptr<PointConverter> converter, const halCore::Vec3& lla, bool written);
    /// Attaches the shapes to a platform at its place now, or detaches them with 0.
    /// \param center moves them so that their centres lie on the platform
    /// \return false, with a message, when the platform has no place, or no offsets from it lead to all
    /// shapes:
    ///         then nothing has changed
    bool attach(unsigned long platform, bool center);
    /// Lets the shapes go where the platform is now. \return whether it has moved
    bool followPlatform();
    /// All that this knows, but for the overlay, becomes another one's, and the other way round: to be called
    /// with Overlay::exchange.
    void exchange(Attachment& other) {
        std::swap(converter_, other.converter_);
        std::swap(referencePlatform_, other.referencePlatform_);
        std::swap(fromNowhere_, other.fromNowhere_);
    }
    /// Detaches; the reference platform goes.
    void release();

    /// Offsets that count from nowhere, detached: where they were assumed to count from, and what the shapes
    /// were, which stand about it as long as nobody changes them.
    struct FromNowhere {
        halCore::Vec3 assumed;
        std::uint64_t digest = 0;
        bool operator==(const FromNowhere&) const = default;
    };
    /// All that is not derived.
    struct State {
        /// 0 for none.
        unsigned long platform = 0;
        /// What it was called; not looked up by state().
        std::string name;
        /// Whether it is the editor's own; its number is another one each time that it is made.
        bool own = false;
        bool written = false;
        bool counts = false;
        halCore::Vec3 reference;
        std::optional<FromNowhere> fromNowhere;
        /// A platform of the scenario may have moved meanwhile.
        bool operator==(const State& other) const;
    };
    State state() const;
    /// Whether restore could attach to it.
    static bool isThere(const State& state);
    /// What the overlay was attached to, without a word to the shapes. A platform of the scenario counts
    /// where it is now, or was last when it has no place.
    void restore(const State& state);
    /// What attached shapes' offsets count from.
    PointConverter& converter() { return *converter_; }

  private:
    /// What the offsets count from moves, and the shapes with it; that is no change of theirs.
    void moveReference_(const halCore::Vec3& lla);
    halCore::Vec3 reference_() const;
    /// Makes the platform that stands for a reference, in place of the one before.
    /// \param ori heading, pitch and roll in radians
    /// \return its id, 0 when the host refuses
    unsigned long createRelativeReferencePlatform_(const halCore::Vec3& lla, const halCore::Vec3& ori);
    void removeReferencePlatform_();

    Overlay& overlay_;
    std::unique_ptr<PointConverter> converter_ = std::make_unique<PointConverter>();
    /// 0 for none.
    unsigned long referencePlatform_ = 0;
    std::optional<FromNowhere> fromNowhere_;
};

}  // namespace OverlayEditor
