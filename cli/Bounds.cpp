#include "cli/Bounds.h"

#include <algorithm>

#include "format/ZelShapes.h"
#include "geo/Angles.h"

namespace cli {

using namespace halCore::ZEL;
using halCore::Vec3;

void Bounds::add(const Vec3& position) {
    if (!low_) low_ = high_ = position;
    low_ = Vec3(std::min(low_->x(), position.x()), std::min(low_->y(), position.y()),
                std::min(low_->z(), position.z()));
    high_ = Vec3(std::max(high_->x(), position.x()), std::max(high_->y(), position.y()),
                 std::max(high_->z(), position.z()));
}

void Bounds::add(const Bounds& other) {
    if (other.empty()) return;
    add(other.low());
    add(other.high());
}

Extent extentOf(const ZelShape& shape) {
    Extent extent;
    const bool absolute = !shape.isRelative();
    const auto add = [&extent](const Vec3& position, bool geodetic) {
        using halCore::kDegreesPerRadian;
        extent.bounds.add(geodetic ? Vec3(position.lat() * kDegreesPerRadian,
                                          position.lon() * kDegreesPerRadian, position.alt())
                                   : position);
    };
    const auto addSides = [&add](const auto& box, double altitude) {
        add(Vec3(box.north(), box.west(), altitude), true);
        add(Vec3(box.south(), box.east(), altitude), true);
    };
    const auto addPoints = [&](const std::vector<Vec3>& points) {
        extent.points = points.size();
        for (const Vec3& point : points) add(point, absolute);
    };
    Vec3 position;
    if (const auto* const points = dynamic_cast<const Points*>(&shape)) {
        addPoints(points->points());
    } else if (const auto* const list = dynamic_cast<const PointBasedShape*>(&shape)) {
        addPoints(list->points());
    } else if (const auto* const circular = dynamic_cast<const CircularShape*>(&shape)) {
        if (circular->getCenterPosition(position) == 0) add(position, absolute);
        const auto* const orbit = dynamic_cast<const Orbit*>(&shape);
        if (orbit != nullptr && orbit->getCenterPosition2(position) == 0) add(position, absolute);
    } else if (const auto* const annotation = dynamic_cast<const Annotation*>(&shape)) {
        if (annotation->getPosition(position) == 0) add(position, absolute);
    } else if (const auto* const box = dynamic_cast<const LatLonAltBox*>(&shape)) {
        addSides(*box, box->altitude());
    } else if (const auto* const image = dynamic_cast<const ImageOverlay*>(&shape)) {
        addSides(*image, 0.0);
    }
    return extent;
}

}  // namespace cli
