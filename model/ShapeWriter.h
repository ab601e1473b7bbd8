#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "format/SerializeToZel.h"
#include "format/TextBuffer.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// What became of a shape that was to be written.
struct WrittenShape {
    /// Of its text: the same text has the same digest. 0 when it was not written.
    std::uint64_t digest = 0;
    /// Not written, although it has a place.
    bool begun = false;
    /// Not drawn.
    bool hidden = false;
};

/// Makes the text of a file. Each shape is written as soon as it is described, so that there is but one
/// description in memory.
class ShapeWriter {
  public:
    /// \param converter what attached shapes' offsets count from, null when there are none; not owned
    /// \param referenceWritten whether each of them names it
    ShapeWriter(PointConverter* converter, bool referenceWritten);

    WrittenShape add(Shape& shape) { return add(shape, shape.shown()); }
    /// The same as if it were shown, or not.
    WrittenShape add(Shape& shape, bool shown);
    /// The same for who wants to know no more. \return whether it was written
    bool write(Shape& shape) { return write_(shape, shape.shown()); }
    /// Only describes it. \return false when it is not complete
    bool describe(Shape& shape) { return describe_(shape, shape.shown()); }
    /// The shape that was added or described last.
    const halCore::ZEL::ZelShapePtr& last() const { return zel_.shapes().back(); }
    /// Whether any shape was written.
    bool any() const { return any_; }
    /// The whole text, empty when there is nothing in it.
    std::string text() const { return any_ ? buffer_->text() : std::string(); }
    /// What stands at the beginning of a file, and what follows it.
    std::string head() const { return buffer_->text().substr(0, headSize_); }
    std::string_view blocks() const { return std::string_view(buffer_->text()).substr(headSize_); }
    /// Forgets what was added.
    void clear();

  private:
    bool describe_(Shape& shape, bool shown);
    bool write_(Shape& shape, bool shown);

    SerializeToZel zel_;
    TextBuffer::Ptr buffer_;
    std::size_t headSize_ = 0;
    bool any_ = false;
};

/// The text of a file with shapes that are in no overlay. \param converter null unless they are attached
std::string shapesText(const std::vector<std::unique_ptr<Shape>>& shapes,
                       PointConverter* converter = nullptr);

}  // namespace OverlayEditor
