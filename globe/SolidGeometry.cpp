#include "globe/SolidGeometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "globe/SurfaceFill.h"

namespace sandbox {

using halCore::Ecef;
using halCore::kHalfPi;
using halCore::kPi;
using halCore::kTwoPi;
using halCore::LocalFrame;
using halCore::localFrame;

namespace {

/// `buried`: it may be partly below the ground, which hides that part.
DrawList::Line edgeLine(std::vector<Ecef> points, const ShapeStyle& style, bool closed, bool buried) {
    DrawList::Line line;
    line.points = std::move(points);
    line.color = style.lineColor;
    line.width = style.lineWidth;
    line.stroke = style.stroke;
    line.closed = closed;
    line.solid = buried;
    return line;
}

void addQuad(DrawList::Mesh& mesh, std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    mesh.triangles.insert(mesh.triangles.end(), {a, b, c, a, c, d});
}

/// Drops the closing point of a ring that repeats its first.
GeodeticPath withoutRepeat(GeodeticPath ring) {
    while (ring.size() > 1 && length(toEcef(ring.front()) - toEcef(ring.back())) < 1e-6) ring.pop_back();
    return ring;
}

GeodeticPath raised(GeodeticPath ring, double height) {
    for (halCore::Vec3& p : ring) p.setAlt(p.alt() + height);
    return ring;
}

/// Turns all triangles of a cap to face up, or down.
void face(DrawList::Mesh& mesh, bool up) {
    for (std::size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
        const Ecef& a = mesh.vertices[mesh.triangles[i]];
        const Ecef& b = mesh.vertices[mesh.triangles[i + 1]];
        const Ecef& c = mesh.vertices[mesh.triangles[i + 2]];
        if ((dot(cross(b - a, c - a), a) > 0.0) != up)
            std::swap(mesh.triangles[i + 1], mesh.triangles[i + 2]);
    }
}

/// Turns the inside of a body out.
void turnOver(DrawList::Mesh& mesh) {
    for (std::size_t i = 0; i + 2 < mesh.triangles.size(); i += 3)
        std::swap(mesh.triangles[i + 1], mesh.triangles[i + 2]);
}

}  // namespace

void appendEllipsoid(const halCore::Vec3& center, const BodyFrame& frame,
                     const std::array<double, 3>& halfAxes, bool dome, const ShapeStyle& style,
                     double tolerance, DrawList& out) {
    const Ecef origin = toEcef(center);
    const bool hangs = dome && halfAxes[2] < 0.0;
    const std::array half{std::abs(halfAxes[0]), std::abs(halfAxes[1]),
                          hangs ? halfAxes[2] : std::abs(halfAxes[2])};
    const auto at = [&](double around, double above) {
        return origin + frame.right * (half[0] * std::cos(above) * std::cos(around)) +
               frame.forward * (half[1] * std::cos(above) * std::sin(around)) +
               frame.up * (half[2] * std::sin(above));
    };
    const double lowest = dome ? 0.0 : -kHalfPi;
    const int pieces = std::clamp(
        halCore::piecesOfArc(std::max({half[0], half[1], std::abs(half[2])}), kTwoPi, tolerance), 24, 192);
    const auto columns = static_cast<std::uint32_t>(std::min(pieces, 96));
    const std::uint32_t rows = dome ? columns / 4 : columns / 2;
    if (style.filled) {
        DrawList::Mesh mesh;
        mesh.color = style.fillColor;
        mesh.solid = true;
        const auto add = [&](double around, double above) {
            mesh.vertices.push_back(at(around, above));
            mesh.normals.push_back(normalized(frame.right * (std::cos(above) * std::cos(around) / half[0]) +
                                              frame.forward * (std::cos(above) * std::sin(around) / half[1]) +
                                              frame.up * (std::sin(above) / half[2])));
        };
        for (std::uint32_t row = 0; row <= rows; ++row)
            for (std::uint32_t column = 0; column < columns; ++column)
                add(kTwoPi * column / columns, lowest + (kHalfPi - lowest) * row / rows);
        for (std::uint32_t row = 0; row < rows; ++row) {
            for (std::uint32_t column = 0; column < columns; ++column) {
                const std::uint32_t next = (column + 1) % columns;
                addQuad(mesh, row * columns + column, row * columns + next, (row + 1) * columns + next,
                        (row + 1) * columns + column);
            }
        }
        if (dome) {
            DrawList::Mesh floor;
            floor.color = style.fillColor;
            floor.solid = true;
            floor.vertices.assign(mesh.vertices.begin(), mesh.vertices.begin() + columns);
            floor.vertices.push_back(origin);
            for (std::uint32_t column = 0; column < columns; ++column)
                floor.triangles.insert(floor.triangles.end(), {columns, (column + 1) % columns, column});
            if (hangs) turnOver(floor);
            out.meshes.push_back(std::move(floor));
        }
        if (hangs) turnOver(mesh);
        out.meshes.push_back(std::move(mesh));
    }
    if (!style.outlined) return;
    const int parallels = style.filled ? 1 : 6;
    for (int i = 0; i < parallels; ++i) {
        const double above =
            dome ? kHalfPi * i / parallels : (style.filled ? 0.0 : kPi * (i + 1) / (parallels + 1) - kHalfPi);
        std::vector<Ecef> ring;
        for (int k = 0; k < pieces; ++k) ring.push_back(at(kTwoPi * k / pieces, above));
        out.lines.push_back(edgeLine(std::move(ring), style, true, true));
    }
    if (style.filled) return;
    constexpr int kMeridians = 12;
    for (int i = 0; i < kMeridians; ++i) {
        std::vector<Ecef> arc;
        for (int k = 0; k <= pieces / 4; ++k)
            arc.push_back(at(kTwoPi * i / kMeridians, lowest + (kHalfPi - lowest) * k / (pieces / 4)));
        out.lines.push_back(edgeLine(std::move(arc), style, false, true));
    }
}

void appendPrism(const GeodeticPath& given, double height, const RingFill& fill,
                 const std::vector<std::size_t>& edges, const ShapeStyle& style, DrawList& out) {
    const GeodeticPath ring = withoutRepeat(given);
    if (ring.size() < 3) return;
    const GeodeticPath topRing = raised(ring, height);
    const std::vector<Ecef> bottom = toEcef(ring);
    const std::vector<Ecef> top = toEcef(topRing);
    if (style.filled) {
        DrawList::Mesh walls;
        walls.color = style.fillColor;
        walls.solid = true;
        walls.vertices = bottom;
        walls.vertices.insert(walls.vertices.end(), top.begin(), top.end());
        const auto count = static_cast<std::uint32_t>(bottom.size());
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t next = (i + 1) % count;
            addQuad(walls, i, next, count + next, count + i);
        }
        if (height < 0.0) turnOver(walls);
        out.meshes.push_back(std::move(walls));
        for (const bool lid : {false, true}) {
            DrawList::Mesh cap;
            fill(lid ? topRing : ring, cap).finish();
            cap.solid = true;
            face(cap, lid == (height >= 0.0));
            out.meshes.push_back(std::move(cap));
        }
    }
    if (!style.outlined) return;
    const bool bottomBuried = ring.front().alt() < 0.0;
    const bool topBuried = topRing.front().alt() < 0.0;
    for (const std::size_t edge : edges)
        if (edge < ring.size())
            out.lines.push_back(edgeLine({bottom[edge], top[edge]}, style, false, bottomBuried || topBuried));
    out.lines.push_back(edgeLine(bottom, style, true, bottomBuried));
    out.lines.push_back(edgeLine(top, style, true, topBuried));
}

