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
    /// Whether what is written of it is worked out from its points about each place, and may then differ by
    /// a last digit.
    virtual bool isRounded() const { return false; }
};

}  // namespace OverlayEditor
