#include "globe/SurfaceFill.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <limits>

#include <GL/glu.h>

#include "geo/Ecef.h"
#include "geo/Wgs84.h"

namespace sandbox {

using halCore::Ecef;
namespace wgs84 = halCore::wgs84;

namespace {

/// A point on the plane, with the altitude of what lies there.
struct Flat {
    double x = 0.0;
    double y = 0.0;
    double altitude = 0.0;
};
using FlatRing = std::vector<Flat>;

Ecef normalOf(const halCore::Vec3& p) {
    return {std::cos(p.lat()) * std::cos(p.lon()), std::cos(p.lat()) * std::sin(p.lon()), std::sin(p.lat())};
}

/// The stereographic plane around a point, for unit normals of the ellipsoid: only the antipode has no
/// place on it.
class Plane {
  public:
    explicit Plane(const Ecef& center) : up_(center) {
        const Ecef aside = std::abs(center.z) < 0.9 ? Ecef{0, 0, 1} : Ecef{1, 0, 0};
        east_ = normalized(cross(aside, center));
        north_ = cross(center, east_);
    }
    Flat flat(const Ecef& normal, double altitude) const {
        const double scale = 2.0 / std::max(1.0 + dot(normal, up_), 1e-9);
        return {dot(normal, east_) * scale, dot(normal, north_) * scale, altitude};
    }
    Ecef position(const Flat& p) const {
        const double square = 0.25 * (p.x * p.x + p.y * p.y);
        const Ecef n = east_ * p.x + north_ * p.y + up_ * (1.0 - square);
        return toEcef(halCore::Vec3(std::atan2(n.z, std::hypot(n.x, n.y)), std::atan2(n.y, n.x), p.altitude));
    }

  private:
    Ecef up_;
    Ecef east_;
    Ecef north_;
};

Ecef middleOf(const std::vector<Ecef>& normals) {
    // Weighted with the length of the pieces: points crowd where curves are tight.
    Ecef sum;
    for (std::size_t i = 0; i < normals.size(); ++i) {
        const Ecef& a = normals[i];
        const Ecef& b = normals[i + 1 == normals.size() ? 0 : i + 1];
        sum = sum + (a + b) * length(b - a);
    }
    return length(sum) > 0.0 ? normalized(sum) : normals.front();
}

/// GLU's tessellator by the even-odd rule, giving plain triangles.
class Tessellator {
  public:
    Tessellator(const Plane& plane, DrawList::Mesh& mesh) : plane_(plane), mesh_(mesh), tess_(gluNewTess()) {
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

    void add(const FlatRing& ring) {
        if (ring.size() < 3) return;
        places_.clear();
        const std::size_t before = mesh_.triangles.size();
        gluTessBeginPolygon(tess_, this);
        gluTessBeginContour(tess_);
        for (const Flat& p : ring) {
            places_.push_back({p.x, p.y, 0.0});
            gluTessVertex(tess_, places_.back().data(), asPointer(append(p)));
        }
        gluTessEndContour(tess_);
        gluTessEndPolygon(tess_);
        mesh_.triangles.resize(before + (mesh_.triangles.size() - before) / 3 * 3);
    }
    std::size_t append(const Flat& p) {
        mesh_.vertices.push_back(plane_.position(p));
        altitudes_.resize(mesh_.vertices.size());
        altitudes_.back() = p.altitude;
        return mesh_.vertices.size() - 1;
    }

  private:
    static void* asPointer(std::size_t index) { return reinterpret_cast<void*>(index); }
    static std::size_t asIndex(const void* data) { return reinterpret_cast<std::size_t>(data); }

    static void vertex(void* data, void* self) {
        static_cast<Tessellator*>(self)->mesh_.triangles.push_back(static_cast<std::uint32_t>(asIndex(data)));
    }
    static void combine(const GLdouble place[3], void* const data[4], const GLfloat weight[4], void** out,
                        void* self) {
        auto& tess = *static_cast<Tessellator*>(self);
        Flat p{place[0], place[1], 0.0};
        for (int i = 0; i < 4; ++i)
            if (weight[i] > 0.0F) p.altitude += double{weight[i]} * tess.altitudes_[asIndex(data[i])];
        *out = asPointer(tess.append(p));
    }
    static void edgeFlag(GLboolean, void*) {}

    const Plane& plane_;
    DrawList::Mesh& mesh_;
    GLUtesselator* tess_;
    std::deque<std::array<double, 3>> places_;  // GLU keeps the addresses
    std::vector<double> altitudes_;             // of the mesh's vertices
};

/// Cuts a ring along a square grid of 2^levels cells a side, so that triangles are small enough to follow
/// the surface: whole cells become two triangles, cells that the ring runs through are tessellated.
/// Neighbouring cells share their corners and the points where the ring crosses, to the last bit.
class Cutter {
  public:
    Cutter(Tessellator& tessellator, DrawList::Mesh& mesh, double left, double bottom, double size,
           int levels)
        : tessellator_(tessellator),
          mesh_(mesh),
          left_(left),
          bottom_(bottom),
          step_(std::ldexp(size, -levels)),
          cells_(1 << levels) {}

