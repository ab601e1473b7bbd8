#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/FreeDrawShape.h"

namespace {

using OverlayEditor::FreeDrawShape;

struct FreeDrawTool : DrawingTest {
    FreeDrawShape& begin() { return start(new FreeDrawShape(preferences)); }
    static std::vector<std::size_t> lengths(const FreeDrawShape& shape) {
        std::vector<std::size_t> result;
        for (const auto& line : shape.lines()) result.push_back(line.size());
        return result;
    }
    /// From pixel to pixel along a row of the view.
    void stroke(int row, int from, int to) {
        mouse.moveToPixel(from, row).press();
        for (int x = from; x <= to; ++x) mouse.moveToPixel(x, row).frame();
        mouse.release();
    }
    using Lengths = std::vector<std::size_t>;
};

TEST_F(FreeDrawTool, LeavesAPointWhereverTheMouseHasMovedFarEnough) {
    auto& shape = begin();
    EXPECT_EQ(stateOf(shape), Tool::Complete);
    stroke(300, 100, 120);
    EXPECT_EQ(lengths(shape), Lengths{5}) << "at 100, 105, 110, 115, 120";
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(shape.lines()[0][i], *view.pick(100 + 5 * static_cast<int>(i), 300)) << i;

    shape.setPixelPrecision(10);
    stroke(310, 100, 119);
    EXPECT_EQ(lengths(shape), (Lengths{5, 2}));
    // In both directions together, and at once however far the mouse jumps.
    mouse.moveToPixel(200, 200).press();
    shape.setPixelPrecision(1);
    for (const auto& [x, y] : {std::pair(207, 207), {208, 208}, {208, 217}, {208, 218}, {600, 400}})
        mouse.moveToPixel(x, y);
    mouse.release();
    EXPECT_EQ(lengths(shape), (Lengths{5, 2, 4})) << "the precision is that of the press";
    stroke(330, 100, 102);
    EXPECT_EQ(lengths(shape), (Lengths{5, 2, 4, 3}));
    EXPECT_EQ(host.overlays.size(), 1u);
}

TEST_F(FreeDrawTool, ALineOfOnePointIsDropped) {
    auto& shape = begin();
    mouse.moveToPixel(100, 300).press().release();
    EXPECT_TRUE(shape.lines().empty());
    stroke(300, 100, 110);
    const std::string text = host.lastText;
    mouse.moveToPixel(200, 300).press().moveToPixel(204, 300).release();
    mouse.moveToPixel(200, 300).press().rightPress();
    EXPECT_EQ(mouse.result, 1);
    EXPECT_EQ(lengths(shape), Lengths{3});
    EXPECT_EQ(host.lastText, text);
    EXPECT_EQ(host.overlays.size(), 1u);
}

TEST_F(FreeDrawTool, AnswersEveryEventInEveryState) {
    enum class Do { Press, Release, RightPress, Motion, Wheel, PlainWheel };
    struct Cell {
        Do event;
        bool onEarth;
        int result, stateAfter;
        Lengths lines;
    };
    struct State {
        const char* name;
        bool drawing;
        std::vector<Cell> cells;
    };
    // Each begins with a line of three points; drawing, a second one has two.
    const State states[] = {{"at rest",
                             false,
                             {{Do::Press, true, 1, 2, {3, 1}},
                              {Do::Press, false, 0, 1, {3}},
                              {Do::Release, true, 0, 1, {3}},
                              {Do::Release, false, 0, 1, {3}},
                              {Do::RightPress, true, 1, 0, {3}},
                              {Do::Motion, true, 0, 1, {3}},
                              {Do::Motion, false, 0, 1, {3}},
                              {Do::Wheel, true, 1, 1, {3}},
                              {Do::PlainWheel, true, 0, 1, {3}}}},
                            {"drawing",
                             true,
                             {{Do::Press, true, 1, 2, {3, 2, 1}},
                              {Do::Press, false, 0, 1, {3, 2}},
                              {Do::Release, true, 1, 1, {3, 2}},
                              {Do::Release, false, 1, 1, {3, 2}},
                              {Do::RightPress, true, 1, 0, {3, 2}},
                              {Do::RightPress, false, 1, 0, {3, 2}},
                              {Do::Motion, true, 1, 2, {3, 3}},
                              {Do::Motion, false, 1, 2, {3, 2}},
                              {Do::Wheel, true, 1, 2, {3, 2}},
                              {Do::PlainWheel, true, 0, 2, {3, 2}}}}};
    for (const auto& state : states)
        for (const auto& cell : state.cells) {
            SCOPED_TRACE(std::string(state.name) + ", event " + std::to_string(static_cast<int>(cell.event)) +
                         (cell.onEarth ? "" : " off the earth"));
            auto& shape = begin();
            stroke(300, 100, 110);
            mouse.moveToPixel(300, 300).frame();
            if (state.drawing) mouse.press().moveToPixel(320, 300).frame();
            if (!cell.onEarth && cell.event == Do::Motion)
                mouse.moveOffTheEarth();
            else if (!cell.onEarth)
                mouse.loseTheEarth();
            if (cell.event == Do::Press) mouse.press();
            if (cell.event == Do::Release) mouse.release();
            if (cell.event == Do::RightPress) mouse.rightPress();
            if (cell.event == Do::Motion && cell.onEarth) mouse.moveToPixel(320, 330);
            if (cell.event == Do::Wheel) mouse.wheel(120);
            if (cell.event == Do::PlainWheel) mouse.plainWheel(120);
            EXPECT_EQ(mouse.result, cell.result);
            EXPECT_EQ(stateOf(shape), cell.stateAfter);
            EXPECT_EQ(lengths(shape), cell.lines);
            mouse.frame().release();
            overlay.clearShapes(false);
            EXPECT_EQ(host.grabs, 0);
            EXPECT_TRUE(host.overlays.empty());
        }
}

TEST_F(FreeDrawTool, DrawsAtTheWorkingAltitudeAndTellsThePlace) {
    preferences.setGeodeticUnits(UTILS::UnitType_t::Degrees);
    auto& shape = begin();
    mouse.move("21.0N 158.0W");
    EXPECT_EQ(label(), "");
    mouse.wheel(120).wheel(240).press().move("21.1N 158.0W");
    EXPECT_EQ(label(), "LLA: 21.10 -158.00 0.02 m");
    mouse.release();
    ASSERT_EQ(lengths(shape), Lengths{2});
    EXPECT_EQ(shape.lines()[0][1].alt(), 0.01 * 1.25 * 1.25);
    EXPECT_EQ(shape.lines()[0][1].lat(), place("21.1N 158.0W").lat());
}

TEST_F(FreeDrawTool, TheShapeMayChangeOrGoInMidLine) {
    auto& shape = begin();
    mouse.moveToPixel(100, 300).press().moveToPixel(110, 300);
    shape.clear();
    mouse.frame().moveToPixel(120, 300).moveToPixel(130, 300).release();
    EXPECT_EQ(lengths(shape), Lengths{2});
    mouse.moveToPixel(100, 310).press().moveToPixel(110, 310);
    shape.setActive(false);
    EXPECT_EQ(stateOf(shape), Tool::Inactive);
    mouse.moveToPixel(120, 310).release();
    EXPECT_EQ(lengths(shape), (Lengths{2, 2}));

    manager.setCurrentMouseTool(shape.mouseTool(), true);
    mouse.moveToPixel(100, 320).press().moveToPixel(110, 320);
    overlay.clearShapes(false);
    mouse.moveToPixel(120, 320).frame().release().rightPress();
    EXPECT_TRUE(host.overlays.empty());
    EXPECT_EQ(host.grabs, 0);
}

}  // namespace
