#include "tools/OverlayMarks.h"

#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "tools/ToolView.h"

namespace OverlayEditor {

using halCore::Vec3;
using PluginUtils::PUDrawPoint;

namespace {

constexpr std::uint32_t kRingColor = 0xFFFFFFFF;

/// All edit points that a shape has, of those that it needs to be shown.
std::vector<Vec3> pointsOf(const Shape& shape) {
    std::vector<Vec3> points;
    const auto add = [&](const std::optional<Vec3>& place) {
        if (place && isPlace(*place)) points.push_back(*place);
    };
    if (const auto* const round = dynamic_cast<const CylinderShape*>(&shape)) {
        using Point = CylinderShape::EditPoint;
        for (const Point role : {Point::Center, Point::MajorAxis, Point::MinorAxis, Point::StartAngle})
            add(round->editPoint(role));
    } else if (const auto* const rectangle = dynamic_cast<const RectangleShape*>(&shape)) {
        add(rectangle->firstCorner());
        add(rectangle->typedAnchor());
    } else if (const auto* const polygon = dynamic_cast<const PolygonShape*>(&shape)) {
        if (!polygon->isComplete())
            for (const Vec3& place : polygon->points()) add(place);
    }
    return points;
}

}  // namespace

void OverlayMarks::draw(const Shape* selected, int widthPixels, int heightPixels) {
    points_.clear();
    lines_.clear();
    if (revision_ != overlay_.revision()) {
        undisplayed_.clear();
        for (const Shape* const shape : overlay_.shapes())
            if (!shape->isDisplayed()) undisplayed_.push_back(shape);
        revision_ = overlay_.revision();
    }
    for (const Shape* const shape : undisplayed_) markHalfDrawn_(*shape);
    if (const auto* const polygon = dynamic_cast<const PolygonShape*>(selected); polygon && polygon->active())
        if (const std::size_t shown = polygon->shownPoint();
            shown < polygon->getNumPoints() && isPlace(polygon->points()[shown]))
            ring_(polygon->points()[shown]);
    // Edit points tell, too, which shape it is.
    const MouseTool* const tool = selected ? selected->mouseTool() : nullptr;
    const bool outlined = selected && selected->isDisplayed() && !(tool && tool->isActive());
    const auto* const label = dynamic_cast<const AnnotationShape*>(selected);
    if (outlined && label && isPlace(label->position())) ring_(label->position());
    if (points_.empty() && !outlined) return;

    ToolPicture picture;
    if (outlined)
        for (const auto& path : outline_.of(*selected, overlay_.revision())) picture.add(path);
    for (const auto& line : lines_) picture.add(line);
    for (const PUDrawPoint& point : points_) picture.add(point);
    ToolView& view = ToolView::current();
    view.paint(view.capture(widthPixels, heightPixels), picture);
}

void OverlayMarks::markHalfDrawn_(const Shape& shape) {
    const MouseTool* const tool = shape.mouseTool();
    if (!shape.shown() || !shape.active() || (tool && tool->isActive())) return;
    const std::vector<Vec3> points = pointsOf(shape);
    for (const Vec3& place : points) mark_(place, PluginUtils::kEditPointColor);
    const auto* const polygon = dynamic_cast<const PolygonShape*>(&shape);
    if (!polygon || points.size() != 2) return;
    lines_.emplace_back(points.front(), points.back(), polygon->lineColor(), polygon->lineWidth());
    lines_.back().show();
}

void OverlayMarks::ring_(const Vec3& place) {
    mark_(place, kRingColor);
    points_.back().setHollow(true);
    points_.back().setDrawAltimeter(false);
}

void OverlayMarks::mark_(const Vec3& place, std::uint32_t rgba) {
    points_.emplace_back(place, rgba);
    points_.back().show();
}

}  // namespace OverlayEditor