    void run(const FlatRing& ring) { cut(ring, {0, 0, cells_}); }

  private:
    struct Square {
        int column;
        int row;
        int size;  ///< in cells
    };

    double x(int column) const { return left_ + step_ * column; }
    double y(int row) const { return bottom_ + step_ * row; }

    void cut(const FlatRing& ring, const Square& square) {
        if (ring.size() < 3) return;
        if (const int turns = turnsAround(ring, square); turns >= 0) {
            if (turns % 2 == 1) addWhole(ring, square);
            return;
        }
        if (square.size == 1) {
            tessellator_.add(ring);
            return;
        }
        const int half = square.size / 2;
        for (const bool right : {false, true}) {
            const FlatRing part = clipped<&Flat::x, &Flat::y>(ring, x(square.column + half), right);
            const int column = square.column + (right ? half : 0);
            for (const bool top : {false, true})
                cut(clipped<&Flat::y, &Flat::x>(part, y(square.row + half), top),
                    {column, square.row + (top ? half : 0), half});
        }
    }

    /// The part of a ring on one side of a line across the axis `A` (Sutherland and Hodgman). What was in
    /// several pieces stays one ring, with edges along the line that the even-odd rule cancels.
    template <double Flat::*A, double Flat::*B>
    static FlatRing clipped(const FlatRing& ring, double line, bool above) {
        FlatRing result;
        result.reserve(ring.size() / 2 + 4);
        const auto inside = [&](const Flat& p) { return above ? p.*A >= line : p.*A <= line; };
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Flat& a = ring[i];
            const Flat& b = ring[i + 1 == ring.size() ? 0 : i + 1];
            if (inside(a)) result.push_back(a);
            if ((a.*A < line && b.*A > line) || (a.*A > line && b.*A < line)) {
                const double share = (line - a.*A) / (b.*A - a.*A);
                Flat crossing;
                crossing.*A = line;
                crossing.*B = a.*B + (b.*B - a.*B) * share;
                crossing.altitude = a.altitude + (b.altitude - a.altitude) * share;
                result.push_back(crossing);
            }
        }
        return result;
    }

    /// How often a ring that keeps to the border of a square runs around it; -1 when it comes inside.
    int turnsAround(const FlatRing& ring, const Square& square) const {
        const double low[2] = {x(square.column), y(square.row)};
        const double high[2] = {x(square.column + square.size), y(square.row + square.size)};
        double area = 0.0;
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Flat& a = ring[i];
            const Flat& b = ring[i + 1 == ring.size() ? 0 : i + 1];
            const bool along = (a.x == b.x && (a.x == low[0] || a.x == high[0])) ||
                               (a.y == b.y && (a.y == low[1] || a.y == high[1]));
            if (!along) return -1;
            area += (a.x - low[0]) * (b.y - low[1]) - (b.x - low[0]) * (a.y - low[1]);
        }
        const double whole = 2.0 * (high[0] - low[0]) * (high[1] - low[1]);
        return static_cast<int>(std::lround(std::abs(area) / whole));
    }

    void addWhole(const FlatRing& ring, const Square& square) {
        // Inside, the altitude is what the border has on average: areas are level, or nearly so.
        double altitude = 0.0;
        for (const Flat& p : ring) altitude += p.altitude;
        altitude /= static_cast<double>(ring.size());
        const auto side = static_cast<std::uint32_t>(square.size) + 1;
        const auto base = static_cast<std::uint32_t>(mesh_.vertices.size());
        for (int row = 0; row <= square.size; ++row)
            for (int column = 0; column <= square.size; ++column)
                tessellator_.append({x(square.column + column), y(square.row + row), altitude});
        for (std::uint32_t row = 0; row + 1 < side; ++row) {
            for (std::uint32_t column = 0; column + 1 < side; ++column) {
                const std::uint32_t a = base + row * side + column;
                mesh_.triangles.insert(mesh_.triangles.end(),
                                       {a, a + 1, a + side + 1, a, a + side + 1, a + side});
            }
        }
    }

    Tessellator& tessellator_;
    DrawList::Mesh& mesh_;
    double left_;
    double bottom_;
    double step_;
    int cells_;
};

/// Whether a ring crosses itself so often that triangles between the crossings would be too many. Goes
/// along the axis across which the edges are shorter, as a sweep does.
class Tangle {
  public:
    explicit Tangle(const FlatRing& ring) : ring_(ring) {
        double across[2] = {0.0, 0.0};
        for (std::size_t i = 0; i < ring.size(); ++i) {
            across[0] += std::abs(end(i).x - ring[i].x);
            across[1] += std::abs(end(i).y - ring[i].y);
        }
        along_ = across[0] <= across[1] ? &Flat::x : &Flat::y;
        aside_ = across[0] <= across[1] ? &Flat::y : &Flat::x;
    }

