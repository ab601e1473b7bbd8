#include "globe/SurfaceFill.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <limits>
#include <utility>

#include <GL/glu.h>

#include "geo/Ecef.h"
#include "geo/SinCos.h"
#include "geo/Wgs84.h"
#include "globe/FlatRing.h"
#include "globe/RingTangle.h"

namespace sandbox {

using halCore::Ecef;
using halCore::SinCos;
namespace wgs84 = halCore::wgs84;

namespace {

constexpr std::size_t kVerticesInAUnit = 30;

Ecef normalOf(const halCore::Vec3& p) {
    const SinCos lat(p.lat());
    const SinCos lon(p.lon());
    return {lat.cos * lon.cos, lat.cos * lon.sin, lat.sin};
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
        const Ecef n = (east_ * p.x + north_ * p.y + up_ * (1.0 - square)) * (1.0 / (1.0 + square));
        // As toEcef() does, of the sines and cosines that are known.
        const double primeVertical = wgs84::a / std::sqrt(1.0 - wgs84::e2 * n.z * n.z);
        const double out = primeVertical + p.altitude;
        return {out * n.x, out * n.y, (out - primeVertical * wgs84::e2) * n.z};
    }

  private:
    Ecef up_;
    Ecef east_;
    Ecef north_;
};

bool isLongerAlongX(const FlatRing& ring) {
    double longer = 0.0;
    for (std::size_t i = 1; i < ring.size(); ++i)
        longer += std::abs(ring[i].x - ring[i - 1].x) - std::abs(ring[i].y - ring[i - 1].y);
    return longer > 0.0;
}

/// GLU's tessellator by the even-odd rule, giving plain triangles. Its time grows with the square of the
/// edges that lie side by side where it sweeps: it is made to sweep along the axis across which they are
/// shorter.
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
        corners_.clear();
        const std::size_t before = mesh_.triangles.size();
        gluTessBeginPolygon(tess_, this);
        gluTessBeginContour(tess_);
        turned_ = isLongerAlongX(ring);
        for (const Flat& p : ring) {
            corners_.push_back({{p.x, p.y, 0.0}, p});
            Corner& corner = corners_.back();
            if (turned_) corner.given = {p.y, -p.x, 0.0};
            gluTessVertex(tess_, corner.given.data(), &corner);
        }
        gluTessEndContour(tess_);
        gluTessEndPolygon(tess_);
        mesh_.triangles.resize(before + (mesh_.triangles.size() - before) / 3 * 3);
    }
    std::uint32_t append(const Flat& p) {
        mesh_.vertices.push_back(plane_.position(p));
        return static_cast<std::uint32_t>(mesh_.vertices.size() - 1);
    }

  private:
    /// Of a triangle, perhaps: only then it is a vertex.
    struct Corner {
        std::array<double, 3> given;
        Flat place;
        std::optional<std::uint32_t> vertex{};
    };

    static void vertex(void* data, void* self) {
        auto& tess = *static_cast<Tessellator*>(self);
        auto& corner = *static_cast<Corner*>(data);
        if (!corner.vertex) corner.vertex = tess.append(corner.place);
        tess.mesh_.triangles.push_back(*corner.vertex);
    }
    static void combine(const GLdouble given[3], void* const data[4], const GLfloat weight[4], void** out,
                        void* self) {
        auto& tess = *static_cast<Tessellator*>(self);
        Flat p{given[0], given[1], 0.0};
        if (tess.turned_) p = {-given[1], given[0], 0.0};
        for (int i = 0; i < 4; ++i)
            if (weight[i] > 0.0F)
                p.altitude += double{weight[i]} * static_cast<Corner*>(data[i])->place.altitude;
        tess.corners_.push_back({{}, p});
        *out = &tess.corners_.back();
    }
    static void edgeFlag(GLboolean, void*) {}

    const Plane& plane_;
    DrawList::Mesh& mesh_;
    GLUtesselator* tess_;
    bool turned_ = false;         // by a quarter: what GLU was given
    std::deque<Corner> corners_;  // GLU keeps the addresses
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

    Work run(const FlatRing& ring) {
        constexpr std::size_t kInAUnit = 100;
        // Each edge is looked at in the rows that it reaches only.
        std::vector<std::vector<std::uint32_t>> beginning(static_cast<std::size_t>(rows_));
        for (Pieces some(ring.size(), kInAUnit); some.next(); co_yield some.units())
            for (std::size_t i = some.first; i < some.last; ++i)
                beginning[firstRow(ring, i)].push_back(static_cast<std::uint32_t>(i));
        std::vector<std::uint32_t> reached;
        for (int row = 0; row < rows_; ++row) {
            const auto& fresh = beginning[static_cast<std::size_t>(row)];
            reached.insert(reached.end(), fresh.begin(), fresh.end());
            spots_.clear();
            std::size_t kept = 0;
            for (Pieces some(reached.size(), kInAUnit); some.next(); co_yield some.units())
                kept = cross(ring, reached, some, kept, bottom_ + height_ * (row + 0.5));
            reached.resize(kept);
            if (spots_.size() > static_cast<std::size_t>(rows_)) {
                columns_.assign(static_cast<std::size_t>(rows_) + 1, {});
                for (Pieces some(spots_.size(), kInAUnit); some.next(); co_yield some.units()) count(some);
                blur();
            } else {
                std::ranges::sort(spots_, {}, &Spot::x);
            }
            const std::size_t before = mesh_.vertices.size();
            for (std::size_t i = 0; i + 1 < spots_.size(); i += 2) addRun(spots_[i], spots_[i + 1], row);
            co_yield 1 + (mesh_.vertices.size() - before) / kVerticesInAUnit;
        }
    }

  private:
    struct Spot {
        double x = 0.0;
        double altitude = 0.0;
    };
    struct Column {
        bool turns = false;  ///< from outside to inside, or back
        double altitude = 0.0;
    };

    static const Flat& end(const FlatRing& ring, std::size_t edge) {
        return ring[edge + 1 == ring.size() ? 0 : edge + 1];
    }
    std::size_t firstRow(const FlatRing& ring, std::size_t edge) const {
        const double low = std::min(ring[edge].y, end(ring, edge).y);
        return static_cast<std::size_t>(
            std::clamp(std::floor((low - bottom_) / height_ - 0.5), 0.0, rows_ - 1.0));
    }
    /// Notes where some of the edges cross the middle of a row, and keeps those that may cross the next ones.
    std::size_t cross(const FlatRing& ring, std::vector<std::uint32_t>& reached, const Pieces& some,
                      std::size_t kept, double y) {
        for (std::size_t i = some.first; i < some.last; ++i) {
            const std::uint32_t edge = reached[i];
            const Flat& a = ring[edge];
            const Flat& b = end(ring, edge);
            if (std::max(a.y, b.y) <= y) continue;
            reached[kept++] = edge;
            if ((a.y <= y) == (b.y <= y)) continue;
            const double share = (y - a.y) / (b.y - a.y);
            spots_.push_back({a.x + (b.x - a.x) * share, a.altitude + (b.altitude - a.altitude) * share});
        }
        return kept;
    }

    /// More than can be told apart: what the middles of the columns say.
    void count(const Pieces& some) {
        for (std::size_t i = some.first; i < some.last; ++i) {
            const Spot& spot = spots_[i];
            const double column = std::ceil((spot.x - left_) / height_ - 0.5);
            Column& first =
                columns_[static_cast<std::size_t>(std::clamp(column, 0.0, static_cast<double>(rows_)))];
            first.turns = !first.turns;
            first.altitude = spot.altitude;
        }
    }
    void blur() {
        const double altitude = spots_.back().altitude;
        spots_.clear();
        for (int column = 0; column < rows_; ++column)
            if (const Column& here = columns_[static_cast<std::size_t>(column)]; here.turns)
                spots_.push_back({left_ + height_ * column, here.altitude});
        if (spots_.size() % 2 == 1) spots_.push_back({left_ + height_ * rows_, altitude});
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
    std::vector<Spot> spots_;
    std::vector<Column> columns_;
};

