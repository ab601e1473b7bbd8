#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "model/MouseTool.h"
#include "model/Preferences.h"
#include "tools/HintSource.h"
#include "tools/PUDrawPoint.h"
#include "tools/SnapSource.h"
#include "tools/ToolView.h"
#include "tools/ViewProjection.h"

namespace OverlayEditor {

/// The event sequence that all drawing tools share: placing with press, drag and release, hovering over
/// edit points and dragging them, the working altitude, and the point that follows the cursor. A tool of
/// a shape fills in the hooks.
///
/// A position is the latitude and longitude under the cursor and the working altitude.
class BaseMouseTool : public MouseTool, public HintSource {
  public:
    enum State {
        Inactive = 0,
        Complete = 1,  ///< edit points can be hovered and dragged; other presses reach the host
        Placing = 2,   ///< the cursor point follows the mouse; a press starts a point or a shape
        Dragging = 3,  ///< an edit point
        Hovering = 4   ///< an edit point, which is highlighted
    };

    explicit BaseMouseTool(const Preferences& preferences) : prefs_(preferences) {}
    BaseMouseTool(const BaseMouseTool&) = delete;
    BaseMouseTool& operator=(const BaseMouseTool&) = delete;

    int handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    void preDrawOnRefresh(int width, int height) override;
    bool isActive() const override { return state_ != Inactive; }
    void setShowPoints(bool shown) override { showPoints_ = shown; }
    void setDrawDoneCallback(FunctorTwoParams__* callback) override { drawDone_ = callback; }
    int leftPress_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    int leftRelease_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    int rightPress_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    int mouseWheel_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    int mouseMotion_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;

    State state() const { return state_; }
    /// Metres, for new and moved points.
    double getCurrentAltitude_() const { return altitude_; }
    const PluginUtils::PUDrawPoint* nearPoint() const { return nearPoint_; }
    const PluginUtils::PUDrawPoint* cursorPoint() const { return cursorPoint_.get(); }

  protected:
    /// Each refresh while the left button is held in Placing, at the cursor.
    virtual void drawTempGraphics_(const halCore::Vec3& pos) = 0;
    /// A dragged point was released, or the cursor left a highlighted one: leads back to Complete or Placing.
    virtual void finishEditing_() = 0;
    /// The label of a point at that position.
    virtual std::string getPointText_(const halCore::Vec3& pos) const = 0;
    /// Left press on the earth in Placing.
    virtual void handleStartDrag_(const halCore::Vec3& pos) = 0;
    /// Left release on the earth after such a press.
    virtual void handleFinishDrag_(const halCore::Vec3& pos) = 0;
    /// Left release off the earth after such a press, or the tool ends before the release.
    virtual void handleAbortDrag_() = 0;
    /// The wheel changed the working altitude; nearPoint_, but not the shape, has taken it already.
    virtual void handleAltitudeChange_() = 0;
    /// The cursor moves while an existing point is dragged.
    virtual void handleMovePoint_(const halCore::Vec3& pos) = 0;
    /// The edit point under the cursor, null for none.
    virtual PluginUtils::PUDrawPoint* pointNearMouse_(const halCore::Vec3& pos) = 0;
    /// Each refresh while active: adds the edit points to picture_.
    virtual void redrawPointsForViewChange_() = 0;
    /// Each refresh while active, and when the drag of an existing point starts.
    virtual void removeTempGraphics_() = 0;

    /// Before each event and each refresh: others than the tool may have moved the shape's points, or removed
    /// them, nearPoint_ too.
    virtual void updatePoints_() {}
    /// The temporary graphics of this refresh are complete.
    virtual void finishRefresh_() {}
    /// Each refresh in Placing, at the cursor, whether the button is held or not: adds to picture_ what leads
    /// there.
    virtual void drawGuide_(const halCore::Vec3&) {}
    /// A press has taken nearPoint_.
    virtual void pointTaken_() {}
    /// Where no edit point lies under the cursor: another one that can be grabbed, null for none. It moves
    /// the whole shape.
    virtual PluginUtils::PUDrawPoint* wholeNearMouse_(const halCore::Vec3&) { return nullptr; }
    /// Whether nearPoint_ is that one; and whether the shape turns when it is dragged with Control.
    virtual bool isWhole_() const { return false; }
    virtual bool turns_() const { return false; }
    /// Where it was when it was grabbed.
    virtual std::optional<halCore::Vec3> wholeFrom_() const { return std::nullopt; }
    /// From here on the cursor turns the shape, from the direction in which it lies.
    virtual void beginTurn_() {}
    virtual void handleTurn_(const halCore::Vec3& /*cursor*/, bool /*steps*/) {}
    /// What a label says of nearPoint_, as opposed to a point that is to be placed.
    virtual std::string nearText_() { return getPointText_(nearPoint_->getPosition()); }
    /// The altitude of what has been placed last, none before: when others change it, it becomes the working
    /// altitude.
    virtual std::optional<double> placedAltitude_() const { return std::nullopt; }
    /// The wheel was turned that far: what nearPoint_, and with it the working altitude, comes to.
    virtual double turnedAltitude_(int delta) const { return adjustAltitude_(delta, altitude_); }
    /// What the tool edits, and which of its points is dragged, as far as others may be put onto the rest.
    virtual const Shape* edited_() const { return nullptr; }
    virtual std::optional<std::size_t> draggedIndex_() const { return std::nullopt; }
    /// From where a leg or a radius leads to the point that is placed or dragged.
    virtual std::optional<halCore::Vec3> pivot_() const { return std::nullopt; }
    /// How long the one before was, metres, while a point is placed.
    virtual std::optional<double> lastLength_() const { return std::nullopt; }
    /// Where a point comes to lie with Shift, in steps of 15 degrees about the pivot, and with Control, as
    /// far from it as before: the leg before, or the point itself when it was grabbed.
    virtual halCore::Vec3 constrained_(const halCore::Vec3& pos, bool steps, bool keeps) const;
    /// What the modifiers do now, behind the hint of the state.
    virtual std::string modifierHint_() const;
    /// Whether the point that is placed or dragged has an altitude of its own: then it takes that of what it
    /// is put onto.
    virtual bool hasOwnAltitude_() const { return state_ == Placing && !placedAltitude_(); }

