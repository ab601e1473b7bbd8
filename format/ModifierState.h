#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "format/ShapeParameter.h"

namespace halCore::ZEL {

class ParsedShape;

/// The style modifiers of a block, kept apart from its record until the block ends.
class ModifierState {
  public:
    void clear() { present_ = 0; }
    /// `parameter` is one of the modifiers, the first fifteen of the enumeration; others are ignored.
    void set(ShapeParameter parameter, std::string_view value);
    /// Writes every non-empty field into the record.
    void apply(ParsedShape& record) const;

  private:
    std::array<std::string, kModifierCount> fields_;
    /// One bit a field: a block sets few of them.
    std::uint32_t present_ = 0;
};

}  // namespace halCore::ZEL
