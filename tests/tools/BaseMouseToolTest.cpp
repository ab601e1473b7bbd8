#include <array>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TestView.h"
#include "support/FakeHost.h"
#include "tools/BaseMouseTool.h"
#include "tools/MouseManager.h"

namespace {

using halCore::Vec3;
using OverlayEditor::BaseMouseTool;
using OverlayEditor::MouseManager;
using OverlayEditor::Preferences;
using PIGUI::PIMouseEvent;
using Type = PIGUI::PIMouseEventType_t;

/// Writes down which hooks are called, a letter each: S start, F finish, A abort of a drag, E editing
/// finished, M move, W altitude, N point near the mouse, P redraw, T draw and R remove temporary
/// graphics, D deactivate.
class ProbeTool : public BaseMouseTool {
  public:
    using BaseMouseTool::adjustAltitude_;
    using BaseMouseTool::appendLLAText_;
    using BaseMouseTool::BaseMouseTool;
    using BaseMouseTool::createEditPoint;

    void activate() override {}
    void deactivate() override {
        hooks += 'D';
        state_ = Inactive;
        notifyDrawDone_();
    }

    /// Puts the tool into a state; hovering and dragging are on `existing`.
    void put(int state, bool pressed = false) {
        state_ = static_cast<State>(state);
        pressed_ = pressed;
        nearPoint_ = state == Hovering || state == Dragging ? &existing : nullptr;
        existing.setHighlighted(nearPoint_ != nullptr);
        hooks.clear();
    }
    void giveCursorPoint() { cursorPoint_ = createEditPoint(Vec3(), 0xFF); }
    void setAltitude(double meters) { altitude_ = meters; }
    void press() { pressed_ = true; }
    bool isPressed() const { return pressed_; }
    std::pair<int, int> last() const { return {lastX_, lastY_}; }

    mutable std::string hooks;
    int rest = Complete;
    PluginUtils::PUDrawPoint existing{degrees(30.0, 40.0, 700.0), 0xFF};
    PluginUtils::PUDrawPoint* near = nullptr;
    Vec3 at;

  protected:
    void drawTempGraphics_(const Vec3& pos) override { note('T', pos); }
    void finishEditing_() override {
        hooks += 'E';
        state_ = static_cast<State>(rest);
    }
    std::string getPointText_(const Vec3& pos) const override {
        std::ostringstream text;
        text << "alt " << pos.alt();
        return text.str();
    }
    void handleStartDrag_(const Vec3& pos) override { note('S', pos); }
    void handleFinishDrag_(const Vec3& pos) override { note('F', pos); }
    void handleAbortDrag_() override { hooks += 'A'; }
    void handleAltitudeChange_() override { hooks += 'W'; }
    void handleMovePoint_(const Vec3& pos) override { note('M', pos); }
    PluginUtils::PUDrawPoint* pointNearMouse_(const Vec3&) override {
        hooks += 'N';
        return near;
    }
    void redrawPointsForViewChange_() override { hooks += 'P'; }
    void removeTempGraphics_() override { hooks += 'R'; }

  private:
    void note(char hook, const Vec3& pos) {
        hooks += hook;
        at = pos;
    }
};

struct BaseTool : testing::Test {
    static constexpr int kShift = PIGUI::PIModifierShift;

    int send(Type type, int x = 300, int y = 200, unsigned modifiers = 0, int wheel = 0) {
        return tool.handleMouseEvent(type, PIMouseEvent{x, y, modifiers, wheel});
    }

