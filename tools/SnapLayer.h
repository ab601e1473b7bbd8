#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/SnapGrid.h"
#include "tools/SnapSource.h"

namespace OverlayEditor {

/// The points and sides of some shapes, and where they lie in the view that was asked about last.
class SnapLayer {
  public:
    void clear();
    /// The points of a shape that is drawn, and the sides of one that has some. Its name is kept, and its
    /// address as a mere mark.
    void add(const Shape& shape);
    void addPoint(const halCore::Vec3& place, std::string name);

    /// A point of the layer, or a place on a side.
    struct Hit {
        Snap snap;
        /// Device pixels from the cursor.
        double away = 0.0;
        /// Of the points, in the order of adding.
        std::size_t point = 0;
    };
    std::optional<Hit> nearestPoint(const SnapSource::Query& query);
    std::optional<Hit> nearestSide(const SnapSource::Query& query);

  private:
    /// A shape, or what there is a single point of.
    struct Owner {
        const Shape* shape = nullptr;
        std::string name;
        /// The number of its first point.
        std::size_t first = 0;
        std::size_t count = 0;
    };
    struct Point {
        std::uint32_t owner;
        halCore::Vec3 place;
        halCore::Ecef ecef;
    };
    /// From one point to another.
    struct Side {
        std::uint32_t from;
        std::uint32_t to;
    };
    /// So short that it is straight.
    struct Piece {
        std::uint32_t side;
        double start, end;  ///< shares of the side
        halCore::Ecef from, to;
    };

    void addSides_(std::size_t first, bool closed);
    void addSide_(std::size_t from, std::size_t to);
    /// Makes the grid that of a view.
    void project_(const ViewProjection& view);
    std::string nameOf_(std::size_t point) const;
    bool counts_(const SnapSource::Query& query, std::size_t point) const;

    std::vector<Owner> owners_;
    std::vector<Point> points_;
    std::vector<Side> sides_;
    std::vector<Piece> pieces_;
    SnapGrid grid_;
    /// None while the grid is not made.
    std::optional<ViewProjection> view_;
};

}  // namespace OverlayEditor
