#include <string>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/OrbitShape.h"

namespace {

using OverlayEditor::OrbitShape;

struct OrbitTool : DrawingTest {
    OrbitShape& begin() { return start(new OrbitShape(preferences)); }
    /// From 21N 158W to 21.1N 158W, the width marked west of the second centre, 5 km and some away.
    OrbitShape& drawn() {
        auto& orbit = begin();
        mouse.from("21.0N 158.0W").to("21.1N 158.0W").from("21.0N 157.9W").to("21.1N 158.05W");
        mouse.move("20.9N 158.2W").frame();
        return orbit;
    }
    static bool isEmpty(const OrbitShape& orbit) {
        return !orbit.centerPt() && !orbit.centerPt2() && !orbit.minorAxisPt();
    }
    const std::string& text() const { return host.lastText; }
};

TEST_F(OrbitTool, IsFirstCentreSecondCentreAndWidth) {
    struct Case {
        const char *name, *first, *second, *width;
    };
    for (const auto& c : {Case{"nearer the second", "21.0N 158.0W", "21.2N 157.9W", "21.25N 157.85W"},
                          Case{"date line", "3.0S 179.95E", "3.1S 179.9W", "3.1S 179.99E"}}) {
        SCOPED_TRACE(c.name);
        const auto first = place(c.first), second = place(c.second), width = place(c.width);
        view.look({first.lat(), first.lon(), 3e5});
        auto& orbit = begin();
        mouse.from(c.first).move(c.second).frame();
        EXPECT_TRUE(rubberBandShown());
        mouse.to(c.second);
        EXPECT_EQ(stateOf(orbit), Tool::Placing) << "the width is wanted";
        EXPECT_NE(text().find("radius 50\n"), std::string::npos) << "the axis is seen at once";
        mouse.move(c.width).frame().press().frame();
        EXPECT_TRUE(rubberBandShown());
        EXPECT_EQ(text().find("radius 50\n"), std::string::npos) << "as wide as the cursor says";
        mouse.release().frame();
        EXPECT_FALSE(rubberBandShown());
        EXPECT_EQ(stateOf(orbit), Tool::Complete);
        EXPECT_EQ(*orbit.centerPt(), first);
        EXPECT_EQ(*orbit.centerPt2(), second);
        EXPECT_NEAR(orbit.minorAxis(),
                    std::min(geodesic(first, width).meters, geodesic(second, width).meters), 1e-3);
        EXPECT_EQ(*orbit.minorAxisPt(), width);
        overlay.clearShapes(false);
    }
}

TEST_F(OrbitTool, AbortsKeepWhatWasDone) {
    auto& orbit = begin();
    mouse.from("21.0N 158.0W").to("21.0N 158.0W");
    EXPECT_TRUE(isEmpty(orbit)) << "released on its first centre";

    mouse.from("21.0N 158.0W").to("21.1N 158.0W");
    mouse.from("21.05N 157.9W").to("21.1N 158.0W");
    EXPECT_FALSE(orbit.minorAxisPt()) << "released on its second centre";
    EXPECT_TRUE(orbit.isComplete());
    mouse.move("20.9N 158.0W").frame().press().moveOffTheEarth().release();
    EXPECT_FALSE(orbit.minorAxisPt());
    mouse.move("20.9N 158.0W").frame().press().move("21.1N 157.95W").frame().rightPress();
    EXPECT_EQ(stateOf(orbit), Tool::Inactive);
    EXPECT_FALSE(orbit.minorAxisPt());
    ASSERT_EQ(host.overlays.size(), 1u);
    EXPECT_NE(host.overlays.begin()->second.text.find("radius 50\n"), std::string::npos);

    manager.setCurrentMouseTool(orbit.mouseTool(), true);
    EXPECT_EQ(stateOf(orbit), Tool::Placing) << "the width is still wanted";
    mouse.frame().from("21.1N 157.9W").to("21.1N 157.95W");
    EXPECT_EQ(stateOf(orbit), Tool::Complete);

    orbit.clear();
    mouse.frame().from("20.9N 158.0W").move("20.9N 157.9W").frame();
    EXPECT_NE(text().find("radius 50\n"), std::string::npos) << "a new rubber band has no old width";
    mouse.to("20.9N 157.9W");
    EXPECT_EQ(stateOf(orbit), Tool::Placing);
}

TEST_F(OrbitTool, CentresAreDraggedApartAndKeepTheRadius) {
    auto& orbit = drawn();
    const double radius = orbit.minorAxis();
    EXPECT_NEAR(radius, geodesic(place("21.1N 158.0W"), place("21.1N 158.05W")).meters, 1e-3);
    const auto width = *orbit.minorAxisPt();
    mouse.from("21.0N 158.0W").to("20.95N 157.9W");
    EXPECT_LT(geodesic(*orbit.centerPt(), place("20.95N 157.9W")).meters, 1.0);
    EXPECT_EQ(*orbit.centerPt2(), place("21.1N 158.0W"));
    EXPECT_EQ(orbit.minorAxis(), radius);
    EXPECT_EQ(*orbit.minorAxisPt(), width) << "it stands about the second centre";

    mouse.from("21.1N 158.0W").to("21.2N 158.1W");
    const auto second = *orbit.centerPt2();
    EXPECT_LT(geodesic(second, place("21.2N 158.1W")).meters, 1.0);
    EXPECT_EQ(orbit.minorAxis(), radius);
    const auto way = geodesic(second, *orbit.minorAxisPt());
    EXPECT_NEAR(way.meters, radius, 1e-3) << "carried along";
    EXPECT_NEAR(way.bearing, geodesic(place("21.1N 158.0W"), width).bearing, 1e-6);

    mouse.move(*orbit.minorAxisPt()).frame().press().to("20.95N 157.95W");
    EXPECT_EQ(stateOf(orbit), Tool::Complete);
    EXPECT_NEAR(orbit.minorAxis(), geodesic(*orbit.centerPt(), place("20.95N 157.95W")).meters, 1.0);
    const double about = orbit.minorAxis();
    mouse.move("20.8N 158.2W").frame().move(*orbit.centerPt()).press().to("20.9N 157.9W");
    EXPECT_EQ(orbit.minorAxis(), about);
    EXPECT_NEAR(geodesic(*orbit.centerPt(), *orbit.minorAxisPt()).meters, orbit.minorAxis(), 1e-3)
        << "and with the first centre";
    EXPECT_EQ(*orbit.centerPt2(), second);
    EXPECT_EQ(host.overlays.size(), 1u);
}

TEST_F(OrbitTool, NumbersThatNobodyChangesStayToTheLastBit) {
    auto& orbit = drawn();
    const double radius = orbit.minorAxis();
    mouse.move("21.1N 158.05W").wheel(120);
    EXPECT_EQ(orbit.minorAxis(), radius);
    // Altitudes that were typed apart stay apart while a point is dragged.
    orbit.setCenter2(degrees(21.1, -158.0, 100.0));
    mouse.frame().from("21.0N 158.0W").to("20.95N 157.9W");
    EXPECT_EQ(orbit.centerPt()->alt(), 0.01);
    EXPECT_EQ(orbit.centerPt2()->alt(), 100.0);
}

}  // namespace
