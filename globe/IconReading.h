#pragma once

#include <QImage>

#include "common/Work.h"
#include "globe/PictureFile.h"

namespace sandbox {

/// Reads an icon for a label, in its own size if that is not more than 64 pixels; a frame when it cannot be
/// read. `ratio`: device pixels a widget pixel, which the image's own ratio is then. `icon` is to outlive the
/// work.
Work readIcon(PictureFile file, double ratio, QImage& icon);

}  // namespace sandbox
