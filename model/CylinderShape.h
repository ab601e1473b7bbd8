#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

#include "geo/Angles.h"
#include "model/Anchored.h"
#include "model/BaseFilledShape.h"
#include "model/Equipped.h"
#include "model/ShapeState.h"
#include "model/Stateful.h"

namespace OverlayEditor {

/// The circular shapes: a centre, one or two radii, perhaps a sector and a height. The geometry is kept
/// as edit points; beside a point stands the number as it was set, and it is the answer until that
/// point or the centre moves. When the centre moves with what its offset counts from, the other points lie
/// about it as before, and the numbers stay, also while the offset leads nowhere. Lengths in metres, angles
/// in radians clockwise from north.
class CylinderShape : public Equipped<CylinderShape, BaseFilledShape, CylinderPanel>,
                      public Anchored,
                      public Stateful {
  public:
    enum Subtype {
        Circle = 0,
        Ellipse = 1,
        Arc = 2,
        Cylinder = 3,
        Wedge = 4,
        Sphere = 5,
        Hemisphere = 6,
        Ellipsoid = 7,
        Cone = 8,
        /// Neither name nor tool, never written as a circular shape: for derived shapes.
        NoSubtype = 9
    };

    /// Metres, of a new wedge.
    static constexpr double kWedgeHeight = 500.0;

    /// What a user grabs to change the shape.
    enum class EditPoint { Center, MajorAxis, MinorAxis, StartAngle, EndAngle, Height };

    CylinderShape(const Preferences& preferences, Subtype subtype);
    CylinderShape(const CylinderShape& other);

    Subtype subtype() const { return subtype_; }
    /// An orbit's for NoSubtype.
    static const ShapeKind& kindOf(Subtype subtype);
    const ShapeKind& kind() const { return kindOf(subtype_); }

    int serialize(Serializer& serializer) override;
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) override;
    halCore::Vec3 anchorPlace() const override { return centerPt().value_or(kNoPlace); }
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;
    void clear() override;

    /// Moves the centre alone: the other points stay where they are, the numbers set for them are
    /// measured anew. Carries the height point.
    void setCenter(const halCore::Vec3& lla) { setCenter(PlacedPoint(lla)); }
    void setCenter(const PlacedPoint& point);
    /// Moves the whole shape: radii, angles and height keep their numbers.
    void moveCenter(const halCore::Vec3& lla) { moveCenter(PlacedPoint(lla)); }
    void moveCenter(const PlacedPoint& point);
    /// Whether a length, whatever its sign, can be a radius: a number, and not beyond half the earth's way
    /// round. There, a point would come back from the other side.
    static bool isRadius(double meters);
    /// Place the axis points due east and due north at a distance; need a centre. The sign is
    /// dropped; what is no radius is refused.
    void setMajorRadius(double meters);
    virtual void setMinorRadius(double meters);
    void setMajorRadius(const halCore::Vec3& lla) { put_(EditPoint::MajorAxis, lla); }
    virtual void setMinorRadius(const halCore::Vec3& lla) { put_(EditPoint::MinorAxis, lla); }
    /// Makes both radii the same; an orbit has one.
    void setInnerRadius(double meters);
    /// Place the angle points on the rim; need a centre. An end that is whole turns from the start, to 1e-10,
    /// is the start.
    void setStartAngle(double radians);
    void setEndAngle(double radians);
    void setStartAnglePt(const halCore::Vec3& lla) { put_(EditPoint::StartAngle, lla); }
    void setEndAnglePt(const halCore::Vec3& lla) { put_(EditPoint::EndAngle, lla); }
    /// Above the centre; needs one. An ellipsoid's height of 0 or less becomes 1. An ellipsoid that was given
    /// none is as high as its longer radius, as hosts draw it.
    void setHeight(double meters);

    /// Where it stands; nothing while the shape has none, or its offset leads nowhere.
    std::optional<halCore::Vec3> editPoint(EditPoint role) const {
        sync_();
        return known_(role);
    }
    std::optional<halCore::Vec3> centerPt() const { return editPoint(EditPoint::Center); }
    std::optional<halCore::Vec3> majorAxisPt() const { return editPoint(EditPoint::MajorAxis); }
    std::optional<halCore::Vec3> minorAxisPt() const { return editPoint(EditPoint::MinorAxis); }
    std::optional<halCore::Vec3> startAnglePt() const { return editPoint(EditPoint::StartAngle); }
    std::optional<halCore::Vec3> endAnglePt() const { return editPoint(EditPoint::EndAngle); }
    std::optional<halCore::Vec3> heightPt() const { return editPoint(EditPoint::Height); }

    /// 0 where a point is missing.
    double majorAxis() const;
    virtual double minorAxis() const;
    double height() const { return height_(); }
    /// In [0, 2pi); equal bounds give an end 2pi above the start.
    double startAngle() const;
    double endAngle() const;

