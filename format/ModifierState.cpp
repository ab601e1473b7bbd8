#include "format/ModifierState.h"

#include <bit>

#include "format/ParsedShape.h"

namespace halCore::ZEL {

void ModifierState::set(ShapeParameter parameter, std::string_view value) {
    const auto index = static_cast<std::size_t>(parameter);
    if (index < kModifierCount) fields_.set(index, value);
}

void ModifierState::view(ShapeParameter parameter, std::string_view value) {
    const auto index = static_cast<std::size_t>(parameter);
    if (index < kModifierCount) fields_.view(index, value);
}

void ModifierState::apply(ParsedShape& record) const {
    for (std::uint64_t rest = fields_.present(); rest != 0; rest &= rest - 1) {
        const auto index = static_cast<std::size_t>(std::countr_zero(rest));
        const std::string_view value = fields_.get(index);
        if (!value.empty()) record.view(static_cast<ShapeParameter>(index), value);
    }
}

}  // namespace halCore::ZEL
