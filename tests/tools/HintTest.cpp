#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/AnnotationShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "tools/PlatformMouseTool.h"
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
    template <typename Kind, typename... Arguments>
    Kind& begin(Arguments... arguments) {
        return start(new Kind(preferences, arguments...));
    }

    std::string hint;
    int changes = 0;
};

TEST_F(Hints, TellTheNextStepOfEachDrawing) {
    struct Kind {
        CylinderShape::Subtype subtype;
        const char *press, *release, *secondPress, *secondRelease, *complete;
    };
    const char* const done = "Drag a point";
    const char* const noHeight = "No height yet: Shift + wheel on the cyan point";
    for (const Kind& kind :
         {Kind{CylinderShape::Circle, "Press at the centre", "Release on the edge", done, done, done},
          Kind{CylinderShape::Cone, "Press at the centre", "Release on the edge", noHeight, noHeight,
               noHeight},
          Kind{CylinderShape::Arc, "Press at the centre", "Release at the start",
               "Press, drag and release at the end", "Release at the end", done},
          Kind{CylinderShape::Wedge, "Press at the centre", "Release at the start",
               "Press, drag and release at the end", "Release at the end", done},
          Kind{CylinderShape::Ellipse, "Press at the centre", "Release at the X radius",
               "Press, drag and release at the Y radius", "Release at the Y radius", done},
          Kind{CylinderShape::Cylinder, "Press at the centre", "Release at the X radius",
               "Press, drag and release at the Y radius", "Release at the Y radius", noHeight},
          Kind{CylinderShape::Ellipsoid, "Press at the centre", "Release at the X radius",
               "Press, drag and release at the Y radius", "Release at the Y radius", noHeight}}) {
        SCOPED_TRACE(kind.subtype);
        auto& shape = begin<CylinderShape>(kind.subtype);
        EXPECT_THAT(hint, StartsWith(kind.press));
        mouse.from("21.0N 158.0W");
        EXPECT_THAT(hint, StartsWith(kind.release));
        mouse.to("21.0N 157.8W").move("21.05N 158.1W");
        EXPECT_THAT(hint, StartsWith(kind.secondPress));
        mouse.press();
        EXPECT_THAT(hint, StartsWith(kind.secondRelease));
        mouse.move("21.2N 158.0W").release().move("20.9N 158.2W");
        EXPECT_THAT(hint, StartsWith(kind.complete));
        if (kind.complete == noHeight) {
            mouse.frame().moveToPixel(400, 300 - 28);
            EXPECT_THAT(hint, HasSubstr("changes the height"));
            mouse.wheel(120).move("20.9N 158.2W");
            EXPECT_THAT(hint, StartsWith(done)) << "it has one now";
        }
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
    }
}

TEST_F(Hints, TellTheNextPointOfTheOtherKinds) {
    begin<PolygonShape>(PolygonShape::Line);
    EXPECT_THAT(hint, StartsWith("Click the first point"));
    mouse.from("21.0N 158.0W");
    EXPECT_THAT(hint, StartsWith("Release here"));
    mouse.to("21.0N 158.0W").move("21.0N 158.1W");
    EXPECT_THAT(hint, StartsWith("Click the second point"));
    mouse.move("21.0N 158.0W");
    EXPECT_THAT(hint, StartsWith("Click to remove this point"));
    mouse.from("21.1N 158.0W").to("21.1N 158.0W").move("21.0N 158.1W");
    EXPECT_THAT(hint, StartsWith("Click the next point. Right click ends"));
    mouse.move("21.0N 158.0W");
    EXPECT_THAT(hint, StartsWith("Drag to move this point"));

    begin<OverlayEditor::RectangleShape>(OverlayEditor::RectangleShape::Rectangle);
    EXPECT_THAT(hint, StartsWith("Press at the first corner"));
    mouse.from("21.0N 158.0W");
    EXPECT_THAT(hint, StartsWith("Release at the opposite corner"));
    mouse.to("21.1N 158.1W").move("20.9N 158.2W");
    EXPECT_THAT(hint, StartsWith("Drag a point"));
    begin<OverlayEditor::FreeDrawShape>();
    EXPECT_THAT(hint, StartsWith("Press and drag"));
    mouse.from("21.0N 158.0W");
    EXPECT_THAT(hint, StartsWith("Release to end the line"));
    begin<OverlayEditor::OrbitShape>();
    EXPECT_THAT(hint, StartsWith("Press at the first centre"));
    mouse.from("21.0N 158.0W");
    EXPECT_THAT(hint, StartsWith("Release at the second centre"));
    mouse.to("21.0N 157.9W").move("21.1N 158.0W");
    EXPECT_THAT(hint, StartsWith("Press, drag and release where the rim"));
    begin<OverlayEditor::AnnotationShape>();
    EXPECT_THAT(hint, StartsWith("Click where the label"));
    OverlayEditor::PlatformMouseTool picker;
    manager.setCurrentMouseTool(&picker, true);
    EXPECT_THAT(hint, StartsWith("Click the platform"));
    manager.clearMouseTool();
    EXPECT_EQ(hint, "");
}

TEST_F(Hints, AreToldOnlyWhenTheyChange) {
    auto& shape = begin<CylinderShape>(CylinderShape::Circle);
    EXPECT_EQ(changes, 1);
    for (int i = 0; i < 10; ++i) mouse.move("21.0N 158.0W").frame();
    EXPECT_EQ(changes, 1);
    shape.setCenter(place("21.0N 158.0W"));
    shape.setMajorRadius(1000.0);
    mouse.frame();
    EXPECT_EQ(changes, 2) << "completed by the panel";
    manager.setHintListener({});
    manager.clearMouseTool();
    EXPECT_EQ(changes, 2);
}

TEST(ScreenNote, ShowsTheTextThatWasAskedForLast) {
    FakeHost host;
    {
        OverlayEditor::ScreenNote note({.left = 10.0, .vertical = 8.0, .bottom = true});
        note.show("one");
        note.show("two\nlines");
        ASSERT_EQ(host.screenTexts.size(), 1u);
        EXPECT_EQ(host.screenTexts.begin()->second,
                  "ScreenText\nEnabled FLOAT64 1.0\nText STRING two lines\nFont STRING arialbd.ttf 12\n"
                  "PosX FLOAT64 10.0\nPosY FLOAT64 8.0\nTextColor STRING 0xffffffff\nHAlign STRING L\n"
                  "VAlign STRING B\n");
        note.show("");
        EXPECT_TRUE(host.screenTexts.empty());
        note.show("last");
    }
    EXPECT_TRUE(host.screenTexts.empty());
}

}  // namespace
