#include <gtest/gtest.h>

#include "model/Preferences.h"
#include "model/Utils.h"
#include "support/FakeHost.h"

using OverlayEditor::Preferences;

namespace {

TEST(Preferences, StartFromDefaultsWhereSettingsAreMissingOrSpoilt) {
    FakeHost host;
    for (const bool spoilt : {false, true}) {
        if (spoilt)
            host.settings = {{"Precision", "lots"},        {"RangeUnits", "furlongs"},
                             {"AngleUnits", "meters"},     {"OverlayEditorCoordinateSystem", "mgrs"},
                             {"AltitudeUnits", "degrees"}, {"AutoDeleteZelFilesOnExit", "maybe"}};
        const Preferences preferences;
        EXPECT_EQ(preferences.rangeUnits(), static_cast<UTILS::UnitType_t>(20));
        EXPECT_EQ(preferences.altitudeUnits(), static_cast<UTILS::UnitType_t>(20));
        EXPECT_EQ(preferences.angleUnits(), static_cast<UTILS::UnitType_t>(11));
        EXPECT_EQ(preferences.geodeticUnits(), static_cast<UTILS::UnitType_t>(13));
        EXPECT_EQ(preferences.precision(), 2);
        EXPECT_EQ(preferences.coordinateSystem(), Preferences::LLA);
        EXPECT_FALSE(preferences.autoDelete());
    }
}

TEST(Preferences, AreKeptInTheHostsSettings) {
    FakeHost host;
    {
        Preferences preferences;
        preferences.setPrecision(5);
        preferences.setRangeUnits(UTILS::UnitType_t::NauticalMiles);
        preferences.setAngleUnits(UTILS::UnitType_t::Mils);
        preferences.setCoordinateSystem(Preferences::MGRS);
        preferences.setAutoDelete(true);
        EXPECT_TRUE(host.settings.empty());
    }
    EXPECT_EQ(host.settings["Precision"], "5");
    EXPECT_EQ(host.settings["AutoDeleteZelFilesOnExit"], "TRUE");
    EXPECT_EQ(host.settings["OverlayEditorCoordinateSystem"], "MGRS");
    const Preferences again;
    EXPECT_EQ(again.precision(), 5);
    EXPECT_EQ(again.rangeUnits(), UTILS::UnitType_t::NauticalMiles);
    EXPECT_EQ(again.angleUnits(), UTILS::UnitType_t::Mils);
    EXPECT_EQ(again.coordinateSystem(), Preferences::MGRS);
    EXPECT_TRUE(again.autoDelete());
}

TEST(DefaultLla, IsOnTheSurfaceBelowTheEye) {
    FakeHost host;
    halCore::Vec3 lla(1, 2, 3);
    EXPECT_NE(OverlayEditor::Utils::getDefaultLla(lla), 0);
    EXPECT_EQ(lla, halCore::Vec3(0, 0, 0));
    host.eye = halCore::Vec3(0.5, -1.0, 12000.0);
    EXPECT_EQ(OverlayEditor::Utils::getDefaultLla(lla), 0);
    EXPECT_EQ(lla, halCore::Vec3(0.5, -1.0, 0.0));
}

}  // namespace
