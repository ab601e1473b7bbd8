#include "format/UnitsState.h"

#include "geo/UnitsRegistry.h"

namespace halCore::ZEL {

const Units& UnitsState::altitudeUnits() const {
    return altitude_ ? *altitude_ : Units::FEET;
}
const Units& UnitsState::rangeUnits() const {
    return range_ ? *range_ : Units::YARDS;
}
const Units& UnitsState::angleUnits() const {
    return angle_ ? *angle_ : Units::DEGREES;
}

Units UnitsState::resolve(std::string_view text, const UnitsRegistry& registry) {
    if (text == "secs") return Units::SECONDS;
    if (text == "mins") return Units::MINUTES;
    if (text == "hrs") return Units::HOURS;
    if (text == "sm") return Units::MILES;
    if (text == "degree") return Units::DEGREES;
    const Units units = registry.unitsByAbbreviation(text);
    return units.isValid() ? units : registry.unitsByName(text);
}

}  // namespace halCore::ZEL
