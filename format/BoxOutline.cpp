#include "format/BoxOutline.h"

#include <algorithm>
#include <cmath>

#include "format/ImageOverlay.h"
#include "geo/Angles.h"

namespace halCore::ZEL {

double eastward(double west, double east) {
    const double span = wrapToPi(east - west);
    return span <= 0.0 ? span + kTwoPi : span;
}

Vec3 placeInPicture(const ImageOverlay& picture, double across, double down) {
    const double north = std::max(picture.north(), picture.south());
    const double south = std::min(picture.north(), picture.south());
    const double span = eastward(picture.west(), picture.east());
    double turn = 0.0;
    picture.getRotation(turn);
    const double midLat = 0.5 * (north + south);
    const double shrink = std::max(std::cos(midLat), 1e-6);
    const double x = (across - 0.5) * span * shrink;
    const double y = (0.5 - down) * (north - south);
    const double lat = midLat + y * std::cos(turn) + x * std::sin(turn);
    const double lon = picture.west() + 0.5 * span + (x * std::cos(turn) - y * std::sin(turn)) / shrink;
    return {std::clamp(lat, -kHalfPi, kHalfPi), lon, 0.0};
}

}  // namespace halCore::ZEL
