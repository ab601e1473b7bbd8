#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Notify.h"
#include "geo/Angles.h"
#include "gui/Form.h"
#include "gui/TestEquipment.h"
#include "model/AnnotationShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/ShapeWriter.h"
#include "pi/PIWidgets.h"

using halCore::kRadiansPerDegree;
using halCore::Vec3;
using namespace OverlayEditor;
using ::testing::HasSubstr;

namespace {

constexpr const char* kAltitude = "77.125";

Vec3 degrees(double lat, double lon, double alt) {
    return {lat * kRadiansPerDegree, lon * kRadiansPerDegree, alt};
}

enum class Position { Geodetic, Mgrs, Attached };

/// What holds for each field of each kind's panel, however positions are shown.
class PanelFieldsTest : public ::testing::Test {
  protected:
    PanelFieldsTest() {
        converter.setReferenceLla(degrees(42, 10, 0), 7);
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages.push_back(text); });
    }
    ~PanelFieldsTest() override {
        shapes.clear();
        halNotify::setNotifyHandler({});
        freeFunctors();
    }

    template <typename Kind, typename... Arguments>
    Kind& make(Arguments... arguments) {
        shapes.clear();
        auto made = std::make_unique<Kind>(preferences, arguments...);
        Kind& kind = *made;
        shapes.push_back(std::move(made));
        return kind;
    }

    /// One maker for each kind: a complete shape whose first position has the altitude kAltitude.
    std::map<std::string, std::function<void()>> kinds() {
        std::map<std::string, std::function<void()>> made;
        const Vec3 place = degrees(42.123456789, 10.987654321, 77.125);
        const Vec3 other = degrees(43.5, 12.25, 5);
        for (int subtype = CylinderShape::Circle; subtype <= CylinderShape::Cone; ++subtype)
            made["circular " + std::to_string(subtype)] = [=, this] {
                auto& shape = make<CylinderShape>(static_cast<CylinderShape::Subtype>(subtype));
                shape.setCenter(place);
                shape.setMajorRadius(12345.678901234);
                shape.setMinorRadius(2345.6789012345);
                shape.setHeight(3456.7890123456);
                if (subtype != CylinderShape::Arc && subtype != CylinderShape::Wedge) return;
                shape.setStartAngle(0.1234567890123);
                shape.setEndAngle(2.3456789012345);
            };
        made["orbit"] = [=, this] {
            auto& orbit = make<OrbitShape>();
            orbit.setCenter(place);
            orbit.setCenter2(other);
            orbit.setMinorRadius(12345.678901234);
        };
        for (const auto subtype : {PolygonShape::Line, PolygonShape::Polygon})
            made[subtype == PolygonShape::Line ? "line" : "polygon"] = [=, this] {
                auto& polygon = make<PolygonShape>(subtype);
                for (const Vec3& point : {place, other, degrees(43, 10, 6)})
                    polygon.insertPointAtIndex(polygon.getNumPoints(), point);
            };
        for (const auto subtype : {RectangleShape::Rectangle, RectangleShape::Triangle})
            made[subtype == RectangleShape::Rectangle ? "rectangle" : "triangle"] = [=, this] {
                auto& box = make<RectangleShape>(subtype);
                box.setFirstCorner(place);
                box.setLastCorner({other.lat(), other.lon(), place.alt()});
            };
        made["label"] = [=, this] {
            auto& label = make<AnnotationShape>();
            label.setName("Here");
            label.mouseSetPosition(place);
        };
        made["free drawing"] = [=, this] {
            auto& drawing = make<FreeDrawShape>();
            drawing.startLine(place);
            drawing.addPoint(other);
        };
        return made;
    }

    /// Makes the shape and opens its panel.
    void open(const std::function<void()>& maker, Position position) {
        preferences.setCoordinateSystem(position == Position::Mgrs ? Preferences::MGRS : Preferences::LLA);
        maker();
        if (position == Position::Attached && shapes[0]->canAttach())
            shapes[0]->setAttachedPlatformId(7, &converter, false);
        shapes[0]->createGui(&preferences, &canvas);
        messages.clear();
    }
    std::string text() { return shapesText(shapes, &converter); }

    void forEachPanel(const std::function<void()>& visit) {
        for (const auto& [name, maker] : kinds())
            for (const auto position : {Position::Geodetic, Position::Mgrs, Position::Attached}) {
                SCOPED_TRACE(name + ", positions " + std::to_string(static_cast<int>(position)));
                open(maker, position);
                visit();
                if (!host.find("Corner 2")) continue;
                open(maker, position);
                host.find("Width/Height")->checked = false;
                host.find("Corner 2")->checked = true;
                host.activate(*host.find("Corner 2"));
                visit();
            }
    }

    FakeHost host;
    TestEquipment equipment;
    Preferences preferences;
    PointConverter converter;
    PIGUI::PICanvas canvas{nullptr};
    Form form{host};
    std::vector<std::string> messages;
    std::vector<std::unique_ptr<Shape>> shapes;
};

