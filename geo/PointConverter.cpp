#include "geo/PointConverter.h"

namespace OverlayEditor {
namespace {

int convert(const halCore::CoordinateConverter& converter, halCore::CoordinateSystem from,
            const halCore::Vec3& in, halCore::CoordinateSystem to, halCore::Vec3& out) {
    halCore::Coordinate result;
    const int code = converter.convert(halCore::Coordinate(from, in), result, to);
    out = result.position();
    return code;
}

}  // namespace

PointConverter::PointConverter() : converter_(std::make_unique<halCore::CoordinateConverter>()) {
    setReferenceLla({}, 0);
}

PointConverter::~PointConverter() = default;

void PointConverter::setReferenceLla(const halCore::Vec3& lla, unsigned long platformId) {
    static std::uint64_t last = 0;
    revision_ = ++last;
    refPlatformId_ = platformId;
    converter_->setReferenceOrigin(lla);
}

void PointConverter::getReferenceLla(halCore::Vec3& lla) const {
    lla = converter_->referenceOrigin();
}

unsigned long PointConverter::refPlatformId() const {
    return refPlatformId_;
}

int PointConverter::convertLlaToXyz(const halCore::Vec3& lla, halCore::Vec3& xyz) const {
    return convert(*converter_, halCore::CoordinateSystem::Lla, lla, halCore::CoordinateSystem::FlatEnu, xyz);
}

int PointConverter::convertXyzToLla(const halCore::Vec3& xyz, halCore::Vec3& lla) const {
    return convert(*converter_, halCore::CoordinateSystem::FlatEnu, xyz, halCore::CoordinateSystem::Lla, lla);
}

}  // namespace OverlayEditor