    FakeHost host;
    TestView view{degrees(30.0, 40.0, 1e6)};
    Preferences preferences;
    ProbeTool tool{preferences};
};

TEST_F(BaseTool, AnswersEveryEventInEveryState) {
    struct State {
        int state;
        bool pressed;
    };
    const State states[] = {{0, false}, {1, false}, {2, false}, {2, true}, {3, false}, {4, false}};
    enum Earth { On, Off };
    enum Near { Nothing, Point };
    struct Row {
        const char* name;
        Type type;
        Earth earth;
        Near near;
        unsigned modifiers;
        /// "result state hooks" for each state; "p" behind the state: the button counts as held.
        std::array<const char*, 6> cells;
    };
    const auto ignored = std::array{"0 0", "0 1", "0 2", "0 2p", "0 3", "0 4"};
    const Row rows[] = {
        // clang-format off
        //                                                    inactive complete placing  pressed  dragging hovering
        {"left press",    Type::LeftPress,    On,  Nothing, 0, {"0 0", "0 1",   "1 2p S", "1 2p S", "1 3",   "1 3 R"}},
        {"left press",    Type::LeftPress,    Off, Nothing, 0, {"0 0", "0 1",   "1 2",    "1 2p",   "1 3",   "1 3 R"}},
        {"left release",  Type::LeftRelease,  On,  Nothing, 0, {"0 0", "0 1",   "0 2",    "1 2 F",  "1 1 E", "0 4"}},
        {"left release",  Type::LeftRelease,  Off, Nothing, 0, {"0 0", "0 1",   "0 2",    "0 2 A",  "1 1 E", "0 4"}},
        {"right press",   Type::RightPress,   On,  Nothing, 0, {"0 0", "0 0 D", "0 0 D",  "0 0 D",  "0 0 D", "0 0 D"}},
        {"motion",        Type::Motion,       On,  Nothing, 0, {"0 0", "0 1 N", "1 2 N",  "1 2p",   "1 3 M", "0 1 NE"}},
        {"motion",        Type::Motion,       On,  Point,   0, {"0 0", "0 4 N", "0 4 N",  "1 2p",   "1 3 M", "0 4 N"}},
        {"motion",        Type::Motion,       Off, Nothing, 0, {"0 0", "0 1",   "0 2",    "0 2p",   "1 3",   "0 1 E"}},
        {"wheel + shift", Type::Wheel,        On,  Nothing, 1, {"0 0", "1 1 W", "1 2 W",  "1 2p W", "1 3 W", "1 4 W"}},
        {"wheel",         Type::Wheel,        On,  Nothing, 6, ignored},
        {"right release", Type::RightRelease, On,  Nothing, 0, ignored},
        {"middle press",  Type::MiddlePress,  On,  Point,   0, ignored},
        {"double click",  Type::LeftDoubleClick, On, Point, 0, ignored},
        {"leave",         Type::Leave,        Off, Nothing, 0, {"0 0", "0 1",   "0 2",    "0 2p",   "0 3",   "0 1 E"}},
        {"unknown",       static_cast<Type>(99), On, Point, 1, ignored},
        // clang-format on
    };
    for (const Row& row : rows)
        for (std::size_t i = 0; i < std::size(states); ++i) {
            host.cursor = row.earth == On ? std::optional(degrees(30.0, 40.0)) : std::nullopt;
            tool.near = row.near == Point ? &tool.existing : nullptr;
            tool.put(states[i].state, states[i].pressed);
            const int redraws = host.redraws;
            std::ostringstream cell;
            cell << send(row.type, 300, 200, row.modifiers, 120) << ' ' << tool.state();
            if (tool.isPressed() && tool.isActive()) cell << 'p';
            if (!tool.hooks.empty()) cell << ' ' << tool.hooks;
            const bool follows = row.type == Type::Motion && states[i].state == BaseMouseTool::Placing;
            const bool seen = follows || tool.hooks.find_first_of("SFAMWE") != std::string::npos;
            EXPECT_GE(host.redraws, redraws + (seen ? 1 : 0)) << row.name << " is not seen in state " << i;
            EXPECT_EQ(cell.str(), row.cells[i]) << row.name << (row.earth == On ? ", " : " off the earth, ")
                                                << (row.near == Point ? "on a point, " : "") << "in state "
                                                << states[i].state << (states[i].pressed ? ", pressed" : "");
        }
}

TEST_F(BaseTool, RightPressForgetsTheCursorAndTellsThatDrawingIsDone) {
    struct Done : FunctorTwoParams__ {
        int operator()(PIObject* sender, void* data) override {
            EXPECT_FALSE(sender || data);
            return ++calls;
        }
        int Call(PIObject* sender, void* data) override { return (*this)(sender, data); }
        int calls = 0;
    } done;
    tool.setDrawDoneCallback(&done);
    tool.put(BaseMouseTool::Complete);
    send(Type::Motion, 12, 34);
    EXPECT_EQ(tool.last(), std::pair(12, 34));
    EXPECT_EQ(send(Type::RightPress), 0);
    EXPECT_EQ(tool.last(), std::pair(0, 0));
    EXPECT_EQ(done.calls, 1);
}

TEST_F(BaseTool, APointDoesNotJumpWhenItIsGrabbedOffItsCentre) {
    view.look(degrees(29.0, 40.0, 3e5), 0.0, 0.4);
    host.pixelToLla = [&](int x, int y) { return view.pick(x * view.density, y * view.density); };
    for (const double alt : {0.0, 20000.0}) {
        SCOPED_TRACE(alt);
        // The second time on a dense screen.
        view.density = alt > 0.0 ? 2.0 : 1.0;
        tool.existing.setPosition(degrees(30.0, 40.0, alt));
        tool.put(BaseMouseTool::Complete);
        tool.preDrawOnRefresh(TestView::kWidth, TestView::kHeight);
        const auto at = *view.projection().visiblePixel(tool.existing.ecef());
        const int x = static_cast<int>(at.x / view.density) + 5;
        const int y = static_cast<int>(at.y / view.density) - 4;
        tool.put(BaseMouseTool::Hovering);
        send(Type::LeftPress, x, y);
        send(Type::Motion, x, y);
        // What is left is the rounding to whole pixels of what the host is asked.
        const double pixel = view.projection().metersPerPixel(halCore::toEcef(tool.existing.getPosition()));
        EXPECT_NEAR(tool.at.lat(), 30.0 * kDegree, view.density * pixel / 6.3e6);
        EXPECT_NEAR(tool.at.lon(), 40.0 * kDegree, view.density * pixel / 6.3e6);
        EXPECT_EQ(tool.at.alt(), alt);
    }
}

TEST_F(BaseTool, TheWheelChangesTheAltitudeByWholeNotches) {
    struct Step {
        int delta;
        unsigned modifiers;
        double from;
        int result;
        double to;
    };
    const Step steps[] = {
        {120, 0, 100.0, 0, 100.0},          {120, PIGUI::PIModifierControl, 100.0, 0, 100.0},
        {120, kShift, 100.0, 1, 125.0},     {240, kShift, 100.0, 1, 156.25},
        {-120, kShift, 100.0, 1, 80.0},     {60, kShift, 100.0, 1, 100.0},
        {-119, kShift, 100.0, 1, 100.0},    {0, kShift, 100.0, 0, 100.0},
        {120, kShift, 0.0, 1, 0.01},        {-120, kShift, 0.0, 1, 0.01},
        {0, kShift, 0.0, 0, 0.01},          {120, kShift, -50.0, 1, 0.01},
        {120, kShift | 4u, 100.0, 1, 125.0}};
    for (const auto& step : steps) {
        SCOPED_TRACE(std::to_string(step.delta) + " from " + std::to_string(step.from));
        tool.put(BaseMouseTool::Placing);
        tool.setAltitude(step.from);
        EXPECT_EQ(send(Type::Wheel, 1, 1, step.modifiers, step.delta), step.result);
        EXPECT_DOUBLE_EQ(tool.getCurrentAltitude_(), step.to);
    }
    tool.put(BaseMouseTool::Hovering);
    tool.setAltitude(700.0);
    const int redraws = host.redraws;
    EXPECT_EQ(send(Type::Wheel, 1, 1, kShift, 120), 1);
    EXPECT_EQ(tool.existing.getPosition(), degrees(30.0, 40.0, 875.0));
    EXPECT_EQ(tool.existing.getDescription(), "alt 875");
    EXPECT_EQ(host.redraws, redraws + 1);
}

TEST_F(BaseTool, EachRefreshMovesTheCursorPoint) {
    const auto refresh = [&] {
        tool.hooks.clear();
        tool.preDrawOnRefresh(TestView::kWidth, TestView::kHeight);
        return tool.hooks;
    };
    EXPECT_EQ(refresh(), "") << "not active";
    tool.put(BaseMouseTool::Placing);
    EXPECT_EQ(refresh(), "RP") << "no cursor point";
    tool.giveCursorPoint();
    host.cursor = degrees(30.1, 40.1);
    EXPECT_EQ(refresh(), "RP");
    EXPECT_FALSE(tool.cursorPoint()->isShown()) << "nobody has seen the cursor yet";

    tool.setAltitude(25.0);
    send(Type::Motion, 400, 31);
    EXPECT_EQ(refresh(), "RP");
    EXPECT_EQ(tool.cursorPoint()->getPosition(), degrees(30.1, 40.1, 25.0));
    ASSERT_EQ(view.painted.size(), 1u);
    EXPECT_EQ(view.painted[0].label, "alt 25");
    EXPECT_FALSE(view.painted[0].textAbove);
    send(Type::Motion, 400, 29);
    refresh();
    EXPECT_TRUE(view.painted.at(0).textAbove) << "within 5% of 600";

    tool.press();
    EXPECT_EQ(refresh(), "RPT");
    EXPECT_EQ(tool.at, degrees(30.1, 40.1, 25.0));
    host.cursor.reset();
    EXPECT_EQ(refresh(), "RP");
    EXPECT_TRUE(view.painted.empty()) << "off the earth";
    host.cursor = degrees(30.1, 40.1);
    refresh();
    EXPECT_TRUE(tool.cursorPoint()->isShown());
    tool.put(BaseMouseTool::Hovering);
    EXPECT_EQ(refresh(), "RP");
    EXPECT_FALSE(tool.cursorPoint()->isShown());
}

TEST_F(BaseTool, WritesCoordinatesAsThePreferencesWant) {
    const auto text = [&](const Vec3& pos) {
        std::ostringstream out;
        tool.appendLLAText_(out, pos);
        EXPECT_TRUE(out);
        return out.str();
    };
    EXPECT_EQ(text(degrees(21.5, -157.25, 100.0)), "LLA: 21°30'00.00\"N 157°15'00.00\"W 100.00 m");
    preferences.setAltitudeUnits(UTILS::UnitType_t::Kilometers);
    preferences.setGeodeticUnits(UTILS::UnitType_t::Degrees);
    EXPECT_EQ(text(degrees(-21.5, 157.25, 1500.0)), "LLA: -21.50 157.25 1.50 km");
    // Of zone 31 the origin: easting 500 km, northing 0.
    preferences.setCoordinateSystem(Preferences::MGRS);
    EXPECT_EQ(text(degrees(0.0, 3.0, 1500.0)), "MGRS: 31N EA 00000 00000 1.50");
    EXPECT_EQ(text(degrees(90.0, 0.0)), "MGRS: Z AH 00000 00000 0.00");
}

}  // namespace