    bool isThere() const {
        // What is badly tangled shows it at its beginning: there is no need to sort all of it.
        constexpr std::size_t kBeginning = 2000;
        return (ring_.size() > 2 * kBeginning && isAmong(kBeginning)) || isAmong(ring_.size());
    }

  private:
    /// Whether the first edges alone do.
    bool isAmong(std::size_t edges) const {
        constexpr std::size_t kMostCrossings = 200;
        std::size_t tests = 200 * edges + 1000000;
        std::size_t crossings = 0;
        std::vector<std::uint32_t> order(edges);
        for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<std::uint32_t>(i);
        std::ranges::sort(order, {}, [this](std::uint32_t edge) { return low(edge, along_); });
        std::vector<std::uint32_t> open;
        for (const std::uint32_t edge : order) {
            for (std::size_t i = 0; i < open.size();) {
                if (high(open[i], along_) < low(edge, along_)) {
                    open[i] = open.back();
                    open.pop_back();
                    continue;
                }
                if (tests-- == 0) return true;
                if (cross(open[i], edge) && ++crossings > kMostCrossings) return true;
                ++i;
            }
            open.push_back(edge);
        }
        return false;
    }
    const Flat& end(std::size_t edge) const { return ring_[edge + 1 == ring_.size() ? 0 : edge + 1]; }
    double low(std::size_t edge, double Flat::*axis) const {
        return std::min(ring_[edge].*axis, end(edge).*axis);
    }
    double high(std::size_t edge, double Flat::*axis) const {
        return std::max(ring_[edge].*axis, end(edge).*axis);
    }
    /// In their midst: neighbours, which share a corner, do not.
    bool cross(std::size_t e, std::size_t f) const {
        if (low(e, aside_) > high(f, aside_) || low(f, aside_) > high(e, aside_)) return false;
        const auto side = [](const Flat& a, const Flat& b, const Flat& c) {
            return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        };
        const Flat &a = ring_[e], &b = end(e), &c = ring_[f], &d = end(f);
        return side(a, b, c) * side(a, b, d) < 0.0 && side(c, d, a) * side(c, d, b) < 0.0;
    }

    const FlatRing& ring_;
    double Flat::*along_ = nullptr;
    double Flat::*aside_ = nullptr;
};

/// Fills a tangled ring in rows, by the even-odd rule along the middle of each.
class RowFill {
  public:
    /// \param step along which a piece may be straight
    /// \param share of the rows
    RowFill(Tessellator& tessellator, DrawList::Mesh& mesh, double left, double bottom, double size,
            double step, std::size_t edges, double share)
        : tessellator_(tessellator), mesh_(mesh), left_(left), bottom_(bottom), step_(step) {
        constexpr int kFew = 100;
        const int needed = static_cast<int>(std::min(std::ceil(size / step), 256.0));
        constexpr double kFewest = 8.0;
        const double whole = std::max(edges < 2 * kFew ? kFew : 2 * kFew, needed);
        rows_ = static_cast<int>(std::max(kFewest, share * whole));
        height_ = size / rows_;
        step_ = std::max(step_, height_);
    }

    void run(const FlatRing& ring) {
        const auto end = [&](std::size_t i) -> const Flat& { return ring[i + 1 == ring.size() ? 0 : i + 1]; };
        // Each edge is looked at in the rows that it reaches only.
        std::vector<std::vector<std::uint32_t>> beginning(static_cast<std::size_t>(rows_));
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const double row = std::floor((std::min(ring[i].y, end(i).y) - bottom_) / height_ - 0.5);
            beginning[static_cast<std::size_t>(std::clamp(row, 0.0, rows_ - 1.0))].push_back(
                static_cast<std::uint32_t>(i));
        }
        std::vector<std::uint32_t> reached;
        std::vector<Spot> spots;
        for (int row = 0; row < rows_; ++row) {
            const double y = bottom_ + height_ * (row + 0.5);
            const auto& fresh = beginning[static_cast<std::size_t>(row)];
            reached.insert(reached.end(), fresh.begin(), fresh.end());
            spots.clear();
            std::erase_if(reached, [&](std::uint32_t i) {
                const Flat& a = ring[i];
                const Flat& b = end(i);
                if (std::max(a.y, b.y) <= y) return true;
                if ((a.y <= y) == (b.y <= y)) return false;
                const double share = (y - a.y) / (b.y - a.y);
                spots.push_back({a.x + (b.x - a.x) * share, a.altitude + (b.altitude - a.altitude) * share});
                return false;
            });
            std::ranges::sort(spots, {}, &Spot::x);
            if (spots.size() > static_cast<std::size_t>(rows_)) blur(spots);
            for (std::size_t i = 0; i + 1 < spots.size(); i += 2) addRun(spots[i], spots[i + 1], row);
        }
    }

