#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "globe/DrawList.h"

namespace halCore::ZEL {
class ZelShape;
}

namespace sandbox {

/// Of what a shape could wish for itself, 0 to 1: the rows in which an area is filled whose line crosses
/// itself hundreds of times, and the pieces between the points of a line. With no rows, what is made of
/// points and has an outline is that outline only; with no pieces it is straight between its points.
struct DetailShares {
    double rows = 1.0;
    double pieces = 1.0;
};

/// What a shape's geometry has of both.
struct DetailCount {
    std::size_t triangles = 0;  ///< of areas that are filled in rows
    std::size_t pieces = 0;     ///< of its lines, without one for each of its points

    DetailCount& operator+=(const DetailCount& more) {
        triangles += more.triangles;
        pieces += more.pieces;
        return *this;
    }
};

/// Of a shape for which these meshes and lines were made.
DetailCount detailOf(const halCore::ZEL::ZelShape& shape, std::span<const DrawList::Mesh> meshes,
                     std::span<const DrawList::Line> lines);

/// How finely shapes are worked out, of all that are shown: the first ones as finely as each could wish,
/// others the less finely the more there is before them, so that very many cost little more than many.
class DetailBudget {
  public:
    /// \param pieces that all lines have before any shares
    explicit DetailBudget(double pieces = 5e5) : free_(pieces) {}

    /// Of the next shape.
    DetailShares shares() const {
        const double pieces = static_cast<double>(spent_.pieces) - free_;
        return {std::exp2(-static_cast<double>(spent_.triangles) / kHalved),
                std::exp2(-2.0 * std::max(pieces, 0.0) / free_)};
    }
    void spend(const DetailCount& made) { spent_ += made; }
    /// Of what is not shown any more.
    void giveBack(const DetailCount& made) {
        spent_.triangles -= made.triangles;
        spent_.pieces -= made.pieces;
    }

  private:
    /// With so many triangles the share is a half. A single area has some thousands.
    static constexpr double kHalved = 200000.0;

    double free_;
    DetailCount spent_;
};

}  // namespace sandbox
