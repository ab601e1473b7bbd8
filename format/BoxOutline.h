#pragma once

#include "common/Vec3.h"

namespace halCore::ZEL {

class ImageOverlay;

/// Radians from a meridian eastwards to another; the whole way round when they are the same.
double eastward(double west, double east);

/// The place, at altitude 0, of a point of a picture: `across` from 0 at its left to 1 at its right edge,
/// `down` from its upper edge. Pictures are turned counter-clockwise about their middle, in the plane of
/// longitudes shortened as they are there. The longitude is not wrapped; beyond a pole is at the pole.
Vec3 placeInPicture(const ImageOverlay& picture, double across, double down);

}  // namespace halCore::ZEL