TEST_F(PanelFieldsTest, NonsenseIsExplainedAndChangesNothing) {
    const std::vector<std::string> everywhere = {"",      "wide", "5 parsecs", "nan",
                                                 "1e999", "--5",  "0x10",      "5 5 5 5"};
    const std::map<std::string, std::vector<std::string>> also = {
        {"Lat:", {"91", "5 E", "21 61 0", "-5 S"}},
        {"Lon: ", {"181", "5 N", "158 30 61"}},
        {"Alt:", {"5 deg", "1e10"}},
        {"X:", {"5 deg", "-1e10", "3e7"}},
        {"Y:", {"2e7"}},
        {"Radius:", {"0", "-5", "20003932"}},
        {"X Radius:", {"0", "-5 nm", "3e7"}},
        {"Width:         ", {"3e7", "5 deg"}},
        {"Start Angle:", {"5 km"}},
        {"GZD:", {"99Q FJ", "4Q", "4Q FJ 123 45"}},
        {"Easting/Northing:", {"1234 567", "1 2 3"}},
    };
    int tried = 0;
    forEachPanel([&] {
        const std::string before = text();
        for (const auto& [label, widget] : form.textFields()) {
            std::vector<std::string> nonsense = everywhere;
            if (const auto more = also.find(label); more != also.end())
                nonsense.insert(nonsense.end(), more->second.begin(), more->second.end());
            for (const std::string& typed : nonsense) {
                messages.clear();
                const std::string shown = widget->text;
                host.type(*widget, typed);
                EXPECT_EQ(widget->text, shown) << label << typed;
                ASSERT_EQ(messages.size(), 1u) << label << typed;
                EXPECT_THAT(messages[0], HasSubstr(typed)) << label;
                ++tried;
            }
        }
        EXPECT_EQ(text(), before);
    });
    EXPECT_GT(tried, 2000);
}

