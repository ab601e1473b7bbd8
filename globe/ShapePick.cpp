#include "globe/ShapePick.h"

#include <algorithm>
#include <cmath>

#include "format/ZelShapes.h"
#include "globe/Camera.h"
#include "globe/DrawList.h"
#include "globe/ShapeGeometry.h"

namespace sandbox {

namespace {

constexpr double kReach = 6.0;  // pixels

struct Pixel {
    double x;
    double y;
};

double distanceTo(Pixel p, const Projected& a, const Projected& b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double size = dx * dx + dy * dy;
    const double share =
        size > 0.0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / size, 0.0, 1.0) : 0.0;
    return std::hypot(a.x + share * dx - p.x, a.y + share * dy - p.y);
}

bool meets(const DrawList::Line& line, const Camera& camera, Pixel p) {
    const double reach = kReach + line.width / 2.0;
    std::optional<Projected> before;
    const std::size_t count = line.points.size() + (line.closed ? 1 : 0);
    for (std::size_t i = 0; i < count; ++i) {
        const Projected here = camera.project(line.points[i % line.points.size()]);
        if (!here.visible) {
            before.reset();
            continue;
        }
        if (distanceTo(p, before.value_or(here), here) <= reach) return true;
        before = here;
    }
    return false;
}

bool covers(const DrawList::Mesh& mesh, const Camera& camera, Pixel p) {
    std::vector<Projected> places;
    places.reserve(mesh.vertices.size());
    for (const auto& vertex : mesh.vertices) places.push_back(camera.project(vertex));
    const auto side = [&](const Projected& a, const Projected& b) {
        return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    };
    for (std::size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
        const Projected& a = places[mesh.triangles[i]];
        const Projected& b = places[mesh.triangles[i + 1]];
        const Projected& c = places[mesh.triangles[i + 2]];
        if (!a.visible || !b.visible || !c.visible) continue;
        const double ab = side(a, b);
        const double bc = side(b, c);
        const double ca = side(c, a);
        if ((ab >= 0.0 && bc >= 0.0 && ca >= 0.0) || (ab <= 0.0 && bc <= 0.0 && ca <= 0.0)) return true;
    }
    return false;
}

enum class Hit { None, Inside, Edge };

Hit hit(const DrawList& list, const Camera& camera, Pixel p) {
    if (std::ranges::any_of(list.lines, [&](const auto& line) { return meets(line, camera, p); }))
        return Hit::Edge;
    for (const DrawList::Label& label : list.labels) {
        const Projected place = camera.project(label.position);
        const double half =
            0.3 * label.pixelSize * static_cast<double>(std::min<std::size_t>(label.text.size(), 40));
        if (place.visible && std::abs(place.x - p.x) <= half + kReach &&
            std::abs(place.y - p.y) <= 0.6 * label.pixelSize + kReach)
            return Hit::Edge;
    }
    const bool inside =
        std::ranges::any_of(list.meshes, [&](const auto& mesh) { return covers(mesh, camera, p); });
    return inside ? Hit::Inside : Hit::None;
}

}  // namespace

std::optional<PickedShape> pickShape(const OverlayScene& scene, const Camera& camera, double x, double y) {
    std::optional<PickedShape> inside;
    const double tolerance = camera.metersPerPixel();
    const auto& entries = scene.entries();
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        if (!entry->second.shown) continue;
        const auto& shapes = entry->second.shapes;
        for (std::size_t i = shapes.size(); i-- > 0;) {
            if (!shapes[i]) continue;
            DrawList list;
            appendGeometry(*shapes[i], entry->second.reference, tolerance, list);
            const Hit found = hit(list, camera, {x, y});
            if (found == Hit::Edge) return PickedShape{entry->first, i};
            if (found == Hit::Inside && !inside) inside = PickedShape{entry->first, i};
        }
    }
    return inside;
}

}  // namespace sandbox
