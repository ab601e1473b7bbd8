#pragma once

#include <QString>

namespace sandbox {

/// A position in degrees and minutes with hemispheres: "34° 05.123' N   117° 30.456' W". Takes radians.
QString positionText(double latitude, double longitude);

/// A length in a unit that suits it: "850 m", "12.35 km", "6,371 km".
QString lengthText(double metres);

}  // namespace sandbox
