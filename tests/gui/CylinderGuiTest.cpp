#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Notify.h"
#include "geo/Angles.h"
#include "gui/CylinderGui.h"
#include "gui/Form.h"

using halCore::kRadiansPerDegree;
using halCore::Vec3;
using OverlayEditor::CylinderGui;
using OverlayEditor::CylinderShape;
using OverlayEditor::Preferences;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

class CylinderGuiTest : public ::testing::Test {
  protected:
    CylinderGuiTest() {
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages.push_back(text); });
    }
    ~CylinderGuiTest() override {
        halNotify::setNotifyHandler({});
        panel.reset();
        freeFunctors();
    }

    void open(CylinderShape::Subtype subtype) {
        panel.reset();
        panel = std::make_unique<CylinderGui>(subtype, preferences, canvas, [this] { ++changes; });
    }

    FakeHost host;
    Preferences preferences;
    PIGUI::PICanvas canvas{nullptr};
    Form form{host};
    int changes = 0;
    std::vector<std::string> messages;
    std::unique_ptr<CylinderGui> panel;
};

TEST_F(CylinderGuiTest, EachKindHasItsFieldsInOrder) {
    const std::vector<std::string> all = {
        "Radius:", "X Radius:", "Y Radius:", "Height:", "Start Angle:", "End Angle:"};
    const std::map<CylinderShape::Subtype, std::vector<std::string>> expected = {
        {CylinderShape::Circle, {"Radius:"}},
        {CylinderShape::Ellipse, {"X Radius:", "Y Radius:"}},
        {CylinderShape::Arc, {"X Radius:", "Y Radius:", "Start Angle:", "End Angle:"}},
        {CylinderShape::Cylinder, {"X Radius:", "Y Radius:", "Height:"}},
        {CylinderShape::Wedge, {"X Radius:", "Y Radius:", "Height:", "Start Angle:", "End Angle:"}},
        {CylinderShape::Sphere, {"Radius:"}},
        {CylinderShape::Hemisphere, {"Radius:"}},
        {CylinderShape::Ellipsoid, {"X Radius:", "Y Radius:", "Height:"}},
        {CylinderShape::Cone, {"Radius:", "Height:"}},
    };
    for (const auto& [subtype, own] : expected) {
        open(subtype);
        std::vector<std::string> labels = {"Draw:", "Lat:", "Lon: ", "Alt:"};
        labels.insert(labels.end(), own.begin(), own.end());
        labels.insert(labels.end(), {"Line Width: ", "Line Color:", "Filled:", "Fill Color:"});
        std::vector<std::string> shown;
        for (const auto& [handle, widget] : host.widgets) {
            const std::string text = widget.caption.substr(0, widget.caption.find('\t'));
            if (widget.kind == FakeHost::Id::CreateLabel && widget.shown &&
                text.ends_with(':') | text.ends_with(": "))
                shown.push_back(text);
        }
        EXPECT_EQ(shown, labels) << "subtype " << subtype;
    }
    panel.reset();
    EXPECT_EQ(host.widgets.size(), 1u) << "the canvas alone is left";
}

// Values of docs for hand checks: 1852 m is a nautical mile, 21.3 degrees are 21 degrees 18 minutes.
TEST_F(CylinderGuiTest, WhatIsSetIsShownAndIsNoEdit) {
    open(CylinderShape::Wedge);
    panel->setDrawCheck(true);
    panel->setCenterLla(Vec3(21.3 * kRadiansPerDegree, -158 * kRadiansPerDegree, 12.3456789));
    panel->setXradius(1852.0049);
    panel->setYradius(5);
    panel->setHeight(500);
    panel->setStartEndAngles(0.5 * kRadiansPerDegree, 359 * kRadiansPerDegree);
    panel->lineStyle().setColor(0xFF7300FF);
    panel->lineStyle().setWidth(3);
    panel->fillStyle().setFilled(true);
    panel->fillStyle().setColor(0x01020304);

    EXPECT_TRUE(form.field("Draw:").checked);
    EXPECT_EQ(form.field("Lat:").text, "21\u00b018'00.00\"N");
    EXPECT_EQ(form.text("Alt:"), "12.35 m");
    EXPECT_EQ(form.text("X Radius:"), "1852.00 m");
    EXPECT_EQ(form.text("Start Angle:"), "0.50 deg");
    EXPECT_EQ(form.text("End Angle:"), "359.00 deg");
    EXPECT_EQ(form.field("Line Width: ").number, 3);
    EXPECT_EQ(static_cast<std::uint32_t>(static_cast<std::int32_t>(form.field("Line Color:").number)),
              0xFF7300FFu);
    EXPECT_TRUE(form.field("Filled:").checked);

    // Leaving a field that was not changed is no edit either: no digit that is not shown gets lost.
    host.activate(form.field("X Radius:"));
    host.activate(form.field("Alt:"));
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(panel->centerLla() || panel->xRadius() || panel->yRadius() || panel->height() ||
                 panel->startAngle() || panel->endAngle());
    EXPECT_EQ(panel->fillStyle().color(), 0x01020304u);
}

