#pragma once

namespace OverlayEditor {

/// The one maker of its kind that the plug-in has put in place, for code below it.
template <typename Maker>
class Installed {
  public:
    /// Null takes it out again. Not owned.
    static void install(Maker* maker) { current_ = maker; }
    static Maker* installed() { return current_; }

  private:
    static inline Maker* current_ = nullptr;
};

}  // namespace OverlayEditor
