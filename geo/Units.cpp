#include "geo/Units.h"

#include <cmath>

namespace halCore {

#define UNIT(constant, family, abbreviation, name, offset, scale) \
    constinit const Units Units::constant(Units::Literal{}, name, abbreviation, offset, scale, family);
#include "geo/UnitsTable.def"
#undef UNIT

Units::Units(std::string_view name, std::string_view abbreviation, double scale, std::string_view family)
    : Units(offsetThenScaleUnit(name, abbreviation, 0.0, scale, family)) {}

Units Units::offsetThenScaleUnit(std::string_view name, std::string_view abbreviation, double offset,
                                 double scale, std::string_view family) {
    std::string texts;
    texts.reserve(name.size() + abbreviation.size() + family.size());
    texts.append(name).append(abbreviation).append(family);

    Units unit;
    unit.texts_ = std::make_shared<const std::string>(std::move(texts));
    const std::string_view all = *unit.texts_;
    unit.name_ = all.substr(0, name.size());
    unit.abbreviation_ = all.substr(name.size(), abbreviation.size());
    unit.family_ = all.substr(name.size() + abbreviation.size());
    unit.offset_ = offset;
    unit.scale_ = scale;
    unit.valid_ = !family.empty() && family != "invalid" && std::isfinite(scale) && scale != 0.0 &&
                  std::isfinite(offset);
    return unit;
}

double Units::convertTo(const Units& other, double value) const {
    // The same unit gives the same number, to the last bit.
    if (!canConvert(other) || *this == other) return value;
    return (offset_ + value) * scale_ / other.scale_ - other.offset_;
}

int Units::convertTo(const Units& other, double value, double& out) const {
    out = convertTo(other, value);
    return canConvert(other) ? 0 : 1;
}

}  // namespace halCore
