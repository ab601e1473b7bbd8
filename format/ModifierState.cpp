#include "format/ModifierState.h"

#include <bit>

#include "format/ParsedShape.h"

namespace halCore::ZEL {

void ModifierState::set(ShapeParameter parameter, std::string_view value) {
    const auto index = static_cast<std::size_t>(parameter);
    if (index >= fields_.size()) return;
    fields_[index] = value;
    present_ |= 1U << index;
}

void ModifierState::apply(ParsedShape& record) const {
    for (std::uint32_t rest = present_; rest != 0; rest &= rest - 1) {
        const auto index = static_cast<std::size_t>(std::countr_zero(rest));
        if (!fields_[index].empty()) record.set(static_cast<ShapeParameter>(index), fields_[index]);
    }
}

}  // namespace halCore::ZEL
