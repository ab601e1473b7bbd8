#pragma once

#include <vector>

#include "gdal/Outline.h"
#include "gdal/Track.h"

namespace exchange {

// Lines and areas across the meridian of 180 degrees, and areas round a pole, on a map of latitudes and
// longitudes. Straight is what is straight on the map.

/// Whether a line, or a ring with its closing edge, leads across 180 degrees other than along a cut that is
/// already there.
bool crossesSeam(const Track& track, bool closed);

/// Cuts a line at 180 degrees, or only carries its longitudes on beyond it.
std::vector<Track> layLine(Track line, bool split);

/// The same for an area. One that holds a pole gets an edge along the pole and both sides of 180 degrees. Of
/// one that holds both poles come the parts of the map that it leaves out, and `outside` is true. Which side
/// of a ring is inside: the left one when it was worked out, else that of the nearer pole.
std::vector<Track> layArea(Track ring, Outline::Origin origin, bool split, bool& outside);

}  // namespace exchange
