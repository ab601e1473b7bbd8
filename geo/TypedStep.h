#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "common/Vec3.h"
#include "geo/TspiUnitsProviderAdapter.h"

namespace UTILS {

/// One or more places, radians and metres.
struct TypedPlaces {
    struct Place {
        double lat = 0.0;
        double lon = 0.0;
        std::optional<double> alt;
    };
    std::vector<Place> places;
    /// The first longitude of more than 180 degrees as typed, taken for the one of the same meridian.
    std::optional<double> wrappedLon;
};
/// An offset from a reference, metres; without a height the one before stays.
struct TypedOffset {
    double x = 0.0;
    double y = 0.0;
    std::optional<double> z;
};
/// A distance and a true direction.
struct TypedWay {
    double meters = 0.0;
    double azimuthRad = 0.0;
};
/// So far to the east and to the north.
struct TypedShift {
    double eastMeters = 0.0;
    double northMeters = 0.0;
    /// The geodesic of that length and direction.
    TypedWay way() const;
};
/// A length alone; a number without a unit is in the one of what the length is for.
struct TypedLength {
    double metersAsRange = 0.0;
    double metersAsAltitude = 0.0;
};
/// A radius and true directions, clockwise from start to end.
struct TypedSector {
    double meters = 0.0;
    double startRad = 0.0;
    double endRad = 0.0;
};

/// What a typed line says; nothing for a line that says none of this.
using TypedStep =
    std::variant<std::monostate, TypedPlaces, TypedOffset, TypedWay, TypedShift, TypedLength, TypedSector>;

/// Reads what is typed while a shape is drawn:
///
/// - places, as readTypedPositions takes them, perhaps several;
/// - "5 nm 270", "270 5 nm", "5 nm 270T": a distance, which needs its unit, and a direction, as
///   TspiUnitsProviderAdapter::parseAngle takes one; a magnetic one ("270M") is refused;
/// - "+3 km E 1 km N", "2 nm N": to the east and to the north; each needs its unit;
/// - "5 nm", "5": a length;
/// - "12 nm 270 330": a radius with its sector, directions as above;
/// - with `offsets`, "100, 200" and "100, 200, 30": offsets in the range unit.
///
/// No length reaches farther than half way round the earth, and ways and radii are greater than 0.
/// \param reason why it is nothing; empty for an empty text
TypedStep readTypedStep(std::string_view text, const TspiUnitsProviderAdapter& units, bool offsets,
                        std::string& reason);

}  // namespace UTILS
