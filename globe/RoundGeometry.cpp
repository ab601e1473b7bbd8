#include "globe/RoundGeometry.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "format/RoundOutline.h"
#include "format/ShapeCast.h"
#include "geo/Ecef.h"
#include "geo/GeodesicPath.h"
#include "globe/SolidGeometry.h"
#include "globe/StyledGeometry.h"

namespace sandbox {

namespace ZEL = halCore::ZEL;
using halCore::Ecef;
using halCore::Vec3;

namespace {

/// What is nothing but its curve. \return whether it is
bool appendCurve(const halCore::EllipticalArc& arc, bool closed, const Placement& placement,
                 const ShapeStyle& style, DrawList& out) {
    if (placement.extruded() || style.filled) return false;
    if (style.outlined || !closed) addLine(arc.places(placement.tolerance()), closed, style, out);
    return true;
}

void appendOrbit(const ZEL::RoundOutline& outline, const Placement& placement, const ShapeStyle& style,
                 DrawList& out) {
    const double tolerance = placement.tolerance();
    GeodeticPath ring = outline.arcs.front().path(tolerance);
    if (outline.arcs.size() == 1) {
        addRing(ring, true, outline.center, placement, style, out);
        return;
    }
    const GeodeticPath back = outline.arcs.back().path(tolerance);
    const double step = stepFor(geodesicBetween(ring.back(), back.front()).meters, tolerance);
    appendPath(ring, back.front(), halCore::PathKind::Geodesic, step);
    ring.insert(ring.end(), back.begin() + 1, back.end());
    appendPath(ring, Vec3(ring.front()), halCore::PathKind::Geodesic, step);
    addRing(ring, true, std::nullopt, placement, style, out);
}

void appendElliptical(const ZEL::EllipticalShape& shape, const ZEL::RoundOutline& outline,
                      const Placement& placement, const ShapeStyle& style, DrawList& out) {
    const halCore::EllipticalArc& arc = outline.arcs.front();
    const bool isCylinder = shape.shapeType() == ZEL::ShapeType::Cylinder;
    if (!isCylinder && appendCurve(arc, outline.whole, placement, style, out)) return;
    GeodeticPath ring = arc.path(placement.tolerance());
    const std::size_t last = ring.size() - 1;
    if (isCylinder) {
        double height = 0.0;
        static_cast<const ZEL::Cylinder&>(shape).getHeight(height);
        height *= placement.scale().z();
        double sweep = 0.0;
        shape.getAngleSweep(sweep);
        if (!outline.whole && sweep > 0.0) std::ranges::reverse(ring);
        std::vector<std::size_t> edges;
        if (outline.whole) {
            for (std::size_t i = 0; i < 12; ++i) edges.push_back(i * last / 12);
        } else {
            edges = {0, last, last + 1};
            ring.push_back(outline.center);
        }
        const RingFill fill =
            filledAbout(outline.whole ? std::optional(outline.center) : std::nullopt, placement, style);
        if (height != 0.0)
            appendPrism(ring, height, fill, edges, style, out);
        else
            addRing({ring, {}}, true, fill, placement, style, out).finish();
        return;
    }
    if (outline.whole) {
        addRing(ring, true, outline.center, placement, style, out);
        return;
    }
    // An arc is its curve; filled, it is the slice of pie.
    if (style.filled) {
        GeodeticPath slice = ring;
        slice.push_back(outline.center);
        ShapeStyle area = style;
        area.outlined = false;
        addRing(slice, true, std::nullopt, placement, area, out);
        if (style.outlined) addOutline(ring, false, placement, style, out);
        return;
    }
    addRing(ring, false, std::nullopt, placement, style, out);
}

void appendRound(const ZEL::CircularShape& shape, const ZEL::RoundOutline& outline,
                 const Placement& placement, DrawList& out) {
    const ShapeStyle style = styleOf(shape);
    const Vec3& scale = placement.scale();
    if (const auto* elliptical = ZEL::shapeAs<ZEL::EllipticalShape>(shape)) {
        appendElliptical(*elliptical, outline, placement, style, out);
        return;
    }
    const Vec3& center = outline.center;
    const BodyFrame frame = bodyFrame(center, placement.yaw(), placement.pitch(), placement.roll());
    const bool isDome = shape.shapeType() == ZEL::ShapeType::Hemisphere;
    switch (shape.shapeType()) {
        case ZEL::ShapeType::Sphere:
        case ZEL::ShapeType::Hemisphere:
        case ZEL::ShapeType::Ellipsoid: {
            double height = 0.0;
            const auto* ellipsoid = ZEL::shapeAs<ZEL::Ellipsoid>(shape);
            if (!ellipsoid || ellipsoid->getHeight(height) != 0 || !(height > 0.0))
                height = std::max(outline.halfEast, outline.halfNorth);
            appendEllipsoid(center, frame,
                            {outline.halfEast * scale.x(), outline.halfNorth * scale.y(), height * scale.z()},
                            isDome, style, placement.tolerance(), out);
            return;
        }
        case ZEL::ShapeType::Orbit:
            appendOrbit(outline, placement, style, out);
            return;
        default:
            break;
    }
    const halCore::EllipticalArc& arc = outline.arcs.front();
    const bool isCone = shape.shapeType() == ZEL::ShapeType::Cone;
    if (!isCone && appendCurve(arc, true, placement, style, out)) return;
    const GeodeticPath ring = arc.path(placement.tolerance());
    if (isCone) {
        double height = 0.0;
        static_cast<const ZEL::Cone&>(shape).getHeight(height);
        appendCone(center, ring, height * scale.z(), style, placement.tolerance(), out);
        return;
    }
    addRing(ring, true, center, placement, style, out);
}

/// Turns what was added to a list, made level, about a centre into a leaning frame.
class Leaning {
  public:
    explicit Leaning(const DrawList& out) : meshes_(out.meshes.size()), lines_(out.lines.size()) {}

    void apply(const Vec3& center, const Placement& placement, DrawList& out) const {
        const Ecef origin = toEcef(center);
        const BodyFrame level = bodyFrame(center, placement.yaw(), 0.0, 0.0);
        const BodyFrame leaning = bodyFrame(center, placement.yaw(), placement.pitch(), placement.roll());
        const auto turn = [&](std::vector<Ecef>& points) {
            for (Ecef& p : points) {
                const Ecef v = p - origin;
                p = origin + leaning.right * dot(v, level.right) + leaning.forward * dot(v, level.forward) +
                    leaning.up * dot(v, level.up);
            }
        };
        for (std::size_t i = meshes_; i < out.meshes.size(); ++i) turn(out.meshes[i].vertices);
        for (std::size_t i = lines_; i < out.lines.size(); ++i) turn(out.lines[i].points);
    }

  private:
    std::size_t meshes_;
    std::size_t lines_;
};

/// Whether pitch and roll are still to be applied: balls are made in their frame, and a racetrack is held
/// by its two centres.
bool isMadeLevel(ZEL::ShapeType type) {
    return type != ZEL::ShapeType::Sphere && type != ZEL::ShapeType::Hemisphere &&
           type != ZEL::ShapeType::Ellipsoid && type != ZEL::ShapeType::Orbit;
}

}  // namespace

void appendCircular(const ZEL::CircularShape& shape, const Placement& placement, DrawList& out) {
    const std::optional<ZEL::RoundOutline> outline = ZEL::roundOutline(shape, placement);
    if (!outline) return;
    const Leaning leaning(out);
    appendRound(shape, *outline, placement, out);
    if (placement.leans() && isMadeLevel(shape.shapeType())) leaning.apply(outline->center, placement, out);
}

}  // namespace sandbox
