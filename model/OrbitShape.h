#pragma once

#include "model/CylinderShape.h"
#include "model/Equipped.h"

namespace OverlayEditor {

/// A racetrack about two centres. It uses the circular shape's points with other meanings: the centre is the
/// first centre, the major-axis point the second one, and the minor-axis point marks the radius.
class OrbitShape : public Equipped<OrbitShape, CylinderShape, OrbitPanel> {
  public:
    /// The panel calls it after each edit of the user's.
    using OrbitGuiCallback = PanelChange;

    /// Metres; an orbit without a radius is written with this one.
    static constexpr double kDefaultRadius = 50.0;

    explicit OrbitShape(const Preferences& preferences);
    OrbitShape(const OrbitShape& other);

    int serialize(Serializer& serializer) override;
    /// The middle between the centres.
    halCore::Vec3 anchorPlace() const override;
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;

    /// Move one centre; the other stays, and the radius keeps its number. The radius' point goes along with
    /// the centre that it stands about.
    void moveFirstCenter(const halCore::Vec3& lla) { moveFirstCenter(PlacedPoint(lla)); }
    void moveFirstCenter(const PlacedPoint& point);
    void setCenter2(const halCore::Vec3& lla) { setCenter2(PlacedPoint(lla)); }
    void setCenter2(const PlacedPoint& point);
    /// Both centres at once, as the whole orbit is moved and turned: the radius' point turns along.
    /// \param turnRad clockwise, since the last time
    void carryCenters(PlacedPoints centers, double turnRad);
    /// Gives both centres an altitude.
    void setAltitude(double meters);
    std::optional<halCore::Vec3> centerPt2() const { return majorAxisPt(); }

    /// Both centres are there.
    bool isComplete() const override;
    /// The orbit's radius: as it was set, or the shortest distance of its point from a centre. 0 without one.
    double minorAxis() const override;
    using CylinderShape::setMinorRadius;
    /// A radius through a position, which its point then marks; needs both centres.
    void setMinorRadius(const halCore::Vec3& lla) override;
    /// From a position to the nearer centre; 0 when a centre is missing.
    double getShortestDistance_(const halCore::Vec3& position) const;

  private:
    friend Equipped;

    // On an orbit it would move the second centre.
    using CylinderShape::setMajorRadius;
    /// The radius' point may stand about the second centre.
    Position anchorOf_(EditPoint role) const override;
    double measured_(EditPoint role) const override;
    /// What stands in the file and in the panel.
    double drawnRadius_() const;
    /// The same as getShortestDistance_, as of the last sync_.
    double shortestDistance_(const halCore::Vec3& position) const;
    void showIn_(OrbitPanel& panel);
    void takeFrom_(OrbitPanel& panel);

    /// The centres that the panel shows while there are none.
    PlacedPoint shownCenter_{halCore::Vec3()};
    PlacedPoint shownSecond_{halCore::Vec3()};
    Equipment<OrbitPanel> equipment_;
};

}  // namespace OverlayEditor
