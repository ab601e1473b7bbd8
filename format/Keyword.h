#pragma once

#include <span>
#include <string_view>

#include "format/ShapeParameter.h"
#include "format/ShapeType.h"

namespace halCore::ZEL {

/// What a reader does with a line of a block.
enum class KeywordAction : unsigned char {
    Unknown,
    Start,
    End,
    Ignore,
    Comment,
    Shape,
    AnnotationText,
    Box,
    /// Stores "1" (or for "off", "0").
    Flag,
    /// Stores the second word; without one, reports.
    Value,
    /// The same, but a line without a value is passed over.
    QuietValue,
    /// Stores the rest of the line.
    RestOfLine,
    Color,
    AbsolutePoint,
    RelativePoint,
    GridPoint,
    AbsolutePosition,
    RelativePosition,
    ReferencePoint,
    Half,
    Double,
    Scale,
    Orient,
    Extrude,
    ThreeD
};

struct Keyword {
    std::string_view text;
    KeywordAction action = KeywordAction::Unknown;
    ShapeParameter parameter = ShapeParameter::Absolute;
    ShapeType shape = ShapeType::None;
    /// How a message about missing arguments begins; the keyword itself when empty.
    std::string_view label = {};
};

/// The keyword's entry, one with the action `Unknown` for any other word. `word` is in lower case.
const Keyword& findKeyword(std::string_view word);

/// All keywords of the format, for tests and tools.
std::span<const Keyword> allKeywords();

}  // namespace halCore::ZEL
