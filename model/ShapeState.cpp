#include "model/ShapeState.h"

namespace OverlayEditor {

std::size_t ShapeState::bytesBeyond(const ShapeState* other) const {
    std::size_t bytes = sizeof(ShapeState) + name.size();
    bytes += positions.given.bytesBeyond(other ? &other->positions.given : nullptr);
    if (positions.left) {
        const bool shared = other && other->positions.left;
        bytes += positions.left->offsets.bytesBeyond(shared ? &other->positions.left->offsets : nullptr);
    }
    if (const auto* const drawn = std::get_if<FreeDrawState>(&own)) {
        const auto* const before = other ? std::get_if<FreeDrawState>(&other->own) : nullptr;
        bytes += drawn->points.bytesBeyond(before ? &before->points : nullptr);
        bytes += drawn->lines.size() * sizeof(std::size_t);
    }
    if (const auto* const round = std::get_if<RoundState>(&own))
        bytes += round->numbers.bytes() + round->marks.bytes();
    return bytes;
}

}  // namespace OverlayEditor
