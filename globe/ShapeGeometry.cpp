#include "globe/ShapeGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "geo/CoordinateConverter.h"
#include "geo/Ecef.h"
#include "geo/Wgs84.h"
#include "globe/GeodesicPath.h"
#include "globe/SolidGeometry.h"
#include "globe/SurfaceFill.h"

namespace sandbox {

namespace {

namespace ZEL = halCore::ZEL;
using halCore::Ecef;
using halCore::kHalfPi;
using halCore::kPi;
using halCore::kTwoPi;
namespace wgs84 = halCore::wgs84;
using halCore::Vec3;

Rgba rgba(const ZEL::Color& color) {
    return {color.red(), color.green(), color.blue(), color.alpha()};
}

bool finite(const Vec3& v) {
    return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z());
}

/// Where a shape stands, and how finely it is drawn: turns its own coordinates into geodetic ones.
class Placement {
  public:
    Placement(const ZEL::ZelShape& shape, const std::optional<OverlayReference>& reference, double tolerance)
        : relative_(shape.isRelative()), tolerance_(tolerance) {
        Vec3 own;
        if (shape.getReferencePosition(own) == 0)
            setOrigin(own);
        else if (reference)
            setOrigin(reference->position);
        shape.getScale(scale_);
        bool follow = false;
        double offset = 0.0;
        shape.getYawOffset(offset);
        shape.getFollowYaw(follow);
        yaw_ = offset + (follow && reference ? reference->heading : 0.0);
        shape.getPitchOffset(offset);
        shape.getFollowPitch(follow);
        pitch_ = offset + (follow && reference ? reference->pitch : 0.0);
        shape.getRollOffset(offset);
        shape.getFollowRoll(follow);
        roll_ = offset + (follow && reference ? reference->roll : 0.0);
        shape.getAltitudeOffset(altitudeOffset_);
        ZEL::AltitudeMode mode = ZEL::AltitudeMode::None;
        shape.getAltitudeMode(mode);
        clamped_ = mode == ZEL::AltitudeMode::ClampToGround;
        extruded_ = mode == ZEL::AltitudeMode::Extrude;
        double height = 0.0;
        if (shape.getExtrudeHeight(height) == 0) extrudeHeight_ = height;
    }

    bool relative() const { return relative_; }
    double tolerance() const { return tolerance_; }
    double yaw() const { return yaw_; }
    double pitch() const { return pitch_; }
    double roll() const { return roll_; }
    const Vec3& scale() const { return scale_; }
    bool extruded() const { return extruded_; }
    std::optional<double> extrudeHeight() const { return extrudeHeight_; }

    std::optional<Vec3> place(const Vec3& position) const {
        if (!finite(position)) return std::nullopt;
        Vec3 result = position;
        if (relative_) {
            halCore::Coordinate placed;
            if (!frame_ || frame_->convert({halCore::CoordinateSystem::FlatEnu, turned(position)}, placed,
                                           halCore::CoordinateSystem::Lla) != 0)
                return std::nullopt;
            result = placed.position();
        }
        if (std::abs(result.lat()) > kHalfPi) return std::nullopt;
        result.setAlt(altitude(result.alt()));
        return result;
    }
    /// The altitude at which a shape's own one is drawn.
    double altitude(double own) const { return clamped_ ? 0.0 : own + altitudeOffset_; }
    /// Whether flat shapes and bodies lean: what lies on the ground, or reaches down to it, stands upright.
    bool leans() const { return (pitch_ != 0.0 || roll_ != 0.0) && !clamped_ && !extruded_; }
    /// Where an extruded shape ends: so far above its own points, or else on the ground.
    Vec3 extrusionOf(const Vec3& p) const {
        return {p.lat(), p.lon(), extrudeHeight_ ? p.alt() + *extrudeHeight_ : 0.0};
    }

  private:
    void setOrigin(const Vec3& origin) {
        if (relative_) frame_.emplace().setReferenceOrigin(origin);
    }
    /// Scaled and turned with the body, still east, north and up.
    Vec3 turned(const Vec3& p) const {
        const double right = p.x() * scale_.x();
        const double forward = p.y() * scale_.y();
        const double up = p.z() * scale_.z();
        if (yaw_ == 0.0 && pitch_ == 0.0 && roll_ == 0.0) return {right, forward, up};
        // bodyFrame() at 0°/0°, where east is y, north is z and up is x.
        const BodyFrame frame = bodyFrame(Vec3(), yaw_, pitch_, roll_);
        const Ecef v = frame.right * right + frame.forward * forward + frame.up * up;
        return {v.y, v.z, v.x};
    }

