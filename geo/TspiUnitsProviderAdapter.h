#pragma once

#include <string>
#include <string_view>

#include "geo/UnitTypes.h"

namespace UTILS {

/// The user's units and precision, and the values of the editor as text in them. Inside are metres and
/// radians; a text is a number with `precision()` decimals, without a unit, except that the degree forms
/// carry their own marks.
///
/// Formatting a value that is not finite gives an empty text. Parsing takes what was formatted and what
/// people type: blanks around it, any number form, a unit of the same family behind it ("2.5 nm", "3
/// feet", "1 mile") and, for angles, any degree form of readTypedAngle. It returns 0 and sets the value; then
/// `remark` is empty or tells that the value is not the one that was typed. Otherwise it returns non-zero,
/// with the value left alone and the reason in `remark`: what is wrong, or what to type instead.
class TspiUnitsProviderAdapter {
  public:
    UnitType_t rangeUnits() const { return rangeUnits_; }
    UnitType_t altitudeUnits() const { return altitudeUnits_; }
    UnitType_t angleUnits() const { return angleUnits_; }
    UnitType_t geodeticUnits() const { return geodeticUnits_; }
    int precision() const { return precision_; }

    /// Each returns false, and changes nothing, for a type of another family.
    bool setRangeUnits(UnitType_t type);
    bool setAltitudeUnits(UnitType_t type);
    bool setAngleUnits(UnitType_t type);
    bool setGeodeticUnits(UnitType_t type);
    /// Decimals, clamped to 0 to kMaxPrecision.
    void setPrecision(int decimals);
    static constexpr int kMaxPrecision = 12;

    std::string formatRange(double meters) const;
    std::string formatAltitude(double meters) const;
    std::string formatAngle(double radians) const;
    std::string formatLatitude(double radians) const;
    std::string formatLongitude(double radians) const;

    int parseRange(std::string_view text, double& meters, std::string* remark = nullptr) const;
    /// \param unit told the unit behind the number, Invalid without one
    int parseRange(std::string_view text, double& meters, std::string* remark, UnitType_t& unit) const;
    int parseAltitude(std::string_view text, double& meters, std::string* remark = nullptr) const;
    /// An angle without a hemisphere, up to one turn either way. A plain number is in the user's unit.
    /// Where the unit is not degrees, these need their marks ("10°30'").
    int parseAngle(std::string_view text, double& radians, std::string* remark = nullptr) const;
    /// In degrees; beyond 90 is refused, beyond 180, up to 360, is the same meridian, with a remark.
    int parseLatitude(std::string_view text, double& radians, std::string* remark = nullptr) const;
    int parseLongitude(std::string_view text, double& radians, std::string* remark = nullptr) const;

  private:
    UnitType_t rangeUnits_ = kDefaultLengthUnits;
    UnitType_t altitudeUnits_ = kDefaultLengthUnits;
    UnitType_t angleUnits_ = kDefaultAngleUnits;
    UnitType_t geodeticUnits_ = kDefaultGeodeticUnits;
    int precision_ = 2;
};

}  // namespace UTILS
