#pragma once

#include "common/Work.h"

class QIODevice;

namespace sandbox {

class PictureSink;

/// Reads a PNG as libpng does, but for the texts and profiles in it, which are passed over. What is damaged
/// ends early. The device, open at its start, and the sink are to outlive the work.
Work readPng(QIODevice& file, PictureSink& sink);

}  // namespace sandbox
