#include "globe/ShapeGeometry.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "format/Placement.h"
#include "format/RoundOutline.h"
#include "format/ShapeCast.h"
#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "geo/GeodesicPath.h"
#include "geo/Wgs84.h"
#include "globe/BoundingBox.h"
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

/// What a shape adds is marked where nothing but the earth hides it.
class OverBodies {
  public:
    OverBodies(const ZEL::ZelShape& shape, const DrawList& out)
        : line_(out.lines.size()), mesh_(out.meshes.size()) {
        bool tested = true;
        shape.getDepthBufferActive(tested);
        marks_ = !tested;
    }
    /// What has been added since it was last called.
    void mark(DrawList& out) {
        if (!marks_) return;
        for (; line_ < out.lines.size(); ++line_) out.lines[line_].overBodies = true;
        for (; mesh_ < out.meshes.size(); ++mesh_) out.meshes[mesh_].overBodies = true;
    }

  private:
    bool marks_ = false;
    std::size_t line_;
    std::size_t mesh_;
};

/// Makes room for so many lines more, that they are not moved all together too often.
void reserveLines(std::size_t count, DrawList& out) {
    constexpr std::size_t kMany = 1000;
    if (count < kMany || out.lines.size() + count <= out.lines.capacity()) return;
    out.lines.reserve(std::max(out.lines.size() + count, 2 * out.lines.capacity()));
}

Work pointsWork(const ZEL::PointBasedShape& shape, const std::optional<OverlayReference>& reference,
                double tolerance, DetailShares shares, DrawList& out) {
    constexpr std::size_t kPlacedInAUnit = 12;
    // Enough that lines of very many points lose what they can, few enough for simplify().
    constexpr std::size_t kRun = 1000;
    const Placement placement(shape, reference, tolerance);
    OverBodies overBodies(shape, out);
    const std::vector<Vec3>& given = shape.points();
    const bool closed = shape.shapeType() == ZEL::ShapeType::Polygon;
    const bool inPairs = shape.shapeType() == ZEL::ShapeType::LineSegs;
    PlacedPath points;
    points.points.reserve(given.size() + 1);
    points.places.reserve(given.size() + 1);
    std::optional<Ecef> before;
    double meters = 0.0;
    std::size_t run = 0;
    const auto add = [&](const Vec3& point) {
        const Ecef place = toEcef(point);
        if (before) meters += length(place - *before);
        before = place;
        points.add(point, place);
        if (inPairs || points.points.size() <= run + kRun) return;
        simplify(points, placement.tolerance(), run);
        run = points.points.size() - 1;
    };
    for (Pieces some(given.size(), kPlacedInAUnit); some.next(); co_yield some.units())
        for (std::size_t i = some.first; i < some.last; ++i)
            if (const std::optional<Vec3> placed = placement.place(given[i])) add(*placed);
    if (points.points.size() < 2) co_return;
    if (closed) add(Vec3(points.points.front()));
    if (!inPairs) simplify(points, placement.tolerance(), run);

    const ShapeStyle style = styleOf(shape);
    ZEL::TessellationStyle tessellation = ZEL::TessellationStyle::None;
    shape.getTessellation(tessellation);
    const PathKind kind =
        tessellation == ZEL::TessellationStyle::RhumbLine ? PathKind::Rhumb : PathKind::Geodesic;
    const double step = stepFor(meters, placement.tolerance()) / shares.pieces;
    const std::size_t stride = inPairs ? 2 : points.points.size();
    reserveLines(points.points.size() / stride, out);
    // What costs least is a point that is there already.
    constexpr std::size_t kInAUnit = 30;
    constexpr std::size_t kOfAGeodesic = 100;
    constexpr std::size_t kOfItsPoint = 15;
    constexpr std::size_t kOfALine = 10;
    // The way over the ground is no longer than half a turn over a straight line.
    const double pieces = halCore::kHalfPi * meters / step;
    constexpr double kMostPieces = 1e7;
    const std::size_t room =
        stride + (!inPairs && pieces < kMostPieces ? static_cast<std::size_t>(pieces) : 0);
    const bool filled = style.filled && closed && (shares.rows > 0.0 || !style.outlined);
    std::size_t done = 0;
    for (std::size_t first = 0; first + 1 < points.points.size(); first += stride) {
        const std::size_t end = std::min(first + stride, points.points.size());
        PlacedPath path;
        path.placesOnly = !placement.extruded() && !filled;
        if (!path.placesOnly) path.points.reserve(room);
        path.places.reserve(room);
        path.add(points.points[first], points.places[first]);
        for (std::size_t i = first + 1; i < end; ++i) {
            const std::size_t from = path.places.size() - 1;
            for (bool arrived = false; !arrived;) {
                const std::size_t known = path.places.size();
                arrived = appendSome(path, from, points.points[i - 1], points.points[i], points.places[i],
                                     kind, step);
                const std::size_t more = path.places.size() - known;
                done += more == 1 ? 1 : kOfAGeodesic + kOfItsPoint * more;
                if (done < 100 * kInAUnit) continue;
                co_yield done / kInAUnit;
                done = 0;
            }
        }
        done += kOfALine;
        // Most are lines and nothing else.
        if (path.placesOnly && (style.outlined || !closed)) {
            addLine(std::move(path.places), closed, style, out);
        } else {
            const RingFill fill =
                filled ? filledAbout(std::nullopt, placement, style, shares.rows) : RingFill();
            co_await addRing(std::move(path), closed, fill, placement, style, out);
        }
        overBodies.mark(out);
    }
    co_yield 1 + done / kInAUnit;
}

