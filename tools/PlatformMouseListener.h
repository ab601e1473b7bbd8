#pragma once

namespace OverlayEditor {

/// Told what happens while a platform is picked in the view.
class PlatformMouseListener {
  public:
    virtual ~PlatformMouseListener() = default;
    /// Pressed and released over this platform.
    virtual void platformSelected(unsigned long platformId) = 0;
    /// The picker is no longer active: another tool took its place, or it was stopped.
    virtual void deactivated() = 0;
};

}  // namespace OverlayEditor
