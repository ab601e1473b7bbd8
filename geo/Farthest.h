#pragma once

namespace halCore {

/// Metres: an altitude or a distance beyond a million kilometres is taken for a slip of the hand.
inline constexpr double kFarthestMeters = 1e9;

}  // namespace halCore