    bool relative_;
    double tolerance_;
    std::optional<halCore::CoordinateConverter> frame_;
    Vec3 scale_{1.0, 1.0, 1.0};
    double yaw_ = 0.0;
    double pitch_ = 0.0;
    double roll_ = 0.0;
    double altitudeOffset_ = 0.0;
    bool clamped_ = false;
    bool extruded_ = false;
    std::optional<double> extrudeHeight_;
};

ShapeStyle styleOf(const ZEL::FillableShape& shape) {
    ShapeStyle style;
    ZEL::Color color;
    shape.getLineColor(color);
    style.lineColor = rgba(color);
    // An area without a colour of its own has that of its line.
    ZEL::Color fill;
    style.fillColor = shape.getFillColor(fill) == 0 ? rgba(fill) : style.lineColor;
    int width = 1;
    shape.getLineWidth(width);
    style.lineWidth = static_cast<float>(std::clamp(width, 1, 255));
    ZEL::LineStyle stroke = ZEL::LineStyle::Solid;
    shape.getLineStyle(stroke);
    style.stroke = stroke == ZEL::LineStyle::Dashed   ? Stroke::Dashed
                   : stroke == ZEL::LineStyle::Dotted ? Stroke::Dotted
                                                      : Stroke::Solid;
    shape.getOutlined(style.outlined);
    shape.getFilled(style.filled);
    return style;
}

void addLine(std::vector<Ecef> places, bool closed, const ShapeStyle& style, DrawList& out) {
    DrawList::Line line;
    line.points = std::move(places);
    if (closed && line.points.size() > 2 && length(line.points.front() - line.points.back()) < 1e-6)
        line.points.pop_back();
    line.color = style.lineColor;
    line.width = style.lineWidth;
    line.stroke = style.stroke;
    line.closed = closed;
    out.lines.push_back(std::move(line));
}

/// Where an extruded shape ends.
GeodeticPath extrusionOf(GeodeticPath path, const Placement& placement) {
    for (Vec3& p : path) p = placement.extrusionOf(p);
    return path;
}

/// The line itself, and that at the other end of what is extruded, unless it ends on the ground.
void addOutline(const GeodeticPath& path, bool closed, const Placement& placement, const ShapeStyle& style,
                DrawList& out) {
    if (placement.extruded() && placement.extrudeHeight())
        addLine(toEcef(extrusionOf(path, placement)), closed, style, out);
    addLine(toEcef(path), closed, style, out);
}

/// An area or a line on the ground or at an altitude; when it is extruded, with its curtain, and with its
/// other end if that is not on the ground.
void addRing(const GeodeticPath& path, bool closed, const RingFill& fill, const Placement& placement,
             const ShapeStyle& style, DrawList& out) {
    if (path.empty()) return;
    if (style.filled && closed) out.meshes.push_back(fill(path));
    if (placement.extruded()) {
        const GeodeticPath end = extrusionOf(path, placement);
        const Rgba color = style.filled ? style.fillColor
                                        : Rgba{style.lineColor.r, style.lineColor.g, style.lineColor.b,
                                               static_cast<std::uint8_t>(style.lineColor.a / 3)};
        appendCurtain(path, end, closed, color, out);
        if (placement.extrudeHeight() && style.filled && closed) out.meshes.push_back(fill(end));
    }
    // A line is all outline: switching the outline off is meant for areas.
    if (style.outlined || !closed) addOutline(path, closed, placement, style, out);
}

/// `middle`: as in fillRing().
RingFill filledAbout(const std::optional<Vec3>& middle, const Placement& placement, const ShapeStyle& style) {
    return [middle, color = style.fillColor, tolerance = placement.tolerance()](const GeodeticPath& ring) {
        return fillRing(ring, color, middle, tolerance);
    };
}

void addRing(const GeodeticPath& path, bool closed, const std::optional<Vec3>& middle,
             const Placement& placement, const ShapeStyle& style, DrawList& out) {
    addRing(path, closed, filledAbout(middle, placement, style), placement, style, out);
}

double lengthOf(const std::vector<Ecef>& places, bool closed) {
    double sum = 0.0;
    for (std::size_t i = 1; i < places.size(); ++i) sum += length(places[i] - places[i - 1]);
    if (closed && places.size() > 1) sum += length(places.front() - places.back());
    return sum;
}

double stepFor(double meters, double tolerance) {
    const double fine = std::clamp(meters / 20000.0, 2000.0, 100.0e3);
    return std::max(fine, std::sqrt(8.0 * wgs84::a * tolerance));
}

void appendPoints(const ZEL::PointBasedShape& shape, const Placement& placement, DrawList& out) {
    PlacedPath points;
    points.points.reserve(shape.points().size() + 1);
    points.places.reserve(shape.points().size() + 1);
    for (const Vec3& point : shape.points())
        if (const std::optional<Vec3> placed = placement.place(point)) points.add(*placed, toEcef(*placed));
    const std::size_t count = points.points.size();
    if (count < 2) return;
    const ShapeStyle style = styleOf(shape);
    ZEL::TessellationStyle tessellation = ZEL::TessellationStyle::None;
    shape.getTessellation(tessellation);
    const PathKind kind =
        tessellation == ZEL::TessellationStyle::RhumbLine ? PathKind::Rhumb : PathKind::Geodesic;
    const bool closed = shape.shapeType() == ZEL::ShapeType::Polygon;
    const double step = stepFor(lengthOf(points.places, closed), placement.tolerance());
    const auto addRun = [&](std::size_t first, std::size_t last) {
        PlacedPath path;
        path.add(points.points[first], points.places[first]);
        for (std::size_t i = first + 1; i <= last; ++i)
            appendPath(path, points.points[i], points.places[i], kind, step);
        // Most are lines and nothing else.
        if (!placement.extruded() && !(style.filled && closed) && (style.outlined || !closed))
            addLine(std::move(path.places), closed, style, out);
        else
            addRing(path.points, closed, std::nullopt, placement, style, out);
    };
    if (shape.shapeType() == ZEL::ShapeType::LineSegs) {
        for (std::size_t i = 0; i + 1 < count; i += 2) addRun(i, i + 1);
        return;
    }
    if (closed) points.add(Vec3(points.points.front()), Ecef(points.places.front()));
    simplify(points, placement.tolerance());
    addRun(0, points.points.size() - 1);
}

/// The line from an extruded point to its other end.
void addStem(const Vec3& point, const Placement& placement, Rgba color, DrawList& out) {
    DrawList::Line stem;
    stem.points = {toEcef(point), toEcef(placement.extrusionOf(point))};
    stem.color = color;
    out.lines.push_back(std::move(stem));
}

void appendDots(const ZEL::Points& shape, const Placement& placement, DrawList& out) {
    ZEL::Color color;
    shape.getColor(color);
    int size = 1;
    shape.getPointSize(size);
    // Without a word about it, dots have no rim.
    bool outlined = false;
    if (shape.getOutlined(outlined) != 0) outlined = false;
    for (const Vec3& point : shape.points()) {
        const std::optional<Vec3> placed = placement.place(point);
        if (!placed) continue;
        DrawList::Line dot;
        dot.points.push_back(toEcef(*placed));
        dot.color = rgba(color);
        dot.width = static_cast<float>(std::clamp(size, 1, 253));
        if (outlined) {
            DrawList::Line rim = dot;
            rim.color = {0, 0, 0, dot.color.a};
            rim.width += 2.0F;
            out.lines.push_back(std::move(rim));
        }
        out.lines.push_back(std::move(dot));
        if (placement.extruded()) addStem(*placed, placement, rgba(color), out);
    }
}

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

void appendCircular(const ZEL::CircularShape& shape, const Placement& placement, DrawList& out) {
    Vec3 own;
    if (shape.getCenterPosition(own) != 0 && !placement.relative()) return;
    const std::optional<Vec3> center = placement.place(own);
    if (!center) return;
    const Leaning leaning(out);
    appendRound(shape, *center, placement, out);
    if (placement.leans() && isMadeLevel(shape.shapeType())) leaning.apply(*center, placement, out);
}

/// From a meridian eastwards to another; the whole way round when they are the same.
double eastward(double west, double east) {
    const double span = halCore::wrapToPi(east - west);
    return span <= 0.0 ? span + kTwoPi : span;
}

/// The four sides of a box, counter-clockwise from its south-western corner, along parallels and meridians.
struct BoxSides {
    GeodeticPath ring;
    std::vector<std::size_t> corners;

