#include "globe/DrawingOrder.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>
#include <utility>

#include "format/ShapeCast.h"
#include "format/ZelShapes.h"
#include "geo/Angles.h"

namespace sandbox {

using halCore::kPi;

namespace {

namespace ZEL = halCore::ZEL;

/// Shapes of equal looks give the same picture in any order.
auto lookOf(const ZEL::PointBasedShape& shape) {
    ZEL::Color line;
    ZEL::Color fill;
    int width = 1;
    ZEL::LineStyle stroke = ZEL::LineStyle::Solid;
    bool outlined = true;
    bool filled = false;
    bool tested = true;
    shape.getLineColor(line);
    shape.getFillColor(fill);
    shape.getLineWidth(width);
    shape.getLineStyle(stroke);
    shape.getOutlined(outlined);
    shape.getFilled(filled);
    shape.getDepthBufferActive(tested);
    const auto bytes = [](const ZEL::Color& c) {
        return std::tuple(c.red(), c.green(), c.blue(), c.alpha());
    };
    return std::tuple(bytes(line), bytes(fill), width, stroke, outlined, filled, tested);
}

/// The square of ten degrees in which a shape has its middle.
int squareOf(const ZEL::PointBasedShape& shape) {
    if (shape.points().empty()) return 0;
    const auto square = [&](const auto& coordinate) {
        double sum = 0.0;
        for (const halCore::Vec3& p : shape.points()) sum += std::clamp(coordinate(p), -7.0, 7.0);
        const double mean = sum / static_cast<double>(shape.points().size());
        return std::isfinite(mean) ? static_cast<int>(std::floor(mean * 18.0 / kPi)) : 0;
    };
    return square([](const halCore::Vec3& p) { return p.lat(); }) * 100 +
           square([](const halCore::Vec3& p) { return p.lon(); });
}

}  // namespace

std::vector<std::size_t> drawingOrder(const OverlayScene::Shapes& shapes) {
    std::vector<std::size_t> order;
    std::vector<int> squares(shapes.size());
    std::optional<decltype(lookOf(std::declval<const ZEL::PointBasedShape&>()))> look;
    bool alike = true;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        if (!shapes[i]) continue;
        order.push_back(i);
        if (!alike) continue;
        const auto* lines = ZEL::shapeAs<ZEL::PointBasedShape>(*shapes[i]);
        alike = lines && (!look || *look == lookOf(*lines));
        if (!alike) continue;
        if (!look) look = lookOf(*lines);
        squares[i] = squareOf(*lines);
    }
    if (alike) std::ranges::stable_sort(order, {}, [&](std::size_t i) { return squares[i]; });
    return order;
}

}  // namespace sandbox
