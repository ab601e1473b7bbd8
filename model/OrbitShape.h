#pragma once

#include "model/CylinderShape.h"

namespace OverlayEditor {

/// A racetrack about two centres. It uses the circular shape's points with other meanings: the centre is the
/// first centre, the major-axis point the second one, and the minor-axis point marks the radius.
class OrbitShape : public CylinderShape {
  public:
    /// Metres; an orbit without a radius is written with this one.
    static constexpr double kDefaultRadius = 50.0;

    explicit OrbitShape(const Preferences& preferences);
    OrbitShape(const OrbitShape& other);
    ~OrbitShape() override;

    Shape* clone() const override;
    int serialize(Serializer& serializer) override;
    void createGui(Preferences* preferences, PIGUI::PICanvas* canvas) override;
    void notifyPrefsUpdate() override;
    void fillGui() override;
    void deleteGui() override;
    /// Anchored, the middle between the centres comes to lie on the reference.
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) override;
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;

    /// The second centre; the radius keeps its number.
    void setCenter2(const halCore::Vec3& lla) { CylinderShape::setMajorRadius(lla); }
    PluginUtils::PUDrawPoint* centerPt2() const { return majorAxisPt(); }

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
    // On an orbit it would move the second centre.
    using CylinderShape::setMajorRadius;
    /// The second centre stays, and the radius keeps its number.
    void moveFirstCenter_(const halCore::Vec3& lla);
    void guiChanged_();

    /// The first centre that the panel shows while there is none.
    halCore::Vec3 shownCenter_;
    // Last, in this order: what touches the shape while it dies must find its data alive.
    std::unique_ptr<OrbitPanel> panel_;
    MouseToolPtr ownTool_;
};

}  // namespace OverlayEditor
