#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/CylinderShape.h"
#include "model/PolygonShape.h"
#include "tools/ScreenNote.h"

namespace {

using OverlayEditor::CylinderShape;
using OverlayEditor::PolygonShape;
using testing::HasSubstr;
using testing::StartsWith;

struct Hints : DrawingTest {
    Hints() {
        manager.setHintListener([this](std::string_view text) {
            hint = text;
            ++changes;
        });
    }
    ~Hints() override { manager.setHintListener({}); }
    template <typename Kind, typename... Arguments>
    Kind& begin(Arguments... arguments) {
        return start(new Kind(preferences, arguments...));
    }

    std::string hint;
    int changes = 0;
};

TEST_F(Hints, TellTheNextStepWhenItChanges) {
    auto& shape = begin<CylinderShape>(CylinderShape::Cylinder);
    for (int i = 0; i < 10; ++i) mouse.move("21.0N 158.0W").frame();
    EXPECT_EQ(changes, 1);
    mouse.press().to("21.0N 157.8W").move("21.05N 158.1W").press();
    mouse.move("21.2N 158.0W").release().move("20.9N 158.2W");
    EXPECT_THAT(hint, StartsWith("No height yet: Shift + wheel on the cyan point"));
    mouse.frame().moveToPixel(400, 300 - 28);
    EXPECT_THAT(hint, HasSubstr("changes the height"));
    mouse.wheel(120).move("20.9N 158.2W");
    EXPECT_THAT(hint, StartsWith("Drag a point")) << "it has one now";
    mouse.frame().move("21.0N 158.0W");
    EXPECT_THAT(hint, HasSubstr("centre"));
    mouse.press();
    EXPECT_THAT(hint, StartsWith("Release to leave the point"));
    mouse.rightPress();
    EXPECT_EQ(hint, "");
    shape.setShowPoints(false);
    manager.setCurrentMouseTool(shape.mouseTool(), true);
    EXPECT_THAT(hint, StartsWith("The shape is complete")) << "no point can be dragged";
    overlay.clearShapes(false);
    EXPECT_EQ(hint, "") << "nothing is said of a tool that is gone";
    begin<PolygonShape>(PolygonShape::Line);
    mouse.from("21.0N 158.0W").to("21.0N 158.0W").move("21.0N 158.1W");
    EXPECT_THAT(hint, StartsWith("Click the second point"));
    mouse.move("21.0N 158.0W");
    EXPECT_THAT(hint, StartsWith("Click to remove this point"));
}

TEST(ScreenNote, ShowsTheTextThatWasAskedForLast) {
    FakeHost host;
    {
        OverlayEditor::ScreenNote note({.left = 10.0, .vertical = 8.0, .bottom = true});
        note.show("one");
        note.show("two\nlines");
        ASSERT_EQ(host.screenTexts.size(), 1u);
        EXPECT_THAT(host.screenTexts.begin()->second, HasSubstr("Text STRING two lines\n"));
        EXPECT_THAT(host.screenTexts.begin()->second, HasSubstr("PosY FLOAT64 8.0\n"));
        EXPECT_THAT(host.screenTexts.begin()->second, HasSubstr("VAlign STRING B\n"));
        note.show("");
        EXPECT_TRUE(host.screenTexts.empty());
        note.show("last");
    }
    EXPECT_TRUE(host.screenTexts.empty());
}

}  // namespace
