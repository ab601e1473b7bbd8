#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gui/TestDialog.h"
#include "model/PolygonShape.h"
#include "model/ShapeState.h"

using ::testing::HasSubstr;

namespace OverlayEditor {
namespace {

/// One undo step each, among clicks; as the host knows lines, and without that.
TEST_F(OverlayEditorDialogTest, TypedAndClickedPointsAreStepsEach) {
    registry.addPrototype(PolygonShape(preferences, PolygonShape::Line));
    for (const bool lines : {true, false}) {
        dialog.reset();
        overlay.clearShapes(false);
        host.marks = lines;
        dialog = std::make_unique<OverlayEditorDialog>(&preferences, &mouse, &overlay, registry.getShapes());
        dialog->show();
        EXPECT_FALSE(form.field("Next:").enabled);
        const auto& line = static_cast<PolygonShape&>(static_cast<Shape&>(add(5)));
        form.type("Next:", "21 18.5N 158 02.0W");
        form.type("Next:", "4Q FJ 12345 67890");
        host.cursor = Vec3(0.37, -2.75, 0);
        for (const auto type : {PIGUI::PIMouseEventType_t::LeftPress, PIGUI::PIMouseEventType_t::LeftRelease})
            mouse.handleMouseEvent(type, {});
        form.type("Next:", "5 nm 270");
        form.type("Next:", "270 5 nm");
        ASSERT_EQ(line.getNumPoints(), 5u);
        EXPECT_EQ(form.field("Next:").text, "");
        EXPECT_NEAR(line.points()[0].lat(), (21 + 18.5 / 60) * kRadiansPerDegree, 1e-15);
        const auto state = line.state();
        form.type("Next:", "5 nm 270M");
        EXPECT_THAT(messages.back(), HasSubstr("Next: \"5 nm 270M\": directions are true here"));
        EXPECT_EQ(form.field("Next:").text, lines ? "5 nm 270M" : "");
        EXPECT_TRUE(*line.state() == *state);
        if (lines) {
            auto& field = form.field("Next:");
            field.text = "5 nm 180";
            const auto shown = host.overlays.size();
            field.typing->Call(field.wrapper, nullptr);
            EXPECT_EQ(host.overlays.size(), shown + 1) << "its outline";
            EXPECT_TRUE(says("Point 6: "));
            EXPECT_TRUE(*line.state() == *state);
            form.type("Next:", "");
            EXPECT_FALSE(mouse.isActive()) << "finished";
            EXPECT_EQ(host.overlays.size(), shown);
            press("Edit");
        }
        for (std::size_t left = 5; left-- > 1;) {
            press("Undo");
            EXPECT_EQ(line.getNumPoints(), left);
        }
    }
}

}  // namespace
}  // namespace OverlayEditor