    BoxSides(double south, double north, double west, double span, double altitude) {
        // In pieces of a quarter of a degree at most.
        constexpr double kPiece = kPi / 720;
        const auto run = [&](double extent, double lat0, double lon0, double lat1, double lon1) {
            const int pieces = std::max(8, static_cast<int>(std::ceil(extent / kPiece)));
            corners.push_back(ring.size());
            for (int i = 0; i < pieces; ++i) {
                const double share = static_cast<double>(i) / pieces;
                ring.emplace_back(std::lerp(lat0, lat1, share), std::lerp(lon0, lon1, share), altitude);
            }
        };
        run(span, south, west, south, west + span);
        run(north - south, south, west + span, north, west + span);
        run(span, north, west + span, north, west);
        run(north - south, north, west, south, west);
    }
    /// The side that begins at a corner (not the last one), without the corner at its end.
    GeodeticPath side(std::size_t corner) const {
        const auto at = [&](std::size_t i) { return ring.begin() + static_cast<std::ptrdiff_t>(corners[i]); };
        return {at(corner), at(corner + 1)};
    }
};

void join(DrawList::Mesh& mesh, const DrawList::Mesh& more) {
    const auto base = static_cast<std::uint32_t>(mesh.vertices.size());
    mesh.color = more.color;
    mesh.vertices.insert(mesh.vertices.end(), more.vertices.begin(), more.vertices.end());
    for (const std::uint32_t index : more.triangles) mesh.triangles.push_back(base + index);
}

void appendBox(const ZEL::LatLonAltBox& box, const Placement& placement, DrawList& out) {
    const ShapeStyle style = styleOf(box);
    const double span = eastward(box.west(), box.east());
    const double west = box.west();
    const double north = std::clamp(std::max(box.north(), box.south()), -kHalfPi, kHalfPi);
    const double south = std::clamp(std::min(box.north(), box.south()), -kHalfPi, kHalfPi);
    const double altitude = placement.altitude(box.altitude());
    const BoxSides sides(south, north, west, span, altitude);
    double height = 0.0;
    box.getHeight(height);

    // In slices of a third of the world at most: there is no doubt which side of them is inside.
    const RingFill fill = [&](const GeodeticPath& ring) {
        const int slices = static_cast<int>(std::ceil(span / (kTwoPi / 3.0) - 1e-9));
        const double width = span / slices;
        const double level = ring.front().alt();
        DrawList::Mesh mesh;
        for (int i = 0; i < slices; ++i) {
            const double left = west + width * i;
            const Vec3 middle(0.5 * (south + north), left + 0.5 * width, level);
            join(mesh, fillRing(BoxSides(south, north, left, width, level).ring, style.fillColor, middle,
                                placement.tolerance()));
        }
        return mesh;
    };
    // A box around the world has no sides in the west and east.
    const bool around = span > kTwoPi - 1e-9;
    ShapeStyle body = style;
    body.outlined = style.outlined && !around;
    if (height != 0.0)
        appendPrism(sides.ring, height, fill, sides.corners, body, out);
    else
        addRing(sides.ring, true, fill, placement, body, out);
    if (!style.outlined || !around) return;
    for (const std::size_t corner : {std::size_t{0}, std::size_t{2}}) {
        GeodeticPath parallel = sides.side(corner);
        addOutline(parallel, true, placement, style, out);
        if (height == 0.0) continue;
        for (Vec3& p : parallel) p.setAlt(altitude + height);
        addLine(toEcef(parallel), true, style, out);
    }
}

/// Turned counter-clockwise about its middle, in the plane of longitudes shortened as they are there.
void appendPicture(const ZEL::ImageOverlay& shape, const Placement& placement, DrawList& out) {
    const double north = std::max(shape.north(), shape.south());
    const double south = std::min(shape.north(), shape.south());
    const double span = eastward(shape.west(), shape.east());
    double turn = 0.0;
    shape.getRotation(turn);
    const double midLat = 0.5 * (north + south);
    const double shrink = std::max(std::cos(midLat), 1e-6);
    const auto at = [&](double across, double down) {
        const double x = (across - 0.5) * span * shrink;
        const double y = (0.5 - down) * (north - south);
        const double lat = midLat + y * std::cos(turn) + x * std::sin(turn);
        const double lon = shape.west() + 0.5 * span + (x * std::cos(turn) - y * std::sin(turn)) / shrink;
        return toEcef(Vec3(std::clamp(lat, -kHalfPi, kHalfPi), lon, placement.altitude(0.0)));
    };
    const auto pieces = [&](double radians) {
        const double extent = std::abs(radians) * wgs84::a;
        const double piece = std::max(std::clamp(extent / 16.0, 250.0, 150.0e3),
                                      std::sqrt(8.0 * wgs84::a * placement.tolerance()));
        return static_cast<std::uint32_t>(std::clamp(std::ceil(extent / piece), 1.0, 270.0));
    };
    const std::uint32_t columns = pieces(span);
    const std::uint32_t rows = pieces(north - south);
    DrawList::Picture picture;
    picture.file.path = shape.imageFile();
    for (std::uint32_t row = 0; row <= rows; ++row) {
        for (std::uint32_t column = 0; column <= columns; ++column) {
            const double across = static_cast<double>(column) / columns;
            const double down = static_cast<double>(row) / rows;
            picture.vertices.push_back(at(across, down));
            picture.places.push_back({static_cast<float>(across), static_cast<float>(down)});
            if (row == rows || column == columns) continue;
            const std::uint32_t a = row * (columns + 1) + column;
            const std::uint32_t b = a + columns + 1;
            picture.triangles.insert(picture.triangles.end(), {a, b, b + 1, a, b + 1, a + 1});
        }
    }
    const auto border = [&](double across, double down, double acrossStep, double downStep) {
        const std::uint32_t count = downStep == 0.0 ? columns : rows;
        for (std::uint32_t i = 0; i < count; ++i)
            picture.border.points.push_back(at(across + acrossStep * i / count, down + downStep * i / count));
    };
    border(0.0, 0.0, 1.0, 0.0);
    border(1.0, 0.0, 0.0, 1.0);
    border(1.0, 1.0, -1.0, 0.0);
    border(0.0, 1.0, 0.0, -1.0);
    picture.border.closed = true;
    picture.border.width = 2.0F;
    out.pictures.push_back(std::move(picture));
}

void appendLabel(const ZEL::Annotation& shape, const Placement& placement, DrawList& out) {
    Vec3 own;
    if (shape.getPosition(own) != 0 && !placement.relative()) return;
    const std::optional<Vec3> placed = placement.place(own);
    if (!placed) return;
    DrawList::Label label;
    label.position = toEcef(*placed);
    label.text = shape.label();
    shape.getFontName(label.fontName);
    shape.getTextSize(label.pixelSize);
    label.pixelSize = std::clamp(label.pixelSize, 1, 400);
    ZEL::Color color;
    shape.getTextColor(color);
    label.color = rgba(color);
    shape.getOutlineColor(color);
    label.outlineColor = rgba(color);
    ZEL::OutlineThickness thickness = ZEL::OutlineThickness::None;
    shape.getOutlineThickness(thickness);
    label.outlineWidth = thickness == ZEL::OutlineThickness::Thick  ? 2
                         : thickness == ZEL::OutlineThickness::Thin ? 1
                                                                    : 0;
    shape.getPriority(label.priority);
    shape.getIconFile(label.icon.path);
    if (placement.extruded()) addStem(*placed, placement, label.color, out);
    if (!label.text.empty()) out.labels.push_back(std::move(label));
}

}  // namespace

