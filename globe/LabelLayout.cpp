#include "globe/LabelLayout.h"

#include <QFontMetricsF>
#include <QRectF>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

#include "globe/Camera.h"

namespace sandbox {

namespace {

/// About what a label covers.
QRectF boxOf(const PlacedLabel& placed) {
    const DrawList::Label& label = *placed.label;
    const QFontMetricsF metrics(lookOf(label).font);
    const QStringList lines = QString::fromStdString(label.text).split(QLatin1Char('\n'));
    double width = 0.0;
    for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line));
    const double height = metrics.lineSpacing() * static_cast<double>(lines.size());
    QRectF box(placed.x - width / 2, placed.y - height / 2, width, height);
    if (!label.icon.path.empty()) {
        constexpr double kIcon = 32.0;
        box.moveLeft(placed.x + kIcon / 2);
        box |= QRectF(placed.x - kIcon / 2, placed.y - kIcon / 2, kIcon, kIcon);
    }
    const double margin = label.outlineWidth;
    return box.adjusted(-margin, -margin, margin, margin);
}

/// Boxes found by the squares of the screen that they touch.
class BoxGrid {
  public:
    bool overlaps(const QRectF& box) const {
        bool found = false;
        forSquares(box, [&](std::int64_t square) {
            const auto boxes = squares_.find(square);
            found = found ||
                    (boxes != squares_.end() &&
                     std::ranges::any_of(boxes->second, [&](const QRectF& b) { return b.intersects(box); }));
        });
        return found;
    }
    void add(const QRectF& box) {
        forSquares(box, [&](std::int64_t square) { squares_[square].push_back(box); });
    }

  private:
    template <typename Function>
    static void forSquares(const QRectF& box, Function&& function) {
        constexpr double kSize = 128.0;
        const auto index = [](double v) { return static_cast<std::int64_t>(std::floor(v / kSize)); };
        for (std::int64_t row = index(box.top()); row <= index(box.bottom()); ++row)
            for (std::int64_t column = index(box.left()); column <= index(box.right()); ++column)
                function(row * 1'000'000 + column);
    }

    std::unordered_map<std::int64_t, std::vector<QRectF>> squares_;
};

}  // namespace

TextLook lookOf(const DrawList::Label& label) {
    const auto argb = [](const Rgba& c) { return qRgba(c.r, c.g, c.b, c.a); };
    return {fontForFile(QString::fromStdString(label.fontName), label.pixelSize), argb(label.color),
            argb(label.outlineColor), label.outlineWidth};
}

std::vector<PlacedLabel> placeLabels(std::span<const DrawList::Label* const> labels, const Camera& camera) {
    // Room for what reaches into the view from outside.
    constexpr double kMargin = 500.0;
    std::vector<PlacedLabel> placed;
    for (const DrawList::Label* label : labels) {
        const Projected place = camera.project(label->position);
        if (place.visible && place.x > -kMargin && place.x < camera.width() + kMargin && place.y > -kMargin &&
            place.y < camera.height() + kMargin)
            placed.push_back({label, place.x, place.y});
    }
    std::vector<double> priorities;
    for (const PlacedLabel& p : placed) priorities.push_back(p.label->priority);
    const auto priority = [&](std::size_t i) { return priorities[i]; };
    std::vector<std::size_t> order(placed.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::ranges::stable_sort(order, std::ranges::greater(), priority);
    if (order.empty() || priority(order.front()) == priority(order.back())) return placed;

    BoxGrid taken;
    for (std::size_t first = 0; first < order.size();) {
        std::size_t last = first;
        std::vector<QRectF> boxes;
        for (; last < order.size() && priority(order[last]) == priority(order[first]); ++last) {
            const QRectF box = boxOf(placed[order[last]]);
            if (taken.overlaps(box))
                placed[order[last]].label = nullptr;
            else
                boxes.push_back(box);
        }
        for (const QRectF& box : boxes) taken.add(box);
        first = last;
    }
    std::erase_if(placed, [](const PlacedLabel& p) { return !p.label; });
    return placed;
}

}  // namespace sandbox