/// Cuts a ring along a square grid of 2^levels cells a side, so that triangles are small enough to follow
/// the surface: whole cells become two triangles, cells that the ring runs through are tessellated.
/// Neighbouring cells share their corners and the points where the ring crosses, to the last bit. Only where
/// too many points for the tessellator lie in a cell it is cut further, and at last filled in rows.
class Cutter {
  public:
    /// Of a ring in a cell: they take the tessellator some milliseconds at most.
    static constexpr std::size_t kMostPoints = 1500;

    Cutter(Tessellator& tessellator, DrawList::Mesh& mesh, double left, double bottom, double size,
           int levels)
        : tessellator_(tessellator),
          mesh_(mesh),
          left_(left),
          bottom_(bottom),
          step_(std::ldexp(size, -levels - kFurther)),
          whole_(kCell << levels) {}

    Work run(FlatRing all) {
        constexpr std::size_t kInAUnit = 50;
        std::vector<Part> parts;
        parts.push_back({std::move(all), {0, 0, whole_, whole_}});
        while (!parts.empty()) {
            const Part part = std::move(parts.back());
            parts.pop_back();
            const FlatRing& ring = part.ring;
            const Rectangle& place = part.place;
            if (ring.size() < 3) continue;
            bool outside = true;
            double area = 0.0;
            for (Pieces some(ring.size(), kInAUnit); outside && some.next(); co_yield some.units())
                outside = keepsToBorder(ring, some, place, area);
            if (outside) {
                if (turnsAround(place, area) % 2 == 0) continue;
                const double altitude = altitudeOf(ring);
                const auto base = static_cast<std::uint32_t>(mesh_.vertices.size());
                for (int row = 0; row <= cellsOf(place.rows); ++row)
                    co_yield addRow(place, row, base, altitude);
            } else if (std::max(place.columns, place.rows) <= kCell && ring.size() <= kMostPoints) {
                tessellator_.add(ring);
                co_yield 1 + ring.size() * kUnitsOfAPoint;
            } else if (place.rows == 1) {
                RowFill rows(tessellator_, mesh_, x(place.column), y(place.row), step_, step_, ring.size(),
                             0.0);
                co_await rows.run(ring);
            } else {
                Part low{{}, place};
                Part high{{}, place};
                low.ring.reserve(ring.size() / 2 + 4);
                high.ring.reserve(ring.size() / 2 + 4);
                const bool inGrid = std::max(place.columns, place.rows) > kCell;
                const bool columns = inGrid ? place.columns >= place.rows
                                            : place.columns > 1 && (place.rows == 1 || !isLongerAlongX(ring));
                if (columns) {
                    low.place.columns = high.place.columns = place.columns / 2;
                    high.place.column += low.place.columns;
                    for (Pieces some(ring.size(), kInAUnit); some.next(); co_yield some.units())
                        cut<&Flat::x, &Flat::y>(ring, some, x(high.place.column), low, high);
                } else {
                    low.place.rows = high.place.rows = place.rows / 2;
                    high.place.row += low.place.rows;
                    for (Pieces some(ring.size(), kInAUnit); some.next(); co_yield some.units())
                        cut<&Flat::y, &Flat::x>(ring, some, y(high.place.row), low, high);
                }
                parts.push_back(std::move(high));
                parts.push_back(std::move(low));
            }
        }
    }

