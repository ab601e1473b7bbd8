#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "common/Vec3.h"
#include "model/PlacedPoints.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// A shape as it was when somebody took hold of it as a whole: it is moved and turned about its middle. Each
/// of its positions keeps its distance from there along the geodesic, and the azimuth of that, which turns
/// with the shape; altitudes keep their differences. Sizes that were set stay set. So a shape that lies where
/// it lay has the positions that it had, to the digit, offsets too.
class WholeShape {
  public:
    /// Where it is held (`ShapeMiddle`).
    static std::optional<halCore::Vec3> middleOf(const Shape& shape);
    /// Whether it has a direction. Rectangles lie along the meridians, circles look the same.
    static bool canTurn(const Shape& shape);

    /// \param shape must have a middle, and outlive the object
    explicit WholeShape(Shape& shape);

    /// Where it was then.
    const halCore::Vec3& middle() const { return middle_; }
    /// Lays it about another middle, turned clockwise by so many radians from how it lay then.
    /// \return false when it cannot lie there: it stays where it is
    bool lay(const halCore::Vec3& middle, double turnRad);

  private:
    /// From the middle to a position.
    struct Way {
        double azimuth;
        double meters;
        double above;
        halCore::Vec3 place;
    };

    /// Whether it lies where it lay, perhaps at another altitude, and what it counts from has not moved.
    bool isLifted_(const halCore::Vec3& middle, double turnRad) const;
    std::vector<halCore::Vec3> places_(const halCore::Vec3& middle, double turnRad) const;
    /// The positions there; nothing when no offset leads to one.
    std::optional<PlacedPoints> placed_(const halCore::Vec3& middle, double turnRad) const;

    halCore::Vec3 middle_;
    PlacedPoints before_;
    std::uint64_t revision_;
    std::vector<Way> ways_;
    /// Of its kind.
    std::function<bool(const halCore::Vec3& middle, double turnRad)> lay_;
};

}  // namespace OverlayEditor
