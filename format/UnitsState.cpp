#include "format/UnitsState.h"

#include "format/ParsedShape.h"
#include "geo/UnitsRegistry.h"

namespace halCore::ZEL {
namespace {

Units unitsOf(const ParsedShape& record, ShapeParameter parameter, const Units& like, std::string_view field,
              const UnitsRegistry& registry, const UnitsState::Reporter& report) {
    if (!record.hasValue(parameter)) return {};
    const std::string_view text = record.text(parameter);
    const Units units = UnitsState::resolve(text, registry);
    if (units.canConvert(like)) return units;
    if (report) report(std::string("Invalid ").append(field).append(": ").append(text));
    return {};
}

}  // namespace

const Units& UnitsState::altitudeUnits() const {
    return altitude_ ? *altitude_ : Units::FEET;
}
const Units& UnitsState::rangeUnits() const {
    return range_ ? *range_ : Units::YARDS;
}
const Units& UnitsState::angleUnits() const {
    return angle_ ? *angle_ : Units::DEGREES;
}

UnitsState UnitsState::parse(const ParsedShape& record, const UnitsRegistry& registry,
                             const Reporter& report) {
    using P = ShapeParameter;
    UnitsState state;
    if (!record.hasAny(P::AltitudeUnits, P::AngleUnits)) return state;
    state.setAltitudeUnits(
        unitsOf(record, P::AltitudeUnits, Units::METERS, "altitudeunits", registry, report));
    state.setRangeUnits(unitsOf(record, P::RangeUnits, Units::METERS, "rangeunits", registry, report));
    state.setAngleUnits(unitsOf(record, P::AngleUnits, Units::RADIANS, "angleunits", registry, report));
    return state;
}

const UnitsState& UnitsState::metric() {
    static const UnitsState metric = [] {
        UnitsState units;
        units.setAltitudeUnits(Units::METERS);
        units.setRangeUnits(Units::METERS);
        units.setAngleUnits(Units::DEGREES);
        return units;
    }();
    return metric;
}

std::shared_ptr<const Units> UnitsState::shared_(const Units& units) {
    if (!units.isValid()) return nullptr;
    for (const Units* const common : {&Units::METERS, &Units::DEGREES, &Units::FEET, &Units::YARDS})
        if (units == *common && units.abbreviation() == common->abbreviation())
            return {std::shared_ptr<const Units>(), common};
    return std::make_shared<const Units>(units);
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
