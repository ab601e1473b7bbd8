#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace halCore {

/// One unit of measure: `Units::FEET.convertTo(Units::METERS, 1.0)` is 0.30479999.
///
/// A value in a unit becomes base units of its family as (offset + value) * scale; only temperatures
/// have an offset. Cheap to copy. The texts that the getters return live as long as any copy of the
/// unit, those of the predefined units for ever.
class Units {
  public:
    /// An invalid unit of the family "invalid".
    constexpr Units() = default;
    /// A unit whose value times `scale` is in the base unit of `family`.
    Units(std::string_view name, std::string_view abbreviation, double scale, std::string_view family);
    /// A unit whose (offset + value) * scale is in the base unit of `family`.
    static Units offsetThenScaleUnit(std::string_view name, std::string_view abbreviation, double offset,
                                     double scale, std::string_view family);

    std::string_view name() const { return name_; }
    std::string_view abbreviation() const { return abbreviation_; }
    std::string_view family() const { return family_; }
    double toBaseScalar() const { return scale_; }
    double toBaseOffset() const { return offset_; }

    /// False for a default-constructed unit, and for one of the family "invalid" or "" or whose scale is
    /// zero or not finite.
    bool isValid() const { return valid_; }
    /// Both are valid and of the same family.
    bool canConvert(const Units& other) const { return valid_ && other.valid_ && family_ == other.family_; }

    /// The value of this unit in the other; unchanged when the units cannot be converted.
    double convertTo(const Units& other, double value) const;
    /// The same into `out`. Returns 0, or non-zero when the units cannot be converted; then `out` is the
    /// value unchanged.
    int convertTo(const Units& other, double value, double& out) const;

    /// Same scale, offset and family; the texts do not matter.
    friend bool operator==(const Units& a, const Units& b) {
        return a.scale_ == b.scale_ && a.offset_ == b.offset_ && a.family_ == b.family_;
    }

#define UNIT(constant, family, abbreviation, name, offset, scale) static const Units constant;
#include "geo/UnitsTable.def"
#undef UNIT

  private:
    struct Literal {};
    constexpr Units(Literal, std::string_view name, std::string_view abbreviation, double offset,
                    double scale, std::string_view family)
        : name_(name),
          abbreviation_(abbreviation),
          family_(family),
          scale_(scale),
          offset_(offset),
          valid_(true) {}

    std::string_view name_;
    std::string_view abbreviation_;
    std::string_view family_ = "invalid";
    double scale_ = 1.0;
    double offset_ = 0.0;
    bool valid_ = false;
    /// Holds the texts of a unit that is not predefined.
    std::shared_ptr<const std::string> texts_;
};

}  // namespace halCore
