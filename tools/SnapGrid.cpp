#include "tools/SnapGrid.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace OverlayEditor {

using halCore::Ecef;

namespace {

/// More pieces of lines than that are no lines that one could tell apart.
constexpr std::size_t kMostPieces = 2'000'000;
/// So many points that have moved are looked at one by one.
constexpr std::size_t kMostMoved = 16;
constexpr Pixel kNowhere{std::numeric_limits<double>::quiet_NaN(), 0.0};

/// From 0 to 1, where a straight line comes closest to a place.
double closest(const Pixel& from, const Pixel& to, const Pixel& at) {
    const double x = to.x - from.x;
    const double y = to.y - from.y;
    const double square = x * x + y * y;
    if (square == 0.0) return 0.0;
    return std::clamp(((at.x - from.x) * x + (at.y - from.y) * y) / square, 0.0, 1.0);
}

Pixel between(const Pixel& from, const Pixel& to, double share) {
    return {std::lerp(from.x, to.x, share), std::lerp(from.y, to.y, share)};
}

}  // namespace

void SnapGrid::begin(const ViewProjection& view, double reach) {
    view_ = &view;
    reach_ = reach;
    cell_ = 2.0 * reach;
    columns_ = static_cast<std::uint32_t>(std::ceil(view.width() / cell_)) + 1;
    rows_ = static_cast<std::uint32_t>(std::ceil(view.height() / cell_)) + 1;
    points_.clear();
    moved_.clear();
    lines_.clear();
    pointCells_.entries.clear();
    lineCells_.entries.clear();
}

std::optional<std::uint32_t> SnapGrid::cellOf_(const Pixel& pixel) const {
    // A margin of half a cell: what is just outside can be reached from inside.
    const double x = pixel.x / cell_ + 0.5;
    const double y = pixel.y / cell_ + 0.5;
    if (!(x >= 0.0 && y >= 0.0 && x < columns_ && y < rows_)) return std::nullopt;
    return static_cast<std::uint32_t>(y) * columns_ + static_cast<std::uint32_t>(x);
}

void SnapGrid::addPoint(const Ecef& place, Id id) {
    const auto pixel = view_->pixel(place);
    const auto cell = pixel ? cellOf_(*pixel) : std::nullopt;
    if (!cell || view_->isHiddenByEarth(place)) return;
    pointCells_.entries.emplace_back(*cell, static_cast<std::uint32_t>(points_.size()));
    points_.push_back({*pixel, id});
}

bool SnapGrid::movePoint(const ViewProjection& view, const Ecef& place, Id id) {
    const auto known = std::ranges::lower_bound(points_, id, {}, &Point::id);
    if (known != points_.end() && known->id == id) known->pixel = kNowhere;
    std::erase_if(moved_, [id](const Point& point) { return point.id == id; });
    const auto pixel = view.pixel(place);
    if (pixel && cellOf_(*pixel) && !view.isHiddenByEarth(place)) moved_.push_back({*pixel, id});
    return moved_.size() <= kMostMoved;
}

void SnapGrid::addLine(const Ecef& from, const Ecef& to, Id id) {
    const auto a = view_->pixel(from);
    const auto b = view_->pixel(to);
    if (!a || !b || lineCells_.entries.size() > kMostPieces) return;
    const double width = view_->width();
    const double height = view_->height();
    if (std::max(a->x, b->x) < -reach_ || std::min(a->x, b->x) > width + reach_ ||
        std::max(a->y, b->y) < -reach_ || std::min(a->y, b->y) > height + reach_)
        return;
    if (view_->isHiddenByEarth(from) && view_->isHiddenByEarth(to)) return;
    // Only the part that is in the view; it may be one millionth of the line.
    double first = 0.0;
    double last = 1.0;
    const auto cut = [&](double start, double end, double low, double high) {
        if (start == end) return;
        const double t0 = (low - start) / (end - start);
        const double t1 = (high - start) / (end - start);
        first = std::max(first, std::min(t0, t1));
        last = std::min(last, std::max(t0, t1));
    };
    cut(a->x, b->x, -reach_, width + reach_);
    cut(a->y, b->y, -reach_, height + reach_);
    if (first > last) return;
    const double length = distance(*a, *b) * (last - first);
    const int steps = static_cast<int>(length / (0.5 * cell_)) + 1;
    const auto number = static_cast<std::uint32_t>(lines_.size());
    std::optional<std::uint32_t> before;
    for (int i = 0; i <= steps; ++i) {
        const auto cell = cellOf_(between(*a, *b, std::lerp(first, last, static_cast<double>(i) / steps)));
        if (cell && cell != before) lineCells_.entries.emplace_back(*cell, number);
        before = cell;
    }
    lines_.push_back({*a, *b, id});
}

