#include "sandbox/view/SurfaceFill.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <map>

#include <GL/glu.h>

namespace sandbox {

namespace {

/// A point of the fill: the unit normal of the ellipsoid there, and the altitude.
struct Spot {
    Ecef normal;
    double altitude = 0.0;
};

Ecef normalOf(const halCore::Vec3& p) {
    return {std::cos(p.lat()) * std::cos(p.lon()), std::cos(p.lat()) * std::sin(p.lon()), std::sin(p.lat())};
}

Ecef positionOf(const Spot& spot) {
    const Ecef& n = spot.normal;
    return toEcef(halCore::Vec3(std::atan2(n.z, std::hypot(n.x, n.y)), std::atan2(n.y, n.x), spot.altitude));
}

/// The stereographic plane around a point: only its antipode has no place on it.
class Plane {
  public:
    explicit Plane(const Ecef& center) : up_(center) {
        const Ecef aside = std::abs(center.z) < 0.9 ? Ecef{0, 0, 1} : Ecef{1, 0, 0};
        east_ = normalized(cross(aside, center));
        north_ = cross(center, east_);
    }
    std::array<double, 3> flat(const Ecef& n) const {
        const double scale = 2.0 / std::max(1.0 + dot(n, up_), 1e-9);
        return {dot(n, east_) * scale, dot(n, north_) * scale, 0.0};
    }
    Ecef round(double x, double y) const {
        const double square = 0.25 * (x * x + y * y);
        return (east_ * x + north_ * y + up_ * (1.0 - square)) * (1.0 / (1.0 + square));
    }

  private:
    Ecef up_;
    Ecef east_;
    Ecef north_;
};

Ecef middleOf(const std::vector<Spot>& spots) {
    // Weighted with the length of the pieces: points crowd where curves are tight.
    Ecef sum;
    for (std::size_t i = 0; i < spots.size(); ++i) {
        const Spot& a = spots[i];
        const Spot& b = spots[(i + 1) % spots.size()];
        sum = sum + (a.normal + b.normal) * length(b.normal - a.normal);
    }
    return length(sum) > 0.0 ? normalized(sum) : spots.front().normal;
}

/// GLU's tessellator, answering plain triangles.
class Tessellator {
  public:
    Tessellator(const Plane& plane, std::vector<Spot>& spots) : plane_(plane), spots_(spots) {
        tess_ = gluNewTess();
        using Callback = void (*)();
        gluTessCallback(tess_, GLU_TESS_VERTEX_DATA, reinterpret_cast<Callback>(&vertex));
        gluTessCallback(tess_, GLU_TESS_COMBINE_DATA, reinterpret_cast<Callback>(&combine));
        // Asking for edge flags makes it give separate triangles, no fans or strips.
        gluTessCallback(tess_, GLU_TESS_EDGE_FLAG_DATA, reinterpret_cast<Callback>(&edgeFlag));
        gluTessProperty(tess_, GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_ODD);
        gluTessNormal(tess_, 0.0, 0.0, 1.0);
    }
    ~Tessellator() { gluDeleteTess(tess_); }
    Tessellator(const Tessellator&) = delete;
    Tessellator& operator=(const Tessellator&) = delete;

    std::vector<std::uint32_t> run() {
        const std::size_t count = spots_.size();
        gluTessBeginPolygon(tess_, this);
        gluTessBeginContour(tess_);
        for (std::size_t i = 0; i < count; ++i) {
            places_.push_back(plane_.flat(spots_[i].normal));
            gluTessVertex(tess_, places_.back().data(), asPointer(i));
        }
        gluTessEndContour(tess_);
        gluTessEndPolygon(tess_);
        triangles_.resize(triangles_.size() / 3 * 3);
        return std::move(triangles_);
    }

  private:
    static void* asPointer(std::size_t index) { return reinterpret_cast<void*>(index); }
    static std::size_t asIndex(const void* data) { return reinterpret_cast<std::size_t>(data); }

    static void vertex(void* data, void* self) {
        static_cast<Tessellator*>(self)->triangles_.push_back(static_cast<std::uint32_t>(asIndex(data)));
    }
    static void combine(const GLdouble place[3], void* const data[4], const GLfloat weight[4], void** out,
                        void* self) {
        auto& tess = *static_cast<Tessellator*>(self);
        Spot spot{tess.plane_.round(place[0], place[1]), 0.0};
        for (int i = 0; i < 4; ++i)
            if (weight[i] > 0.0F) spot.altitude += double{weight[i]} * tess.spots_[asIndex(data[i])].altitude;
        *out = asPointer(tess.spots_.size());
        tess.spots_.push_back(spot);
    }
    static void edgeFlag(GLboolean, void*) {}

