#include "globe/StyledGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "geo/Wgs84.h"
#include "globe/SurfaceFill.h"

namespace sandbox {

namespace ZEL = halCore::ZEL;
using halCore::Ecef;
using halCore::Vec3;

Rgba rgba(const ZEL::Color& color) {
    return {color.red(), color.green(), color.blue(), color.alpha()};
}

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

void addOutline(const GeodeticPath& path, bool closed, const Placement& placement, const ShapeStyle& style,
                DrawList& out) {
    if (placement.extruded() && placement.extrudeHeight())
        addLine(toEcef(placement.extrusionOf(path)), closed, style, out);
    addLine(toEcef(path), closed, style, out);
}

Work addRing(halCore::PlacedPath path, bool closed, const RingFill& fill, const Placement& placement,
             const ShapeStyle& style, DrawList& out) {
    constexpr std::size_t kInAUnit = 15;
    const std::size_t count = path.size();
    if (count == 0) co_return;
    const bool filled = style.filled && closed && fill;
    // A line is all outline: switching the outline off is meant for areas.
    const bool outlined = style.outlined || !closed;
    if (filled) {
        DrawList::Mesh mesh;
        co_await fill(path.points, mesh);
        out.meshes.push_back(std::move(mesh));
    }
    if ((outlined || placement.extruded()) && path.places.empty()) {
        path.places.reserve(count);
        for (Pieces some(count, kInAUnit); some.next(); co_yield some.units())
            for (std::size_t i = some.first; i < some.last; ++i)
                path.places.push_back(toEcef(path.points[i]));
    }
    if (placement.extruded()) {
        halCore::PlacedPath end;
        end.points.reserve(count);
        end.places.reserve(count);
        for (Pieces some(count, kInAUnit); some.next(); co_yield some.units())
            for (std::size_t i = some.first; i < some.last; ++i) {
                const Vec3 point = placement.extrusionOf(path.points[i]);
                end.add(point, toEcef(point));
            }
        const Rgba color = style.filled ? style.fillColor
                                        : Rgba{style.lineColor.r, style.lineColor.g, style.lineColor.b,
                                               static_cast<std::uint8_t>(style.lineColor.a / 3)};
        co_await appendCurtain(path.places, end.places, closed, color, out);
        if (placement.extrudeHeight() && filled) {
            DrawList::Mesh mesh;
            co_await fill(end.points, mesh);
            out.meshes.push_back(std::move(mesh));
        }
        end.points = {};
        co_yield 1;  // To free millions of points takes time, too.
        if (placement.extrudeHeight() && outlined) addLine(std::move(end.places), closed, style, out);
    }
    path.points = {};
    co_yield 1;
    if (outlined) addLine(std::move(path.places), closed, style, out);
}

RingFill filledAbout(const std::optional<Vec3>& middle, const Placement& placement, const ShapeStyle& style,
                     double share) {
    return [middle, color = style.fillColor, tolerance = placement.tolerance(), share](
               const GeodeticPath& ring, DrawList::Mesh& mesh) {
        return fillRing(ring, color, middle, tolerance, share, mesh);
    };
}

void addRing(const GeodeticPath& path, bool closed, const std::optional<Vec3>& middle,
             const Placement& placement, const ShapeStyle& style, DrawList& out) {
    addRing({path, {}}, closed, filledAbout(middle, placement, style), placement, style, out).finish();
}

double stepFor(double meters, double tolerance) {
    const double fine = std::clamp(meters / 20000.0, 2000.0, 100.0e3);
    // No shape has more than some millions of pieces, however often it goes round the earth.
    constexpr double kMostPieces = 2e6;
    return std::max({fine, std::sqrt(8.0 * halCore::wgs84::a * tolerance), meters / kMostPieces});
}

void addStem(const Vec3& point, const Placement& placement, Rgba color, DrawList& out) {
    DrawList::Line stem;
    stem.points = {toEcef(point), toEcef(placement.extrusionOf(point))};
    stem.color = color;
    out.lines.push_back(std::move(stem));
}

}  // namespace sandbox