void appendGeometry(const ZEL::ZelShape& shape, const std::optional<OverlayReference>& reference,
                    double tolerance, DrawList& out) {
    bool drawn = true;
    shape.getDrawn(drawn);
    if (!drawn) return;
    const Placement placement(shape, reference, tolerance);
    const std::size_t lines = out.lines.size();
    const std::size_t meshes = out.meshes.size();
    if (const auto* circular = dynamic_cast<const ZEL::CircularShape*>(&shape))
        appendCircular(*circular, placement, out);
    else if (const auto* points = dynamic_cast<const ZEL::PointBasedShape*>(&shape))
        appendPoints(*points, placement, out);
    else if (const auto* dots = dynamic_cast<const ZEL::Points*>(&shape))
        appendDots(*dots, placement, out);
    else if (const auto* box = dynamic_cast<const ZEL::LatLonAltBox*>(&shape))
        appendBox(*box, placement, out);
    else if (const auto* annotation = dynamic_cast<const ZEL::Annotation*>(&shape))
        appendLabel(*annotation, placement, out);
    else if (const auto* picture = dynamic_cast<const ZEL::ImageOverlay*>(&shape))
        appendPicture(*picture, placement, out);

    bool tested = true;
    shape.getDepthBufferActive(tested);
    if (tested) return;
    for (std::size_t i = lines; i < out.lines.size(); ++i) out.lines[i].overBodies = true;
    for (std::size_t i = meshes; i < out.meshes.size(); ++i) out.meshes[i].overBodies = true;
}

std::size_t roughSize(const ZEL::ZelShape& shape) {
    if (const auto* points = dynamic_cast<const ZEL::PointBasedShape*>(&shape))
        return points->points().size();
    if (const auto* dots = dynamic_cast<const ZEL::Points*>(&shape)) return dots->points().size();
    return shape.shapeType() == ZEL::ShapeType::Annotation ? 1 : 500;
}

}  // namespace sandbox
