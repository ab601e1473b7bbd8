#pragma once

#include <cstdint>
#include <memory>

#include "common/Vec3.h"
#include "geo/CoordinateConverter.h"

namespace OverlayEditor {

/// Converts points between geodetic positions and offsets about one reference position, and remembers
/// the platform that the reference belongs to. A platform that moves does not move the reference: the
/// owner calls setReferenceLla again.
class PointConverter {
  public:
    /// No platform; the reference is (0, 0, 0).
    PointConverter();
    virtual ~PointConverter();
    PointConverter(const PointConverter&) = delete;
    PointConverter& operator=(const PointConverter&) = delete;

    /// Latitude and longitude in radians, altitude in metres. Platform 0 is a fixed point.
    void setReferenceLla(const halCore::Vec3& lla, unsigned long platformId);
    void getReferenceLla(halCore::Vec3& lla) const;
    unsigned long refPlatformId() const;
    /// Another number after each setReferenceLla, and for each converter: what was derived from a reference
    /// holds as long as it is the same.
    std::uint64_t revision() const { return revision_; }

    /// Geodetic to metres east, north and up of the reference, and back. Return the code of
    /// CoordinateConverter::convert, 0 on success; the output is written even on failure, and is then no
    /// position.
    int convertLlaToXyz(const halCore::Vec3& lla, halCore::Vec3& xyz) const;
    int convertXyzToLla(const halCore::Vec3& xyz, halCore::Vec3& lla) const;

  private:
    unsigned long refPlatformId_ = 0;
    std::uint64_t revision_ = 0;
    std::unique_ptr<halCore::CoordinateConverter> converter_;
};

}  // namespace OverlayEditor
