#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Drawing.h"
#include "common/Files.h"
#include "common/Notify.h"
#include "model/CylinderShape.h"
#include "model/ShapeKinds.h"
#include "model/ShapeRegistry.h"
#include "pi/PIHALVIS.h"
#include "support/ScopedVariable.h"
#include "support/TemporaryDirectory.h"
#include "tools/QuickDrawManager.h"

namespace {

using OverlayEditor::CylinderShape;
using OverlayEditor::QuickDrawManager;
using OverlayEditor::ShapeRegistry;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::uint64_t kShip = 77;

struct QuickDraw : DrawingTest {
    QuickDraw() {
        ::setenv("HOME", home.path().c_str(), 1);
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages.push_back(text); });
        OverlayEditor::addAllKinds(registry, preferences);
        host.platforms[kShip].header.name = "Ship";
        host.platforms[kShip].point.latRad = 20.0 * kDegree;
        host.platforms[kShip].point.lonRad = -150.0 * kDegree;
        host.platforms[kShip].point.altMeters = 30.0;
        restart();
    }
    ~QuickDraw() override {
        quick.reset();
        halNotify::setNotifyHandler({});
        freeFunctors();
        if (homeBefore) ::setenv("HOME", homeBefore->c_str(), 1);
    }

    void restart() {
        quick = std::make_unique<QuickDrawManager>("OverlayEditor", preferences, manager, registry);
    }
    void command(const std::string& label, std::int32_t asked = 1) {
        EXPECT_EQ(host.actions.at(label)->Call(nullptr, &asked), 1) << label;
    }
    /// Draws all of a circle but the right click.
    void beginCircle() {
        command("Quick Circle Draw");
        mouse.from("21.0N 158.0W").to("21.1N 158.0W");
    }
    void drawCircle() {
        beginCircle();
        mouse.rightPress();
    }
    void pick(std::uint64_t platform) {
        command("Pick Attach Platform");
        host.cursorPlatform = platform;
        mouse.press().release();
    }
    std::string path(const std::string& name) const { return directory + "/" + name; }
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(directory, none))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    static std::string contents(const std::string& file) {
        std::string text;
        EXPECT_EQ(UTILS::readFile(file, text), "");
        return text;
    }
    void make(const std::string& name) {
        UTILS::makeDirectories(directory);
        std::ofstream(path(name)) << "mine\n";
    }
    /// Files that the host shows, in the order of loading, and the number of other overlays.
    std::vector<std::string> loaded() const {
        std::vector<std::string> names;
        for (const auto& [handle, overlay] : host.overlays)
            if (!overlay.path.empty()) names.push_back(std::filesystem::path(overlay.path).filename());
        return names;
    }
    std::size_t drawn() const { return host.overlays.size() - loaded().size(); }
    void expectIdle() {
        EXPECT_FALSE(manager.isValid());
        EXPECT_EQ(host.grabs, 0);
        EXPECT_EQ(drawn(), 0u);
    }

    const std::optional<std::string> homeBefore =
        std::getenv("HOME") ? std::optional(std::getenv("HOME")) : std::nullopt;
    const TemporaryDirectory home;
    const std::string directory = home.path() + "/.config/OverlayEditor/zel";
    std::vector<std::string> messages;
    ShapeRegistry registry;
    std::unique_ptr<QuickDrawManager> quick;
};

TEST_F(QuickDraw, AFinishedShapeIsAFileThatTheHostShows) {
    EXPECT_EQ(host.actions.size(), 19u);
    drawCircle();
    EXPECT_EQ(mouse.result, 0) << "the right click is the host's, too";
    expectIdle();
    EXPECT_THAT(loaded(), ElementsAre("Circle_1.zel"));
    const std::string text = contents(path("Circle_1.zel"));
    EXPECT_THAT(text, HasSubstr("3d name Circle 1\n"));
    EXPECT_THAT(text, HasSubstr("\nlinecolor hex 0xff0000ff\n")) << "red at first";
    EXPECT_THAT(text, HasSubstr("\ncircle\n"));
    EXPECT_THAT(messages, IsEmpty());

    // The next one, by the next command, while the one before still waits for its right click.
    beginCircle();
    beginCircle();
    EXPECT_THAT(files(), ElementsAre("Circle_1.zel", "Circle_2.zel"));
    quick->finishDrawing();
    expectIdle();
    EXPECT_THAT(files(), ElementsAre("Circle_1.zel", "Circle_2.zel", "Circle_3.zel"));
    EXPECT_THAT(contents(path("Circle_3.zel")), HasSubstr("3d name Circle 3\n"));
}

