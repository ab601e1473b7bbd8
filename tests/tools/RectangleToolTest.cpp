#include <string>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/RectangleShape.h"

namespace {

using OverlayEditor::RectangleShape;

struct RectangleTool : DrawingTest {
    RectangleShape& begin(RectangleShape::Subtype subtype = RectangleShape::Rectangle) {
        return start(new RectangleShape(preferences, subtype));
    }
    RectangleShape& drawn() {
        auto& shape = begin();
        mouse.from("21.0N 158.0W").to("21.1N 157.9W");
        return shape;
    }
    static bool isEmpty(const RectangleShape& shape) { return !shape.firstCorner() && !shape.lastCorner(); }
};

TEST_F(RectangleTool, IsPressedAtOneCornerAndReleasedAtTheOther) {
    struct Case {
        const char *name, *first, *last;
    };
    for (const auto& c :
         {Case{"Hawaii", "21.0N 158.0W", "21.2N 157.9W"}, Case{"westwards", "21.0N 158.0W", "20.9N 158.1W"},
          Case{"date line", "3.0S 179.95E", "3.1S 179.9W"}, Case{"pole", "89.9N 40.0E", "89.8N 70.0E"}})
        for (const auto subtype : {RectangleShape::Rectangle, RectangleShape::Triangle}) {
            SCOPED_TRACE(std::string(c.name) + " " + std::to_string(subtype));
            const auto first = place(c.first);
            view.look({first.lat(), first.lon(), 3e5});
            auto& shape = begin(subtype);
            EXPECT_EQ(stateOf(shape), Tool::Placing);
            mouse.from(c.first);
            EXPECT_EQ(view.painted.size(), 2u) << "the corner and the cursor";
            mouse.to(c.last);
            EXPECT_EQ(stateOf(shape), Tool::Complete);
            EXPECT_EQ(*shape.firstCorner(), first);
            EXPECT_EQ(*shape.lastCorner(), place(c.last));
            EXPECT_EQ(host.overlays.size(), 1u);
            mouse.rightPress();
            EXPECT_EQ(mouse.result, 0);
            EXPECT_EQ(host.grabs, 0);
            overlay.clearShapes(false);
        }
}

TEST_F(RectangleTool, TheRubberBandSpansFromTheFirstCornerToTheCursor) {
    begin();
    mouse.move("21.05N 158.0W").frame();
    EXPECT_TRUE(host.overlays.empty());
    mouse.from("21.0N 158.0W").move("21.1N 157.9W").frame();
    EXPECT_TRUE(rubberBandShown());
    EXPECT_NE(host.lastText.find("lla 21.1 -157.9"), std::string::npos) << host.lastText;
    const int loads = host.loads;
    mouse.frame().frame();
    EXPECT_EQ(host.loads, loads) << "only when the cursor moves";
    mouse.moveOffTheEarth().frame();
    EXPECT_FALSE(rubberBandShown());
    mouse.to("21.1N 157.9W").frame();
    EXPECT_FALSE(rubberBandShown());
    EXPECT_EQ(host.overlays.size(), 1u);
}

TEST_F(RectangleTool, AnswersEveryEventInEveryState) {
    enum class Do { Press, Release, RightPress, Motion, Wheel };
    struct Cell {
        Do event;
        bool onEarth;
        int result, stateAfter;
        bool hasFirst, hasLast;
    };
    struct State {
        const char* name;
        std::string steps;  ///< p press, d drag, r release at the far corner, h hover the first corner
        std::vector<Cell> cells;
    };
    const State states[] = {
        {"empty",
         "",
         {{Do::Press, true, 1, 2, true, false},
          {Do::Press, false, 1, 2, false, false},
          {Do::Release, true, 0, 2, false, false},
          {Do::Release, false, 0, 2, false, false},
          {Do::RightPress, true, 0, 0, false, false},
          {Do::Motion, true, 1, 2, false, false},
          {Do::Motion, false, 0, 2, false, false},
          {Do::Wheel, true, 1, 2, false, false}}},
        {"the button held",
         "pd",
         {{Do::Press, true, 1, 2, true, false},
          {Do::Press, false, 1, 2, true, false},
          {Do::Release, true, 1, 1, true, true},
          {Do::Release, false, 0, 2, false, false},
          {Do::RightPress, true, 0, 0, false, false},
          {Do::Motion, true, 1, 2, true, false},
          {Do::Motion, false, 0, 2, true, false},
          {Do::Wheel, true, 1, 2, true, false}}},
        {"complete",
         "pdr",
         {{Do::Press, true, 0, 1, true, true},
          {Do::Release, true, 0, 1, true, true},
          {Do::RightPress, true, 0, 0, true, true},
          {Do::Motion, true, 0, 1, true, true},
          {Do::Motion, false, 0, 1, true, true},
          {Do::Wheel, true, 1, 1, true, true}}},
        {"over the first corner",
         "pdrh",
         {{Do::Press, true, 1, 3, true, true},
          {Do::Press, false, 1, 3, true, true},
          {Do::Release, true, 0, 4, true, true},
          {Do::RightPress, true, 0, 0, true, true},
          {Do::Wheel, true, 1, 4, true, true}}},
        {"dragging the first corner",
         "pdrhp",
         {{Do::Press, true, 1, 3, true, true},
          {Do::Release, true, 1, 1, true, true},
          {Do::Release, false, 1, 1, true, true},
          {Do::RightPress, true, 0, 0, true, true},
          {Do::Motion, true, 1, 3, true, true},
          {Do::Motion, false, 1, 3, true, true},
          {Do::Wheel, true, 1, 3, true, true}}},
    };
    for (const auto& state : states)
        for (const auto& cell : state.cells) {
            SCOPED_TRACE(std::string(state.name) + ", event " + std::to_string(static_cast<int>(cell.event)) +
                         (cell.onEarth ? "" : " off the earth"));
            auto& shape = begin();
            mouse.move("21.0N 158.0W").frame();
            for (const char step : state.steps) {
                if (step == 'p') mouse.press();
                if (step == 'd') mouse.move("21.1N 157.9W");
                if (step == 'r') mouse.release().move("21.05N 158.05W");
                if (step == 'h') mouse.move("21.0N 158.0W");
                mouse.frame();
            }
            if (!cell.onEarth && cell.event == Do::Motion)
                mouse.moveOffTheEarth();
            else if (!cell.onEarth)
                mouse.loseTheEarth();
            if (cell.event == Do::Press) mouse.press();
            if (cell.event == Do::Release) mouse.release();
            if (cell.event == Do::RightPress) mouse.rightPress();
            if (cell.event == Do::Motion && cell.onEarth) mouse.move("21.06N 158.06W");
            if (cell.event == Do::Wheel) mouse.wheel(120);
            EXPECT_EQ(mouse.result, cell.result);
            EXPECT_EQ(stateOf(shape), cell.stateAfter);
            EXPECT_EQ(shape.firstCorner().has_value(), cell.hasFirst);
            EXPECT_EQ(shape.lastCorner().has_value(), cell.hasLast);
            mouse.frame().release().frame();
            EXPECT_FALSE(rubberBandShown());
            overlay.clearShapes(false);
            EXPECT_EQ(host.grabs, 0);
        }
}

TEST_F(RectangleTool, AReleaseOnTheFirstCornerTakesItBack) {
    auto& shape = begin();
    mouse.from("21.0N 158.0W").move("21.1N 158.0W").frame().to("21.0N 158.0W").frame();
    EXPECT_TRUE(isEmpty(shape));
    EXPECT_EQ(stateOf(shape), Tool::Placing);
    EXPECT_TRUE(host.overlays.empty());
    EXPECT_EQ(view.painted.size(), 1u) << "the cursor alone";
    mouse.from("21.0N 158.0W").move("21.1N 157.9W").frame();
    manager.clearMouseTool();
    EXPECT_TRUE(isEmpty(shape)) << "another tool while the button is held";
    EXPECT_TRUE(host.overlays.empty());
}

TEST_F(RectangleTool, CornersAreDraggedWithoutAJumpAndLiftedTogether) {
    auto& shape = drawn();
    // Three pixels beside the corner: it keeps its distance from the cursor.
    const auto pixel = *view.projection().visiblePixel(halCore::toEcef(place("21.1N 157.9W")));
    mouse.moveToPixel(pixel.x + 3, pixel.y - 3).frame().press();
    ASSERT_EQ(stateOf(shape), Tool::Dragging);
    mouse.moveToPixel(pixel.x + 4, pixel.y - 3).frame();
    EXPECT_LT(geodesic(*shape.lastCorner(), place("21.1N 157.9W")).meters, 2e5 / 900.0 * 1.6) << "a pixel";
    mouse.to("21.2N 157.85W");
    EXPECT_LT(geodesic(*shape.lastCorner(), place("21.2N 157.85W")).meters, 2e5 / 900.0 * 5.0);
    EXPECT_EQ(*shape.firstCorner(), place("21.0N 158.0W"));

    mouse.move("20.9N 158.2W").frame().from("21.0N 158.0W").to("20.95N 158.1W");
    EXPECT_NEAR(geodesic(*shape.firstCorner(), place("20.95N 158.1W")).meters, 0.0, 1.0);
    const auto first = *shape.firstCorner();
    mouse.wheel(120).wheel(240);
    EXPECT_EQ(shape.firstCorner()->alt(), 0.01 * 1.25 * 1.25);
    EXPECT_EQ(shape.lastCorner()->alt(), 0.01 * 1.25 * 1.25) << "it is flat";
    EXPECT_EQ(shape.firstCorner()->lat(), first.lat());
    EXPECT_EQ(host.overlays.size(), 1u);

    shape.setFirstCorner(place("20.9N 158.15W"));
    mouse.move("20.8N 158.2W").frame().move("20.9N 158.15W");
    EXPECT_EQ(stateOf(shape), Tool::Hovering) << "grabbed where the panel put it";
    mouse.press();
    shape.clear();
    mouse.move("21.0N 158.0W").frame().wheel(120).release().frame();
    EXPECT_TRUE(isEmpty(shape));
    EXPECT_EQ(stateOf(shape), Tool::Placing) << "to be drawn afresh";

    mouse.from("21.0N 158.0W").move("21.1N 157.9W").frame();
    overlay.clearShapes(false);
    mouse.move("21.0N 158.0W").frame().release();
    EXPECT_TRUE(host.overlays.empty());
}

TEST_F(RectangleTool, LabelsTellWidthAndHeight) {
    preferences.setGeodeticUnits(UTILS::UnitType_t::Degrees);
    preferences.setRangeUnits(UTILS::UnitType_t::Kilometers);
    begin();
    mouse.move("21.0N 158.0W");
    EXPECT_EQ(label(), "LLA: 21.00 -158.00 0.00 m");
    mouse.frame().press().move("21.1N 158.0W");
    // A tenth of a degree of the meridian at 21 degrees is 11.07 km.
    EXPECT_EQ(label(), "LLA: 21.10 -158.00 0.00 m Width: 0.00 km Height: 11.07 km");
    mouse.to("21.1N 158.1W").move("21.0N 158.0W");
    // Hovering: the components of the diagonal, 15.18 km long.
    const auto way = geodesic(place("21.0N 158.0W"), place("21.1N 158.1W"));
    char expected[100];
    std::snprintf(expected, sizeof expected, "LLA: 21.00 -158.00 0.00 m Width: %.2f km Height: %.2f km",
                  -way.meters * std::sin(way.bearing) / 1000.0, way.meters * std::cos(way.bearing) / 1000.0);
    EXPECT_EQ(label(), expected);
}

}  // namespace
