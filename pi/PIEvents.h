#pragma once

#include <cstdint>

/// Codes of ListenToEvents. Codes above 16 and those without a name here are ignored.
enum class PIApplicationEvents_t : std::int32_t {
    ScenarioInitialized = 0,  ///< data: null
    TimeChanged = 1,          ///< data: null
    ScenarioCleared = 2,      ///< data: null
    ScenarioReplaced = 3,     ///< data: null
    EntityRemoved = 4,        ///< data: const std::uint64_t*, the id of the entity that is gone
    PlatformAdded = 5,        ///< data: const std::uint64_t*, the id of the new platform
    ScenarioClosed = 16,      ///< data: null
};

namespace PIGUI {

/// When each is due: HostContract.h, "EVENTS".
enum class PIMouseEventType_t : std::int32_t {
    LeftPress = 0,
    LeftRelease = 1,
    MiddlePress = 2,
    MiddleRelease = 3,
    RightPress = 4,
    RightRelease = 5,
    Motion = 6,
    LeftDoubleClick = 7,
    Leave = 8,
    Wheel = 9,
};

/// Bits of PIMouseEvent::modifiers.
enum PIModifier : std::uint32_t { PIModifierShift = 1, PIModifierControl = 2, PIModifierAlt = 4 };

/// One mouse event of the 3-D view, in view pixels with the origin at the top left.
struct PIMouseEvent {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::uint32_t modifiers = 0;
    std::int32_t wheelDelta = 0;  ///< 120 a notch, positive away from the user
};

}  // namespace PIGUI
