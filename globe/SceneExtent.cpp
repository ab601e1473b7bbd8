#include "globe/SceneExtent.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "geo/Ecef.h"
#include "geo/Wgs84.h"
#include "globe/BoundingBox.h"
#include "globe/Camera.h"
#include "globe/ShapeGeometry.h"

namespace sandbox {

using halCore::Ecef;
using halCore::localFrame;
using halCore::LocalFrame;
namespace wgs84 = halCore::wgs84;

namespace {

constexpr std::size_t kLookedAtInAUnit = 250;

Work addTo(BoundingBox& box, std::size_t& known, const std::vector<Ecef>& points) {
    for (Pieces some(points.size() - known, kLookedAtInAUnit); some.next(); co_yield some.units())
        for (std::size_t i = some.first; i < some.last; ++i) box.add(points[known + i]);
    known = points.size();
}

Work gatherPoints(const std::vector<OverlayScene::Entry>& entries, double tolerance,
                  std::vector<Ecef>& points) {
    // Of a scene of very many points what follows may be off by a thousandth of what it is large already.
    constexpr double kShare = 1e-3;
    constexpr std::size_t kTakenInAUnit = 250;
    std::size_t many = 200000;
    // Only the outlines of tangled areas matter here.
    constexpr double kFewestRows = 1e-9;
    double rows = kFewestRows;
    // Nor between which points a line is straight.
    DetailBudget budget;
    BoundingBox box;
    std::size_t boxed = 0;
    DrawList list;
    const auto take = [&points](const auto& positions) {
        points.insert(points.end(), positions.begin(), positions.end());
    };
    for (const OverlayScene::Entry& entry : entries) {
        for (const auto& shape : entry.shapes) {
            if (!shape) continue;
            if (points.size() >= many) {
                co_await addTo(box, boxed, points);
                tolerance = std::max(tolerance, kShare * box.diagonal());
                many = 2 * points.size();
                // What lies within an outline that is not half the earth is within any ball about it.
                rows = box.diagonal() < wgs84::a ? 0.0 : kFewestRows;
            }
            const std::size_t before = points.size();
            list = {};
            co_await workOutGeometry(*shape, entry.reference, tolerance, {rows, budget.shares().pieces},
                                     list);
            budget.spend({.pieces = detailOf(*shape, {}, list.lines).pieces});
            for (const DrawList::Line& line : list.lines) take(line.points);
            for (const DrawList::Mesh& mesh : list.meshes)
                if (!mesh.tangled || list.lines.empty()) take(mesh.vertices);
            for (const DrawList::Picture& picture : list.pictures) take(picture.vertices);
            for (const DrawList::Label& label : list.labels) points.push_back(label.position);
            co_yield (points.size() - before) / kTakenInAUnit;
        }
    }
}

Work findFarthest(const std::vector<Ecef>& points, Ecef from, Ecef& farthest) {
    double most = -1.0;
    for (Pieces some(points.size(), kLookedAtInAUnit); some.next(); co_yield some.units())
        for (std::size_t i = some.first; i < some.last; ++i) {
            const Ecef v = points[i] - from;
            if (const double square = dot(v, v); square > most) {
                most = square;
                farthest = points[i];
            }
        }
}

/// Jack Ritter, "An efficient bounding sphere", Graphics Gems, 1990: at most a few per cent too large.
Work surround(std::vector<Ecef> points, SceneExtent& sphere) {
    Ecef one = points.front();
    Ecef other = one;
    co_await findFarthest(points, points.front(), one);
    co_await findFarthest(points, one, other);
    sphere = {(one + other) * 0.5, length(other - one) * 0.5, {}};
    for (Pieces some(points.size(), kLookedAtInAUnit); some.next(); co_yield some.units())
        for (std::size_t i = some.first; i < some.last; ++i) {
            const Ecef& p = points[i];
            const double distance = length(p - sphere.middle);
            if (distance <= sphere.radius) continue;
            sphere.radius = 0.5 * (sphere.radius + distance);
            sphere.middle = sphere.middle + (p - sphere.middle) * ((distance - sphere.radius) / distance);
        }
    sphere.points = std::move(points);
}

/// Turns an outlook to the middle of the rectangle that the points fill in the view, and as close as the
/// rectangle and its margin allow.
void fit(Outlook& outlook, const std::vector<Ecef>& points, const Camera& camera, double margin) {
    // The second time from about where the view will be.
    for (int round = 0; round < 2; ++round) {
        const LocalFrame frame = localFrame(outlook.center.lat(), outlook.center.lon());
        const Ecef origin = toEcef(outlook.center);
        Ecef low{1e12, 1e12, 0.0};
        Ecef high{-1e12, -1e12, 0.0};
        double range = 0.0;
        for (const Ecef& p : points) {
            const Ecef v = p - origin;
            const double east = dot(v, frame.east);
            const double north = dot(v, frame.north);
            low = {std::min(low.x, east), std::min(low.y, north), 0.0};
            high = {std::max(high.x, east), std::max(high.y, north), 0.0};
            range = std::max(range,
                             dot(v, frame.up) + margin * std::max(std::abs(east) / camera.tanHalfWidth(),
                                                                  std::abs(north) / camera.tanHalfHeight()));
        }
        outlook.range = range;
        if (round > 0) return;
        const Ecef middle = (low + high) * 0.5;
        const double altitude = outlook.center.alt();
        outlook.center = toGeodetic(origin + frame.east * middle.x + frame.north * middle.y);
        outlook.center.setAlt(altitude);
    }
}

}  // namespace

Work measureExtent(std::vector<OverlayScene::Entry> entries, std::vector<Ecef> places,
                   std::optional<SceneExtent>& extent) {
    // Coarse geometry is quick to make, but it may be all there is of a small shape.
    constexpr double kCoarse = 50.0;
    for (const double tolerance : {kCoarse, 0.0}) {
        std::vector<Ecef> points = places;
        co_await gatherPoints(entries, tolerance, points);
        if (points.empty()) co_return;
        SceneExtent sphere;
        co_await surround(std::move(points), sphere);
        extent = std::move(sphere);
        if (extent->radius > 100.0 * kCoarse) co_return;
    }
}

Outlook outlookOn(const SceneExtent& extent, const Camera& camera) {
    constexpr double kMargin = 1.12;
    constexpr double kNearest = 300.0;
    constexpr double kFlat = 1.6e6;  // what is larger, bends out of sight
    const double tangent = std::min(camera.tanHalfHeight(), camera.tanHalfWidth());
    Outlook outlook;
    // Shapes all around the earth have their middle near its centre, where direction means little.
    const bool everywhere = length(extent.middle) < 0.3 * wgs84::b;
    outlook.center = everywhere ? halCore::Vec3() : toGeodetic(extent.middle);
    outlook.center.setAlt(std::max(0.0, outlook.center.alt()));
    outlook.range = kMargin * extent.radius / tangent;
    if (extent.radius < kFlat) fit(outlook, extent.points, camera, kMargin);
    outlook.range = std::clamp(outlook.range, kNearest, Camera::kMaximumRange);
    if (extent.radius < 1.2 * wgs84::a) outlook.range = std::min(outlook.range, Camera::kWholeEarthRange);
    return outlook;
}

}  // namespace sandbox