TEST_F(CylinderGuiTest, TypedTextAnswersWithItsUnit) {
    open(CylinderShape::Cylinder);
    const struct {
        const char* typed;
        double meters;
        const char* shown;
    } table[] = {{"5 nm", 9260.0, "9260.00"},
                 {" 1e3 ", 1000.0, "1000.00"},
                 {"3 ft", 0.91439997, "0.91"},
                 {"2.123456789", 2.123456789, "2.12"}};
    for (const auto& row : table) {
        form.type("X Radius:", row.typed);
        ASSERT_TRUE(panel->xRadius()) << row.typed;
        EXPECT_DOUBLE_EQ(*panel->xRadius(), row.meters) << row.typed;
        EXPECT_EQ(form.field("X Radius:").text, row.shown) << row.typed;
    }
    EXPECT_EQ(changes, 4);
    EXPECT_FALSE(panel->yRadius());

    panel->setXradius(7.0);
    EXPECT_FALSE(panel->xRadius()) << "a setter ends the edit";
    EXPECT_EQ(changes, 4);
}

TEST_F(CylinderGuiTest, NonsenseIsReportedAndTheValueStays) {
    open(CylinderShape::Cone);
    panel->setXradius(100);
    panel->setCenterLla(Vec3(0.1, 0.2, 3));
    const std::string lat = form.field("Lat:").text;
    for (const auto& [label, text] : std::vector<std::pair<std::string, std::string>>{
             {"Radius:", "wide"}, {"Radius:", ""}, {"Radius:", "5 secs"}, {"Lat:", "91"}, {"Lat:", "5E"}}) {
        messages.clear();
        const std::string before = form.field(label).text;
        form.type(label, text);
        EXPECT_EQ(form.field(label).text, before) << text;
        ASSERT_EQ(messages.size(), 1u) << text;
        EXPECT_THAT(messages[0], HasSubstr("\"" + text + "\""));
    }
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(panel->xRadius() || panel->centerLla());
}

TEST_F(CylinderGuiTest, AnEditOfOneCoordinateKeepsTheDigitsOfTheOthers) {
    open(CylinderShape::Circle);
    const Vec3 center(0.123456789012345, -2.3456789012345, 12.3456789);
    panel->setCenterLla(center);
    form.type("Lon: ", "158 30 W");
    const auto edited = panel->centerLla();
    ASSERT_TRUE(edited);
    EXPECT_EQ(edited->lat(), center.lat());
    EXPECT_NEAR(edited->lon(), -158.5 * kRadiansPerDegree, 1e-15);
    EXPECT_EQ(edited->alt(), center.alt());
}

TEST_F(CylinderGuiTest, NewUnitsRelabelAndRedisplayEveryField) {
    open(CylinderShape::Cylinder);
    panel->setCenterLla(Vec3(0.5 * kRadiansPerDegree, 1 * kRadiansPerDegree, 304.79999));
    panel->setXradius(18520);
    panel->setHeight(30.479999);
    preferences.setRangeUnits(UTILS::UnitType_t::NauticalMiles);
    preferences.setAltitudeUnits(UTILS::UnitType_t::Feet);
    preferences.setGeodeticUnits(UTILS::UnitType_t::DegreesHemisphere);
    preferences.setPrecision(3);
    panel->notifyPrefsUpdate();
    EXPECT_EQ(form.text("X Radius:"), "10.000 nm");
    EXPECT_EQ(form.text("Height:"), "100.000 ft");
    EXPECT_EQ(form.text("Alt:"), "1000.000 ft");
    EXPECT_EQ(form.field("Lat:").text, "0.500\u00b0N");
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(panel->xRadius() || panel->centerLla());
}

