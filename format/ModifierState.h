#pragma once

#include <string_view>

#include "format/ShapeParameter.h"
#include "format/TextFields.h"

namespace halCore::ZEL {

class ParsedShape;

/// The style modifiers of a block, kept apart from its record until the block ends.
class ModifierState {
  public:
    void clear() { fields_.clear(); }
    /// `parameter` is one of the modifiers, the first fifteen of the enumeration; others are ignored.
    void set(ShapeParameter parameter, std::string_view value);
    /// Writes every non-empty field into the record.
    void apply(ParsedShape& record) const;

  private:
    TextFields<kModifierCount> fields_;
};

}  // namespace halCore::ZEL
