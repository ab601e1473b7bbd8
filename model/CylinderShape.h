#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "model/BaseFilledShape.h"
#include "model/Carried.h"
#include "model/Equipped.h"
#include "model/PUDrawPoint.h"

namespace OverlayEditor {

struct ShapeKind;

/// The circular shapes: a centre, one or two radii, perhaps a sector and a height. The geometry is kept
/// as edit points; beside a point stands the number as it was set, and it is the answer until that
/// point or the centre moves. Lengths in metres, angles in radians clockwise from north.
class CylinderShape : public Equipped<CylinderShape, BaseFilledShape, CylinderPanel>, public Carried {
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

    CylinderShape(const Preferences& preferences, Subtype subtype);
    CylinderShape(const CylinderShape& other);

    Subtype subtype() const { return subtype_; }
    /// An orbit's for NoSubtype.
    static const ShapeKind& kindOf(Subtype subtype);
    const ShapeKind& kind() const { return kindOf(subtype_); }

    int serialize(Serializer& serializer) override;
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) override;
    void carry(const ReferenceMove& move) override;
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;
    void clear() override;

    /// Moves the centre alone: the other points stay where they are, the numbers set for them are
    /// measured anew. Carries the height point.
    void setCenter(const halCore::Vec3& lla);
    /// Moves the whole shape: radii, angles and height keep their numbers.
    void moveCenter(const halCore::Vec3& lla);
    /// Whether a length, whatever its sign, can be a radius: a number, and not beyond half the earth's way
    /// round. There, a point would come back from the other side.
    static bool isRadius(double meters);
    /// Place the axis points due east and due north at a distance; need a centre. The sign is
    /// dropped; what is no radius is refused.
    void setMajorRadius(double meters);
    virtual void setMinorRadius(double meters);
    void setMajorRadius(const halCore::Vec3& lla);
    virtual void setMinorRadius(const halCore::Vec3& lla);
    /// Makes both radii the same.
    void setInnerRadius(double meters);
    /// Place the angle points on the rim; need a centre. An end within 1e-10 of the start is the start.
    void setStartAngle(double radians);
    void setEndAngle(double radians);
    void setStartAnglePt(const halCore::Vec3& lla);
    void setEndAnglePt(const halCore::Vec3& lla);
    /// Above the centre; needs one. An ellipsoid's height of 0 or less becomes 1.
    void setHeight(double meters);

    /// The edit points, null while they do not exist. The shape's.
    PluginUtils::PUDrawPoint* centerPt() const { return center_.get(); }
    PluginUtils::PUDrawPoint* majorAxisPt() const { return majorAxisPoint_.get(); }
    PluginUtils::PUDrawPoint* minorAxisPt() const { return minorAxisPoint_.get(); }
    PluginUtils::PUDrawPoint* startAnglePt() const { return startAnglePoint_.get(); }
    PluginUtils::PUDrawPoint* endAnglePt() const { return endAnglePoint_.get(); }
    PluginUtils::PUDrawPoint* heightPt() const { return heightPoint_.get(); }

    /// 0 where a point is missing.
    double majorAxis() const;
    virtual double minorAxis() const;
    double height() const { return height_(); }
    /// In [0, 2pi); equal bounds give an end 2pi above the start.
    double startAngle() const;
    double endAngle() const;

    virtual bool isComplete() const;
    /// While set (the default) an incomplete shape is not written.
    void setRequiresAllPoints(bool required) { requiresAllPoints_ = required; }
    /// Shows or hides the edit points; `height` also the height point.
    virtual void setEditPointsShown(bool shown, bool height);
    /// Puts the axis points due east and due north and the angle points onto the rim, after radii and angles
    /// were set apart. The numbers stay.
    void updatePoints();

  protected:
    double height_() const;
    /// Widens a box by a rim about a centre, and by every longitude when a full turn goes round a pole.
    /// Longitudes go on beyond 180 degrees so that the box stays one piece about the centre's.
    /// \param distance from the centre to the rim by azimuth
    static void includeRim_(const halCore::Vec3& center, double startRad, double sweepRad,
                            const std::function<double(double)>& distance,
                            std::pair<halCore::Vec3, halCore::Vec3>& bounds);

    /// The minor radius as it was set, while its point and the centre stand.
    std::optional<double> keptMinorRadius_() const { return kept_(minorRadius_, minorAxisPoint_); }
    void keepMinorRadius_(double meters) { keep_(minorRadius_, meters, minorAxisPoint_); }

  private:
    friend Equipped;

    bool hasKind_() const { return subtype_ < NoSubtype; }

    using PointPtr = std::unique_ptr<PluginUtils::PUDrawPoint>;

    /// A number as it was set, and where the points were that it was set for.
    struct SetNumber {
        double value = 0.0;
        halCore::Vec3 center;
        halCore::Vec3 point;
    };
    using Number = std::optional<SetNumber>;

    /// In [0, 2pi), a hair's breadth (1e-10) below 0 is 0; 0 when a point is missing.
    double azimuthTo_(const PointPtr& point) const;
    /// 0 when a point is missing.
    double distanceTo_(const PointPtr& point) const;
    /// The number, unless its point or the centre has moved on the earth since (up or down, for a height).
    std::optional<double> kept_(const Number& number, const PointPtr& point) const;
    std::optional<double> keptHeight_() const;
    void keep_(Number& number, double value, const PointPtr& point);
    void place_(PointPtr& point, const halCore::Vec3& lla);
    /// Puts a point at a direction and distance from the centre, at the centre's altitude.
    void placeAt_(PointPtr& point, double azimuth, double meters);
    void placeHeight_(double meters);
    void placeAngle_(PointPtr& point, Number& number, double radians);
    /// Puts the bounds of the sector on the rim again when the radii have changed.
    void placeSector_();
    /// From the centre to the rim in a direction; a stand-in length while there is no radius.
    double rimDistance_(double azimuth) const;
    /// Moves the centre, and everything else by the same ways; needs a centre.
    void moveAll_(const halCore::Vec3& center);
    void showIn_(CylinderPanel& panel);
    void takeFrom_(CylinderPanel& panel);

    Subtype subtype_;
    PointPtr center_;
    PointPtr majorAxisPoint_;
    PointPtr minorAxisPoint_;
    PointPtr startAnglePoint_;
    PointPtr endAnglePoint_;
    PointPtr heightPoint_;
    Number majorRadius_;
    Number minorRadius_;
    Number startAngle_;
    Number endAngle_;
    Number heightNumber_;
    bool requiresAllPoints_ = true;
    /// The centre that the panel shows while there is none.
    halCore::Vec3 shownCenter_;
    Equipment<CylinderPanel> equipment_{*this, preferences_, mouseTool_};
};

}  // namespace OverlayEditor