  private:
    /// How often a cell can be halved.
    static constexpr int kFurther = 16;
    static constexpr int kCell = 1 << kFurther;
    static constexpr std::size_t kUnitsOfAPoint = 2;

    /// In steps; a cell has kCell of them a side.
    struct Rectangle {
        int column;
        int row;
        int columns;
        int rows;
    };
    struct Border {
        double low[2];
        double high[2];

        /// Whether an edge lies on the left or right side.
        bool hasX(const Flat& a, const Flat& b) const {
            return a.x == b.x && (a.x == low[0] || a.x == high[0]);
        }
        /// On the lower or upper side.
        bool hasY(const Flat& a, const Flat& b) const {
            return a.y == b.y && (a.y == low[1] || a.y == high[1]);
        }
        /// Appends a point to a ring that may go to and fro along a side, but does not need to.
        void add(const Flat& p, FlatRing& ring) const {
            if (const std::size_t size = ring.size(); size > 1) {
                const Flat& a = ring[size - 2];
                Flat& b = ring[size - 1];
                if ((hasX(b, p) && hasX(a, b)) || (hasY(b, p) && hasY(a, b))) {
                    b = p;
                    return;
                }
            }
            ring.push_back(p);
        }
    };
    struct Part {
        FlatRing ring;
        Rectangle place;
    };

