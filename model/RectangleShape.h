#pragma once

#include <optional>
#include <string>

#include "model/BaseFilledShape.h"
#include "model/Carried.h"
#include "model/Equipped.h"
#include "model/RectangleGeometry.h"

namespace OverlayEditor {

/// A rectangle along the meridians and parallels between two opposite corners, or the upright triangle in
/// it. It is flat: the altitude that was set last is that of all its corners.
///
/// It is written as a polygon of its corners, and read back from one. Width, height and a centre that were
/// set are kept beside the corners and are the answer until a corner moves; a file holds the corners
/// only, so after loading they are computed.
class RectangleShape : public Equipped<RectangleShape, BaseFilledShape, RectanglePanel>, public Carried {
  public:
    enum Subtype { Rectangle = 0, Triangle = 1 };

    RectangleShape(const Preferences& preferences, Subtype subtype);
    RectangleShape(const RectangleShape& other);

    Subtype subtype() const { return subtype_; }
    /// Both corners are there.
    bool isComplete() const { return first_ && last_; }

    int serialize(Serializer& serializer) override;
    /// Anchored, the centre comes to lie on the reference, or the first corner unless anchorCenter().
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) override;
    void carry(const ReferenceMove& move) override;
    bool isRounded() const override { return true; }
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;
    void clear() override;

    /// Nothing until it is set.
    const std::optional<halCore::Vec3>& firstCorner() const { return first_; }
    const std::optional<halCore::Vec3>& lastCorner() const { return last_; }
    void setFirstCorner(const halCore::Vec3& lla);
    void setLastCorner(const halCore::Vec3& lla);

    /// Metres from the first corner to the last, negative to the west and south; 0 without both.
    double width() const;
    double height() const;
    /// The middle; (0, 0, 0) without both corners.
    halCore::Vec3 center() const;
    /// Spans the rectangle from its first corner, or about its centre.
    void setFromCorner(const halCore::Vec3& first, double width, double height);
    void setFromCenter(const halCore::Vec3& center, double width, double height);

    /// What the tool writes beside a corner that stands at `corner` while it is placed or dragged: width
    /// and height of the rectangle between it and the opposite corner. Empty while that is missing.
    /// \param isFirst which of the two corners it is
    std::string getShortPointText_(const halCore::Vec3& corner, bool isFirst) const;

  private:
    friend Equipped;

    /// What was set, and the corners it was set for.
    struct SetSize {
        RectangleGeometry::Size size;
        std::optional<halCore::Vec3> center;
        RectangleGeometry::Corners corners;
    };

    const SetSize* kept_() const;
    void level_(double altitude);
    /// All or nothing: a corner that cannot be moved keeps the other where it is.
    void moveAll_(const ReferenceMove& move);
    /// Takes over the rectangle that a panel's fields describe.
    void takeGeometry_(const RectanglePanel& panel);
    void showIn_(RectanglePanel& panel);
    void takeFrom_(RectanglePanel& panel);

    Subtype subtype_;
    std::optional<halCore::Vec3> first_;
    std::optional<halCore::Vec3> last_;
    std::optional<SetSize> set_;
    /// An anchor typed before there was a size.
    std::optional<halCore::Vec3> typedAnchor_;
    Equipment<RectanglePanel> equipment_{*this, preferences_, mouseTool_};
};

}  // namespace OverlayEditor
