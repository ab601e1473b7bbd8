#pragma once

#include "model/ReferenceMove.h"

namespace OverlayEditor {

/// A shape that can stand about a platform, and goes where the platform goes.
class Carried {
  public:
    virtual ~Carried() = default;
    /// What the offsets count from has moved: the edit points and the panel follow. The offsets stay, and so
    /// does what the host displays: nothing is loaded anew. A shape that cannot stand there stays as it is.
    virtual void carry(const ReferenceMove& move) = 0;
};

}  // namespace OverlayEditor
