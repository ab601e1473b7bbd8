#include <string>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/RectangleShape.h"

namespace {

using OverlayEditor::RectangleShape;

TEST_F(DrawingTest, TheRubberBandOfARectangleReachesToTheCursor) {
    start(new RectangleShape(preferences, RectangleShape::Rectangle));
    mouse.from("21.0N 158.0W").move("21.1N 157.9W").frame();
    EXPECT_TRUE(rubberBandShown());
    EXPECT_NE(host.lastText.find("lla 21 -158"), std::string::npos) << host.lastText;
    EXPECT_NE(host.lastText.find("lla 21.1 -157.9"), std::string::npos) << host.lastText;
}

}  // namespace
