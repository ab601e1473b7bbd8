#include "gdal/MoveShape.h"

#include <cmath>
#include <optional>

#include "format/ZelShapes.h"
#include "gdal/NewShape.h"
#include "gdal/ShapeTexts.h"
#include "geo/Angles.h"

namespace exchange {

using halCore::Vec3;
namespace ZEL = halCore::ZEL;

namespace {

std::optional<Vec3> moved(const Vec3& place, const Vec3& shift) {
    const double lat = place.lat() + shift.lat();
    if (!(std::abs(lat) <= halCore::kHalfPi)) return std::nullopt;
    return Vec3(lat, halCore::wrapToPi(place.lon() + shift.lon()), place.alt() + shift.alt());
}

template <typename Sides>
bool moveSides(Sides& sides, const Vec3& shift) {
    const auto north = moved({sides.north(), sides.east(), 0.0}, shift);
    const auto south = moved({sides.south(), sides.west(), 0.0}, shift);
    if (!north || !south) return false;
    sides.setNorth(north->lat());
    sides.setSouth(south->lat());
    sides.setEast(north->lon());
    sides.setWest(south->lon());
    return true;
}

}  // namespace

bool moveShape(ZEL::ZelShape& shape, const Vec3& shift) {
    if (hasOffsets(shape)) {
        Vec3 reference;
        const auto place =
            shape.getReferencePosition(reference) == 0 ? moved(reference, shift) : std::nullopt;
        if (place) shape.setReferencePosition(*place);
        return place.has_value();
    }
    if (auto* box = dynamic_cast<ZEL::LatLonAltBox*>(&shape)) {
        if (!moveSides(*box, shift)) return false;
        box->setAltitude(box->altitude() + shift.alt());
        return true;
    }
    if (auto* picture = dynamic_cast<ZEL::ImageOverlay*>(&shape)) {
        if (!moveSides(*picture, shift)) return false;
        completeComments(shape);
        return true;
    }
    auto* const circular = dynamic_cast<ZEL::CircularShape*>(&shape);
    Vec3 center;
    if (!circular || circular->getCenterPosition(center) != 0) return false;
    const auto first = moved(center, shift);
    std::optional<Vec3> second = Vec3();
    auto* const orbit = dynamic_cast<ZEL::Orbit*>(&shape);
    if (orbit && orbit->getCenterPosition2(center) == 0) second = moved(center, shift);
    if (!first || !second) return false;
    circular->setCenterPosition(*first);
    if (orbit) orbit->setCenterPosition2(*second);
    return true;
}

}  // namespace exchange
