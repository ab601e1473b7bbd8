#include "globe/BoxGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "format/BoxOutline.h"
#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "geo/GeodesicPath.h"
#include "geo/Wgs84.h"
#include "globe/SolidGeometry.h"
#include "globe/StyledGeometry.h"
#include "globe/SurfaceFill.h"

namespace sandbox {

namespace ZEL = halCore::ZEL;
namespace wgs84 = halCore::wgs84;
using halCore::kHalfPi;
using halCore::kPi;
using halCore::kTwoPi;
using halCore::Vec3;

namespace {

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

}  // namespace

void appendBox(const ZEL::LatLonAltBox& box, const Placement& placement, DrawList& out) {
    const ShapeStyle style = styleOf(box);
    const double span = ZEL::eastward(box.west(), box.east());
    const double west = box.west();
    const double north = std::clamp(std::max(box.north(), box.south()), -kHalfPi, kHalfPi);
    const double south = std::clamp(std::min(box.north(), box.south()), -kHalfPi, kHalfPi);
    const double altitude = placement.altitude(box.altitude());
    const BoxSides sides(south, north, west, span, altitude);
    double height = 0.0;
    box.getHeight(height);

    // In slices of a third of the world at most: there is no doubt which side of them is inside.
    const RingFill fill = [&](const GeodeticPath& ring, DrawList::Mesh& mesh) -> Work {
        const int slices = static_cast<int>(std::ceil(span / (kTwoPi / 3.0) - 1e-9));
        const double width = span / slices;
        const double level = ring.front().alt();
        for (int i = 0; i < slices; ++i) {
            const double left = west + width * i;
            const Vec3 middle(0.5 * (south + north), left + 0.5 * width, level);
            const BoxSides part(south, north, left, width, level);
            DrawList::Mesh filled;
            co_await fillRing(part.ring, style.fillColor, middle, placement.tolerance(), 1.0, filled);
            join(mesh, filled);
        }
    };
    // A box around the world has no sides in the west and east.
    const bool around = span > kTwoPi - 1e-9;
    ShapeStyle body = style;
    body.outlined = style.outlined && !around;
    if (height != 0.0)
        appendPrism(sides.ring, height, fill, sides.corners, body, out);
    else
        addRing({sides.ring, {}}, true, fill, placement, body, out).finish();
    if (!style.outlined || !around) return;
    for (const std::size_t corner : {std::size_t{0}, std::size_t{2}}) {
        GeodeticPath parallel = sides.side(corner);
        addOutline(parallel, true, placement, style, out);
        if (height == 0.0) continue;
        for (Vec3& p : parallel) p.setAlt(altitude + height);
        addLine(toEcef(parallel), true, style, out);
    }
}

void appendPicture(const ZEL::ImageOverlay& shape, const Placement& placement, DrawList& out) {
    const double north = std::max(shape.north(), shape.south());
    const double south = std::min(shape.north(), shape.south());
    const double span = ZEL::eastward(shape.west(), shape.east());
    const auto at = [&](double across, double down) {
        Vec3 place = ZEL::placeInPicture(shape, across, down);
        place.setAlt(placement.altitude(0.0));
        return toEcef(place);
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

}  // namespace sandbox