    const Plane& plane_;
    std::vector<Spot>& spots_;
    GLUtesselator* tess_ = nullptr;
    std::deque<std::array<double, 3>> places_;  // GLU keeps the addresses
    std::vector<std::uint32_t> triangles_;
};

/// Splits triangles until no edge is longer than the limit. An edge is always split in its middle, so
/// that neighbours still fit together; its middle on the plane, so that slivers do not fold over.
class Divider {
  public:
    Divider(const Plane& plane, std::vector<Spot>& spots, double limit)
        : plane_(plane), spots_(spots), limit_(limit) {}

    std::vector<std::uint32_t> run(std::vector<std::uint32_t> todo) {
        std::vector<std::uint32_t> done;
        done.reserve(todo.size());
        while (!todo.empty()) {
            const std::size_t at = todo.size() - 3;
            const std::array<std::uint32_t, 3> t = {todo[at], todo[at + 1], todo[at + 2]};
            todo.resize(at);
            int longest = 0;
            double most = 0.0;
            for (int i = 0; i < 3; ++i) {
                const double size = length(spots_[t[static_cast<std::size_t>(i)]].normal -
                                           spots_[t[static_cast<std::size_t>((i + 1) % 3)]].normal);
                if (size > most) {
                    most = size;
                    longest = i;
                }
            }
            if (most <= limit_) {
                done.insert(done.end(), t.begin(), t.end());
                continue;
            }
            const std::uint32_t a = t[static_cast<std::size_t>(longest)];
            const std::uint32_t b = t[static_cast<std::size_t>((longest + 1) % 3)];
            const std::uint32_t c = t[static_cast<std::size_t>((longest + 2) % 3)];
            const std::uint32_t m = between(a, b);
            todo.insert(todo.end(), {a, m, c, m, b, c});
        }
        return done;
    }

  private:
    std::uint32_t between(std::uint32_t a, std::uint32_t b) {
        const auto [found, fresh] =
            middles_.try_emplace(std::minmax(a, b), static_cast<std::uint32_t>(spots_.size()));
        if (fresh) {
            const auto from = plane_.flat(spots_[a].normal);
            const auto to = plane_.flat(spots_[b].normal);
            spots_.push_back({plane_.round(0.5 * (from[0] + to[0]), 0.5 * (from[1] + to[1])),
                              0.5 * (spots_[a].altitude + spots_[b].altitude)});
        }
        return found->second;
    }

    const Plane& plane_;
    std::vector<Spot>& spots_;
    double limit_;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> middles_;
};

}  // namespace

DrawList::Mesh fillRing(const GeodeticPath& ring, Rgba color, const std::optional<halCore::Vec3>& middle,
                        double tolerance) {
    DrawList::Mesh mesh;
    mesh.color = color;
    std::vector<Spot> spots;
    spots.reserve(ring.size());
    for (const halCore::Vec3& p : ring) {
        const Spot spot{normalOf(p), p.alt()};
        if (spots.empty() || length(spot.normal - spots.back().normal) > 1e-12) spots.push_back(spot);
    }
    while (spots.size() > 1 && length(spots.front().normal - spots.back().normal) <= 1e-12) spots.pop_back();
    if (spots.size() < 3) return mesh;

    const Ecef center = middle ? normalOf(*middle) : middleOf(spots);
    double extent = 0.0;
    for (const Spot& spot : spots) extent = std::max(extent, length(spot.normal - center));
    const Plane plane(center);
    std::vector<std::uint32_t> triangles = Tessellator(plane, spots).run();
    // A quarter of a kilometre to 150 km: flat enough for the picture, few enough for thousands of areas.
    const double fine = std::clamp(extent / 8.0, 250.0 / kEquatorRadius, 150.0e3 / kEquatorRadius);
    const double coarse = std::min(std::sqrt(8.0 * tolerance / kEquatorRadius), 0.15);
    const double limit = std::max(fine, coarse);
    mesh.triangles = Divider(plane, spots, limit).run(std::move(triangles));
    mesh.vertices.reserve(spots.size());
    for (const Spot& spot : spots) mesh.vertices.push_back(positionOf(spot));
    return mesh;
}

}  // namespace sandbox