    double x(int column) const { return left_ + step_ * column; }
    double y(int row) const { return bottom_ + step_ * row; }
    static int cellsOf(int steps) { return std::max(1, steps / kCell); }

    /// Puts some points of a ring, and those where it crosses a line across the axis `A`, into the rings on
    /// both sides (Sutherland and Hodgman). What was in several pieces stays one ring, with edges along the
    /// line that the even-odd rule cancels.
    template <double Flat::*A, double Flat::*B>
    void cut(const FlatRing& ring, const Pieces& some, double line, Part& low, Part& high) const {
        const Border belowLine = borderOf(low.place);
        const Border aboveLine = borderOf(high.place);
        for (std::size_t i = some.first; i < some.last; ++i) {
            const Flat& a = ring[i];
            const Flat& b = ring[i + 1 == ring.size() ? 0 : i + 1];
            if (a.*A <= line) belowLine.add(a, low.ring);
            if (a.*A >= line) aboveLine.add(a, high.ring);
            if ((a.*A < line && b.*A > line) || (a.*A > line && b.*A < line)) {
                const double share = (line - a.*A) / (b.*A - a.*A);
                Flat crossing;
                crossing.*A = line;
                crossing.*B = a.*B + (b.*B - a.*B) * share;
                crossing.altitude = a.altitude + (b.altitude - a.altitude) * share;
                belowLine.add(crossing, low.ring);
                aboveLine.add(crossing, high.ring);
            }
        }
    }
    Border borderOf(const Rectangle& place) const {
        return {{x(place.column), y(place.row)},
                {x(place.column + place.columns), y(place.row + place.rows)}};
    }

    /// Whether some edges of a ring keep to the border of a rectangle. Adds up the area that the ring runs
    /// around then, twice.
    bool keepsToBorder(const FlatRing& ring, const Pieces& some, const Rectangle& place, double& area) const {
        const Border border = borderOf(place);
        for (std::size_t i = some.first; i < some.last; ++i) {
            const Flat& a = ring[i];
            const Flat& b = ring[i + 1 == ring.size() ? 0 : i + 1];
            if (!border.hasX(a, b) && !border.hasY(a, b)) return false;
            area +=
                (a.x - border.low[0]) * (b.y - border.low[1]) - (b.x - border.low[0]) * (a.y - border.low[1]);
        }
        return true;
    }
    int turnsAround(const Rectangle& place, double area) const {
        const double whole = 2.0 * (step_ * place.columns) * (step_ * place.rows);
        return static_cast<int>(std::lround(std::abs(area) / whole));
    }
    /// Inside, the altitude is what the border has on average: areas are level, or nearly so.
    static double altitudeOf(const FlatRing& border) {
        double sum = 0.0;
        for (const Flat& p : border) sum += p.altitude;
        return sum / static_cast<double>(border.size());
    }

    /// Adds a row of the corners of whole cells, and the triangles up to the row before it.
    /// \return units of work
    std::size_t addRow(const Rectangle& place, int row, std::uint32_t base, double altitude) {
        const int columns = cellsOf(place.columns);
        const double bottom = y(place.row + place.rows / cellsOf(place.rows) * row);
        for (int column = 0; column <= columns; ++column)
            tessellator_.append({x(place.column + place.columns / columns * column), bottom, altitude});
        const auto side = static_cast<std::uint32_t>(columns) + 1;
        for (std::uint32_t column = 0; row > 0 && column + 1 < side; ++column) {
            const std::uint32_t a = base + (static_cast<std::uint32_t>(row) - 1) * side + column;
            mesh_.triangles.insert(mesh_.triangles.end(),
                                   {a, a + 1, a + side + 1, a, a + side + 1, a + side});
        }
        return side / kVerticesInAUnit;
    }

