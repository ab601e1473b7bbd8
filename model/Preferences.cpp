#include "model/Preferences.h"

#include <limits>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "pi/Guard.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {
namespace {

constexpr const char* kRangeUnits = "RangeUnits";
constexpr const char* kAltitudeUnits = "AltitudeUnits";
constexpr const char* kAngleUnits = "AngleUnits";
constexpr const char* kGeodeticUnits = "GeodeticUnits";
constexpr const char* kPrecision = "Precision";
constexpr const char* kAutoDelete = "AutoDeleteZelFilesOnExit";
constexpr const char* kCoordinateSystem = "OverlayEditorCoordinateSystem";

constexpr int kDefaultPrecision = 2;

using PIGUI::PIRegistry;
using UTILS::UnitType_t;

/// An unknown name is Invalid, which the units provider refuses: its default holds.
UnitType_t storedUnits(const char* key, UnitType_t missing) {
    const std::string text = PIRegistry::getValue(key);
    return text.empty() ? missing : UTILS::unitsGetTypeFromString(text);
}

int storedPrecision() {
    const auto stored = UTILS::readInteger(PIRegistry::getValue(kPrecision));
    if (!stored || *stored < 0 || *stored > std::numeric_limits<int>::max()) return kDefaultPrecision;
    return static_cast<int>(*stored);
}

void storeUnits(const char* key, UnitType_t units) {
    PIRegistry::setValue(key, std::string(UTILS::unitsGetName(units)));
}

}  // namespace

Preferences::Preferences() {
    coordinateSystem_ = getSystemFromString(PIRegistry::getValue(kCoordinateSystem));
    setRangeUnits(storedUnits(kRangeUnits, UTILS::kDefaultLengthUnits));
    setAltitudeUnits(storedUnits(kAltitudeUnits, UTILS::kDefaultLengthUnits));
    setAngleUnits(storedUnits(kAngleUnits, UTILS::kDefaultAngleUnits));
    setGeodeticUnits(storedUnits(kGeodeticUnits, UTILS::kDefaultGeodeticUnits));
    setPrecision(storedPrecision());
    autoDelete_ = UTILS::stringIsTrueToken(PIRegistry::getValue(kAutoDelete));
}

Preferences::~Preferences() {
    guardedEnd([this] {
        PIRegistry::setValue(kCoordinateSystem, getStringFromSystem(coordinateSystem_));
        PIRegistry::setValue(kAutoDelete, autoDelete_ ? "TRUE" : "FALSE");
        storeUnits(kRangeUnits, rangeUnits());
        storeUnits(kAltitudeUnits, altitudeUnits());
        storeUnits(kAngleUnits, angleUnits());
        storeUnits(kGeodeticUnits, geodeticUnits());
        PIRegistry::setValue(kPrecision, std::to_string(precision()));
    });
}

UnitType_t Preferences::rangeUnits() const {
    return unitsProvider_.rangeUnits();
}
UnitType_t Preferences::altitudeUnits() const {
    return unitsProvider_.altitudeUnits();
}
UnitType_t Preferences::angleUnits() const {
    return unitsProvider_.angleUnits();
}
UnitType_t Preferences::geodeticUnits() const {
    return unitsProvider_.geodeticUnits();
}
void Preferences::setRangeUnits(UnitType_t units) {
    unitsProvider_.setRangeUnits(units);
}
void Preferences::setAltitudeUnits(UnitType_t units) {
    unitsProvider_.setAltitudeUnits(units);
}
void Preferences::setAngleUnits(UnitType_t units) {
    unitsProvider_.setAngleUnits(units);
}
void Preferences::setGeodeticUnits(UnitType_t units) {
    unitsProvider_.setGeodeticUnits(units);
}
int Preferences::precision() const {
    return unitsProvider_.precision();
}
void Preferences::setPrecision(int decimals) {
    unitsProvider_.setPrecision(decimals);
}

std::string Preferences::getStringFromSystem(CoordinateSystem system) const {
    return system == MGRS ? "MGRS" : "LLA";
}

Preferences::CoordinateSystem Preferences::getSystemFromString(const std::string& text) const {
    return text == "MGRS" ? MGRS : LLA;
}

}  // namespace OverlayEditor
