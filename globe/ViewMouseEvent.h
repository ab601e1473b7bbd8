#pragma once

namespace sandbox {

/// A mouse event of the 3-D view, as the host passes it on before the view acts on it.
struct ViewMouseEvent {
    enum class Kind {
        LeftPress,
        LeftRelease,
        MiddlePress,
        MiddleRelease,
        RightPress,
        RightRelease,
        Motion,
        DoubleClick,  ///< left button; comes instead of the second press
        Wheel,
    };
    enum Modifier : unsigned { Shift = 1, Control = 2, Alt = 4 };
    enum Button : unsigned { Left = 1, Middle = 2, Right = 4 };

    Kind kind = Kind::Motion;
    int x = 0;               ///< widget pixels from the left edge
    int y = 0;               ///< widget pixels from the top edge
    unsigned modifiers = 0;  ///< sum of Modifier
    unsigned buttons = 0;    ///< sum of Button held after the event
    int wheelDelta = 0;      ///< 120 a notch, positive away from the user
};

}  // namespace sandbox
