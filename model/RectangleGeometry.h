#pragma once

#include "common/Vec3.h"

/// How a width and a height span a rectangle on the earth. Lengths in metres, along geodesics.
namespace OverlayEditor::RectangleGeometry {

/// The corner at `width` to the east and `height` to the north (both may be negative) of an anchor, at its
/// altitude: the end of the diagonal, whose azimuth is atan(width / height), plus pi when the height is
/// negative; with a height of exactly 0 it is atan(width).
halCore::Vec3 calcCornerPoint(const halCore::Vec3& anchor, double width, double height);

struct Size {
    double width = 0.0;
    double height = 0.0;
    bool operator==(const Size&) const = default;
};

/// The components of the diagonal from the first corner to the last, by its direction at the first; negative
/// to the west and south. What calcCornerPoint spans.
Size calcWidthHeight(const halCore::Vec3& first, const halCore::Vec3& last);

struct Corners {
    halCore::Vec3 first, last;
};

/// The corners half the size away from a centre. When half the height is exactly 0 the first corner is
/// taken one metre to the south.
Corners cornersAbout(const halCore::Vec3& center, const Size& size);

struct Span {
    /// The middle of the diagonal, at the first corner's altitude.
    halCore::Vec3 center;
    /// By the direction of the diagonal there.
    Size size;
};

/// The inverse of cornersAbout.
Span spanBetween(const Corners& corners);

}  // namespace OverlayEditor::RectangleGeometry