Work dotsWork(const ZEL::Points& shape, const std::optional<OverlayReference>& reference, double tolerance,
              DrawList& out) {
    const Placement placement(shape, reference, tolerance);
    OverBodies overBodies(shape, out);
    ZEL::Color color;
    shape.getColor(color);
    int size = 1;
    shape.getPointSize(size);
    // Without a word about it, dots have no rim.
    bool outlined = false;
    if (shape.getOutlined(outlined) != 0) outlined = false;
    constexpr std::size_t kInAUnit = 5;
    const std::size_t count = shape.points().size();
    reserveLines(count * (1 + (outlined ? 1 : 0) + (placement.extruded() ? 1 : 0)), out);
    for (Pieces some(count, kInAUnit); some.next(); co_yield 1 + some.units()) {
        for (std::size_t i = some.first; i < some.last; ++i) {
            const std::optional<Vec3> placed = placement.place(shape.points()[i]);
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
        overBodies.mark(out);
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

Work nothing() {
    co_return;
}

/// Of what has no more points than the curves of its kind.
Work boundedWork(const ZEL::ZelShape& shape, const std::optional<OverlayReference>& reference,
                 double tolerance, DrawList& out) {
    constexpr std::size_t kPointsInAUnit = 5;
    const Placement placement(shape, reference, tolerance);
    OverBodies overBodies(shape, out);
    const std::size_t lines = out.lines.size();
    const std::size_t meshes = out.meshes.size();
    if (const auto* circular = ZEL::shapeAs<ZEL::CircularShape>(shape))
        appendCircular(*circular, placement, out);
    else if (const auto* box = ZEL::shapeAs<ZEL::LatLonAltBox>(shape))
        appendBox(*box, placement, out);
    else if (const auto* annotation = ZEL::shapeAs<ZEL::Annotation>(shape))
        appendLabel(*annotation, placement, out);
    else if (const auto* picture = ZEL::shapeAs<ZEL::ImageOverlay>(shape))
        appendPicture(*picture, placement, out);
    overBodies.mark(out);
    std::size_t points = 0;
    for (std::size_t i = lines; i < out.lines.size(); ++i) points += out.lines[i].points.size();
    for (std::size_t i = meshes; i < out.meshes.size(); ++i) points += out.meshes[i].vertices.size();
    co_yield 1 + points / kPointsInAUnit;
}

}  // namespace

Work workOutGeometry(const ZEL::ZelShape& shape, const std::optional<OverlayReference>& reference,
                     double tolerance, const DetailShares& shares, DrawList& out) {
    bool drawn = true;
    shape.getDrawn(drawn);
    if (!drawn) return nothing();
    if (const auto* points = ZEL::shapeAs<ZEL::PointBasedShape>(shape))
        return pointsWork(*points, reference, tolerance, shares, out);
    if (const auto* dots = ZEL::shapeAs<ZEL::Points>(shape))
        return dotsWork(*dots, reference, tolerance, out);
    return boundedWork(shape, reference, tolerance, out);
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

std::optional<RoughPlace> placeByPoints(const ZEL::ZelShape& shape,
                                        const std::optional<OverlayReference>& reference) {
    constexpr std::size_t kMany = 10'000;
    constexpr double kLarge = 1e6;
    // A way between two of them is no longer than half a turn over a straight line, so no place on it is
    // farther from the middle than 2.6 times the farthest of them. What such ways enclose lies in the cap of
    // the earth about them, at heights between theirs, which makes it 6.4 times.
    constexpr double kByWays = 4.0;
    constexpr double kByAreas = 8.0;
    double reach = 1.0;
    const std::vector<Vec3>* points = nullptr;
    if (const auto* path = ZEL::shapeAs<ZEL::PointBasedShape>(shape)) {
        points = &path->points();
        reach = shape.shapeType() == ZEL::ShapeType::Polygon ? kByAreas : kByWays;
    } else if (const auto* dots = ZEL::shapeAs<ZEL::Points>(shape)) {
        points = &dots->points();
    }
    if (!points || points->size() > kMany) return std::nullopt;
    const Placement placement(shape, reference, 0.0);
    if (placement.extruded()) return std::nullopt;
    BoundingBox box;
    bool any = false;
    for (const Vec3& point : *points)
        if (const std::optional<Vec3> placed = placement.place(point)) {
            box.add(toEcef(*placed));
            any = true;
        }
    const double radius = 0.5 * box.diagonal();
    if (!any || !(radius < kLarge)) return std::nullopt;
    return RoughPlace{box.middle(), reach * radius + 1.0};
}

std::size_t roughSize(const ZEL::ZelShape& shape) {
    if (const auto* points = ZEL::shapeAs<ZEL::PointBasedShape>(shape)) return points->points().size();
    if (const auto* dots = ZEL::shapeAs<ZEL::Points>(shape)) return dots->points().size();
    return shape.shapeType() == ZEL::ShapeType::Annotation ? 1 : 500;
}

}  // namespace sandbox