// 3000 ft of 0.30479999 m, a nautical mile of 1852 m, a statute mile of 1609.344 m; 6400 mils are a circle.
TEST_F(PanelFieldsTest, WhatPeopleTypeIsTaken) {
    struct Typed {
        const char* text;
        const char* shown;
    };
    const std::vector<Typed> lengths = {
        {"5 nm", "9260.00"},   {"3000 ft", "914.40"}, {"3000ft", "914.40"},
        {" +1e3 ", "1000.00"}, {"1 Mile", "1609.34"}, {"2 metres", "2.00"},
        {".5 km", "500.00"},   {"1 foot", "0.30"},    {"1 nautical mile", "1852.00"}};
    const std::vector<Typed> angles = {{"90", "90.00"},      {"45 30", "45.50"},    {"1600 mils", "90.00"},
                                       {"0.5 rad", "28.65"}, {"10:30:00", "10.50"}, {"7.25 degrees", "7.25"}};
    const std::map<std::string, std::vector<Typed>> table = {
        {"Lat:",
         {{"21 18 30 N", "21\u00b018'30.00\"N"},
          {"s21:18.5", "21\u00b018'30.00\"S"},
          {"-21.5", "21\u00b030'00.00\"S"},
          {"21d18m30.25s", "21\u00b018'30.25\"N"},
          {"21.5 deg N", "21\u00b030'00.00\"N"},
          {"41\u00b018'30\"", "41\u00b018'30.00\"N"}}},
        {"Lon: ",
         {{"158 30 w", "158\u00b030'00.00\"W"},
          {"E 9:15", "9\u00b015'00.00\"E"},
          {"10.5", "10\u00b030'00.00\"E"}}},
        {"GZD:",
         {{"4q fj 12345 67890", "04Q FJ"}, {"32 T PN 123 678", "32T PN"}, {"31uft1234567890", "31U FT"}}},
        {"Easting/Northing:",
         {{"12345 67890", "12345 67890"},
          {"123/678", "12300 67800"},
          {" 1234667891 ", "12346 67891"},
          {"32T PN 40 50", "40000 50000"}}},
        {"Start Angle:", angles},
        {"End Angle:", {{"120:30", "120.50"}, {"3200 mil", "180.00"}}},
        {"Alt:", lengths},
        {"X:", lengths},
        {"Y:", lengths},
        {"Z:", lengths},
        {"Radius:", lengths},
        {"X Radius:", lengths},
        {"Y Radius:", lengths},
        {"Height:", lengths},
        {"Width:         ", lengths},
    };
    forEachPanel([&] {
        for (const auto& [label, widget] : form.textFields()) {
            ASSERT_TRUE(table.count(label)) << label;
            for (const auto& [typed, shown] : table.at(label)) {
                host.type(*widget, typed);
                EXPECT_EQ(widget->text, shown) << label << typed;
                EXPECT_TRUE(messages.empty()) << messages[0];
                messages.clear();
            }
        }
    });
}

TEST_F(PanelFieldsTest, AnAltitudeChangesNothingElse) {
    for (const auto& [name, maker] : kinds())
        for (const auto position : {Position::Geodetic, Position::Mgrs}) {
            open(maker, position);
            if (!form.has("Alt:")) continue;
            std::string expected = text();
            ASSERT_THAT(expected, HasSubstr(kAltitude)) << name;
            for (auto at = expected.find(kAltitude); at != std::string::npos; at = expected.find(kAltitude))
                expected.replace(at, std::string(kAltitude).size(), "2000.5");
            form.type("Alt:", "2000.5");
            EXPECT_EQ(text(), expected) << name;
        }
    auto& box = dynamic_cast<RectangleShape&>((open(kinds()["rectangle"], Position::Attached), *shapes[0]));
    const Vec3 first = *box.firstCorner();
    form.type("Z:", "5 km");
    EXPECT_EQ(box.firstCorner()->lat(), first.lat());
    EXPECT_EQ(box.firstCorner()->lon(), first.lon());
    EXPECT_NEAR(box.firstCorner()->alt(), 5000, 1);
}

TEST_F(PanelFieldsTest, LookingChangesNothing) {
    forEachPanel([&] {
        const std::string before = text();
        for (const auto units : {UTILS::UnitType_t::NauticalMiles, UTILS::UnitType_t::Meters}) {
            for (const auto& [label, widget] : form.textFields()) host.activate(*widget);
            preferences.setRangeUnits(units);
            preferences.setAltitudeUnits(units);
            preferences.setPrecision(units == UTILS::UnitType_t::Meters ? 2 : 0);
            shapes[0]->notifyPrefsUpdate();
        }
        shapes[0]->deleteGui();
        EXPECT_EQ(text(), before);
        EXPECT_TRUE(messages.empty());
    });
}

}  // namespace
