#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "model/BaseFilledShape.h"
#include "model/Equipped.h"
#include "model/PointsContainer.h"
#include "model/Stateful.h"

namespace OverlayEditor {

/// Lines drawn by hand: each is what the mouse left behind between a press and a release. As a points
/// container it is all lines in one row. It cannot be attached, and is written as one line block for each
/// line of at least two points, all of the shape's name; they are read back as lines.
class FreeDrawShape : public PointsContainer,
                      public Equipped<FreeDrawShape, BaseFilledShape, FreeDrawPanel>,
                      public Stateful {
  public:
    using LinePoints = std::vector<halCore::Vec3>;

    explicit FreeDrawShape(const Preferences& preferences);
    FreeDrawShape(const FreeDrawShape& other);

    bool canAttach() const override { return false; }

    int serialize(Serializer& serializer) override;
    /// Keeps the converter, for the point editor; the shape stays unattached.
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) override;
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;
    void clear() override;

    const std::vector<LinePoints>& lines() const { return lines_; }
    /// A line has at least two points.
    bool isComplete() const;
    /// Begins a new line at a position.
    void startLine(const halCore::Vec3& lla);
    void removeLastLine();
    /// Appends to the line begun last; begins the first one.
    void addPoint(const halCore::Vec3& lla);

    /// All points anew, as many as there are, in their order.
    void setPoints(std::span<const halCore::Vec3> points);

    /// How far the mouse must move before it leaves a point behind, in pixels, 1 at least. Counts for lines
    /// begun afterwards.
    int pixelPrecision() const { return pixelPrecision_; }
    void setPixelPrecision(int pixels) {
        pixelPrecision_ = pixels < 1 ? 1 : pixels;
        changed_();
    }
    static constexpr int kDefaultPixelPrecision = 5;

    std::size_t getNumPoints() const override;
    /// Behind the last point: the converter's reference position, (0, 0, 0) without one.
    halCore::Vec3 pointAtIndex(unsigned long index) const override;
    void setPointAtIndex(unsigned long index, const halCore::Vec3& point) override;
    void insertPointAtIndex(unsigned long index, const halCore::Vec3& point) override;
    /// A line that loses its last point is gone.
    void deletePointAtIndex(unsigned long index) override;

  private:
    friend Equipped;

    struct Place {
        std::size_t line = 0;
        std::size_t point = 0;
    };
    /// Where a point stands; the line is lines_.size() behind the last point.
    Place placeOf_(unsigned long index) const;
    void append_(const halCore::Vec3& lla);
    void saveState_(ShapeState& state, const ShapeState* like) const override;
    void takeState_(const ShapeState& state) override;
    void showIn_(FreeDrawPanel& panel);
    void takeFrom_(FreeDrawPanel& panel);

    std::vector<LinePoints> lines_;
    int pixelPrecision_ = kDefaultPixelPrecision;
    Equipment<FreeDrawPanel> equipment_;
};

}  // namespace OverlayEditor
