#include "globe/ShapeGeometry.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "format/Placement.h"
#include "format/RoundOutline.h"
#include "format/ShapeCast.h"
#include "format/ZelShapes.h"
#include "geo/Ecef.h"
#include "geo/GeodesicPath.h"
#include "geo/Wgs84.h"
#include "globe/BoxGeometry.h"
#include "globe/RoundGeometry.h"
#include "globe/StyledGeometry.h"
#include "globe/SurfaceFill.h"

namespace sandbox {

namespace ZEL = halCore::ZEL;
using halCore::Ecef;
using halCore::PathKind;
using halCore::PlacedPath;
using halCore::Vec3;

namespace {

double lengthOf(const std::vector<Ecef>& places, bool closed) {
    double sum = 0.0;
    for (std::size_t i = 1; i < places.size(); ++i) sum += length(places[i] - places[i - 1]);
    if (closed && places.size() > 1) sum += length(places.front() - places.back());
    return sum;
}

void appendPoints(const ZEL::PointBasedShape& shape, const Placement& placement, double fillShare,
                  DrawList& out) {
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
    const RingFill fill = [&](const GeodeticPath& ring) {
        return fillRing(ring, style.fillColor, std::nullopt, placement.tolerance(), fillShare);
    };
    const auto addRun = [&](std::size_t first, std::size_t last) {
        PlacedPath path;
        path.add(points.points[first], points.places[first]);
        for (std::size_t i = first + 1; i <= last; ++i)
            appendPath(path, points.points[i], points.places[i], kind, step);
        // Most are lines and nothing else.
        if (!placement.extruded() && !(style.filled && closed) && (style.outlined || !closed))
            addLine(std::move(path.places), closed, style, out);
        else
            addRing(path.points, closed, fill, placement, style, out);
    };
    if (shape.shapeType() == ZEL::ShapeType::LineSegs) {
        for (std::size_t i = 0; i + 1 < count; i += 2) addRun(i, i + 1);
        return;
    }
    if (closed) points.add(Vec3(points.points.front()), Ecef(points.places.front()));
    simplify(points, placement.tolerance());
    addRun(0, points.points.size() - 1);
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
                    double tolerance, DrawList& out, double fillShare) {
    bool drawn = true;
    shape.getDrawn(drawn);
    if (!drawn) return;
    const Placement placement(shape, reference, tolerance);
    const std::size_t lines = out.lines.size();
    const std::size_t meshes = out.meshes.size();
    if (const auto* circular = ZEL::shapeAs<ZEL::CircularShape>(shape))
        appendCircular(*circular, placement, out);
    else if (const auto* points = ZEL::shapeAs<ZEL::PointBasedShape>(shape))
        appendPoints(*points, placement, fillShare, out);
    else if (const auto* dots = ZEL::shapeAs<ZEL::Points>(shape))
        appendDots(*dots, placement, out);
    else if (const auto* box = ZEL::shapeAs<ZEL::LatLonAltBox>(shape))
        appendBox(*box, placement, out);
    else if (const auto* annotation = ZEL::shapeAs<ZEL::Annotation>(shape))
        appendLabel(*annotation, placement, out);
    else if (const auto* picture = ZEL::shapeAs<ZEL::ImageOverlay>(shape))
        appendPicture(*picture, placement, out);

    bool tested = true;
    shape.getDepthBufferActive(tested);
    if (tested) return;
    for (std::size_t i = lines; i < out.lines.size(); ++i) out.lines[i].overBodies = true;
    for (std::size_t i = meshes; i < out.meshes.size(); ++i) out.meshes[i].overBodies = true;
}

std::optional<RoughPlace> roughPlace(const ZEL::ZelShape& shape,
                                     const std::optional<OverlayReference>& reference) {
    const auto* const circle = ZEL::shapeAs<ZEL::Circle>(shape);
    if (!circle) return std::nullopt;
    const Placement placement(shape, reference, 0.0);
    if (placement.extruded() || placement.leans()) return std::nullopt;
    const std::optional<ZEL::RoundOutline> outline = ZEL::roundOutline(*circle, placement);
    if (!outline) return std::nullopt;
    // A chord is no longer than the way over the ground, and above the ground longer by at most what the
    // greatest curvature makes of the height, a / b^2.
    constexpr double curvature = halCore::wgs84::a / (halCore::wgs84::b * halCore::wgs84::b);
    const double higher = 1.0 + std::max(0.0, outline->center.alt()) * curvature;
    return RoughPlace{toEcef(outline->center), outline->arcs.front().longerHalf() * higher + 1.0};
}

std::size_t roughSize(const ZEL::ZelShape& shape) {
    if (const auto* points = ZEL::shapeAs<ZEL::PointBasedShape>(shape)) return points->points().size();
    if (const auto* dots = ZEL::shapeAs<ZEL::Points>(shape)) return dots->points().size();
    return shape.shapeType() == ZEL::ShapeType::Annotation ? 1 : 500;
}

}  // namespace sandbox
