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
    /// The same for a value that stays where it is until `copyViewed`, or until it is cleared.
    void view(ShapeParameter parameter, std::string_view value);
    void copyViewed() { fields_.copyViewed(); }
    /// Writes every non-empty field into the record, which views it: it is cleared before this changes.
    void apply(ParsedShape& record) const;

  private:
    TextFields<kModifierCount> fields_;
};

}  // namespace halCore::ZEL