  public:
    /// By the state; what depends on the shape is told by the hooks below. What a point is put onto comes
    /// first.
    std::string hint() const override;

  protected:
    /// In Placing: what the press, or while pressed_ the release, will do.
    virtual std::string_view placingHint_() const;
    /// In Complete.
    virtual std::string_view completeHint_() const;
    /// In Hovering, about nearPoint_.
    virtual std::string_view hoveringHint_() const;

    /// Times 1.25 for each whole notch; from 0 or below always 0.01, which gives the scaling a start. No
    /// farther than the panels reach.
    static double adjustAltitude_(int delta, double altitude);
    /// Hidden, without a label, with an altimeter line and no depth test.
    static std::unique_ptr<PluginUtils::PUDrawPoint> createEditPoint(const halCore::Vec3& pos,
                                                                     unsigned int rgba);
    /// Writes the coordinates as the preferences want them, "LLA: ..." or "MGRS: ...".
    void appendLLAText_(std::ostream& text, const halCore::Vec3& pos) const;
    /// Writes a length in the preferences' range units.
    void appendRange_(std::ostream& text, std::string_view label, double meters) const;
    /// Writes square metres in the square of the preferences' range units.
    void appendArea_(std::ostream& text, double squareMeters) const;
    /// Writes an angle in the preferences' units.
    void appendAngle_(std::ostream& text, std::string_view label, double radians) const;
    /// Writes the true bearing, " T: ...".
    void appendBearing_(std::ostream& text, const halCore::Vec3& from, const halCore::Vec3& to) const;
    void notifyDrawDone_();
    /// No point is highlighted or dragged any more; its label goes.
    void forgetNearPoint_();
    /// Latitude, longitude and working altitude at a pixel of a mouse event, none off the earth.
    std::optional<halCore::Vec3> cursorPosition_(int x, int y) const;
    /// The same where the hand aims with an event: at what lies there, unless Alt is held, or where the
    /// modifiers lead.
    std::optional<halCore::Vec3> aim_(const PIGUI::PIMouseEvent& event, int offsetX = 0, int offsetY = 0);
    /// A release where the button was pressed is a click, whatever has moved below it meanwhile.
    bool isClick_() const;
    /// The altitude of a point becomes the working one.
    void takeAltitude_(double meters);

    bool showPoints_ = true;
    const Preferences& prefs_;
    State state_ = Inactive;
    PluginUtils::PUDrawPoint* nearPoint_ = nullptr;
    std::unique_ptr<PluginUtils::PUDrawPoint> cursorPoint_;
    double altitude_ = 0.0;
    int lastX_ = 0;
    int lastY_ = 0;
    unsigned modifiers_ = 0;
    bool pressed_ = false;
    /// The press that is still held has placed the shape's first point.
    bool firstPress_ = false;
    FunctorTwoParams__* drawDone_ = nullptr;

    /// The view in the last refresh.
    ViewProjection view_;
    /// What this refresh draws.
    ToolPicture picture_;

  private:
    static constexpr std::uint32_t kSnapColor = 0xFF40FFFF;

    /// A press would grab the point under the cursor, also when it has just been let go there.
    bool isOver_() const {
        return state_ == Hovering || (nearPoint_ && !pressed_ && (state_ == Complete || state_ == Placing));
    }
    std::string_view stateHint_() const;
    /// Nobody knows any more where the cursor is: nothing that follows it or lies under it is marked.
    void leave_();
    PluginUtils::PUDrawPoint* grabbedAt_(const halCore::Vec3& pos) {
        auto* const point = pointNearMouse_(pos);
        return point ? point : wholeNearMouse_(pos);
    }
    /// The whole shape turns while Control is held, and else moves, from where it is then.
    void steer_(const PIGUI::PIMouseEvent& event);
    /// After a drag its point stays highlighted; pressed again before the cursor moves, it is grabbed again.
    bool grabsAgain_(const PIGUI::PIMouseEvent& event);
    void rememberGrab_(const PIGUI::PIMouseEvent& event);
    void followShape_();
    /// The point that is dragged comes to a place of the cursor's.
    void drag_(const PIGUI::PIMouseEvent& event);
    /// What was highlighted is not, and the state is that of a tool at rest.
    void letGo_();

    /// What the hand aims at, and the ring about it.
    std::optional<Snap> snap_;
    PluginUtils::PUDrawPoint snapMark_{{}, kSnapColor};
    /// Where the button was pressed last.
    int pressX_ = 0;
    int pressY_ = 0;
    /// From the pivot to the point that was grabbed, then.
    std::optional<double> grabbedLength_;
    std::optional<double> keptLength_() const { return state_ == Dragging ? grabbedLength_ : lastLength_(); }
    /// The drag turns the whole shape.
    bool turning_ = false;
    /// The mouse has moved since a point was grabbed.
    bool dragged_ = false;
    /// What placedAltitude_ was when it was asked last.
    std::optional<double> placedAt_;

    /// From the cursor to the place on the ground beneath the point that was grabbed, in its pixels.
    int grabOffsetX_ = 0;
    int grabOffsetY_ = 0;
};

}  // namespace OverlayEditor
