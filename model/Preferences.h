#pragma once

#include <string>

#include "geo/TspiUnitsProviderAdapter.h"

namespace OverlayEditor {

/// The user's display settings, kept in the host's settings store: read when the object is made, written
/// when it dies. Units and precision live in the units provider. Setters change memory only.
class Preferences {
  public:
    enum CoordinateSystem { LLA = 0, MGRS = 1 };

    Preferences();
    ~Preferences();
    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;

    UTILS::UnitType_t rangeUnits() const;
    UTILS::UnitType_t altitudeUnits() const;
    UTILS::UnitType_t angleUnits() const;
    UTILS::UnitType_t geodeticUnits() const;
    void setRangeUnits(UTILS::UnitType_t units);
    void setAltitudeUnits(UTILS::UnitType_t units);
    void setAngleUnits(UTILS::UnitType_t units);
    void setGeodeticUnits(UTILS::UnitType_t units);

    /// Decimals of shown values.
    int precision() const;
    void setPrecision(int decimals);

    CoordinateSystem coordinateSystem() const { return coordinateSystem_; }
    void setCoordinateSystem(CoordinateSystem system) { coordinateSystem_ = system; }

    /// Whether overlay files that were created automatically are deleted at exit.
    bool autoDelete() const { return autoDelete_; }
    void setAutoDelete(bool enabled) { autoDelete_ = enabled; }

    UTILS::TspiUnitsProviderAdapter* unitsProvider() { return &unitsProvider_; }
    const UTILS::TspiUnitsProviderAdapter* unitsProvider() const { return &unitsProvider_; }

    /// "MGRS" for MGRS, "LLA" for every other value.
    std::string getStringFromSystem(CoordinateSystem system) const;
    /// MGRS for exactly "MGRS", LLA for every other text.
    CoordinateSystem getSystemFromString(const std::string& text) const;

  private:
    UTILS::TspiUnitsProviderAdapter unitsProvider_;
    CoordinateSystem coordinateSystem_ = LLA;
    bool autoDelete_ = false;
};

}  // namespace OverlayEditor
