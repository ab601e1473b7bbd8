#include "model/ShapeWriter.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "common/NumberText.h"
#include "model/ShapePlace.h"

namespace OverlayEditor {

ShapeWriter::ShapeWriter(PointConverter* converter, bool referenceWritten) : buffer_(TextBuffer::take()) {
    zel_.setReferenceWritten(referenceWritten);
    zel_.setPointConverter(converter);
    clear();
}

void ShapeWriter::clear() {
    buffer_->restart();
    buffer_->out().precision(UTILS::kSignificantDigits);
    SerializeToZel::writeHeadTo(buffer_->out());
    headSize_ = buffer_->text().size();
    any_ = false;
}

bool ShapeWriter::describe_(Shape& shape, bool shown) {
    zel_.clear();
    if (shape.write(zel_) != 0 || !zel_.hasShapes()) return false;
    for (const auto& written : zel_.shapes())
        if (written) written->setDrawn(shown);
    return true;
}

bool ShapeWriter::write_(Shape& shape, bool shown) {
    if (!describe_(shape, shown)) return false;
    zel_.writeShapesTo(buffer_->out());
    return any_ = true;
}

WrittenShape ShapeWriter::add(Shape& shape, bool shown) {
    const std::size_t before = buffer_->text().size();
    if (!write_(shape, shown)) return {.begun = isBegun(shape), .hidden = !shown};
    const auto own = std::string_view(buffer_->text()).substr(before);
    return {.digest = std::max<std::uint64_t>(std::hash<std::string_view>()(own), 1), .hidden = !shown};
}

std::string shapesText(const std::vector<std::unique_ptr<Shape>>& shapes, PointConverter* converter) {
    ShapeWriter writer(converter, false);
    for (const auto& shape : shapes) writer.write(*shape);
    return writer.text();
}

}  // namespace OverlayEditor
