#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "format/Parser.h"
#include "format/SourceText.h"
#include "geo/PointConverter.h"
#include "geo/UnitsRegistry.h"
#include "model/Preferences.h"

namespace OverlayEditor {

/// Writes the block of a shape that was changed after it had been read from one: what stands there is changed
/// line by line, as far as that gives exactly the shape; else the block is written anew. Used again for block
/// after block.
class BlockRewriter {
  public:
    BlockRewriter();
    BlockRewriter(const BlockRewriter&) = delete;
    BlockRewriter& operator=(const BlockRewriter&) = delete;

    struct Rewritten {
        std::string lines;
        /// What is not in the block any more, by line; only where it is written anew.
        std::vector<halCore::ZEL::ParseMessage> lost;
        /// Whether the shape is still of its block's kind, where the editor has another one for it: hidden or
        /// shown, and nothing else.
        bool sameKind = false;
    };
    /// \param after what the editor makes of the shape now
    /// \param anew whether the block is written anew in any case
    Rewritten rewrite(const halCore::ZEL::SourceText& source, std::size_t block,
                      halCore::ZEL::ZelShape& after, const Preferences& preferences, bool anew);

  private:
    /// The block with other lines; nothing where no lines give the shape.
    std::optional<Rewritten> patched_(std::string_view old, halCore::ZEL::ZelShape& after,
                                      const Preferences& preferences);
    /// What the editor writes of a block that it reads and nobody changes; null when that is not one shape.
    halCore::ZEL::ZelShapePtr asWritten_(const halCore::ZEL::Parser::Shapes& read,
                                         const Preferences& preferences);
    halCore::ZEL::Parser::Shapes read_(std::string_view block);
    /// The same as text, empty for none.
    std::string meaningOf_(std::string_view block, const Preferences& preferences);

    halCore::UnitsRegistry units_;
    halCore::ZEL::Parser parser_;
    /// Offsets mean the same wherever they count from. Null for a shape that has no place.
    PointConverter anywhere_;
    PointConverter* frame_ = nullptr;
};

/// Whether two texts are the same, but for the last digit of numbers that were written in other units.
bool sayTheSame(std::string_view a, std::string_view b);

/// A shape's block as the editor writes it, "\n" at each line's end.
std::string blockOf(const halCore::ZEL::ZelShape& shape);

}  // namespace OverlayEditor
