#pragma once

#include "model/Panels.h"

namespace OverlayEditor {

/// Reports an edit.
inline void call(const PanelChange& change) {
    if (change) change();
}

}  // namespace OverlayEditor
