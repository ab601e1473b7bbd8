// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

#include "sandbox/view/SceneExtent.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "sandbox/view/Camera.h"
#include "sandbox/view/ShapeGeometry.h"

namespace sandbox {

namespace {

std::vector<Ecef> pointsOf(std::span<const OverlayScene::Entry* const> entries, double tolerance) {
    std::vector<Ecef> points;
    DrawList list;
    const auto take = [&points](const auto& positions) {
        points.insert(points.end(), positions.begin(), positions.end());
    };
    for (const OverlayScene::Entry* entry : entries) {
        for (const auto& shape : entry->shapes) {
            if (!shape) continue;
            list = {};
            appendGeometry(*shape, entry->reference, tolerance, list);
            for (const DrawList::Line& line : list.lines) take(line.points);
            for (const DrawList::Mesh& mesh : list.meshes) take(mesh.vertices);
            for (const DrawList::Picture& picture : list.pictures) take(picture.vertices);
            for (const DrawList::Label& label : list.labels) points.push_back(label.position);
        }
    }
    return points;
}

/// Jack Ritter, "An efficient bounding sphere", Graphics Gems, 1990: at most a few per cent too large.
SceneExtent sphereAround(const std::vector<Ecef>& points) {
    const auto farthestFrom = [&points](const Ecef& from) {
        return *std::max_element(points.begin(), points.end(), [&from](const Ecef& a, const Ecef& b) {
            return dot(a - from, a - from) < dot(b - from, b - from);
        });
    };
    const Ecef one = farthestFrom(points.front());
    const Ecef other = farthestFrom(one);
    SceneExtent sphere{(one + other) * 0.5, length(other - one) * 0.5};
    for (const Ecef& p : points) {
        const double distance = length(p - sphere.middle);
        if (distance <= sphere.radius) continue;
        sphere.radius = 0.5 * (sphere.radius + distance);
        sphere.middle = sphere.middle + (p - sphere.middle) * ((distance - sphere.radius) / distance);
    }
    return sphere;
}

}  // namespace

std::optional<SceneExtent> extentOf(std::span<const OverlayScene::Entry* const> entries) {
    // Coarse geometry is quick to make, but it may be all there is of a small shape.
    constexpr double kCoarse = 50.0;
    std::vector<Ecef> points = pointsOf(entries, kCoarse);
    if (points.empty()) return std::nullopt;
    const SceneExtent coarse = sphereAround(points);
    if (coarse.radius > 100.0 * kCoarse) return coarse;
    points = pointsOf(entries, 0.0);
    return sphereAround(points);
}

Outlook outlookOn(const SceneExtent& extent, const Camera& camera) {
    constexpr double kMargin = 1.12;
    constexpr double kNearest = 300.0;
    constexpr double kWholeEarth = 2.3e7;
    const double tangent = std::min(camera.tanHalfHeight(), camera.tanHalfWidth());
    Outlook outlook;
    // Shapes all around the earth have their middle near its centre, where direction means little.
    const bool everywhere = length(extent.middle) < 0.3 * kPoleRadius;
    outlook.center = everywhere ? halCore::Vec3() : toGeodetic(extent.middle);
    outlook.center.setAlt(std::max(0.0, outlook.center.alt()));
    outlook.range = std::clamp(kMargin * extent.radius / tangent, kNearest, Camera::kMaximumRange);
    if (extent.radius < 1.2 * kEquatorRadius) outlook.range = std::min(outlook.range, kWholeEarth);
    return outlook;
}

}  // namespace sandbox
