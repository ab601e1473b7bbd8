#include "format/ShapeExtras.h"

#include <string>
#include <utility>
#include <vector>

#include "format/ShapeCast.h"
#include "format/ShapeFields.h"

namespace halCore::ZEL {
namespace {

/// Copies one attribute when it is set. \return whether it is; without a shape to copy to that is all
template <typename Shape, typename Value>
bool copy(const Shape& from, Shape* to, int (Shape::*get)(Value&) const, auto set) {
    Value value{};
    if ((from.*get)(value) != 0) return false;
    if (to) (to->*set)(value);
    return true;
}

bool copyComments(const ZelShape& from, ZelShape* to) {
    if (to) {
        // Into the memory that it has.
        std::vector<std::string> lines = to->takeComments();
        lines = from.comments();
        to->setComments(std::move(lines));
    }
    return !from.comments().empty();
}

bool copyCommon(const ZelShape& from, ZelShape* to) {
    using S = ZelShape;
    bool any = copyComments(from, to);
    any |= copy(from, to, &S::getDepthBufferActive, &S::setDepthBufferActive);
    any |= copy(from, to, &S::getAltitudeMode, &S::setAltitudeMode);
    any |= copy(from, to, &S::getFollowYaw, &S::setFollowYaw);
    any |= copy(from, to, &S::getFollowPitch, &S::setFollowPitch);
    any |= copy(from, to, &S::getFollowRoll, &S::setFollowRoll);
    if (!from.hasRareAttributes()) return any;
    any |= copy(from, to, &S::getAltitudeOffset, &S::setAltitudeOffset);
    any |= copy(from, to, &S::getExtrudeHeight, &S::setExtrudeHeight);
    any |= copy(from, to, &S::getScale, &S::setScale);
    any |= copy(from, to, &S::getYawOffset, &S::setYawOffset);
    any |= copy(from, to, &S::getPitchOffset, &S::setPitchOffset);
    any |= copy(from, to, &S::getRollOffset, &S::setRollOffset);
    any |= copy(from, to, &S::getVerticalDatum, &S::setVerticalDatum);
    return any;
}

/// Of a class that both shapes are of.
template <typename Shape>
bool copyOf(const ZelShape& from, ZelShape* to, auto copyAll) {
    const auto* const source = shapeAs<Shape>(from);
    auto* const target = to ? shapeAs<Shape>(*to) : nullptr;
    if (!source || (to && !target)) return false;
    return copyAll(*source, target);
}

bool copyAll(const ZelShape& from, ZelShape* to) {
    bool any = copyCommon(from, to);
    any |= copyOf<OutlinedShape>(from, to, [](const auto& source, auto* target) {
        return copy(source, target, &OutlinedShape::getOutlined, &OutlinedShape::setOutlined);
    });
    any |= copyOf<FillableShape>(from, to, [](const auto& source, auto* target) {
        return copy(source, target, &FillableShape::getLineStyle, &FillableShape::setLineStyle);
    });
    any |= copyOf<PointBasedShape>(from, to, [](const auto& source, auto* target) {
        return copy(source, target, &PointBasedShape::getTessellation, &PointBasedShape::setTessellation);
    });
    any |= copyOf<Annotation>(from, to, [](const auto& source, auto* target) {
        bool own = copy(source, target, &Annotation::getOutlineColor, &Annotation::setOutlineColor);
        own |= copy(source, target, &Annotation::getOutlineThickness, &Annotation::setOutlineThickness);
        own |= copy(source, target, &Annotation::getPriority, &Annotation::setPriority);
        own |= copy(source, target, &Annotation::getIconFile, &Annotation::setIconFile);
        return own;
    });
    return any;
}

}  // namespace

std::shared_ptr<const ZelShape> extrasOf(std::shared_ptr<ZelShape> shape) {
    if (shape->comments().empty() && !copyAll(*shape, nullptr)) return nullptr;
    if (auto* const points = pointsOf(*shape)) std::exchange(*points, {});
    return shape;
}

void setExtras(const ZelShape& extras, ZelShape& shape) {
    copyAll(extras, &shape);
}

}  // namespace halCore::ZEL
