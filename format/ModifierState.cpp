#include "format/ModifierState.h"

#include "format/ParsedShape.h"

namespace halCore::ZEL {

void ModifierState::clear() {
    for (std::string& field : fields_) field.clear();
}

void ModifierState::set(ShapeParameter parameter, std::string_view value) {
    const auto index = static_cast<std::size_t>(parameter);
    if (index < fields_.size()) fields_[index] = value;
}

void ModifierState::apply(ParsedShape& record) const {
    for (std::size_t i = 0; i < fields_.size(); ++i)
        if (!fields_[i].empty()) record.set(static_cast<ShapeParameter>(i), fields_[i]);
}

}  // namespace halCore::ZEL
