#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "common/Vec3.h"
#include "format/Serializer.h"
#include "geo/PointConverter.h"
#include "model/MouseTool.h"
#include "model/PlacedPoints.h"
#include "model/Preferences.h"
#include "model/ShapeSource.h"

namespace PIGUI {
class PICanvas;
}

namespace OverlayEditor {

class SerializeToZel;
class Shape;
struct ShapeState;

/// Told what happens to the shapes of a collection.
class ShapeKeeper {
  public:
    virtual void renamed(Shape& shape) = 0;
    /// Something of a shape may have changed.
    virtual void touched(const Shape& shape) = 0;
    /// The host is to display the shape as it is now. \return whether somebody calls Shape::displayNow later
    virtual bool displaysLater(const Shape& shape) = 0;
    /// The shape is being deleted; of the pointer only the address may be used.
    virtual void deleted(const Shape* shape) = 0;

  protected:
    ~ShapeKeeper() = default;
};

/// One overlay shape of the editor. It shows itself in the host's view by writing itself as overlay
/// text and handing that to the host in place of what it showed before; every setter of a visible
/// property ends with that refresh. It is shown exactly when it is `shown` and `active`, can be written,
/// and the host took it.
class Shape {
  public:
    virtual ~Shape();

    /// A copy owned by the caller. It shows nothing until its first refresh and has a tool of its own.
    virtual Shape* clone() const = 0;
    /// \return 0 when the shape was written, non-zero when it is not complete
    virtual int serialize(Serializer& serializer) = 0;
    /// The same as a shape of the format, with what its block says beside what the editor has fields for.
    int write(SerializeToZel& zel);
    /// Null for a shape without a tool. The shape's, made when it is first asked for.
    virtual MouseTool* mouseTool() const { return mouseTool_; }
    /// Builds the property panel inside the canvas, which must outlive it.
    virtual void createGui(Preferences* preferences, PIGUI::PICanvas* canvas) = 0;
    /// Preferences changed: shows the panel's values anew.
    virtual void notifyPrefsUpdate() = 0;
    /// Copies the shape's values into its panel; does nothing without one.
    virtual void fillGui() = 0;
    virtual void deleteGui() = 0;
    virtual bool canAttach() const { return true; }
    virtual std::string name() const { return name_; }
    virtual bool shown() const { return shown_; }
    /// Attaches to a platform, or detaches with id 0.
    /// \param converter converts points about the platform; kept, not owned; may be null when detaching
    /// \param anchorCenter moves the shape so that its centre lies on the converter's reference
    /// A shape that does not fit there stays as it is, with a message.
    virtual void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) = 0;
    /// A name is what a file can hold: one line of words with single blanks between them, but for a label's.
    virtual void setName(const std::string& name);
    virtual void setShown(bool shown);
    virtual void setActive(bool active);
    /// Minimum and maximum corner; minimum above maximum when there is no point.
    virtual std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const = 0;

  protected:
    /// Refreshes the shape in the host.
    virtual void dirty_();
    /// Removes it from the host.
    virtual void hide_();

  public:
    bool active() const { return active_; }
    /// Whether the mouse draws or edits it.
    bool isInHand() const { return mouseTool_ && mouseTool_->isActive(); }
    /// Whether the host displays something of it, or is about to.
    bool isDisplayed() const { return hostOverlay_ != nullptr || displayPends_; }
    /// Has the host display the shape as it is, or nothing of one that is not shown or not active.
    void displayNow();
    const Preferences& preferences() const { return preferences_; }
    bool showPoints() const { return showPoints_; }
    void setShowPoints(bool shown);
    bool anchorCenter() const { return anchorCenter_; }
    void setAnchorCenter(bool anchored);
    unsigned long attachedPlatformId() const { return attachedPlatformId_; }
    /// The shape's positions; none for kinds that cannot be attached.
    const PlacedPoints& placed() const { return points_; }
    /// Offsets from a reference that the shape names itself. Only before it has a position.
    void nameReference(std::shared_ptr<const PointConverter> reference) {
        points_.nameReference(std::move(reference));
        changed_();
    }
    /// Offsets from a converter's reference, before it has a position and before it is attached. Not owned.
    void countFrom(const PointConverter& frame) {
        points_.enter(frame, std::nullopt);
        changed_();
    }
    /// The places stay places, whatever the overlay is attached to, until it is detached next.
    void keepPlaces() {
        keepsPlaces_ = true;
        changed_();
    }
    /// Whether it could be attached there: an offset leads to each of its positions.
    bool fits(const PointConverter& converter, bool anchorCenter) const;
    /// The block of a file that it was made of.
    const ShapeSource& source() const { return source_; }
    void setSource(ShapeSource source) { source_ = std::move(source); }
    /// What the block says beside the editor's fields is this from now on.
    void setExtras(std::shared_ptr<const halCore::ZEL::ZelShape> extras);
    /// How far its block has it turned clockwise, radians: hosts turn elliptical shapes by it, the panel does
    /// not know it.
    double heading() const;
    void setHeading(double radians);
    /// The altitude that was typed before there is anything that has it, metres: what is placed first gets
    /// it.
    std::optional<double> altitudeAhead() const { return altitudeAhead_; }
    void setAltitudeAhead(double meters) {
        altitudeAhead_ = meters;
        redrawPoints_();
    }
    /// Another number after each change.
    std::uint64_t changes() const { return changes_; }
    /// The middle of the bounding box.
    halCore::Vec3 centerPoint() const;
    /// All that makes it what it is.
    /// \param like null, or a state with which it shares what is the same
    std::shared_ptr<const ShapeState> state(const ShapeState* like = nullptr) const;
    /// Becomes what a shape of its kind was. Its tool goes on with it, and its panel shows it.
    /// \param frame what offsets count from unless the shape names it; outlives the stay there
    /// \param platform what the shape is attached to if it was attached
    /// \param converter as in setAttachedPlatformId
    void restore(const ShapeState& state, const PointConverter& frame, unsigned long platform,
                 PointConverter* converter);
    /// Who is told of a new name and of the end, null for nobody: the overlay that holds the shape. Not
    /// owned, not copied.
    void setKeeper(ShapeKeeper* keeper) { keeper_ = keeper; }

