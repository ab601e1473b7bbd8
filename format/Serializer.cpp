#include "format/Serializer.h"

namespace OverlayEditor {

void Serializer::give(Use use, const halCore::Vec3& lla) {
    switch (use) {
        case Use::Point:
            addPoint(lla);
            break;
        case Use::Corner:
            addCorner(lla);
            break;
        case Use::Center2:
            setCenterPoint2(lla);
            break;
    }
}

void Serializer::addPoints(std::span<const halCore::Vec3> llas) {
    for (const halCore::Vec3& lla : llas) addPoint(lla);
}

void Serializer::giveOffset(Use use, const halCore::Vec3& xyz, const PointConverter& frame, bool) {
    halCore::Vec3 lla;
    if (frame.convertXyzToLla(xyz, lla) == 0) give(use, lla);
}

}  // namespace OverlayEditor