    virtual bool isComplete() const;
    /// While set (the default) an incomplete shape is not written. One that a file has is written as it is
    /// there.
    void setRequiresAllPoints(bool required) {
        if (round_->requiresAllPoints != required) round_.change().requiresAllPoints = required;
        changed_();
    }
    /// Which of the edit points the tool draws: none, or all, the height point only with `height`.
    virtual void setEditPointsShown(bool shown, bool height);
    bool isEditPointShown(EditPoint role) const {
        return role == EditPoint::Height ? heightPointShown_ : editPointsShown_;
    }
    /// Puts the axis points due east and due north and the angle points onto the rim, after radii and angles
    /// were set apart. The numbers stay.
    void updatePoints();

  protected:
    /// The shape's positions: the centre, and an orbit's second one.
    enum Position : std::size_t { First, Second };
    bool hasCenter_() const { return points_.has(First); }
    /// Whether the shape has the edit point, wherever it stands.
    bool hasPoint_(EditPoint role) const {
        sync_();
        return round_->places[index_(role)] || round_->marks[index_(role)];
    }
    /// Moves a centre alone, with a message when no offset leads there. \return whether it was moved
    /// \param along keeps its number and its way from the centre about which it lies
    bool putCenter_(Position position, const PlacedPoint& point,
                    std::optional<EditPoint> along = std::nullopt);
    /// Brings the edit points to where the centre is now: it moves with what its offset counts from.
    void sync_() const;
    /// What the next three look at and answer is as of the last sync_.
    std::optional<halCore::Vec3> known_(EditPoint role) const {
        const halCore::Vec3* const place = round_->places[index_(role)];
        return place ? std::optional(*place) : std::nullopt;
    }
    /// The centre about which an edit point lies.
    virtual Position anchorOf_(EditPoint) const { return First; }
    /// What the point says; an angle in [0, 2pi), a hair's breadth (1e-10) below 0 is 0. 0 when the point or
    /// the centre is missing.
    virtual double measured_(EditPoint role) const;
    double height_() const;
    /// A part of the earth about a centre, as far as a rim.
    struct Sector {
        halCore::Vec3 center;
        double startRad = 0.0;
        double sweepRad = halCore::kTwoPi;
        /// From the centre to the rim by azimuth.
        std::function<double(double)> distance;
        /// Without it only the rim counts.
        bool filled = true;
    };
    /// Widens a box by a sector, and by every longitude when it lies about a pole. Longitudes go on beyond
    /// 180 degrees so that the box stays one piece about the centre's.
    static void includeSector_(const Sector& sector, std::pair<halCore::Vec3, halCore::Vec3>& bounds);

    /// The number as it was set, unless its point or the centre has moved on the earth since (up or down, for
    /// a height).
    std::optional<double> kept_(EditPoint role) const;
    /// Takes a number for the one that its point, where it stands now, was set for.
    void keep_(EditPoint role, double value) const;
    void setKnown_(EditPoint role, const std::optional<halCore::Vec3>& place) const;
    /// Puts an edit point that is no centre somewhere.
    void place_(EditPoint role, const halCore::Vec3& lla);
    /// Gives an edit point that is no centre an altitude; its number stays. \return whether it had another
    /// one
    bool liftMark_(EditPoint role, double meters);
    /// Has an edit point lie in another direction from its centre once that has moved; its number stays.
    void turnMark_(EditPoint role, double radians);
    /// As it was set, or else measured.
    double number_(EditPoint role) const;

  private:
    friend Equipped;

    using SetNumber = RoundState::SetNumber;
    using Mark = RoundState::Mark;
    static constexpr std::size_t kEditPoints = RoundState::kEditPoints;
    static std::size_t index_(EditPoint role) { return static_cast<std::size_t>(role); }
    bool hasKind_() const { return subtype_ < NoSubtype; }
    bool isMark_(EditPoint role) const {
        return role != EditPoint::Center && (hasKind_() || role != EditPoint::MajorAxis);
    }
    void captureMarks_() const;
    void placeMarks_() const;
    /// Puts a point somewhere, and shows it.
    void put_(EditPoint role, const halCore::Vec3& lla);
    /// Puts a point at a direction and distance from the centre, at the centre's altitude, and keeps the
    /// number.
    void placeAt_(EditPoint role, double azimuth, double meters, double number);
    void placeHeight_(double meters);
    /// Of an ellipsoid that was given no height.
    void placeOwnHeight_();
    void placeAngle_(EditPoint role, double radians);
    /// Puts the bounds of the sector on the rim again when the radii have changed.
    void placeSector_();
    /// From the centre to the rim in a direction; a stand-in length while there is no radius.
    double rimDistance_(double azimuth) const;
    void saveState_(ShapeState& state, const ShapeState* like) const override;
    void takeState_(const ShapeState& state) override;
    void showIn_(CylinderPanel& panel);
    void takeFrom_(CylinderPanel& panel);

    Subtype subtype_;
    /// By role. The centres' places are derived from the shape's positions, and with them the others'. Where
    /// there are marks they count instead of the places: a centre has moved, or has none. None for points
    /// that have been set since.
    mutable Shared<RoundState> round_;
    bool editPointsShown_ = false;
    bool heightPointShown_ = false;
    /// The centre that the panel shows while there is none; null without a panel.
    std::unique_ptr<const PlacedPoint> shownCenter_;
    Equipment<CylinderPanel> equipment_;
};

}  // namespace OverlayEditor
