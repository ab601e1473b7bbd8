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
};

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

}  // namespace
