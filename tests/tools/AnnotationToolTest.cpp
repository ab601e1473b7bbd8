#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/AnnotationShape.h"
#include "model/Overlay.h"
#include "tools/BaseMouseTool.h"

namespace {

using OverlayEditor::AnnotationShape;
using OverlayEditor::BaseMouseTool;

struct AnnotationTool : testing::Test {
    AnnotationTool() {
        overlay.addShape(shape);
        manager.setCurrentMouseTool(shape->mouseTool(), true);
        mouse.frame();
    }
    BaseMouseTool::State state() const {
        return static_cast<const BaseMouseTool&>(*shape->mouseTool()).state();
    }

    FakeHost host;
    TestView view{degrees(21.0, -158.0, 2e5)};
    OverlayEditor::Preferences preferences;
    ToolEquipment equipment;
    OverlayEditor::MouseManager manager;
    Mouse mouse{host, view, manager};
    OverlayEditor::Overlay overlay;
    AnnotationShape* const shape = new AnnotationShape(preferences);
};

TEST_F(AnnotationTool, ALabelStandsWhereTheButtonIsReleased) {
    mouse.from("21.0N 158.0W");
    EXPECT_FALSE(shape->hasPoint());
    mouse.moveOffTheEarth().release();
    EXPECT_FALSE(shape->hasPoint());
    mouse.from("21.0N 158.0W").to("21.1N 158.1W");
    EXPECT_EQ(shape->position(), place("21.1N 158.1W"));
    EXPECT_EQ(state(), BaseMouseTool::Complete);
    EXPECT_EQ(host.overlays.size(), 1u);

    mouse.from("20.9N 158.0W");
    EXPECT_EQ(mouse.result, 0) << "no second one";
    mouse.to("20.9N 158.0W");
    EXPECT_EQ(shape->position(), place("21.1N 158.1W"));
}

TEST_F(AnnotationTool, ALabelIsDraggedAndLifted) {
    mouse.from("21.0N 158.0W").to("21.0N 158.0W");
    mouse.from("21.0N 158.0W");
    EXPECT_EQ(state(), BaseMouseTool::Dragging);
    mouse.to("21.1N 157.9W").wheel(120).wheel(240);
    EXPECT_NEAR(geodesic(shape->position(), place("21.1N 157.9W")).meters, 0.0, 1.0);
    EXPECT_EQ(shape->position().alt(), 0.01 * 1.25 * 1.25);

    shape->setPosition(place("20.95N 158.1W"));
    mouse.move("20.9N 158.2W").frame().move("20.95N 158.1W");
    EXPECT_EQ(state(), BaseMouseTool::Hovering) << "grabbed where the panel put it";
    mouse.press();
    overlay.clearShapes(false);
    mouse.move("21.0N 158.0W").frame().release();
    EXPECT_TRUE(host.overlays.empty());
    EXPECT_EQ(host.grabs, 0);
}

}  // namespace