    Tessellator& tessellator_;
    DrawList::Mesh& mesh_;
    double left_;
    double bottom_;
    double step_;
    int whole_;
};

}  // namespace

Work fillRing(const GeodeticPath& ring, Rgba color, std::optional<halCore::Vec3> middle, double tolerance,
              double share, DrawList::Mesh& mesh) {
    constexpr std::size_t kNormalsInAUnit = 15;
    constexpr std::size_t kInAUnit = 100;
    mesh.color = color;
    if (ring.size() < 3) co_return;
    std::vector<Ecef> normals;
    normals.reserve(ring.size());
    for (Pieces some(ring.size(), kNormalsInAUnit); some.next(); co_yield some.units())
        for (std::size_t i = some.first; i < some.last; ++i) normals.push_back(normalOf(ring[i]));
    Ecef center = middle ? normalOf(*middle) : Ecef();
    if (!middle) {
        // Weighted with the length of the pieces: points crowd where curves are tight.
        for (Pieces some(ring.size(), kInAUnit); some.next(); co_yield some.units())
            for (std::size_t i = some.first; i < some.last; ++i) {
                const Ecef& a = normals[i];
                const Ecef& b = normals[i + 1 == normals.size() ? 0 : i + 1];
                center = center + (a + b) * length(b - a);
            }
        center = length(center) > 0.0 ? normalized(center) : normals.front();
    }
    const Plane plane(center);
    FlatRing flat;
    flat.reserve(ring.size());
    constexpr double kHuge = std::numeric_limits<double>::max();
    double low[2] = {kHuge, kHuge};
    double high[2] = {-kHuge, -kHuge};
    double way = 0.0;
    for (Pieces some(ring.size(), kInAUnit); some.next(); co_yield some.units())
        for (std::size_t i = some.first; i < some.last; ++i) {
            const Flat spot = plane.flat(normals[i], ring[i].alt());
            if (!flat.empty() && std::abs(spot.x - flat.back().x) < 1e-12 &&
                std::abs(spot.y - flat.back().y) < 1e-12)
                continue;
            if (!flat.empty()) way += std::abs(spot.x - flat.back().x) + std::abs(spot.y - flat.back().y);
            flat.push_back(spot);
            low[0] = std::min(low[0], spot.x);
            low[1] = std::min(low[1], spot.y);
            high[0] = std::max(high[0], spot.x);
            high[1] = std::max(high[1], spot.y);
        }
    normals = {};
    const double size = std::max(high[0] - low[0], high[1] - low[1]);
    if (flat.size() < 3 || !(size > 0.0)) co_return;

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
    co_await findTangle(flat, mesh.tangled);
    if (mesh.tangled) {
        RowFill rows(tessellator, mesh, left, bottom, 1.002 * size, std::ldexp(1.002 * size, -levels),
                     flat.size(), share);
        co_await rows.run(flat);
        // To free millions of points takes time, too.
        flat = {};
        co_yield 1;
    } else {
        // Cells for the tessellator, but few enough that what runs around each of them, again and again where
        // the ring is a spiral, is not much more than the ring itself.
        const double count = static_cast<double>(flat.size());
        const double few = std::log2(count / static_cast<double>(Cutter::kMostPoints)) + 1.0;
        const double most = 0.5 * std::log2(std::max(1.0, 4.0 * count * size / way));
        const int spread = static_cast<int>(std::min({few, most, double{kMostLevels}}));
        Cutter cutter(tessellator, mesh, left, bottom, 1.002 * size, std::max(levels, spread));
        co_await cutter.run(std::move(flat));
    }
}

}  // namespace sandbox
