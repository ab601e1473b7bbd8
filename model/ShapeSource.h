#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "format/SourceText.h"
#include "format/ZelShape.h"

namespace OverlayEditor {

/// The block of a shape that was made here.
constexpr std::size_t kNoBlock = std::size_t(-1);

/// Where a shape comes from: the block of a text that stands for it as long as it is not changed. Copies of
/// the shape have it, too.
struct ShapeSource {
    /// Null for a shape that was made here.
    std::shared_ptr<const halCore::ZEL::SourceText> text;
    std::size_t block = kNoBlock;
    /// Of what it was written as when it was loaded: as long as that is the same, so is the shape. 0 when it
    /// was not written.
    std::uint64_t digest = 0;
    /// What the block says beside what the editor has fields for; null for nothing.
    std::shared_ptr<const halCore::ZEL::ZelShape> extras;
    /// What the block becomes when the shape is changed, as a sentence about it; null for what it is.
    const char* becomes = nullptr;
    bool operator==(const ShapeSource&) const = default;
};

}  // namespace OverlayEditor
