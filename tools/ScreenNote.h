#pragma once

#include <string>

namespace OverlayEditor {

/// A text that the host shows in the view.
class ScreenNote {
  public:
    /// Where it stands, in pixels of the mouse events from the view's left edge and its top or bottom one.
    struct Place {
        double left = 0.0;
        double vertical = 0.0;
        bool bottom = false;
        /// A file name of the host's and a size in pixels.
        const char* font = "arialbd.ttf 12";
    };

    explicit ScreenNote(const Place& place) : place_(place) {}
    ~ScreenNote() { show({}); }
    ScreenNote(const ScreenNote&) = delete;
    ScreenNote& operator=(const ScreenNote&) = delete;

    /// Takes the place of the text before; empty shows nothing. A line break becomes a blank.
    void show(std::string text);

  private:
    Place place_;
    void* shown_ = nullptr;
};

}  // namespace OverlayEditor
