#include "globe/ShapePick.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "format/ZelShapes.h"
#include "globe/Camera.h"
#include "globe/DrawList.h"
#include "globe/ShapeGeometry.h"

namespace sandbox {

namespace ZEL = halCore::ZEL;
using halCore::Ecef;

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

enum class Hit { None, Inside, Edge };

constexpr std::size_t kProjectedInAUnit = 50;
constexpr std::size_t kTrianglesInAUnit = 200;

Work meet(const DrawList::Line& line, const Camera& camera, Pixel p, Hit& found) {
    const double reach = kReach + line.width / 2.0;
    std::optional<Projected> before;
    const std::size_t count = line.points.size() + (line.closed ? 1 : 0);
    for (Pieces some(count, kProjectedInAUnit); some.next(); co_yield 1 + some.units())
        for (std::size_t i = some.first; i < some.last; ++i) {
            const Projected here = camera.project(line.points[i % line.points.size()]);
            if (!here.visible) {
                before.reset();
                continue;
            }
            if (distanceTo(p, before.value_or(here), here) <= reach) {
                found = Hit::Edge;
                co_return;
            }
            before = here;
        }
}

bool meets(const DrawList::Label& label, const Camera& camera, Pixel p) {
    const Projected place = camera.project(label.position);
    const double half =
        0.3 * label.pixelSize * static_cast<double>(std::min<std::size_t>(label.text.size(), 40));
    return place.visible && std::abs(place.x - p.x) <= half + kReach &&
           std::abs(place.y - p.y) <= 0.6 * label.pixelSize + kReach;
}

Work cover(const DrawList::Mesh& mesh, const Camera& camera, Pixel p, Hit& found) {
    std::vector<Projected> places;
    places.reserve(mesh.vertices.size());
    for (Pieces some(mesh.vertices.size(), kProjectedInAUnit); some.next(); co_yield 1 + some.units())
        for (std::size_t i = some.first; i < some.last; ++i)
            places.push_back(camera.project(mesh.vertices[i]));
    const auto side = [&](const Projected& a, const Projected& b) {
        return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    };
    for (Pieces some(mesh.triangles.size() / 3, kTrianglesInAUnit); some.next(); co_yield some.units())
        for (std::size_t i = 3 * some.first; i < 3 * some.last; i += 3) {
            const Projected& a = places[mesh.triangles[i]];
            const Projected& b = places[mesh.triangles[i + 1]];
            const Projected& c = places[mesh.triangles[i + 2]];
            if (!a.visible || !b.visible || !c.visible) continue;
            const double ab = side(a, b);
            const double bc = side(b, c);
            const double ca = side(c, a);
            // What has no area covers nothing.
            if (ab + bc + ca == 0.0) continue;
            if ((ab >= 0.0 && bc >= 0.0 && ca >= 0.0) || (ab <= 0.0 && bc <= 0.0 && ca <= 0.0)) {
                found = Hit::Inside;
                co_return;
            }
        }
}

Work hit(const DrawList& list, const Camera& camera, Pixel p, Hit& found) {
    for (const DrawList::Line& line : list.lines) {
        co_await meet(line, camera, p, found);
        if (found == Hit::Edge) co_return;
    }
    for (const DrawList::Label& label : list.labels)
        if (meets(label, camera, p)) {
            found = Hit::Edge;
            co_return;
        }
    for (const DrawList::Mesh& mesh : list.meshes) {
        co_await cover(mesh, camera, p, found);
        if (found == Hit::Inside) co_return;
    }
}

/// What may be seen within a distance of a pixel: a cone about the ray through it.
class SightCone {
  public:
    SightCone(const Camera& camera, Pixel p, double pixels)
        : eye_(camera.eye()),
          back_(camera.back()),
          ray_(camera.ray(p.x, p.y)),
          slope_(pixels * 2.0 * camera.tanHalfHeight() / camera.height()) {}

    /// Never false when something in the ball may be in it.
    bool mayMeet(const RoughPlace& ball) const {
        const Ecef v = ball.center - eye_;
        const double depth = -dot(v, back_) + ball.radius;
        return depth > 0.0 && length(cross(v, ray_)) <= (ball.radius + slope_ * depth) * length(ray_);
    }

  private:
    Ecef eye_;
    Ecef back_;
    Ecef ray_;
    double slope_;  ///< how far from the ray it reaches, by depth
};

Work pickAmong(std::vector<OverlayScene::Entry> entries, Camera camera, Pixel p,
               std::optional<PickedShape>& picked) {
    constexpr std::size_t kLooksInAUnit = 5;
    constexpr double kWidestLine = 255.0;
    const SightCone cone(camera, p, kReach + kWidestLine / 2.0);
    const double tolerance = camera.metersPerPixel();
    std::optional<PickedShape> inside;
    std::size_t looks = 0;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry)
        for (std::size_t i = entry->shapes.size(); i-- > 0;) {
            if (!entry->shapes[i]) continue;
            const ZEL::ZelShape& shape = *entry->shapes[i];
            auto place = roughPlace(shape, entry->reference);
            looks += place ? 1 : roughSize(shape);
            if (!place) place = placeByPoints(shape, entry->reference);
            if (looks >= kLooksInAUnit) co_yield std::exchange(looks, 0) / kLooksInAUnit;
            if (place && !cone.mayMeet(*place)) continue;
            DrawList list;
            co_await workOutGeometry(shape, entry->reference, tolerance, {}, list);
            Hit found = Hit::None;
            co_await hit(list, camera, p, found);
            const PickedShape here{entry->id, i};
            if (found == Hit::Edge) {
                picked = here;
                co_return;
            }
            if (found == Hit::Inside && !inside) inside = here;
        }
    picked = inside;
}

}  // namespace

Work pickShape(const OverlayScene& scene, Camera camera, double x, double y,
               std::optional<PickedShape>& picked) {
    std::vector<OverlayScene::Entry> entries;
    for (const auto& [id, entry] : scene.entries())
        if (entry.shown) entries.push_back(entry);
    return pickAmong(std::move(entries), camera, {x, y}, picked);
}

}  // namespace sandbox
