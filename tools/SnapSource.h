#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "tools/ViewProjection.h"

namespace OverlayEditor {

class Shape;

/// What a point that is placed or dragged is put onto.
struct Snap {
    /// Exactly the place of what was there: radians and metres.
    halCore::Vec3 place;
    /// "point 3 of \"Route\"", "a side of \"Route\"", "the platform Ship"
    std::string name;
};

/// Knows what lies in the view. One at a time; none unless one is installed.
class SnapSource {
  public:
    struct Query {
        const ViewProjection& view;
        Pixel cursor;
        /// The shape that is edited; null for none.
        const Shape* edited = nullptr;
        /// Its point that is dragged: the others count then, but not the lines that end in it.
        std::optional<std::size_t> dragged = std::nullopt;
        /// The button is held: what has changed since it was pressed is the edited shape alone.
        bool held = false;
    };

    virtual ~SnapSource() = default;
    /// The point nearest to the cursor, or else the line, within the reach of the hand.
    virtual std::optional<Snap> find(const Query& query) = 0;

    static SnapSource* current() { return current_; }
    /// Not owned; null for none.
    static void install(SnapSource* source) { current_ = source; }

  private:
    inline static SnapSource* current_ = nullptr;
};

}  // namespace OverlayEditor
