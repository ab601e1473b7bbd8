#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Drawing.h"
#include "model/ShapeKinds.h"
#include "model/ShapeRegistry.h"
#include "tools/ScreenNote.h"

namespace {

using namespace OverlayEditor;
using testing::HasSubstr;
using testing::StartsWith;

/// What holds for the tools of all kinds.
struct EveryTool : DrawingTest {
    EveryTool() {
        addAllKinds(registry, preferences);
        manager.setHintListener([this](std::string_view text) {
            hint = text;
            ++hintChanges;
        });
    }
    ~EveryTool() override { manager.setHintListener({}); }
    Shape& begin(const std::string& kind) { return start(registry.getShapeByName(kind)->clone()); }

    ShapeRegistry registry;
    std::string hint;
    int hintChanges = 0;
};

/// Clears the overlay when a drawing is done, in the tool's own event.
struct ClearsOverlay : FunctorTwoParams__ {
    explicit ClearsOverlay(Overlay& cleared) : overlay(cleared) {}
    int operator()(PIObject*, void*) override { return overlay.clearShapes(false), 1; }
    int Call(PIObject* sender, void* data) override { return (*this)(sender, data); }

    Overlay& overlay;
};

/// Whatever ends drawing, and whenever it comes: nothing of the tool stays in the view, the mouse is free,
/// and what the hand does afterwards harms nobody.
TEST_F(EveryTool, LeavesNothingBehindWheneverItEnds) {
    struct Step {
        const char* name;
        std::function<void(Mouse&)> act;
    };
    // One drawing, a step each; it can end after any of them.
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
    ClearsOverlay clears(overlay);
    struct Ending {
        const char* name;
        bool shapeStays;
        std::function<void()> act;
    };
    const Ending endings[] = {{"right click", true, [&] { mouse.rightPress(); }},
                              {"stopped", true, [&] { manager.clearMouseTool(); }},
                              {"overlay cleared", false, [&] { overlay.clearShapes(false); }},
                              {"cleared in the tool's own event", false, [&] {
                                   manager.setDrawDoneCallback(&clears);
                                   mouse.rightPress();
                                   manager.setDrawDoneCallback(nullptr);
                               }}};
    for (const Shape* const kind : registry.getShapes())
        for (const Ending& ending : endings)
            for (std::size_t last = 0; last < std::size(steps); ++last) {
                SCOPED_TRACE(kind->name() + ", " + steps[last].name + ", " + ending.name);
                Shape& shape = begin(kind->name());
                for (std::size_t i = 0; i <= last; ++i) steps[i].act(mouse);

                ending.act();
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

                // A shape that stays can be edited on; to activate and deactivate twice is to do it once.
                if (ending.shapeStays) {
                    manager.setCurrentMouseTool(shape.mouseTool(), true);
                    shape.mouseTool()->activate();
                    EXPECT_EQ(host.grabs, 1);
                    mouse.frame().from("20.9N 158.1W").to("20.95N 158.0W").rightPress();
                    shape.mouseTool()->deactivate();
                    EXPECT_EQ(host.grabs, 0);
                }
                overlay.clearShapes(false);
                EXPECT_TRUE(host.overlays.empty());
            }
}

TEST_F(EveryTool, ALeavingMouseTakesItsPointAndItsMarksAlong) {
    const auto& circle = begin("Circle");
    mouse.move("21.0N 158.0W").frame();
    EXPECT_EQ(view.painted.size(), 1u);
    mouse.leave().frame();
    EXPECT_TRUE(view.painted.empty());
    mouse.from("21.0N 158.0W").move("21.1N 158.0W").frame();
    EXPECT_TRUE(rubberBandShown());
    mouse.leave().frame();
    EXPECT_FALSE(rubberBandShown());
    mouse.to("21.1N 158.0W").move("21.0N 158.0W").frame();
    EXPECT_EQ(stateOf(circle), Tool::Hovering) << "the button was held all the time";
    EXPECT_EQ(std::ranges::count_if(view.painted, &TestView::Painted::highlighted), 1);
    mouse.leave().frame();
    ASSERT_EQ(view.painted.size(), 3u);
    for (const auto& point : view.painted) EXPECT_TRUE(point.label.empty() && !point.highlighted);
    mouse.move("21.0N 158.0W").press().leave().to("21.05N 158.0W");
    EXPECT_NEAR(circle.centerPoint().lat(), 21.05 * kDegree, 1e-5) << "a drag goes on";
}

/// While it is drawn, and when its points are hovered.
TEST_F(EveryTool, LabelsTellTheMeasures) {
    preferences.setGeodeticUnits(UTILS::UnitType_t::Degrees);
    preferences.setRangeUnits(UTILS::UnitType_t::Kilometers);
    enum Hand { Rests, Presses, Releases, Clicks };
    struct Step {
        const char* where;
        Hand hand;
        const char* label;  ///< before the hand does anything
    };
    struct Case {
        const char* kind;
        std::vector<Step> steps;
    };
    // A tenth of a degree of the meridian at 21 degrees is 11.07 km.
    const Case cases[] = {
        {"Circle",
         {{"21.0N 158.0W", Presses, "LLA: 21.00 -158.00 0.00 m Rad: 0.00 km"},
          {"21.1N 158.0W", Releases, "LLA: 21.10 -158.00 0.00 m Rad: 11.07 km"},
          {"21.0N 158.0W", Presses, "LLA: 21.00 -158.00 0.00 m Rad: 11.07 km"},
          {"20.9N 158.0W", Rests, "LLA: 20.90 -158.00 0.00 m Rad: 22.14 km"}}},
        {"Arc",
         {{"21.0N 158.0W", Presses, "LLA: 21.00 -158.00 0.00 m"},
          {"20.9N 158.0W", Rests, "LLA: 20.90 -158.00 0.00 m Rad: 11.07 km T: 180.00 deg"},
          {"21.0N 158.1W", Rests, "LLA: 21.00 -158.10 0.00 m Rad: 10.40 km T: 270.02 deg"}}},
        {"Ellipse",
         {{"21.0N 158.0W", Presses, "LLA: 21.00 -158.00 0.00 m"},
          {"20.9N 158.0W", Releases, "LLA: 20.90 -158.00 0.00 m Rad: 11.07 km"},
          {"21.05N 158.0W", Presses, "LLA: 21.05 -158.00 0.00 m XRad: 11.07 km YRad: 5.54 km"},
          {"21.2N 158.0W", Rests, "LLA: 21.20 -158.00 0.00 m XRad: 11.07 km YRad: 22.14 km"}}},
        {"Orbit",
         {{"21.0N 158.0W", Presses, "LLA: 21.00 -158.00 0.00 m"},
          {"20.9N 158.0W", Releases, "LLA: 20.90 -158.00 0.00 m Dist: 11.07 km T: 180.00 deg"},
          {"20.8N 158.0W", Clicks, "LLA: 20.80 -158.00 0.00 m Rad: 11.07 km"},
          {"21.0N 158.0W", Rests, "LLA: 21.00 -158.00 0.00 m Rad: 11.07 km"},
          {"20.9N 158.0W", Rests, "LLA: 20.90 -158.00 0.00 m Dist: 11.07 km T: 180.00 deg"}}},
        {"Line",
         {{"21.0N 158.0W", Clicks, "LLA: 21.00 -158.00 0.00 m"},
          {"20.9N 158.0W", Rests, "LLA: 20.90 -158.00 0.00 m Dist: 11.07 km T: 180.00 deg"},
          {"21.0N 158.0W", Rests, "LLA: 21.00 -158.00 0.00 m"}}},
        {"Rectangle",
         {{"21.0N 158.0W", Presses, "LLA: 21.00 -158.00 0.00 m"},
          {"21.1N 158.0W", Rests, "LLA: 21.10 -158.00 0.00 m Width: 0.00 km Height: 11.07 km"},
          // The components of the diagonal.
          {"21.1N 158.1W", Releases, "LLA: 21.10 -158.10 0.00 m Width: 10.39 km Height: 11.07 km"},
          {"21.0N 158.0W", Rests, "LLA: 21.00 -158.00 0.00 m Width: 10.39 km Height: 11.07 km"}}},
        {"Text", {{"21.0N 158.0W", Rests, "LLA: 21.00 -158.00 0.00 m"}}},
        {"Free Draw",
         {{"21.0N 158.0W", Presses, ""}, {"21.1N 158.0W", Releases, "LLA: 21.10 -158.00 0.00 m"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.kind);
        begin(c.kind);
        for (const Step& step : c.steps) {
            mouse.move(step.where);
            const std::string text = label();
            EXPECT_EQ(text.substr(0, text.find(" Area: ")), step.label);
            if (step.hand == Presses || step.hand == Clicks) mouse.press();
            if (step.hand == Releases || step.hand == Clicks) mouse.release();
        }
    }
}

TEST_F(EveryTool, HintsTellTheNextStep) {
    struct Case {
        const char* kind;
        /// Before the first press, with it, after its release elsewhere, then with the second press.
        const char *resting, *pressed, *released, *pressedAgain;
    };
    for (const Case& c :
         {Case{"Circle", "Press at the centre and drag to the edge", "Release on the edge", "Drag a point",
               ""},
          Case{"Cylinder", "Press at the centre and drag to the X", "Release at the X",
               "Press, drag and release at the Y", "Release at the Y"},
          Case{"Arc", "Press at the centre and drag to the start", "Release at the start",
               "Press, drag and release at the end", "Release at the end"},
          Case{"Orbit", "Press at the first centre", "Release at the second centre",
               "Press, drag and release where the rim", "Release where the rim"},
          Case{"Rectangle", "Press at the first corner", "Release at the opposite corner", "Drag a point",
               ""},
          Case{"Line", "Click the first point", "Release here, or drag to the second", "Click the next",
               "Release to place the point"},
          Case{"Text", "Click where the label", "Release where the label", "Drag a point", ""}}) {
        SCOPED_TRACE(c.kind);
        begin(c.kind);
        EXPECT_THAT(hint, StartsWith(c.resting));
        mouse.from("21.0N 158.0W");
        EXPECT_THAT(hint, StartsWith(c.pressed));
        mouse.to("21.1N 158.0W").move("21.05N 158.1W");
        EXPECT_THAT(hint, StartsWith(c.released));
        mouse.press();
        EXPECT_THAT(hint, StartsWith(c.pressedAgain));
        mouse.release();
        overlay.clearShapes(false);
        EXPECT_EQ(hint, "") << "nothing is said of a tool that is gone";
    }
}

TEST_F(EveryTool, HintsFollowTheShape) {
    Shape& shape = begin("Cylinder");
    for (int i = 0; i < 10; ++i) mouse.move("21.0N 158.0W").frame();
    EXPECT_EQ(hintChanges, 1) << "told when it changes";
    mouse.press().to("21.0N 157.8W").from("21.05N 158.1W").to("21.2N 158.0W").move("20.9N 158.2W");
    EXPECT_THAT(hint, StartsWith("No height yet: Shift + wheel on the cyan point"));
    mouse.frame().moveToPixel(400, 300 - 28);
    EXPECT_THAT(hint, HasSubstr("changes the height"));
    mouse.wheel(120).move("20.9N 158.2W");
    EXPECT_THAT(hint, StartsWith("Drag a point")) << "it has one now";
    mouse.frame().move("21.0N 158.0W");
    EXPECT_THAT(hint, HasSubstr("centre"));
    mouse.press();
    EXPECT_THAT(hint, StartsWith("Release to leave the point"));
    mouse.release();
    EXPECT_THAT(hint, HasSubstr("centre")) << "it is still there";
    mouse.rightPress();
    EXPECT_EQ(hint, "");
    shape.setShowPoints(false);
    manager.setCurrentMouseTool(shape.mouseTool(), true);
    EXPECT_THAT(hint, StartsWith("The shape is complete")) << "no point can be dragged";
    begin("Line");
    mouse.from("21.0N 158.0W").to("21.0N 158.0W").move("21.0N 158.1W");
    EXPECT_THAT(hint, StartsWith("Click the second point"));
    mouse.move("21.0N 158.0W");
    EXPECT_THAT(hint, StartsWith("Click to remove this point"));
}

/// No letter of a text is lost, and no line is longer than it must be.
TEST(ScreenNote, ShowsTheTextThatWasAskedForLastInShortLines) {
    const std::vector<std::string> lines{"Click the next point.", "Right click ends. Space turns it"};
    EXPECT_EQ(linesOf("Click the next point. Right click ends. Space turns it", 33), lines);
    const std::string text = "No 15\u00b0 here: Shift + wheel gives it one. An-unbreakable-word here. Short";
    for (std::size_t letters = 1; letters < 90; ++letters) {
        std::string joined;
        for (const std::string& line : linesOf(text, letters)) {
            joined.append(joined.empty() ? "" : " ").append(line);
            EXPECT_TRUE(line.size() <= letters + 1 || line.find(' ') == std::string::npos) << line;
        }
        EXPECT_EQ(joined, text);
    }
    FakeHost host;
    {
        ScreenNote note({.left = 10.0, .vertical = 8.0, .bottom = true});
        note.show("one");
        note.show(std::string(50, 'a') + "\n" + std::string(50, 'b'));
        note.moveTo(20.0);
        ASSERT_EQ(host.screenTexts.size(), 2u);
        EXPECT_THAT(
            host.screenTexts.begin()->second,
            AllOf(HasSubstr("aaa\n"), HasSubstr("PosY FLOAT64 45.0\n"), HasSubstr("VAlign STRING B\n")));
        EXPECT_EQ(note.end(), 70.0);
    }
    EXPECT_TRUE(host.screenTexts.empty());
}

}  // namespace
