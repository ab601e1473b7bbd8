#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/Anchored.h"
#include "model/BaseFilledShape.h"
#include "model/Equipped.h"
#include "model/RectangleGeometry.h"
#include "model/ShapeState.h"
#include "model/Stateful.h"

namespace OverlayEditor {

/// A rectangle along the meridians and parallels between two opposite corners, or the upright triangle in
/// it. It is flat: the altitude that was set last is that of all its corners.
///
/// It is written as a polygon of its corners, and read back from one. Width, height and a centre that were
/// set are kept beside the corners and are the answer until a corner moves; a file holds the corners
/// only, so after loading they are computed, by the rule that sets them: about the centre, or from the first
/// corner, whichever anchors the shape.
class RectangleShape : public Equipped<RectangleShape, BaseFilledShape, RectanglePanel>,
                       public Anchored,
                       public Stateful {
  public:
    enum Subtype { Rectangle = 0, Triangle = 1 };

    RectangleShape(const Preferences& preferences, Subtype subtype);
    RectangleShape(const RectangleShape& other);

    Subtype subtype() const { return subtype_; }
    /// Both corners are there.
    bool isComplete() const { return points_.has(First) && points_.has(Last); }

    int serialize(Serializer& serializer) override;
    /// Anchored, the centre comes to lie on the reference, or the first corner unless anchorCenter().
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) override;
    halCore::Vec3 anchorPlace() const override;
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;
    void clear() override;

    /// Nothing until it is set, and while its offset leads nowhere.
    std::optional<halCore::Vec3> firstCorner() const { return placeOf_(First); }
    std::optional<halCore::Vec3> lastCorner() const { return placeOf_(Last); }
    /// As they are drawn, one after the other: three of a triangle; none while one has no place.
    std::vector<halCore::Vec3> corners() const;
    /// The anchor that was typed while there was no size, as long as there is none.
    std::optional<halCore::Vec3> typedAnchor() const {
        return isComplete() ? std::nullopt : placeOf_(TypedAnchor);
    }
    void setFirstCorner(const halCore::Vec3& lla) { setCorner_(First, PlacedPoint(lla)); }
    void setLastCorner(const halCore::Vec3& lla) { setCorner_(Last, PlacedPoint(lla)); }
    void setFirstCorner(const PlacedPoint& point) { setCorner_(First, point); }
    void setLastCorner(const PlacedPoint& point) { setCorner_(Last, point); }

    /// Metres from the first corner to the last, negative to the west and south; 0 without both.
    double width() const { return size_().width; }
    double height() const { return size_().height; }
    /// The middle of the diagonal; (0, 0, 0) without both corners.
    halCore::Vec3 center() const;
    /// The size by which it was set, if it was.
    const std::optional<RectangleState::SetSize>& setSize() const { return setSize_; }
    /// Moves the whole shape: it keeps its size, and what anchors it, its centre or its first corner, comes
    /// to lie there. \return false where no rectangle of that size lies: nothing has changed
    bool carry(const halCore::Vec3& anchor);
    /// It is the one that it was once.
    void putBack(PlacedPoints points, std::optional<RectangleState::SetSize> size);
    /// Spans the rectangle from its first corner, or about its centre.
    void setFromCorner(const halCore::Vec3& first, double width, double height);
    void setFromCenter(const halCore::Vec3& center, double width, double height);

    /// What the tool writes beside a corner that stands at `corner` while it is placed or dragged: width
    /// and height of the rectangle between it and the opposite corner. Empty while that is missing.
    /// \param isFirst which of the two corners it is
    std::string getShortPointText_(const halCore::Vec3& corner, bool isFirst) const;

  private:
    friend Equipped;

    /// What the shape's positions are. A centre is kept beside the corners when it was set; an anchor that
    /// was typed before there was a size is no part of the shape yet.
    enum Position : std::size_t { First, Last, Center, TypedAnchor };

    using SetSize = RectangleState::SetSize;

    std::optional<halCore::Vec3> placeOf_(Position position) const;
    void setCorner_(Position position, const PlacedPoint& point);
    /// Both corners, and the numbers that they were set by: refused, with a message, unless the corners tell
    /// them again.
    void setCorners_(const PlacedPoint& first, const PlacedPoint& last,
                     const std::optional<RectangleGeometry::Size>& size,
                     const std::optional<PlacedPoint>& center);
    /// The same without asking. \return false when no offset leads there: nothing has changed
    bool span_(const PlacedPoint& first, const PlacedPoint& last,
               const std::optional<RectangleGeometry::Size>& size, const std::optional<PlacedPoint>& center);
    /// As it was set by the rule of the present anchor, or else measured.
    RectangleGeometry::Size size_() const;
    /// What the panel's fields would be for corners there.
    RectangleGeometry::Size sizeBetween_(const RectangleGeometry::Corners& corners) const;
    /// The middle of the diagonal; needs both corners.
    PlacedPoint placedCenter_() const;
    /// Takes over the rectangle that a panel's fields describe.
    void takeGeometry_(const RectanglePanel& panel);
    void saveState_(ShapeState& state, const ShapeState* like) const override;
    void takeState_(const ShapeState& state) override;
    void showIn_(RectanglePanel& panel);
    void takeFrom_(RectanglePanel& panel);

    Subtype subtype_;
    /// As it was set, until a corner is set by itself.
    std::optional<SetSize> setSize_;
    Equipment<RectanglePanel> equipment_;
};

}  // namespace OverlayEditor
