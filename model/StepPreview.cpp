#include "model/StepPreview.h"

#include <cstdint>
#include <utility>

#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"

namespace OverlayEditor {

namespace {

constexpr std::uint32_t kOrange = 0xFF7300FF;
constexpr int kMarkSize = 20;

/// From the last point that there was through all that came; null for no such line.
std::unique_ptr<Shape> newLegs(const PolygonShape& after, std::size_t before) {
    if (before == 0 && after.getNumPoints() < 2) return nullptr;
    auto line = std::make_unique<PolygonShape>(after.preferences(), PolygonShape::Line);
    line->setLineWidth(after.lineWidth());
    for (std::size_t i = before > 0 ? before - 1 : 0; i < after.getNumPoints(); ++i)
        line->addPoint(after.points()[i]);
    return line;
}

std::unique_ptr<Shape> markAt(const Preferences& preferences, const halCore::Vec3& place) {
    auto mark = std::make_unique<AnnotationShape>(preferences);
    mark->setName("+");
    mark->setFontSize(kMarkSize);
    mark->setPosition(place);
    return mark;
}

bool isDrawable(const Shape& shape) {
    if (const auto* const round = dynamic_cast<const CylinderShape*>(&shape)) return round->isComplete();
    const auto* const rectangle = dynamic_cast<const RectangleShape*>(&shape);
    return !rectangle || rectangle->isComplete();
}

}  // namespace

StepTaken StepPreview::show(const Shape& shape, const UTILS::TypedStep& step, double altitude) {
    hide();
    std::unique_ptr<Shape> copy(shape.clone());
    copy->setShown(false);
    StepTaken taken = takeStep(*copy, step, altitude);
    if (!taken.reason.empty()) return taken;
    if (const auto* const before = dynamic_cast<const PolygonShape*>(&shape))
        copy = newLegs(static_cast<const PolygonShape&>(*copy), before->getNumPoints());
    if (!copy || !isDrawable(*copy))
        copy = taken.place && isPlace(*taken.place) ? markAt(shape.preferences(), *taken.place) : nullptr;
    if (!copy) return taken;
    if (auto* const line = dynamic_cast<BaseLineShape*>(copy.get()))
        line->setLineColor(kOrange >> 24 & 0xFF, kOrange >> 16 & 0xFF, kOrange >> 8 & 0xFF, kOrange & 0xFF);
    if (auto* const label = dynamic_cast<AnnotationShape*>(copy.get())) label->setColor(kOrange);
    copy->setActive(true);
    copy->setShown(true);
    shown_ = std::move(copy);
    return taken;
}

}  // namespace OverlayEditor