TEST_F(QuickDraw, AShapeThatIsNotCompleteIsDropped) {
    command("Quick Circle Draw");
    mouse.rightPress();
    expectIdle();
    EXPECT_THAT(messages, IsEmpty()) << "nothing had been begun";

    // In the middle of the drag.
    for (const auto& end : std::vector<std::function<void()>>{
             [&] { mouse.rightPress(); }, [&] { command("Quick Circle Draw"); },
             [&] { command("Pick Attach Platform"); }, [&] { quick->removeAllShapes(); },
             [&] { manager.clearMouseTool(); }}) {
        command("Quick Circle Draw");
        mouse.from("21.0N 158.0W").move("21.1N 158.0W").frame();
        end();
        mouse.frame().release();
        quick->cancelDrawing();
        manager.clearMouseTool();
        expectIdle();
    }
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(QuickDraw, EveryKindIsDrawnAndAllButFreeDrawingsAreAttached) {
    struct Kind {
        const char *label, *file, *keyword, *attached;
        bool pointByPoint;
    };
    const Kind kinds[] = {{"Quick Free Draw", "Free Draw_1.zel", "line", nullptr, false},
                          {"Quick Circle Draw", "Circle_1.zel", "circle", "\ncenterxyz 0 0 0\n", false},
                          {"Quick Line Draw", "Line_1.zel", "line", "\nxyz ", true},
                          {"Quick Poly Draw", "Polygon_1.zel", "polygon", "\nxyz ", true},
                          {"Quick Rectangle Draw", "Rectangle_1.zel", "polygon", "\nxyz ", false},
                          {"Quick Triangle Draw", "Triangle_1.zel", "polygon", "\nxyz ", false}};
    pick(kShip);
    for (const bool attach : {false, true}) {
        command("Attach Quick Shape", attach);
        for (const Kind& kind : kinds) {
            SCOPED_TRACE(kind.file);
            messages.clear();
            command(kind.label);
            if (kind.pointByPoint)
                for (const char* corner : {"21.0N 158.0W", "21.1N 158.0W", "21.1N 157.9W"})
                    mouse.move(corner).press().release();
            else
                mouse.from("21.0N 158.0W").to("21.1N 157.9W");
            quick->finishDrawing();
            expectIdle();
            ASSERT_THAT(loaded(), ElementsAre(kind.file));
            const auto& overlay = host.overlays.begin()->second;
            const std::string text = contents(overlay.path);
            EXPECT_THAT(text, HasSubstr(std::string("\n") + kind.keyword + "\n"));
            EXPECT_THAT(text, HasSubstr("\nlinecolor hex 0xff0000ff\n"));
            const bool attached = attach && kind.attached;
            EXPECT_EQ(overlay.platform, attached ? kShip : 0u);
            EXPECT_THAT(text, attached ? HasSubstr(kind.attached) : HasSubstr("lla 21 -158"));
            if (attach && !attached)
                EXPECT_THAT(messages, ElementsAre(HasSubstr("cannot be attached")));
            else
                EXPECT_THAT(messages, IsEmpty());
            command("Remove Last Quick Shape");
            EXPECT_THAT(files(), IsEmpty());
        }
    }
}

TEST_F(QuickDraw, AKindThatIsMissingIsAMessage) {
    registry = ShapeRegistry();
    command("Quick Free Draw");
    EXPECT_FALSE(manager.isValid());
    EXPECT_THAT(messages, ElementsAre(HasSubstr("Free Draw")));
}

TEST_F(QuickDraw, AnotherToolEndsTheDrawing) {
    beginCircle();
    CylinderShape other(preferences, CylinderShape::Circle);
    manager.setCurrentMouseTool(other.mouseTool(), true);
    EXPECT_EQ(manager.currentMouseTool(), other.mouseTool()) << "which stays";
    EXPECT_TRUE(other.mouseTool()->isActive());
    EXPECT_THAT(loaded(), ElementsAre("Circle_1.zel"));

    command("Quick Circle Draw");
    EXPECT_FALSE(other.mouseTool()->isActive());
    command("Remove Last Quick Shape");
    expectIdle();
}

TEST_F(QuickDraw, NothingIsOverwritten) {
    make("Circle_1.zel");
    make("Circle_3.zel");
    make("Circle_x.zel");
    make("plan_2000.zel");
    drawCircle();
    EXPECT_THAT(loaded(), ElementsAre("Circle_4.zel")) << "counted on from the highest";
    EXPECT_THAT(contents(path("Circle_4.zel")), HasSubstr("3d name Circle 4\n"));
    command("Remove Last Quick Shape");
    EXPECT_THAT(files(), ElementsAre("Circle_1.zel", "Circle_3.zel", "Circle_x.zel", "plan_2000.zel"));
    drawCircle();
    EXPECT_THAT(loaded(), ElementsAre("Circle_4.zel")) << "the counter keeps its value";

    // Free at the hundredth try: 4 to 102 are taken, then 4 to 103.
    for (int number = 5; number <= 102; ++number) make("Circle_" + std::to_string(number) + ".zel");
    drawCircle();
    EXPECT_THAT(loaded(), ElementsAre("Circle_4.zel", "Circle_103.zel"));
    for (int number = 104; number <= 202; ++number) make("Circle_" + std::to_string(number) + ".zel");
    drawCircle();
    expectIdle();
    EXPECT_EQ(loaded().size(), 2u);
    EXPECT_THAT(host.notifications, ElementsAre("0 OverlayEditor: Failed to create file " +
                                                path("Circle_202.zel") + " for auto saving ZEL\n"));
    for (const char* name : {"Circle_1.zel", "Circle_104.zel", "Circle_202.zel"})
        EXPECT_EQ(contents(path(name)), "mine\n");
    drawCircle();
    EXPECT_EQ(loaded().back(), "Circle_203.zel") << "and the next one finds its place";
    EXPECT_THAT(contents(path("Circle_203.zel")), HasSubstr("3d name Circle 203\n"));
}

TEST_F(QuickDraw, TheDirectory) {
    // As chosen; only where the dialog was is remembered by the host.
    host.fileDialogAnswers = {home.path() + "/a/b/"};
    command("Set Quick Shape Directory");
    command("Set Quick Shape Directory");
    EXPECT_EQ(host.settings["AutoSaveZelDir"], home.path() + "/a/b/") << "cancelled the second time";
    drawCircle();
    EXPECT_TRUE(UTILS::fileIsFile(home.path() + "/a/b/Circle_1.zel"));
    EXPECT_EQ(host.overlays.begin()->second.path, home.path() + "/a/b/Circle_1.zel");

    // A file stands in the way: drawing is over, and what was drawn kept elsewhere.
    const ScopedVariable elsewhere("TMPDIR", home.path());
    host.settings["AutoSaveZelDir"] = home.path() + "/a/b/Circle_1.zel";
    drawCircle();
    expectIdle();
    EXPECT_THAT(host.notifications,
                ElementsAre(HasSubstr("Circle_1.zel/Circle_1.zel for auto saving ZEL\n")));
    EXPECT_THAT(messages, ElementsAre("Not saved: \"Circle 1\": a part of the path is no directory",
                                      HasSubstr("could not be written"),
                                      HasSubstr("are kept in " + home.path() + "/Unsaved ")));

    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(home.path());
    host.settings.erase("AutoSaveZelDir");
    for (const bool empty : {false, true}) {
        empty ? ::setenv("HOME", "", 1) : ::unsetenv("HOME");
        drawCircle();
    }
    std::filesystem::current_path(before);
    EXPECT_TRUE(UTILS::fileIsFile(home.path() + "/Circle_1.zel"));
    EXPECT_TRUE(UTILS::fileIsFile(home.path() + "/Circle_2.zel"));
}

TEST_F(QuickDraw, WhatADeadProcessLeftIsClearedAway) {
    const std::string left = ".overlayeditor-save-1-1";
    make(left);
    make("Circle_1.zel");
    quick.reset();
    restart();
    EXPECT_THAT(files(), ElementsAre("Circle_1.zel"));
}

TEST_F(QuickDraw, AHostThatRefusesTheFileGetsNoSecondTry) {
    host.onCall = [&](auto) { host.refuseAll = UTILS::fileIsFile(path("Circle_1.zel")); };
    drawCircle();
    host.onCall = {};
    host.refuseAll = false;
    EXPECT_THAT(messages, ElementsAre(HasSubstr("could not load it")));
    command("Remove Last Quick Shape");
    command("Remove All Quick Shapes");
    EXPECT_THAT(files(), ElementsAre("Circle_1.zel"));
}

TEST_F(QuickDraw, RemovingTheLastOne) {
    command("Remove Last Quick Shape");
    for (int i = 0; i < 3; ++i) drawCircle();
    beginCircle();
    command("Remove Last Quick Shape");
    expectIdle();
    EXPECT_EQ(files().size(), 3u) << "only the drawing is cancelled";
    command("Remove Last Quick Shape");
    EXPECT_THAT(files(), ElementsAre("Circle_1.zel", "Circle_2.zel"));
    EXPECT_EQ(loaded(), files());

    // The user unloads the second by hand: it is no quick shape any more, its file stays.
    const auto second = std::prev(host.overlays.end())->first;
    host.overlays.erase(second);
    for (auto* observer : std::vector(host.observers)) observer->removedZEL(second);
    const int unloads = host.unloads;
    command("Remove Last Quick Shape");
    EXPECT_THAT(files(), ElementsAre("Circle_2.zel"));
    EXPECT_EQ(host.unloads, unloads + 1);
    // Loaded again, as the editor does after saving it, it is one again.
    PIHALVIS::loadZELFile(path("Circle_2.zel"), 0, 1);
    make("other.zel");
    PIHALVIS::loadZELFile(path("other.zel"), 0, 1);
    command("Remove Last Quick Shape");
    command("Remove Last Quick Shape");
    EXPECT_THAT(loaded(), ElementsAre("other.zel"));
    EXPECT_THAT(files(), ElementsAre("other.zel"));
}

TEST_F(QuickDraw, OnlyAutoDeleteDeletesAtTheEnd) {
    make("Circle_1.zel");
    for (const bool autoDelete : {false, true}) {
        preferences.setAutoDelete(autoDelete);
        drawCircle();
        drawCircle();
        beginCircle();
        command("Remove All Quick Shapes");
        expectIdle();
        EXPECT_EQ(loaded().size(), autoDelete ? 1u : 0u) << "what an earlier manager left is not its own";
        command("Remove Last Quick Shape");
        drawCircle();
        beginCircle();
        quick.reset();
        expectIdle();
        EXPECT_THAT(host.actions, IsEmpty());
        EXPECT_THAT(host.observers, IsEmpty());
        EXPECT_THAT(host.screenTexts, IsEmpty());
        EXPECT_THAT(loaded(), ElementsAre("Circle_4.zel")) << "an overlay of a deleted file is unloaded";
        EXPECT_THAT(files(), ElementsAre("Circle_1.zel", "Circle_2.zel", "Circle_3.zel", "Circle_4.zel"))
            << "those of others stay";
        restart();
    }
}

/// Nothing that somebody has saved over goes, be it with the same text, nor what others have deleted already.
TEST_F(QuickDraw, WhatOthersHaveSavedStays) {
    for (int i = 0; i < 5; ++i) drawCircle();
    const auto saveOver = [&](const std::string& name, const std::string& text, bool later) {
        const auto before = std::filesystem::last_write_time(path(name));
        std::ofstream(path(name)) << text;
        std::filesystem::last_write_time(path(name), before + std::chrono::seconds(later ? 1 : 0));
    };
    saveOver("Circle_1.zel", "mine\n", true);
    saveOver("Circle_3.zel", contents(path("Circle_3.zel")), true);
    saveOver("Circle_5.zel", "mine\n", false);
    command("Remove Last Quick Shape");
    EXPECT_THAT(messages,
                ElementsAre(path("Circle_5.zel") + " has been saved over since it was drawn; it stays"));
    EXPECT_EQ(loaded().back(), "Circle_4.zel") << "only out of the view";
    command("Remove Last Quick Shape");
    EXPECT_EQ(messages.size(), 1u);
    // Loaded again, it is the user's.
    PIHALVIS::loadZELFile(path("Circle_5.zel"), 0, 1);
    std::filesystem::remove(path("Circle_2.zel"));
    preferences.setAutoDelete(true);
    quick.reset();
    EXPECT_THAT(files(), ElementsAre("Circle_1.zel", "Circle_3.zel", "Circle_5.zel"));
    EXPECT_EQ(loaded(), files());
    EXPECT_EQ(messages.size(), 3u);
    EXPECT_EQ(contents(path("Circle_1.zel")), "mine\n");
}

TEST_F(QuickDraw, OneColorIsChecked) {
    const std::vector<std::pair<std::string, std::string>> colors{
        {"Blue", "ffff0000"},  {"Yellow", "ff00ffff"}, {"Orange", "ff00aaff"}, {"Purple", "ffff00ff"},
        {"White", "ffffffff"}, {"Black", "ff000000"},  {"Red", "ff0000ff"},    {"Green", "ff00ff00"}};
    beginCircle();
    for (const auto& [name, hex] : colors) {
        command(name + " Shape Color");
        for (const auto& color : colors)
            EXPECT_EQ(host.actionChecks.at(color.first + " Shape Color"), color.first == name) << name;
        EXPECT_THAT(host.lastText, HasSubstr("linecolor hex 0x" + hex)) << "of the shape being drawn";
    }
    mouse.rightPress();
    EXPECT_THAT(contents(path("Circle_1.zel")), HasSubstr("linecolor hex 0xff00ff00"));
}

TEST_F(QuickDraw, AttachedShapesLieOnThePickedPlatform) {
    EXPECT_FALSE(host.actionChecks.at("Attach Quick Shape"));
    EXPECT_FALSE(host.actionChecks.at("Pick Attach Platform"));
    command("Attach Quick Shape", 1);
    EXPECT_TRUE(host.actionChecks.at("Attach Quick Shape"));
    EXPECT_THAT(host.screenTexts, IsEmpty());
    drawCircle();
    EXPECT_THAT(messages, ElementsAre(HasSubstr("no platform is picked")));
    messages.clear();

    pick(kShip);
    EXPECT_TRUE(host.actionChecks.at("Pick Attach Platform"));
    ASSERT_EQ(host.screenTexts.size(), 1u);
    EXPECT_THAT(host.screenTexts.begin()->second, HasSubstr("Attach To: Ship\n"));

    drawCircle();
    EXPECT_FALSE(host.actionChecks.at("Pick Attach Platform")) << "drawing takes the mouse";
    EXPECT_EQ(std::prev(host.overlays.end())->second.platform, kShip);

    command("Attach Quick Shape", 0);
    EXPECT_THAT(host.screenTexts, IsEmpty());
    drawCircle();
    EXPECT_EQ(std::prev(host.overlays.end())->second.platform, 0u);
}

TEST_F(QuickDraw, ThePlatformGoes) {
    pick(kShip);
    command("Attach Quick Shape");
    ASSERT_EQ(host.screenTexts.size(), 1u);
    beginCircle();
    host.platforms.clear();
    mouse.rightPress();
    EXPECT_THAT(messages, ElementsAre(HasSubstr("no position")));
    EXPECT_EQ(std::prev(host.overlays.end())->second.platform, 0u) << "saved where it was drawn";

    messages.clear();
    quick->scenarioEntityRemoved(78);
    EXPECT_EQ(host.screenTexts.size(), 1u);
    quick->scenarioEntityRemoved(kShip);
    EXPECT_THAT(host.screenTexts, IsEmpty());
    EXPECT_EQ(messages.size(), 1u);
    pick(99);
    EXPECT_THAT(host.screenTexts.begin()->second, HasSubstr("Attach To: Unknown\n"));
    quick->forgetPlatform();
    EXPECT_THAT(host.screenTexts, IsEmpty());

    command("Pick Attach Platform");
    EXPECT_FALSE(host.actionChecks.at("Pick Attach Platform")) << "switched off again";
    expectIdle();
    command("Pick Attach Platform");
    quick.reset();
    expectIdle();
}

}  // namespace