void SnapGrid::Cells::sort(std::size_t cells) {
    starts.assign(cells + 1, 0);
    for (const auto& [cell, number] : entries) ++starts[cell + 1];
    for (std::size_t i = 0; i < cells; ++i) starts[i + 1] += starts[i];
    numbers.resize(entries.size());
    std::vector<std::uint32_t> next(starts.begin(), starts.end() - 1);
    for (const auto& [cell, number] : entries) numbers[next[cell]++] = number;
}

void SnapGrid::finish() {
    const std::size_t cells = std::size_t{columns_} * rows_;
    pointCells_.sort(cells);
    lineCells_.sort(cells);
    view_ = nullptr;
}

template <typename Visit>
void SnapGrid::around_(const Cells& cells, const Pixel& cursor, Visit visit) const {
    const auto middle = cellOf_(cursor);
    if (!middle || cells.starts.empty()) return;
    const std::uint32_t column = *middle % columns_;
    const std::uint32_t row = *middle / columns_;
    for (std::uint32_t y = row > 0 ? row - 1 : 0; y <= std::min(row + 1, rows_ - 1); ++y)
        for (std::uint32_t x = column > 0 ? column - 1 : 0; x <= std::min(column + 1, columns_ - 1); ++x) {
            const std::size_t cell = std::size_t{y} * columns_ + x;
            for (std::uint32_t i = cells.starts[cell]; i < cells.starts[cell + 1]; ++i)
                visit(cells.numbers[i]);
        }
}

template <typename Visit>
void SnapGrid::pointsAround_(const Pixel& cursor, Visit visit) const {
    around_(pointCells_, cursor, [&](std::uint32_t number) { visit(points_[number]); });
    for (const Point& point : moved_) visit(point);
}

std::optional<SnapGrid::Id> SnapGrid::firstPoint(const Pixel& cursor) const {
    std::optional<Id> first;
    pointsAround_(cursor, [&](const Point& point) {
        if (distance(point.pixel, cursor) <= reach_ && (!first || point.id < *first)) first = point.id;
    });
    return first;
}

std::optional<SnapGrid::Id> SnapGrid::nearestPoint(const Pixel& cursor, const Filter& filter) const {
    std::optional<Id> nearest;
    double least = reach_;
    pointsAround_(cursor, [&](const Point& point) {
        const double away = distance(point.pixel, cursor);
        // Of equal ones the first.
        if (!(away <= least) || (nearest && (away == least && *nearest < point.id)) || !filter(point.id))
            return;
        least = away;
        nearest = point.id;
    });
    return nearest;
}

std::optional<SnapGrid::OnLine> SnapGrid::nearestLine(const Pixel& cursor, const Filter& filter) const {
    std::optional<OnLine> nearest;
    double least = reach_;
    around_(lineCells_, cursor, [&](std::uint32_t number) {
        const Line& line = lines_[number];
        const double share = closest(line.from, line.to, cursor);
        const double away = distance(between(line.from, line.to, share), cursor);
        if (away > least || (nearest && away == least && nearest->id < line.id) || !filter(line.id)) return;
        least = away;
        nearest = OnLine{line.id, share};
    });
    return nearest;
}

}  // namespace OverlayEditor