void appendCone(const halCore::Vec3& center, const GeodeticPath& given, double height,
                const ShapeStyle& style, double tolerance, DrawList& out) {
    const GeodeticPath ring = withoutRepeat(given);
    if (ring.size() < 3) return;
    const std::vector<Ecef> rim = toEcef(ring);
    const double tipAltitude = center.alt() + height;
    const Ecef tip = toEcef(halCore::Vec3(center.lat(), center.lon(), tipAltitude));
    if (style.filled) {
        DrawList::Mesh mesh;
        mesh.color = style.fillColor;
        mesh.solid = true;
        mesh.vertices = rim;
        const auto count = static_cast<std::uint32_t>(rim.size());
        mesh.vertices.push_back(tip);
        for (std::uint32_t i = 0; i < count; ++i)
            mesh.triangles.insert(mesh.triangles.end(), {i, (i + 1) % count, count});
        if (height < 0.0) turnOver(mesh);
        out.meshes.push_back(std::move(mesh));
        DrawList::Mesh floor;
        fillRing(ring, style.fillColor, center, tolerance, 1.0, floor).finish();
        floor.solid = true;
        face(floor, height < 0.0);
        out.meshes.push_back(std::move(floor));
    }
    if (!style.outlined) return;
    const bool rimBuried = center.alt() < 0.0;
    out.lines.push_back(edgeLine(rim, style, true, rimBuried));
    constexpr std::size_t kRibs = 12;
    for (std::size_t i = 0; i < kRibs; ++i)
        out.lines.push_back(
            edgeLine({rim[i * rim.size() / kRibs], tip}, style, false, rimBuried || tipAltitude < 0.0));
}

Work appendCurtain(const std::vector<Ecef>& path, const std::vector<Ecef>& other, bool closed, Rgba color,
                   DrawList& out) {
    if (path.size() < 2) co_return;
    constexpr std::size_t kInAUnit = 50;
    DrawList::Mesh mesh;
    mesh.color = color;
    mesh.vertices.reserve(2 * path.size());
    mesh.triangles.reserve(6 * path.size());
    for (Pieces some(path.size(), kInAUnit); some.next(); co_yield some.units())
        for (std::size_t i = some.first; i < some.last; ++i) {
            mesh.vertices.push_back(path[i]);
            mesh.vertices.push_back(other[i]);
            const std::size_t next = i + 1 == path.size() ? 0 : i + 1;
            if (next == 0 && !closed) continue;
            const auto from = static_cast<std::uint32_t>(2 * i);
            const auto to = static_cast<std::uint32_t>(2 * next);
            addQuad(mesh, from, from + 1, to + 1, to);
        }
    out.meshes.push_back(std::move(mesh));
}

}  // namespace sandbox
