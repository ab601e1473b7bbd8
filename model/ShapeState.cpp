#include "model/ShapeState.h"

namespace OverlayEditor {

std::size_t ShapeState::bytesBeyond(const ShapeState* other) const {
    std::size_t bytes = sizeof(ShapeState) + name.size();
    bytes += positions.given.bytesBeyond(other ? &other->positions.given : nullptr);
    if (positions.left) {
        const bool shared = other && other->positions.left;
        bytes += positions.left->offsets.bytesBeyond(shared ? &other->positions.left->offsets : nullptr);
    }
    using Drawn = Shared<FreeDrawState>;
    if (const auto* const drawn = std::get_if<Drawn>(&own)) {
        const auto* const before = other ? std::get_if<Drawn>(&other->own) : nullptr;
        bytes += (*drawn)->points.bytesBeyond(before ? &(*before)->points : nullptr);
        bytes += sizeof(FreeDrawState) + (*drawn)->lines.size() * sizeof(std::size_t);
    }
    using Round = Shared<RoundState>;
    if (const auto* const round = std::get_if<Round>(&own)) {
        const auto* const before = other ? std::get_if<Round>(&other->own) : nullptr;
        if (!before || !before->isOneWith(*round)) bytes += (*round)->bytes();
    }
    return bytes;
}

}  // namespace OverlayEditor