// By GeographicLib: 21.3N 158W lies in 04QFJ 03723 55678, and 04QFJ 12345 67890 starts at 21.409796672217N
// 157.916081174208W.
TEST_F(CylinderGuiTest, MgrsShowsAndReadsTheCenter) {
    preferences.setCoordinateSystem(Preferences::MGRS);
    open(CylinderShape::Circle);
    EXPECT_FALSE(form.has("Lat:"));
    panel->setCenterLla(Vec3(21.3 * kRadiansPerDegree, -158 * kRadiansPerDegree, 7));
    EXPECT_EQ(form.field("GZD:").text, "04Q FJ");
    EXPECT_EQ(form.field("Easting/Northing:").text, "03723 55678");
    host.activate(form.field("GZD:"));
    EXPECT_FALSE(panel->centerLla());

    for (const auto& [label, text] :
         std::vector<std::pair<std::string, std::string>>{{"Easting/Northing:", "12345 67890"},
                                                          {"Easting/Northing:", "12345/67890"},
                                                          {"Easting/Northing:", "1234567890"},
                                                          {"GZD:", "4q fj 12345 67890"}}) {
        panel->setCenterLla(Vec3(21.3 * kRadiansPerDegree, -158 * kRadiansPerDegree, 7));
        form.type(label, text);
        const auto edited = panel->centerLla();
        ASSERT_TRUE(edited) << text;
        EXPECT_NEAR(edited->lat(), 21.409796672217 * kRadiansPerDegree, 1e-12) << text;
        EXPECT_NEAR(edited->lon(), -157.916081174208 * kRadiansPerDegree, 1e-12) << text;
        EXPECT_EQ(edited->alt(), 7);
        EXPECT_EQ(form.field("Easting/Northing:").text, "12345 67890");
    }
    for (const auto& [label, text] :
         std::vector<std::pair<std::string, std::string>>{{"Easting/Northing:", "1234 567"},
                                                          {"Easting/Northing:", "far"},
                                                          {"GZD:", "99Q FJ"},
                                                          {"GZD:", ""}}) {
        messages.clear();
        changes = 0;
        panel->setCenterLla(Vec3(21.3 * kRadiansPerDegree, -158 * kRadiansPerDegree, 7));
        form.type(label, text);
        EXPECT_EQ(messages.size(), 1u) << text;
        EXPECT_EQ(changes, 0) << text;
        EXPECT_EQ(form.field("GZD:").text, "04Q FJ");
        EXPECT_EQ(form.field("Easting/Northing:").text, "03723 55678");
    }

    preferences.setCoordinateSystem(Preferences::LLA);
    panel->notifyPrefsUpdate();
    EXPECT_FALSE(form.has("GZD:"));
    EXPECT_EQ(form.field("Lat:").text, "21\u00b018'00.00\"N");
}

TEST_F(CylinderGuiTest, StylesAnswerWhatTheUserChose) {
    open(CylinderShape::Circle);
    form.choose("Line Width: ", 7);
    form.choose("Line Color:", static_cast<std::int32_t>(0xFF0000FFu));
    form.check("Filled:", true);
    form.choose("Fill Color:", 0x00FF0080);
    form.check("Draw:", true);
    EXPECT_EQ(changes, 5);
    EXPECT_EQ(panel->lineStyle().width(), 7);
    EXPECT_EQ(panel->lineStyle().color(), 0xFF0000FFu);
    EXPECT_TRUE(panel->fillStyle().filled());
    EXPECT_EQ(panel->fillStyle().color(), 0x00FF0080u);
    EXPECT_TRUE(panel->drawCheck());
}

TEST_F(CylinderGuiTest, AnEditMayEndThePanel) {
    panel =
        std::make_unique<CylinderGui>(CylinderShape::Circle, preferences, canvas, [this] { panel.reset(); });
    form.type("Radius:", "5");
    EXPECT_EQ(panel, nullptr);
}

TEST_F(CylinderGuiTest, AHostThatRefusesEverythingIsSurvived) {
    host.refuseAll = true;
    open(CylinderShape::Wedge);
    panel->setXradius(5);
    panel->setCenterLla(Vec3(1, 1, 1));
    panel->notifyPrefsUpdate();
    EXPECT_FALSE(panel->xRadius());
    panel.reset();
}

}  // namespace
