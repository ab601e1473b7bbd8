#include "globe/RoundGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "globe/GeodesicPath.h"
#include "globe/SolidGeometry.h"
#include "globe/StyledGeometry.h"

namespace sandbox {

namespace ZEL = halCore::ZEL;
using halCore::Ecef;
using halCore::kHalfPi;
using halCore::kPi;
using halCore::kTwoPi;
using halCore::Vec3;

namespace {

void appendOrbit(const ZEL::Orbit& shape, const Vec3& center, double radius, const Placement& placement,
                 const ShapeStyle& style, DrawList& out) {
    Vec3 second;
    if (shape.getCenterPosition2(second) != 0) return;
    const std::optional<Vec3> center2 = placement.place(second);
    if (!center2) return;
    const DistanceAndAzimuth way = geodesicBetween(center, *center2);
    if (way.meters < 1e-3) {
        addRing(geodesicArc(center, radius, 0.0, kTwoPi, placement.tolerance()), true, center, placement,
                style, out);
        return;
    }
    const double step = stepFor(way.meters, placement.tolerance());
    GeodeticPath ring = geodesicArc(*center2, radius, way.azimuthAtEnd - kHalfPi, kPi, placement.tolerance());
    const GeodeticPath back =
        geodesicArc(center, radius, way.azimuthAtStart + kHalfPi, kPi, placement.tolerance());
    appendPath(ring, back.front(), PathKind::Geodesic, step);
    ring.insert(ring.end(), back.begin() + 1, back.end());
    appendPath(ring, Vec3(ring.front()), PathKind::Geodesic, step);
    addRing(ring, true, std::nullopt, placement, style, out);
}

/// The half axes (east, north) of a shape: from its axes, which are whole in a file, else its radius. Without
/// one, an axis stands in for the other. Signs mean nothing.
std::array<double, 2> halfAxes(double major, bool hasMajor, double minor, bool hasMinor, double radius) {
    const double other = radius > 0.0 ? radius : std::abs(hasMajor ? major : minor) / 2;
    return {hasMajor ? std::abs(major) / 2 : other, hasMinor ? std::abs(minor) / 2 : other};
}

void appendElliptical(const ZEL::EllipticalShape& shape, const Vec3& center, double radius,
                      const Placement& placement, const ShapeStyle& style, DrawList& out) {
    double major = 0.0;
    double minor = 0.0;
    const bool hasMajor = shape.getMajorAxis(major) == 0;
    const bool hasMinor = shape.getMinorAxis(minor) == 0;
    const auto [east, north] = halfAxes(major, hasMajor, minor, hasMinor, radius);
    const double halfEast = std::abs(east * placement.scale().x());
    const double halfNorth = std::abs(north * placement.scale().y());
    if (!(halfEast > 0.0) || !(halfNorth > 0.0)) return;

    double start = 0.0;
    double sweep = kTwoPi;
    shape.getAngleStart(start);
    if (shape.getAngleSweep(sweep) != 0) sweep = kTwoPi;
    sweep = std::clamp(sweep, -kTwoPi, kTwoPi);
    const bool whole = shape.shapeType() == ZEL::ShapeType::Ellipse || std::abs(sweep) > kTwoPi - 1e-9;
    if (whole) {
        start = 0.0;
        sweep = kTwoPi;
    }
    GeodeticPath ring = ellipticalArc(center, halfEast, halfNorth, placement.yaw(), start + placement.yaw(),
                                      sweep, placement.tolerance());
    const std::size_t last = ring.size() - 1;

    if (shape.shapeType() == ZEL::ShapeType::Cylinder) {
        double height = 0.0;
        static_cast<const ZEL::Cylinder&>(shape).getHeight(height);
        height *= placement.scale().z();
        if (sweep > 0.0) std::ranges::reverse(ring);
        std::vector<std::size_t> edges;
        if (whole) {
            for (std::size_t i = 0; i < 12; ++i) edges.push_back(i * last / 12);
        } else {
            edges = {0, last, last + 1};
            ring.push_back(center);
        }
        const RingFill fill = filledAbout(whole ? std::optional(center) : std::nullopt, placement, style);
        if (height != 0.0)
            appendPrism(ring, height, fill, edges, style, out);
        else
            addRing(ring, true, fill, placement, style, out);
        return;
    }
    if (whole) {
        addRing(ring, true, center, placement, style, out);
        return;
    }
    // An arc is its curve; filled, it is the slice of pie.
    if (style.filled) {
        GeodeticPath slice = ring;
        slice.push_back(center);
        ShapeStyle area = style;
        area.outlined = false;
        addRing(slice, true, std::nullopt, placement, area, out);
        if (style.outlined) addOutline(ring, false, placement, style, out);
        return;
    }
    addRing(ring, false, std::nullopt, placement, style, out);
}

void appendRound(const ZEL::CircularShape& shape, const Vec3& center, const Placement& placement,
                 DrawList& out) {
    double radius = 0.0;
    shape.getRadius(radius);
    if (!std::isfinite(radius)) return;
    radius = std::abs(radius);
    const ShapeStyle style = styleOf(shape);
    const Vec3& scale = placement.scale();
    if (const auto* elliptical = dynamic_cast<const ZEL::EllipticalShape*>(&shape)) {
        appendElliptical(*elliptical, center, radius, placement, style, out);
        return;
    }
    const BodyFrame frame = bodyFrame(center, placement.yaw(), placement.pitch(), placement.roll());
    switch (shape.shapeType()) {
        case ZEL::ShapeType::Sphere:
        case ZEL::ShapeType::Hemisphere:
            if (radius > 0.0)
                appendEllipsoid(center, frame, {radius * scale.x(), radius * scale.y(), radius * scale.z()},
                                shape.shapeType() == ZEL::ShapeType::Hemisphere, style, placement.tolerance(),
                                out);
            return;
        case ZEL::ShapeType::Ellipsoid: {
            const auto& ellipsoid = static_cast<const ZEL::Ellipsoid&>(shape);
            double major = 0.0;
            double minor = 0.0;
            double height = 0.0;
            const bool hasMajor = ellipsoid.getMajorAxis(major) == 0;
            const bool hasMinor = ellipsoid.getMinorAxis(minor) == 0;
            const auto [east, north] = halfAxes(major, hasMajor, minor, hasMinor, radius);
            if (ellipsoid.getHeight(height) != 0 || !(height > 0.0)) height = std::max(east, north);
            if (east > 0.0 && north > 0.0)
                appendEllipsoid(center, frame, {east * scale.x(), north * scale.y(), height * scale.z()},
                                false, style, placement.tolerance(), out);
            return;
        }
        case ZEL::ShapeType::Orbit:
            appendOrbit(static_cast<const ZEL::Orbit&>(shape), center, std::abs(radius * scale.x()),
                        placement, style, out);
            return;
        default:
            break;
    }
    if (!(radius > 0.0)) return;
    const GeodeticPath ring =
        scale.x() == scale.y()
            ? geodesicArc(center, std::abs(radius * scale.x()), placement.yaw(), -kTwoPi,
                          placement.tolerance())
            : ellipticalArc(center, std::abs(radius * scale.x()), std::abs(radius * scale.y()),
                            placement.yaw(), placement.yaw(), -kTwoPi, placement.tolerance());
    if (shape.shapeType() == ZEL::ShapeType::Cone) {
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
    Vec3 own;
    if (shape.getCenterPosition(own) != 0 && !placement.relative()) return;
    const std::optional<Vec3> center = placement.place(own);
    if (!center) return;
    const Leaning leaning(out);
    appendRound(shape, *center, placement, out);
    if (placement.leans() && isMadeLevel(shape.shapeType())) leaning.apply(*center, placement, out);
}

}  // namespace sandbox
