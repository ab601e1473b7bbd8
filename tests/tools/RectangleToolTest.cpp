#include <string>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/AnnotationShape.h"
#include "model/RectangleShape.h"

namespace {

using OverlayEditor::RectangleShape;

struct RectangleTool : DrawingTest {
    RectangleShape& begin(RectangleShape::Subtype subtype = RectangleShape::Rectangle) {
        return start(new RectangleShape(preferences, subtype));
    }
    static bool isEmpty(const RectangleShape& shape) { return !shape.firstCorner() && !shape.lastCorner(); }
};

TEST_F(RectangleTool, IsPressedAtOneCornerAndReleasedAtTheOther) {
    struct Case {
        const char *name, *first, *last;
    };
    for (const auto& c : {Case{"westwards", "21.0N 158.0W", "20.9N 158.1W"},
                          Case{"date line", "3.0S 179.95E", "3.1S 179.9W"}})
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
            overlay.clearShapes(false);
        }
}

TEST_F(RectangleTool, AReleaseOnTheFirstCornerTakesItBack) {
    auto& shape = begin();
    mouse.from("21.0N 158.0W").move("21.1N 158.0W").frame().to("21.0N 158.0W").frame();
    EXPECT_TRUE(isEmpty(shape));
    EXPECT_EQ(stateOf(shape), Tool::Placing);
    EXPECT_TRUE(host.overlays.empty());
    EXPECT_EQ(view.painted.size(), 1u) << "the cursor alone";
    shape.setFirstCorner(place("20.9N 158.1W"));
    mouse.frame().from("21.0N 158.0W").to("21.1N 157.9W");
    EXPECT_EQ(*shape.firstCorner(), place("20.9N 158.1W")) << "the panel's; the press sets none then";
    shape.clear();
    mouse.from("21.0N 158.0W").move("21.1N 157.9W").frame();
    manager.clearMouseTool();
    EXPECT_TRUE(isEmpty(shape)) << "another tool while the button is held";
    EXPECT_TRUE(host.overlays.empty());
}

TEST_F(RectangleTool, CornersAreDraggedApartAndLiftedTogether) {
    auto& shape = begin();
    mouse.from("21.0N 158.0W").move("21.1N 157.9W").frame();
    EXPECT_TRUE(rubberBandShown());
    EXPECT_NE(host.lastText.find("lla 21.1 -157.9"), std::string::npos) << host.lastText;
    mouse.to("21.1N 157.9W").from("21.1N 157.9W").to("21.2N 157.85W");
    EXPECT_EQ(*shape.lastCorner(), place("21.2N 157.85W"));
    EXPECT_EQ(*shape.firstCorner(), place("21.0N 158.0W"));
    mouse.move("20.9N 158.2W").frame().from("21.0N 158.0W").to("20.95N 158.1W").wheel(120).wheel(240);
    const double alt = 0.01 * 1.25 * 1.25;
    EXPECT_LT(geodesic(*shape.firstCorner(), place("20.95N 158.1W")).meters, 1.0);
    EXPECT_EQ(shape.firstCorner()->alt(), alt);
    EXPECT_EQ(*shape.lastCorner(), degrees(21.2, -157.85, alt)) << "it is flat";

    shape.setFirstCorner(place("20.9N 158.15W"));
    mouse.move("20.8N 158.2W").frame().move("20.9N 158.15W");
    EXPECT_EQ(stateOf(shape), Tool::Hovering) << "grabbed where the panel put it";
}

TEST_F(DrawingTest, ALabelStandsWhereTheButtonIsReleasedAndIsDraggedFromThere) {
    auto& shape = start(new OverlayEditor::AnnotationShape(preferences));
    mouse.from("21.0N 158.0W").moveOffTheEarth().release();
    EXPECT_FALSE(shape.hasPoint());
    mouse.from("21.0N 158.0W").to("21.1N 158.1W");
    EXPECT_EQ(shape.position(), place("21.1N 158.1W"));
    EXPECT_EQ(stateOf(shape), Tool::Complete);
    mouse.from("20.9N 158.0W");
    EXPECT_EQ(mouse.result, 0) << "no second one";
    mouse.to("20.9N 158.0W").from("21.1N 158.1W").to("21.1N 157.9W").wheel(120).wheel(240);
    EXPECT_EQ(shape.position(), degrees(21.1, -157.9, 0.01 * 1.25 * 1.25));
    shape.setPosition(place("20.95N 158.1W"));
    mouse.move("20.9N 158.2W").frame().move("20.95N 158.1W");
    EXPECT_EQ(stateOf(shape), Tool::Hovering) << "grabbed where the panel put it";
}

}  // namespace
