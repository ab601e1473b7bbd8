#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "gui/TestPanel.h"
#include "model/AnnotationShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/ShapeWriter.h"

using halCore::kRadiansPerDegree;
using halCore::Vec3;
using namespace OverlayEditor;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

constexpr const char* kAltitude = "77.125";

Vec3 degrees(double lat, double lon, double alt) {
    return {lat * kRadiansPerDegree, lon * kRadiansPerDegree, alt};
}

enum class Position { Geodetic, Mgrs, Attached };

/// A shape that is shown, with its panel, as the dialog shows it.
class PanelsTest : public ::testing::Test, protected TestPanel {
  protected:
    PanelsTest() {
        host.eye = degrees(10, 20, 5e6);
        converter.setReferenceLla(degrees(42, 10, 0), 1);
    }
    template <typename Kind, typename... Arguments>
    Kind& make(Arguments... arguments) {
        shapes.clear();
        auto made = std::make_unique<Kind>(preferences, arguments...);
        Kind& kind = *made;
        shapes.push_back(std::move(made));
        return kind;
    }
    /// An empty one, with its panel.
    template <typename Kind, typename... Arguments>
    Kind& open(Arguments... arguments) {
        Kind& kind = make<Kind>(arguments...);
        show();
        return kind;
    }
    void show() {
        shapes[0]->setShown(true);
        shapes[0]->setActive(true);
        shapes[0]->createGui(&preferences, &canvas);
        messages.clear();
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

    void open(const std::function<void()>& maker, Position position) {
        preferences.setCoordinateSystem(position == Position::Mgrs ? Preferences::MGRS : Preferences::LLA);
        maker();
        if (position == Position::Attached && shapes[0]->canAttach())
            shapes[0]->setAttachedPlatformId(1, &converter, false);
        show();
    }
    std::string text() { return shapesText(shapes, &converter); }
    int callsOf(const std::function<void()>& act) {
        const auto sum = [this] {
            return std::accumulate(host.calls.begin(), host.calls.end(), 0,
                                   [](int calls, const auto& entry) { return calls + entry.second; });
        };
        const int before = sum();
        act();
        return sum() - before;
    }
    int loadsOf(const std::function<void()>& act) {
        const int before = host.loads;
        act();
        return host.loads - before;
    }

    void forEachPanel(const std::function<void()>& visit) {
        for (const auto& [name, maker] : kinds())
            for (const auto position : {Position::Geodetic, Position::Mgrs, Position::Attached}) {
                SCOPED_TRACE(name + ", positions " + std::to_string(static_cast<int>(position)));
                open(maker, position);
                visit();
                if (!host.find("Corner 2")) continue;
                open(maker, position);
                choose("Corner 2", "Width/Height");
                visit();
            }
    }

    void press(const std::string& caption) { host.activate(*host.find(caption)); }
    /// Of two radio buttons.
    void choose(const std::string& chosen, const std::string& other) {
        host.find(other)->checked = false;
        host.find(chosen)->checked = true;
        press(chosen);
    }
    bool enabled(const std::string& caption) { return host.find(caption)->enabled; }
};

TEST_F(PanelsTest, EachKindHasItsFieldsInOrder) {
    const std::string place = "Lat:|Lon: |Alt:|";
    const std::string line = "Line Width: |Line Color:|";
    const std::string fill = line + "Filled:|Fill Color:|";
    const std::string points = "Points|Insert|Delete|Point|<-|->|" + place + fill;
    const std::string box = "Anchor Point:|Center|Corner 1|" + place +
                            "Width/Height|Corner 2|Width:         |Height:|Corner Point|" + place + fill;
    std::map<std::string, std::string> expected = {
        {"orbit", "Center 1:|" + place + "Center 2:|" + place + "Radius:|" + fill},
        {"line", points},
        {"polygon", points},
        {"rectangle", box},
        {"triangle", box},
        {"label", place + "Line Color:|Font:|Font Size:|"},
        {"free drawing", "Pixel Precision:|" + line}};
    const std::string radii = "X Radius:|Y Radius:|";
    for (const auto& [subtype, own] : std::map<CylinderShape::Subtype, std::string>{
             {CylinderShape::Circle, "Radius:|"},
             {CylinderShape::Ellipse, radii},
             {CylinderShape::Arc, radii + "Start Angle:|End Angle:|"},
             {CylinderShape::Cylinder, radii + "Height:|"},
             {CylinderShape::Wedge, radii + "Height:|Start Angle:|End Angle:|"},
             {CylinderShape::Sphere, "Radius:|"},
             {CylinderShape::Hemisphere, "Radius:|"},
             {CylinderShape::Ellipsoid, radii + "Height:|"},
             {CylinderShape::Cone, "Radius:|Height:|"}})
        expected["circular " + std::to_string(subtype)] = place + own + fill;
    for (const auto& [name, maker] : kinds()) {
        open(maker, Position::Geodetic);
        std::string found;
        for (const auto& [handle, widget] : host.widgets) {
            const std::string text = widget.caption.substr(0, widget.caption.find('\t'));
            const bool unit = widget.kind == FakeHost::Id::CreateLabel && widget.caption == text &&
                              text != "Points" && text != "Point" && text != "Corner Point";
            if (widget.shown && !text.empty() && !unit) found += text + "|";
        }
        EXPECT_EQ(found, "Draw:|" + expected[name]) << name;
    }
    shapes.clear();
    EXPECT_EQ(host.widgets.size(), 1u) << "the canvas alone is left";
}

TEST_F(PanelsTest, NonsenseIsExplainedAndChangesNothing) {
    int tried = 0;
    forEachPanel([&] {
        const std::string before = text();
        for (const auto& [label, widget] : form.textFields()) {
            std::vector<std::string> nonsense = {"",      "wide", "5 parsecs", "nan",
                                                 "1e999", "--5",  "0x10",      "5 5 5 5"};
            // Beyond what there is on the earth.
            if (label == "X:" || label == "Y:" || label.starts_with("Width")) nonsense.push_back("3e7");
            for (const std::string& typed : nonsense) {
                messages.clear();
                const std::string shown = widget->text;
                host.marks = tried % 2 == 0;
                EXPECT_EQ(loadsOf([&, field = widget] { host.type(*field, typed); }), 0);
                EXPECT_EQ(widget->text, host.marks ? typed : shown) << label << typed;
                EXPECT_EQ(widget->marked, host.marks && typed != shown);
                shapes[0]->fillGui();
                host.activate(*widget);
                EXPECT_EQ(widget->text, shown) << label << typed << ": left a second time";
                EXPECT_FALSE(widget->marked);
                ASSERT_EQ(messages.size(), 1u) << label << typed;
                EXPECT_THAT(messages[0],
                            AllOf(StartsWith(label.substr(0, label.find(':') + 1)), HasSubstr(typed)));
                ++tried;
            }
        }
        EXPECT_EQ(text(), before);
    });
    EXPECT_GT(tried, 1500);
}

// What becomes of which text is told in typed.txt.
TEST_F(PanelsTest, WhatIsTypedIsTakenWithOneReload) {
    // Another digit in each field, for corners apart.
    const std::map<std::string, std::string> table = {
        {"Lat:", "2# 18 30 N"},           {"Lon: ", "15# 30 w"},  {"GZD:", "32 T PN 4# 50"},
        {"Easting/Northing:", "12#/678"}, {"Start Angle:", "9#"}, {"End Angle:", "12#:30"}};
    forEachPanel([&] {
        char digit = '0';
        for (const auto& [label, widget] : form.textFields()) {
            std::string typed = table.contains(label) ? table.at(label) : "# nm";
            typed[typed.find('#')] = ++digit;
            EXPECT_EQ(loadsOf([&, field = widget] { host.type(*field, typed); }), 1) << label << typed;
            EXPECT_TRUE(messages.empty()) << messages[0];
            messages.clear();
        }
    });
}

TEST_F(PanelsTest, StylesAreTakenWithOneReload) {
    forEachPanel([&] {
        const auto once = [&](const char* label, const std::function<void()>& act, int loads = 1) {
            EXPECT_EQ(form.has(label) ? loadsOf(act) : loads, loads) << label;
        };
        once("Line Width: ", [&] { form.choose("Line Width: ", 7); });
        once("Line Color:", [&] { form.choose("Line Color:", static_cast<std::int32_t>(0xFF7300FFu)); });
        once("Filled:", [&] { form.check("Filled:", true); });
        once("Fill Color:", [&] { form.choose("Fill Color:", 0x00FF0080); });
        once("Font:", [&] { form.choose("Font:", 16); });
        once("Font Size:", [&] { form.choose("Font Size:", 14); });
        once(
            "Pixel Precision:", [&] { form.choose("Pixel Precision:", 12); }, 0);
        const std::string saved = text();
        for (const auto& [label, line] :
             std::map<std::string, std::string>{{"Line Color:", "\nlinecolor hex 0xff0073ff\n"},
                                                {"Line Width: ", "\nlinewidth 7\n"},
                                                {"Filled:", "\nfilled\n"},
                                                {"Fill Color:", "\nfillcolor hex 0x8000ff00\n"},
                                                {"Font:", "\nfontname impact.ttf\n"},
                                                {"Font Size:", "\nfontsize 14\n"}})
            EXPECT_TRUE(!form.has(label) || saved.find(line) != std::string::npos) << label << saved;
        auto* const drawing = dynamic_cast<FreeDrawShape*>(shapes[0].get());
        EXPECT_TRUE(!drawing || drawing->pixelPrecision() == 12);
        once(
            "Draw:", [&] { form.check("Draw:", false); }, 0);
        EXPECT_FALSE(shapes[0]->shown());
        once("Draw:", [&] { form.check("Draw:", true); });
        // A callback that comes late finds nothing to do.
        EXPECT_EQ(loadsOf([&] {
                      for (auto& [handle, widget] : host.widgets)
                          if (widget.shown && widget.enabled && widget.kind != FakeHost::Id::CreateButton)
                              host.activate(widget);
                  }),
                  0);
        EXPECT_TRUE(messages.empty());
    });
}

TEST_F(PanelsTest, AnAltitudeChangesNothingElse) {
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
    // Of what is nowhere yet it is the altitude of what comes, and no place.
    preferences.setCoordinateSystem(Preferences::LLA);
    for (const auto& kind : shapeKinds()) {
        shapes.clear();
        shapes.push_back(kind.make(preferences));
        show();
        if (!form.has("Alt:")) continue;
        form.type("Alt:", "400 m");
        for (std::size_t i = 0; i < shapes[0]->placed().size(); ++i)
            EXPECT_FALSE(shapes[0]->placed().has(i)) << kind.name;
        form.type("Lat:", "5 S");
        std::size_t first = 0;
        while (first + 1 < shapes[0]->placed().size() && !shapes[0]->placed().has(first)) ++first;
        EXPECT_EQ(shapes[0]->placed().at(first).place.alt(), 400.0) << kind.name;
    }
    auto& box = dynamic_cast<RectangleShape&>((open(kinds()["rectangle"], Position::Attached), *shapes[0]));
    const Vec3 first = *box.firstCorner();
    form.type("Z:", "5 km");
    EXPECT_EQ(box.firstCorner()->lat(), first.lat());
    EXPECT_EQ(box.firstCorner()->lon(), first.lon());
    EXPECT_NEAR(box.firstCorner()->alt(), 5000, 1);
}

// What stands there already is not sent, and what somebody is typing stays.
TEST_F(PanelsTest, LookingChangesNothing) {
    forEachPanel([&] {
        const std::string before = text();
        const int loads = host.loads;
        EXPECT_EQ(callsOf([&] { shapes[0]->fillGui(); }), 0);
        for (const auto& [label, widget] : form.textFields()) {
            const std::string shown = widget->text;
            widget->text += "5 no";
            shapes[0]->fillGui();
            EXPECT_EQ(widget->text, shown + "5 no") << label;
            for (int left = 0; left < 2; ++left) host.activate(*widget);
            EXPECT_EQ(widget->text, shown) << label;
            EXPECT_EQ(messages.size(), 1u);
            messages.clear();
        }
        for (const auto units : {UTILS::UnitType_t::NauticalMiles, UTILS::UnitType_t::Meters}) {
            for (const auto& [label, widget] : form.textFields()) host.activate(*widget);
            preferences.setRangeUnits(units);
            preferences.setAltitudeUnits(units);
            preferences.setPrecision(units == UTILS::UnitType_t::Meters ? 2 : 0);
            shapes[0]->notifyPrefsUpdate();
        }
        EXPECT_EQ(host.loads, loads);
        shapes[0]->deleteGui();
        EXPECT_EQ(text(), before);
        EXPECT_TRUE(messages.empty());
    });
}

TEST_F(PanelsTest, WhatIsTypedBackIsTakenBack) {
    forEachPanel([&] {
        // Measured of its corners, a rectangle's numbers bring them back to a micrometre.
        if (dynamic_cast<RectangleShape*>(shapes[0].get())) return;
        const std::string before = text();
        for (const auto& [label, widget] : form.textFields()) {
            const std::string shown = widget->text;
            if (label.starts_with("GZD")) continue;
            SCOPED_TRACE(label + shown);
            std::string other = shown;
            char& digit = other[other.find_first_of("123456789")];
            digit = digit == '1' ? '2' : static_cast<char>(digit - 1);
            for (const std::string& typed : {other, shown}) {
                widget->text = typed;
                host.activate(*widget);
                shapes[0]->fillGui();
                EXPECT_EQ(text() == before, typed == shown);
            }
        }
        EXPECT_TRUE(messages.empty());
    });
}

TEST_F(PanelsTest, NewUnitsRelabelAndRedisplayEveryField) {
    auto& wedge = make<CylinderShape>(CylinderShape::Wedge);
    wedge.setCenter(degrees(0.5, 1, 304.79999));
    wedge.setMajorRadius(18520);
    wedge.setHeight(30.479999);
    wedge.setStartAngle(90 * kRadiansPerDegree);
    show();
    preferences.setRangeUnits(UTILS::UnitType_t::NauticalMiles);
    preferences.setAltitudeUnits(UTILS::UnitType_t::Feet);
    preferences.setGeodeticUnits(UTILS::UnitType_t::DegreesHemisphere);
    preferences.setAngleUnits(UTILS::UnitType_t::Mils);
    preferences.setPrecision(3);
    wedge.notifyPrefsUpdate();
    EXPECT_EQ(form.text("X Radius:"), "10.000 nm");
    EXPECT_EQ(form.text("Height:"), "100.000 ft");
    EXPECT_EQ(form.text("Alt:"), "1000.000 ft");
    EXPECT_EQ(form.text("Start Angle:"), "1600.000 mil");
    EXPECT_EQ(form.field("Lat:").text, "0.500\u00b0N");
    preferences.setCoordinateSystem(Preferences::MGRS);
    wedge.notifyPrefsUpdate();
    EXPECT_FALSE(form.has("Lat:"));
    EXPECT_EQ(form.text("Alt:"), "1000.000 ft");
    preferences.setCoordinateSystem(Preferences::LLA);
    wedge.notifyPrefsUpdate();
    EXPECT_FALSE(form.has("GZD:"));
    EXPECT_EQ(form.field("Lat:").text, "0.500\u00b0N");
    form.type("Alt:", "500");
    EXPECT_EQ(form.text("Alt:"), "500.000 ft") << "a number counts in the unit behind it";
}

// By GeographicLib: 21.3N 158W lies in 04QFJ 03723 55678, and 04QFJ 12345 67890 starts at 21.409796672217N
// 157.916081174208W.
TEST_F(PanelsTest, AReferenceIsTheCornerOfItsSquare) {
    preferences.setCoordinateSystem(Preferences::MGRS);
    AnnotationShape& label = open<AnnotationShape>();
    for (const auto& [field, typed] : std::vector<std::pair<const char*, const char*>>{
             {"Easting/Northing:", "12345 67890"}, {"GZD:", "4q fj 12345 67890"}}) {
        label.mouseSetPosition(degrees(21.3, -158, 7));
        EXPECT_EQ(form.field("GZD:").text + " " + form.text("Easting/Northing:"), "04Q FJ 03723 55678 m");
        form.type(field, typed);
        const Vec3 place = label.boundingBox().first;
        EXPECT_NEAR(place.lat(), 21.409796672217 * kRadiansPerDegree, 1e-12) << typed;
        EXPECT_NEAR(place.lon(), -157.916081174208 * kRadiansPerDegree, 1e-12) << typed;
        EXPECT_EQ(place.alt(), 7);
    }
}

TEST_F(PanelsTest, PointsAreSteppedInsertedAndDeleted) {
    PolygonShape& line = open<PolygonShape>(PolygonShape::Line);
    EXPECT_EQ(host.find("Point")->text, "New Point");
    EXPECT_FALSE(enabled("<-") || enabled("->"));
    // A typed coordinate makes the new point one of the line's.
    form.type("Lat:", "1");
    ASSERT_EQ(line.points().size(), 1u);
    EXPECT_NEAR(line.points()[0].lon(), 20 * kRadiansPerDegree, 1e-15) << "it starts from the view";
    press("->");
    form.type("Lat:", "3");
    form.type("Alt:", "100");
    ASSERT_EQ(line.points().size(), 2u);
    press("Insert");
    ASSERT_EQ(line.points().size(), 3u);
    // The middle of a piece of a meridian, to the meridian's change of curvature; the altitude is the mean.
    EXPECT_NEAR(line.points()[1].lat(), 2 * kRadiansPerDegree, 1e-6);
    EXPECT_EQ(line.points()[1].alt(), 50);
    EXPECT_NE(std::ranges::find(host.widgets, "2 of 3", [](const auto& entry) { return entry.second.text; }),
              host.widgets.end());
    form.type("Lon: ", "21 30 00 W");
    EXPECT_NEAR(line.points()[1].lon(), -21.5 * kRadiansPerDegree, 1e-15);
    press("Delete");
    press("Delete");
    ASSERT_EQ(line.points().size(), 1u);
    EXPECT_FALSE(enabled("<-"));
    EXPECT_TRUE(enabled("->"));
    // What the mouse does appears at once.
    line.mouseSetPointAtIndex(7, degrees(5, 6, 7));
    EXPECT_EQ(form.text("Alt:"), "7.00 m");
    PolygonShape& ring = open<PolygonShape>(PolygonShape::Polygon);
    for (const double lat : {1.0, 3.0}) ring.addPoint(degrees(lat, 20, 0));
    press("Insert");
    EXPECT_NEAR(ring.points()[0].lat(), 2 * kRadiansPerDegree, 1e-6) << "on the edge that closes it";
}

TEST_F(PanelsTest, AttachedPointsAreOffsets) {
    PolygonShape& line = open<PolygonShape>(PolygonShape::Line);
    line.insertPointAtIndex(0, degrees(42, 10, 0));
    line.insertPointAtIndex(1, degrees(42.5, 10, 1.0 / 3.0));
    converter.setReferenceLla(degrees(42, 10, 0), 1);
    line.setAttachedPlatformId(1, &converter, false);
    EXPECT_FALSE(form.has("Lat:"));
    press("<-");
    form.type("X:", "5 nm");
    Vec3 offset;
    ASSERT_EQ(converter.convertLlaToXyz(line.points()[0], offset), 0);
    EXPECT_NEAR(offset.x(), 9260, 1e-6);
    EXPECT_NEAR(offset.y(), 0, 1e-6);
    EXPECT_EQ(line.points()[1].alt(), 1.0 / 3.0);
    line.setAttachedPlatformId(0, nullptr, false);
    EXPECT_TRUE(form.has("Lat:"));
}

// A nautical mile is 1852 m, and what was typed is the number that stays.
TEST_F(PanelsTest, ARectangleIsSpannedByItsSizeOrItsCorner) {
    RectangleShape& box = open<RectangleShape>(RectangleShape::Rectangle);
    form.type("Lat:", "42");
    EXPECT_FALSE(box.isComplete()) << "a place is no rectangle yet";
    form.type("Width:         ", "2 nm");
    form.type("Height:", "1000");
    ASSERT_TRUE(box.isComplete());
    EXPECT_EQ(box.width(), 3704);
    EXPECT_EQ(box.height(), 1000);
    EXPECT_EQ(box.center().lat(), 42 * kRadiansPerDegree);
    EXPECT_FALSE(form.field("Width:         ").text.empty());

    const Vec3 last = *box.lastCorner();
    const auto refused = [&](const char* field, const char* typed) {
        const std::string before = text();
        form.type(field, typed);
        EXPECT_THAT(messages, testing::ElementsAre(HasSubstr("; nothing is changed"))) << typed;
        EXPECT_EQ(text(), before);
        messages.clear();
    };
    refused("Lat:", "90");
    form.type("Width:         ", "15000 km");
    refused("Height:", "15000 km");
    form.type("Height:", "0");
    refused("Width:         ", "0");
    EXPECT_EQ(form.field("Width:         ").text, "15000000.00");
    form.type("Height:", "1000");
    form.type("Width:         ", "2 nm");
    choose("Corner 1", "Center");
    EXPECT_FALSE(box.anchorCenter());
    EXPECT_EQ(box.lastCorner()->lat(), last.lat()) << "choosing changes nothing";
    form.type("Width:         ", "500");
    EXPECT_EQ(box.width(), 500);
    EXPECT_NEAR(box.height(), 1000, 1.5) << "as measured from the corner";
    box.deleteGui();
    show();
    EXPECT_TRUE(host.find("Corner 1")->checked) << "as it was chosen";
}

TEST_F(PanelsTest, ARectangleWaitsForItsOtherCorner) {
    RectangleShape& box = open<RectangleShape>(RectangleShape::Rectangle);
    choose("Corner 1", "Center");
    choose("Corner 2", "Width/Height");
    // Latitude, longitude and altitude of the anchor, then of the corner.
    const auto type = [this](std::size_t field, const char* text) {
        host.type(*form.textFields().at(field).widget, text);
    };
    type(0, "42");
    type(1, "5");
    EXPECT_FALSE(box.isComplete()) << "the other corner goes along";
    type(3, "43");
    type(4, "7");
    ASSERT_TRUE(box.isComplete());
    EXPECT_EQ(*box.firstCorner(), degrees(42, 5, 0));
    EXPECT_EQ(*box.lastCorner(), degrees(43, 7, 0));
    choose("Center", "Corner 1");
    type(3, "44");
    EXPECT_NEAR(box.firstCorner()->lat(), 41 * kRadiansPerDegree, 1e-3) << "as far on the other side";
}

TEST_F(PanelsTest, WhatThePanelShowsCounts) {
    const std::string place = "centerlla 10 20 0\n";
    CylinderShape& wedge = open<CylinderShape>(CylinderShape::Wedge);
    form.type("End Angle:", "90");
    form.type("X Radius:", "5");
    form.type("Y Radius:", "5");
    EXPECT_THAT(text(), HasSubstr("anglestart 0\nangledeg 90\n"));
    form.type("End Angle:", "0");
    EXPECT_EQ(wedge.endAngle(), halCore::kTwoPi) << "bounds that show the same";
    CylinderShape& arc = open<CylinderShape>(CylinderShape::Arc);
    form.type("Start Angle:", "30");
    form.type("X Radius:", "5");
    form.type("Y Radius:", "5");
    EXPECT_THAT(text(), HasSubstr("anglestart 30\nangledeg 330\n"));
    form.type("End Angle:", "30");
    EXPECT_THAT(text(), HasSubstr("anglestart 30\nangledeg 360\n"));
    EXPECT_EQ(form.field("End Angle:").text, "30.00") << "as it was typed";
    form.type("Start Angle:", "40");
    EXPECT_NEAR(arc.endAngle(), 30 * kRadiansPerDegree, 1e-12);

    open<OrbitShape>();
    EXPECT_EQ(form.text("Radius:"), "50.00 m");
    form.type("Lat:", "11");
    EXPECT_THAT(text(), testing::Not(HasSubstr("orbit")));
    form.type("Radius:", "7");
    EXPECT_THAT(text(), HasSubstr("centerlla 11 20 0\nradius 7\ncenterll2 10 20 0\n"));
    open<OrbitShape>();
    host.type(*form.textFields().at(4).widget, "21");
    EXPECT_THAT(text(), HasSubstr(place + "radius 50\ncenterll2 10 21 0\n"));

    open<CylinderShape>(CylinderShape::Ellipsoid);
    form.type("X Radius:", "5");
    form.type("Y Radius:", "7");
    EXPECT_EQ(form.text("Height:"), "7.00 m") << "as hosts draw it";
    form.type("Height:", "9");
    form.type("X Radius:", "20");
    EXPECT_EQ(form.text("Height:"), "9.00 m");
}

TEST_F(PanelsTest, AFontOfAFileJoinsThoseOnOffer) {
    AnnotationShape& label = open<AnnotationShape>();
    label.setFontName("own.ttf");
    label.fillGui();
    const auto& font = form.field("Font:");
    ASSERT_EQ(font.items.size(), 30u);
    EXPECT_EQ(font.items[0] + " " + font.items[28] + " " + font.items[29],
              "andalemo.ttf verdanaz.ttf own.ttf");
    EXPECT_EQ(font.number, 29);
    host.marks = false;
    form.choose("Font Size:", 0);
    EXPECT_THAT(messages,
                testing::ElementsAre("Font Size: \"0\" is no whole number from 1 to 9999; still 8"));
    EXPECT_EQ(label.fontSize(), 8);
    EXPECT_EQ(form.field("Font Size:").number, 8);
}

}  // namespace