  private:
    struct Spot {
        double x = 0.0;
        double altitude = 0.0;
    };

    /// More than can be told apart: what the middles of the columns say.
    void blur(std::vector<Spot>& spots) const {
        std::vector<Spot> kept;
        std::size_t next = 0;
        bool inside = false;
        for (int column = 0; column < rows_; ++column) {
            const double middle = left_ + height_ * (column + 0.5);
            while (next < spots.size() && spots[next].x <= middle) ++next;
            if ((next % 2 == 1) == inside) continue;
            inside = !inside;
            kept.push_back({middle - 0.5 * height_, spots[std::min(next, spots.size() - 1)].altitude});
        }
        if (inside) kept.push_back({left_ + height_ * rows_, spots.back().altitude});
        spots = std::move(kept);
    }

    void addRun(const Spot& from, const Spot& to, int row) {
        const double low = bottom_ + height_ * row;
        const double high = bottom_ + height_ * (row + 1);
        const int pieces = std::max(1, static_cast<int>(std::ceil((to.x - from.x) / step_)));
        const auto base = static_cast<std::uint32_t>(mesh_.vertices.size());
        for (int i = 0; i <= pieces; ++i) {
            const double share = static_cast<double>(i) / pieces;
            const double x = from.x + (to.x - from.x) * share;
            const double altitude = from.altitude + (to.altitude - from.altitude) * share;
            tessellator_.append({x, low, altitude});
            tessellator_.append({x, high, altitude});
        }
        for (std::uint32_t a = base; a + 3 < base + 2 * static_cast<std::uint32_t>(pieces) + 2; a += 2)
            mesh_.triangles.insert(mesh_.triangles.end(), {a, a + 2, a + 3, a, a + 3, a + 1});
    }

    Tessellator& tessellator_;
    DrawList::Mesh& mesh_;
    double left_;
    double bottom_;
    double step_;
    double height_ = 0.0;
    int rows_ = 0;
};

}  // namespace

DrawList::Mesh fillRing(const GeodeticPath& ring, Rgba color, const std::optional<halCore::Vec3>& middle,
                        double tolerance, double share) {
    DrawList::Mesh mesh;
    mesh.color = color;
    if (ring.size() < 3) return mesh;
    std::vector<Ecef> normals(ring.size());
    std::ranges::transform(ring, normals.begin(), normalOf);
    const Plane plane(middle ? normalOf(*middle) : middleOf(normals));
    FlatRing flat;
    flat.reserve(ring.size());
    constexpr double kHuge = std::numeric_limits<double>::max();
    double low[2] = {kHuge, kHuge};
    double high[2] = {-kHuge, -kHuge};
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Flat spot = plane.flat(normals[i], ring[i].alt());
        if (!flat.empty() && std::abs(spot.x - flat.back().x) < 1e-12 &&
            std::abs(spot.y - flat.back().y) < 1e-12)
            continue;
        flat.push_back(spot);
        low[0] = std::min(low[0], spot.x);
        low[1] = std::min(low[1], spot.y);
        high[0] = std::max(high[0], spot.x);
        high[1] = std::max(high[1], spot.y);
    }
    const double size = std::max(high[0] - low[0], high[1] - low[1]);
    if (flat.size() < 3 || !(size > 0.0)) return mesh;

    // Cells of a quarter of a kilometre to 150 km: flat enough for the picture, few enough for thousands
    // of areas.
    const double fine = std::clamp(size / 16.0, 250.0 / wgs84::a, 150.0e3 / wgs84::a);
    const double coarse = std::min(std::sqrt(8.0 * tolerance / wgs84::a), 0.15);
    constexpr int kMostLevels = 8;
    const int levels =
        std::clamp(static_cast<int>(std::ceil(std::log2(size / std::max(fine, coarse)))), 0, kMostLevels);
    Tessellator tessellator(plane, mesh);
    // A little larger than the ring: none of its edges may lie on the border of the grid.
    const double left = low[0] - 0.001 * size;
    const double bottom = low[1] - 0.001 * size;
    mesh.tangled = Tangle(flat).isThere();
    if (mesh.tangled)
        RowFill(tessellator, mesh, left, bottom, 1.002 * size, std::ldexp(1.002 * size, -levels), flat.size(),
                share)
            .run(flat);
    else
        Cutter(tessellator, mesh, left, bottom, 1.002 * size, levels).run(flat);
    return mesh;
}

}  // namespace sandbox
