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

    // Pressed off the earth the event is the host's; pressed again in mid-line, another line begins.
    manager.setCurrentMouseTool(shape.mouseTool(), true);
    mouse.moveOffTheEarth().press();
    EXPECT_EQ(mouse.result, 0);
    mouse.moveToPixel(297, 300).press();
    mouse.moveToPixel(300, 300).press().moveToPixel(320, 300).moveOffTheEarth();
    EXPECT_EQ(mouse.result, 1) << "the line goes on where the mouse comes back";
    mouse.moveToPixel(330, 300).press().moveToPixel(340, 300).wheel(120).release();
    EXPECT_EQ(mouse.result, 1);
    EXPECT_EQ(lengths(shape), (Lengths{3, 3, 2}));
    mouse.release();
    EXPECT_EQ(mouse.result, 0);
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
}

}  // namespace
