#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "tools/ViewProjection.h"

namespace OverlayEditor {

/// Points and straight lines as they lie in one view, found by pixel without a look at all of them. What the
/// earth hides and what is outside of the view is not in it.
class SnapGrid {
  public:
    /// What a point or a line is to the caller.
    using Id = std::uint32_t;
    /// Whether it counts.
    using Filter = std::function<bool(Id)>;

    /// Empties it.
    /// \param reach how far from a point or line it is found, in device pixels
    void begin(const ViewProjection& view, double reach);
    void addPoint(const halCore::Ecef& place, Id id);
    void addLine(const halCore::Ecef& from, const halCore::Ecef& to, Id id);
    /// To be called once all is added.
    void finish();
    /// A point that was added, or left out, is elsewhere from now on. Points have been added in the order of
    /// their ids. \param view that of the grid \return false after too many: the grid is to be made anew
    bool movePoint(const ViewProjection& view, const halCore::Ecef& place, Id id);

    /// Of those within reach the one with the lowest number.
    std::optional<Id> firstPoint(const Pixel& cursor) const;
    std::optional<Id> nearestPoint(const Pixel& cursor, const Filter& filter) const;
    struct OnLine {
        Id id = 0;
        /// From 0 at the line's start to 1 at its end, on the screen.
        double share = 0.0;
    };
    std::optional<OnLine> nearestLine(const Pixel& cursor, const Filter& filter) const;

  private:
    struct Point {
        Pixel pixel;
        Id id;
    };
    struct Line {
        Pixel from, to;
        Id id;
    };
    /// Numbers of points or lines by cell.
    struct Cells {
        std::vector<std::pair<std::uint32_t, std::uint32_t>> entries;  ///< cell and number, while adding
        std::vector<std::uint32_t> starts;                             ///< of each cell in numbers
        std::vector<std::uint32_t> numbers;
        void sort(std::size_t cells);
    };

    std::optional<std::uint32_t> cellOf_(const Pixel& pixel) const;
    template <typename Visit>
    void pointsAround_(const Pixel& cursor, Visit visit) const;
    /// Calls `visit` with the number of everything in the cells about a pixel; some come more than once.
    template <typename Visit>
    void around_(const Cells& cells, const Pixel& cursor, Visit visit) const;

    const ViewProjection* view_ = nullptr;
    double reach_ = 0.0;
    double cell_ = 1.0;
    std::uint32_t columns_ = 0;
    std::uint32_t rows_ = 0;
    std::vector<Point> points_;
    /// Those that have moved: what they were has no pixel any more.
    std::vector<Point> moved_;
    std::vector<Line> lines_;
    Cells pointCells_;
    Cells lineCells_;
};

}  // namespace OverlayEditor
