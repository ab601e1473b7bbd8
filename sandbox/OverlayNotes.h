#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "common/Work.h"
#include "globe/OverlayScene.h"

namespace sandbox {

struct OverlayNote {
    std::size_t shape = 0;  ///< the first shape that it is about
    bool isFault = false;
    std::string text;
};

/// What the view does not show as the shapes ask for: heights above another datum than WGS-84; and, which are
/// faults, picture files that cannot be read and shapes that cannot be drawn. One note each, in the order of
/// the shapes.
/// `directory`: from which the names of picture files count. `attached`: whether there is a platform that
/// relative positions count from.
Work takeNotes(const OverlayScene::Shapes& shapes, std::string directory, bool attached,
               std::vector<OverlayNote>& notes);

}  // namespace sandbox
