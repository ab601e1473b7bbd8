#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "pi/Guard.h"

namespace OverlayEditor {

/// A text in lines of at most so many letters: it is parted where sentences end, and between words where a
/// sentence is longer. A longer word stays whole.
std::vector<std::string> linesOf(std::string_view text, std::size_t letters);

/// A text that the host shows in the view, in lines short enough for a narrow one.
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
    ~ScreenNote() {
        guardedEnd([this] { show({}); });
    }
    ScreenNote(const ScreenNote&) = delete;
    ScreenNote& operator=(const ScreenNote&) = delete;

    /// Takes the place of the text before; empty shows nothing. A line break becomes a blank.
    void show(std::string text);
    /// Moves to another distance from its edge.
    void moveTo(double vertical);
    /// From the edge to beyond the text.
    double end() const { return place_.vertical + kPitch * static_cast<double>(shown_.size()); }

  private:
    static constexpr double kPitch = 25.0;

    Place place_;
    std::string text_;
    std::vector<void*> shown_;
};

}  // namespace OverlayEditor
