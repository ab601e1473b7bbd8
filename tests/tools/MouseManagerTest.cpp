#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "model/ToolRetirement.h"
#include "support/FakeHost.h"
#include "tools/MouseManager.h"
#include "tools/PlatformMouseTool.h"

namespace {

using OverlayEditor::MouseManager;
using OverlayEditor::MouseTool;
using OverlayEditor::MouseToolPtr;
using OverlayEditor::PlatformMouseTool;
using PIGUI::PIMouseEvent;
using Type = PIGUI::PIMouseEventType_t;

struct NoOne : FunctorTwoParams__ {
    int operator()(PIObject*, void*) override { return 0; }
    int Call(PIObject*, void*) override { return 0; }
} nobody;

/// Writes down what the manager does to it.
struct LoggedTool : MouseTool {
    LoggedTool(std::string toolName, std::vector<std::string>& toolLog)
        : name(std::move(toolName)), log(toolLog) {}
    ~LoggedTool() override { log.push_back(name + " deleted"); }

    int handleMouseEvent(Type, const PIMouseEvent&) override { return 7; }
    void preDrawOnRefresh(int width, int height) override {
        log.push_back(name + " refresh " + std::to_string(width) + "x" + std::to_string(height));
    }
    void activate() override {
        active = true;
        log.push_back(name + " on");
    }
    void deactivate() override {
        active = false;
        log.push_back(name + " off");
    }
    bool isActive() const override { return active; }
    void setShowPoints(bool) override {}
    void setDrawDoneCallback(FunctorTwoParams__* callback) override {
        log.push_back(name + (callback ? " callback" : " no callback"));
    }
    int leftPress_(Type, const PIMouseEvent&) override { return 0; }
    int leftRelease_(Type, const PIMouseEvent&) override { return 0; }
    int rightPress_(Type, const PIMouseEvent&) override { return 0; }
    int mouseWheel_(Type, const PIMouseEvent&) override { return 0; }
    int mouseMotion_(Type, const PIMouseEvent&) override { return 0; }

    std::string name;
    std::vector<std::string>& log;
    bool active = false;
};

using Log = std::vector<std::string>;

TEST(MouseManager, RetiresTheOldToolAndSetsUpTheNewOne) {
    Log log;
    LoggedTool first("first", log), second("second", log);
    {
        MouseManager manager;
        manager.setDrawDoneCallback(&nobody);
        const auto expect = [&](const Log& expected) {
            EXPECT_EQ(log, expected);
            log.clear();
        };
        manager.setCurrentMouseTool(&first, true);
        expect({"first on", "first callback"});
        EXPECT_TRUE(manager.isActive());
        EXPECT_EQ(manager.handleMouseEvent(Type::Motion, {}), 7);
        manager.preDrawOnRefresh(640, 480);
        expect({"first refresh 640x480"});

        manager.setCurrentMouseTool(&second, false);
        expect({"first no callback", "first off", "second callback"});
        EXPECT_TRUE(manager.isValid());
        EXPECT_FALSE(manager.isActive());

        manager.setCurrentMouseTool(&second, true);
        expect({"second no callback", "second off", "second on", "second callback"});
        manager.setDrawDoneCallback(nullptr);
        expect({"second no callback"});
        manager.clearMouseTool();
        expect({"second no callback", "second off"});
        EXPECT_FALSE(manager.isValid());
        manager.setCurrentMouseTool(nullptr, true);
        ASSERT_TRUE(manager.currentMouseTool());
        EXPECT_EQ(manager.handleMouseEvent(Type::LeftPress, {}), 0);
        EXPECT_FALSE(manager.isActive());
        manager.setCurrentMouseTool(&first, false);
        log.clear();
    }
    EXPECT_EQ(log, Log{"first no callback"}) << "a dying manager does not deactivate";
}

TEST(MouseManager, ForgetsAToolThatDies) {
    Log log;
    MouseManager manager;
    MouseToolPtr tool(new LoggedTool("tool", log));
    manager.setCurrentMouseTool(tool.get(), true);
    log.clear();
    tool.reset();
    EXPECT_FALSE(manager.isValid());
    EXPECT_EQ(log, (Log{"tool no callback", "tool off", "tool deleted"}));
    EXPECT_EQ(manager.handleMouseEvent(Type::RightPress, {}), 0);
}

TEST(PlatformMouseTool, SelectsWhatWasPressedAndReleased) {
    FakeHost host;
    PlatformMouseTool tool;
    const auto click = [&](std::uint64_t pressedOn, std::uint64_t releasedOn) {
        host.cursorPlatform = pressedOn;
        const int result = tool.handleMouseEvent(Type::LeftPress, {});
        host.cursorPlatform = releasedOn;
        EXPECT_EQ(tool.handleMouseEvent(Type::LeftRelease, {}), 0);
        return std::pair(result, tool.selectedPlatform());
    };
    EXPECT_EQ(click(5, 5), std::pair(0, 0ul)) << "not active yet";
    for (int i = 0; i < 2; ++i) tool.activate();
    EXPECT_EQ(host.grabs, 1);
    EXPECT_EQ(click(5, 5), std::pair(1, 5ul));
    EXPECT_EQ(click(5, 6), std::pair(1, 0ul));
    EXPECT_EQ(click(6, 0), std::pair(1, 0ul));
    EXPECT_EQ(click(0, 6), std::pair(0, 0ul)) << "the globe turns";
    host.cursorPlatform = 6;
    tool.handleMouseEvent(Type::LeftRelease, {});
    EXPECT_EQ(tool.selectedPlatform(), 0ul) << "a release without a press";
    EXPECT_EQ(tool.handleMouseEvent(Type::RightPress, {}), 0);
    for (int i = 0; i < 2; ++i) tool.deactivate();
    EXPECT_EQ(host.grabs, 0);
}

}  // namespace