  protected:
    explicit Shape(const Preferences& preferences) : preferences_(preferences) {}
    Shape(const Shape& other);
    Shape& operator=(const Shape&) = delete;

    /// The part of setAttachedPlatformId that all shapes share: the converter is stored in any case; id 0
    /// detaches and refreshes; a shape is never moved from one platform straight to another. Its positions
    /// become offsets from the converter's reference, or places again.
    /// \return whether the shape has been attached just now
    bool takeAttachment_(unsigned long id, PointConverter* converter, bool anchorCenter);
    /// PlacedPoints::put, with a message when no offset leads there.
    bool putPlaced_(std::size_t index, const PlacedPoint& point) {
        const bool put = accepted_(points_.put(index, point));
        changed_();
        return put;
    }
    bool accepted_(bool taken) const;
    void rename_(std::string name);
    /// Something of it has changed: to be called once that is complete, unless dirty_ is.
    void changed_() const {
        ++changes_;
        if (keeper_) keeper_->touched(*this);
        redrawPoints_();
    }
    /// Asks for a frame when the tool shows the shape's points: it draws them only when asked, and the host
    /// does not know that they have moved.
    void redrawPoints_() const;
    /// The part of Stateful that is the same for all.
    void saveState_(ShapeState& state, const ShapeState* like) const;
    /// What beginShape is told: not 0 when the positions are offsets.
    unsigned long writtenPlatform_() const;
    /// Tells a position in the form in which positions are given.
    void give_(Serializer& serializer, Serializer::Use use, const halCore::Vec3& given) const {
        if (points_.frame())
            serializer.giveOffset(use, given, *points_.frame(), points_.hasOwnReference());
        else
            serializer.give(use, given);
    }
    /// All positions, for Serializer::Use::Point.
    void givePoints_(Serializer& serializer) const {
        if (!points_.frame()) return serializer.addPoints(points_.given());
        for (const halCore::Vec3& given : points_.given()) give_(serializer, Serializer::Use::Point, given);
    }

    /// Where a panel starts that shows no position yet: the ground in view, or above it.
    PlacedPoint start_() const;
    static void initBounds_(std::pair<halCore::Vec3, halCore::Vec3>& bounds);
    static void updateBounds_(const halCore::Vec3& point, std::pair<halCore::Vec3, halCore::Vec3>& bounds);

    const Preferences& preferences_;

  private:
    bool shown_ = false;
    bool active_ = false;
    bool showPoints_ = true;
    bool anchorCenter_ = true;
    bool keepsPlaces_ = false;

  protected:
    unsigned long attachedPlatformId_ = 0;

  private:
    /// displayNow, once it is the shape's turn.
    void display_();
    /// Where the shape is anchored; nothing when it is not to be.
    std::optional<halCore::Vec3> middle_(bool anchorCenter) const;

    mutable std::uint64_t changes_ = 0;
    void* hostOverlay_ = nullptr;
    bool displayPends_ = false;
    ShapeKeeper* keeper_ = nullptr;

  protected:
    /// Set by the concrete shape, which owns the tool as its last member.
    MouseTool* mouseTool_ = nullptr;
    PointConverter* pointConverter_ = nullptr;
    PlacedPoints points_;

  private:
    std::optional<double> altitudeAhead_;
    std::string name_;
    ShapeSource source_;
};

}  // namespace OverlayEditor
