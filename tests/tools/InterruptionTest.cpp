#include <functional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"

namespace {

using namespace OverlayEditor;

/// Clears the overlay when a drawing is done, as an automatic save does.
struct ClearsOverlay : FunctorTwoParams__ {
    explicit ClearsOverlay(Overlay& cleared) : overlay(cleared) {}
    int operator()(PIObject*, void*) override {
        overlay.clearShapes(false);
        return 1;
    }
    int Call(PIObject* sender, void* data) override { return (*this)(sender, data); }

    Overlay& overlay;
};

/// Whatever ends drawing, and whenever it comes: nothing of the tool stays in the view, the mouse is free,
/// and what the hand does afterwards harms nobody.
struct Interruptions : DrawingTest {
    struct Kind {
        const char* name;
        std::function<Shape*(const Preferences&)> make;
    };
    struct Step {
        const char* name;
        std::function<void(Mouse&)> act;
    };
    struct Ending {
        const char* name;
        bool shapeStays;
        std::function<void(Interruptions&)> act;
    };

    template <typename Made, typename... Arguments>
    static std::function<Shape*(const Preferences&)> maker(Arguments... arguments) {
        return [=](const Preferences& preferences) -> Shape* { return new Made(preferences, arguments...); };
    }
};

TEST_F(Interruptions, LeaveNothingBehindAtAnyStep) {
    const Kind kinds[] = {
        {"circle", maker<CylinderShape>(CylinderShape::Circle)},
        {"cone", maker<CylinderShape>(CylinderShape::Cone)},
        {"arc", maker<CylinderShape>(CylinderShape::Arc)},
        {"wedge", maker<CylinderShape>(CylinderShape::Wedge)},
        {"cylinder", maker<CylinderShape>(CylinderShape::Cylinder)},
        {"line", maker<PolygonShape>(PolygonShape::Line)},
        {"polygon", maker<PolygonShape>(PolygonShape::Polygon)},
        {"label", maker<AnnotationShape>()},
        {"rectangle", maker<RectangleShape>(RectangleShape::Rectangle)},
        {"free drawing", maker<FreeDrawShape>()},
        {"orbit", maker<OrbitShape>()},
    };
    // One drawing, a step each; it can be interrupted after any of them.
    const Step steps[] = {
        {"activated", [](Mouse& mouse) { mouse.frame(); }},
        {"moved", [](Mouse& mouse) { mouse.move("21.0N 158.0W").frame(); }},
        {"pressed", [](Mouse& mouse) { mouse.press().frame(); }},
        {"dragging", [](Mouse& mouse) { mouse.move("21.1N 158.0W").frame(); }},
        {"off the earth", [](Mouse& mouse) { mouse.moveOffTheEarth().frame(); }},
        {"back", [](Mouse& mouse) { mouse.move("21.1N 158.0W").frame(); }},
        {"released", [](Mouse& mouse) { mouse.release().frame(); }},
        {"pressed again", [](Mouse& mouse) { mouse.move("21.05N 158.1W").frame().press().frame(); }},
        {"dragging again", [](Mouse& mouse) { mouse.move("21.0N 157.9W").frame(); }},
        {"lifted", [](Mouse& mouse) { mouse.wheel(120).frame(); }},
        {"released again", [](Mouse& mouse) { mouse.release().frame(); }},
        {"hovering", [](Mouse& mouse) { mouse.move("21.1N 158.0W").frame(); }},
        {"grabbed", [](Mouse& mouse) { mouse.press().frame(); }},
        {"moving a point", [](Mouse& mouse) { mouse.move("21.12N 158.02W").frame(); }},
    };
    const Ending endings[] = {
        {"right click", true, [](auto& test) { test.mouse.rightPress(); }},
        {"stopped", true, [](auto& test) { test.manager.clearMouseTool(); }},
        {"another shape's tool", true,
         [](auto& test) {
             auto* const other = new CylinderShape(test.preferences, CylinderShape::Sphere);
             test.overlay.addShape(other);
             test.manager.setCurrentMouseTool(other->mouseTool(), true);
             test.manager.clearMouseTool();
         }},
        {"cleared in the tool's own event", false,
         [](auto& test) {
             ClearsOverlay done(test.overlay);
             test.manager.setDrawDoneCallback(&done);
             test.mouse.rightPress();
             test.manager.setDrawDoneCallback(nullptr);
         }},
        {"overlay cleared", false, [](auto& test) { test.overlay.clearShapes(false); }},
        {"overlay hidden, then cleared", false,
         [](auto& test) {
             test.overlay.setActive(false);
             test.mouse.frame();
             test.overlay.clearShapes(false);
             test.overlay.setActive(true);
         }},
    };
    for (const Kind& kind : kinds)
        for (const Ending& ending : endings)
            for (std::size_t last = 0; last < std::size(steps); ++last) {
                SCOPED_TRACE(std::string(kind.name) + ", " + steps[last].name + ", " + ending.name);
                Shape* const shape = kind.make(preferences);
                overlay.addShape(shape);
                manager.setCurrentMouseTool(shape->mouseTool(), true);
                for (std::size_t i = 0; i <= last; ++i) steps[i].act(mouse);

                ending.act(*this);
                EXPECT_FALSE(manager.isActive());
                EXPECT_EQ(host.grabs, 0);
                EXPECT_FALSE(rubberBandShown());
                EXPECT_LE(host.overlays.size(), ending.shapeStays ? 1u : 0u) << "the shape, if it is one";
                EXPECT_EQ(overlay.shapes().empty(), !ending.shapeStays);
                view.painted.clear();
                const auto shown = host.overlays.size();
                mouse.move("21.05N 157.95W").frame().release().wheel(120).press().frame().rightPress();
                EXPECT_TRUE(view.painted.empty()) << "edit points and labels are gone";
                EXPECT_EQ(host.overlays.size(), shown);

                // A shape that stays can be edited on.
                if (ending.shapeStays) {
                    manager.setCurrentMouseTool(shape->mouseTool(), true);
                    mouse.frame().from("20.9N 158.1W").to("20.95N 158.0W").rightPress();
                }
                overlay.clearShapes(false);
                EXPECT_TRUE(host.overlays.empty());
            }
}

TEST_F(Interruptions, ALeavingMouseTakesItsPointAndItsMarksAlong) {
    auto& circle = start(new CylinderShape(preferences, CylinderShape::Circle));
    mouse.move("21.0N 158.0W").frame();
    EXPECT_EQ(view.painted.size(), 1u);
    mouse.leave().frame();
    EXPECT_TRUE(view.painted.empty());
    mouse.from("21.0N 158.0W").move("21.1N 158.0W").frame();
    EXPECT_TRUE(rubberBandShown());
    mouse.leave().frame();
    EXPECT_FALSE(rubberBandShown());
    mouse.to("21.1N 158.0W").move("21.0N 158.0W").frame();
    EXPECT_TRUE(circle.isComplete()) << "the button was held all the time";
    mouse.leave().frame();
    ASSERT_EQ(view.painted.size(), 2u);
    for (const auto& point : view.painted) EXPECT_TRUE(point.label.empty() && !point.highlighted);
}

TEST_F(Interruptions, TheWheelInMidPressLiftsTheWholeShape) {
    const double altitude = 0.01 * 1.25;
    for (const auto subtype : {CylinderShape::Circle, CylinderShape::Arc, CylinderShape::Ellipsoid}) {
        auto& shape = start(new CylinderShape(preferences, subtype));
        mouse.from("21.0N 158.0W").move("21.0N 157.8W").wheel(120).wheel(120).release();
        if (!shape.isComplete()) mouse.from("21.05N 158.0W").to("21.2N 158.0W");
        ASSERT_TRUE(shape.isComplete());
        EXPECT_EQ(shape.centerPt()->alt(), altitude);
        EXPECT_EQ(shape.majorAxisPt()->alt(), altitude);
    }
}

}  // namespace
