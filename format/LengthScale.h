#pragma once

#include "geo/Units.h"

namespace halCore::ZEL {

/// A unit's conversion from and to metres, looked up once for many values. The results are those of
/// `Units::convertTo`, to the last bit.
class LengthScale {
  public:
    explicit LengthScale(const Units& units)
        : same_(units == Units::METERS || !units.canConvert(Units::METERS)),
          scale_(units.toBaseScalar()),
          offset_(units.toBaseOffset()) {}

    double toMetres(double value) const { return same_ ? value : (offset_ + value) * scale_; }
    double fromMetres(double value) const { return same_ ? value : value / scale_ - offset_; }

  private:
    bool same_;
    double scale_;
    double offset_;
};

}  // namespace halCore::ZEL
