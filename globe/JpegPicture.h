#pragma once

#include "common/Work.h"

class QIODevice;

namespace sandbox {

class PictureSink;

/// Reads a JPEG as libjpeg does. Of what is cut or damaged the rest is grey, or ends early. The device, open
/// at its start, and the sink are to outlive the work.
Work readJpeg(QIODevice& file, PictureSink& sink);

}  // namespace sandbox
