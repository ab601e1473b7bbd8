#pragma once

#include <optional>
#include <type_traits>

namespace halCore::ZEL {

/// The body of every `getX(out)`: 0 and the value when the field is set, 1 and the default otherwise.
template <typename T>
int getField(const std::optional<T>& field, T& out, const std::type_identity_t<T>& defaultValue) {
    if (field) {
        out = *field;
        return 0;
    }
    out = defaultValue;
    return 1;
}

}  // namespace halCore::ZEL
