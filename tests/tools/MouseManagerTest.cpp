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
using OverlayEditor::PlatformMouseListener;
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

struct Listener : PlatformMouseListener {
    void platformSelected(unsigned long id) override { selected.push_back(id); }
    void deactivated() override { ++ended; }

    std::vector<unsigned long> selected;
    int ended = 0;
};

struct PlatformTool : testing::Test {
    int click(std::uint64_t pressedOn, std::uint64_t releasedOn) {
        host.cursorPlatform = pressedOn;
        const int result = tool->handleMouseEvent(Type::LeftPress, {});
        host.cursorPlatform = releasedOn;
        EXPECT_EQ(tool->handleMouseEvent(Type::LeftRelease, {}), 0);
        return result;
    }

    FakeHost host;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    std::unique_ptr<PlatformMouseTool> tool = std::make_unique<PlatformMouseTool>();
};

TEST_F(PlatformTool, SelectsWhatWasPressedAndReleased) {
    tool->setListener(listener);
    EXPECT_EQ(click(5, 5), 0) << "not active yet";
    tool->activate();
    struct Click {
        std::uint64_t press, release;
        int consumed;
        unsigned long selected;
        std::size_t told;
    };
    for (const auto& c : {Click{5, 5, 1, 5, 1}, Click{5, 6, 1, 0, 1}, Click{6, 6, 1, 6, 2},
                          Click{6, 0, 1, 0, 2}, Click{0, 6, 0, 0, 2}, Click{0, 0, 0, 0, 2}}) {
        SCOPED_TRACE(std::to_string(c.press) + " to " + std::to_string(c.release));
        EXPECT_EQ(click(c.press, c.release), c.consumed);
        EXPECT_EQ(tool->selectedPlatform(), c.selected);
        EXPECT_EQ(listener->selected.size(), c.told);
    }
    EXPECT_EQ(listener->selected, (std::vector<unsigned long>{5, 6}));
    host.cursorPlatform = 6;
    tool->handleMouseEvent(Type::LeftRelease, {});
    EXPECT_EQ(tool->selectedPlatform(), 0ul) << "a release without a press";
    EXPECT_EQ(listener->selected.size(), 2u);
    for (const auto type : {Type::Motion, Type::Wheel, Type::RightPress})
        EXPECT_EQ(tool->handleMouseEvent(type, {1, 1, 1, 120}), 0);
    click(5, 5);
    tool->clearSelected();
    EXPECT_EQ(tool->selectedPlatform(), 0ul);
}

TEST_F(PlatformTool, GrabsTheMouseOnceAndGivesItBack) {
    tool->setListener(listener);
    tool->deactivate();
    EXPECT_EQ(host.grabs, 0);
    EXPECT_EQ(listener->ended, 0);
    tool->activate();
    tool->activate();
    EXPECT_EQ(host.grabs, 1);
    tool->deactivate();
    tool->deactivate();
    EXPECT_EQ(host.grabs, 0);
    EXPECT_EQ(listener->ended, 1);
    tool->activate();
    tool.reset();
    EXPECT_EQ(host.grabs, 0);
    EXPECT_EQ(listener->ended, 1) << "a dying tool tells nobody";
    EXPECT_EQ(listener.use_count(), 1);
}

}  // namespace
