#pragma once

/// The inverse projections of the UTM and UPS grids on WGS-84. Lengths in metres about the projection's
/// own origin (no false easting or northing), angles in radians. No checks.
namespace halCore {

struct GridPosition {
    double lat;
    /// From the central meridian; for the polar projection from Greenwich.
    double lon;
    /// False when the point lies beyond the pole, on the far side of the projection.
    bool isNearSide;
};

/// UTM, scale 0.9996 on the central meridian. Exact to nanometres within 600 km of it.
GridPosition inverseTransverseMercator(double east, double north) noexcept;

/// UPS, scale 0.994 at the pole.
GridPosition inversePolarStereographic(bool northPole, double east, double north) noexcept;

}  // namespace halCore
