#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "geo/Units.h"

namespace halCore {
class UnitsRegistry;
}

namespace halCore::ZEL {

class ParsedShape;

/// The units of one block. A unit that the block does not set is the reader's default: feet for
/// altitudes and heights, yards for ranges, degrees for angles.
class UnitsState {
  public:
    /// Receives a message without its line number, e.g. "Invalid rangeunits: furlongs".
    using Reporter = std::function<void(const std::string& message)>;

    bool hasAltitudeUnits() const { return altitude_ != nullptr; }
    bool hasRangeUnits() const { return range_ != nullptr; }
    bool hasAngleUnits() const { return angle_ != nullptr; }

    const Units& altitudeUnits() const;
    const Units& rangeUnits() const;
    const Units& angleUnits() const;

    void setAltitudeUnits(const Units& units) { altitude_ = shared_(units); }
    void setRangeUnits(const Units& units) { range_ = shared_(units); }
    void setAngleUnits(const Units& units) { angle_ = shared_(units); }

    /// Resolves the record's units texts. A unit that is unknown or of the wrong family is reported
    /// and stays unset, so that the default holds.
    static UnitsState parse(const ParsedShape& record, const UnitsRegistry& registry,
                            const Reporter& report = {});

    /// The unit that a units line names: "secs", "mins", "hrs", "sm" and "degree" first, then the
    /// registry by abbreviation, then by name. Invalid units when nothing matches.
    static Units resolve(std::string_view text, const UnitsRegistry& registry);

    /// Metres and degrees, as editors write most shapes.
    static const UnitsState& metric();
    /// Whether both are the same for certain: units that are not predefined never are.
    bool isSurely(const UnitsState& other) const {
        return altitude_ == other.altitude_ && range_ == other.range_ && angle_ == other.angle_;
    }

  private:
    static std::shared_ptr<const Units> shared_(const Units& units);

    // Every shape has a state and few set one: a pointer keeps it small.
    std::shared_ptr<const Units> altitude_;
    std::shared_ptr<const Units> range_;
    std::shared_ptr<const Units> angle_;
};

}  // namespace halCore::ZEL
