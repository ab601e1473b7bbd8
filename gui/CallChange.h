#pragma once

#include "model/Panels.h"

namespace OverlayEditor {

/// Reports an edit. The caller's widget, and the functor that it holds, may be gone when this returns.
inline void call(const PanelChange& change) {
    const PanelChange kept = change;
    if (kept) kept();
}

}  // namespace OverlayEditor
