#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Files.h"
#include "geo/Sodano.h"
#include "pi/OverlayEditorInterface.h"
#include "plugin/HostedPlugin.h"

using PluginClient::Interfaces::OVERLAYEDITOR_SERVICE_NAME;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using Function = LoadedPlugin::Function;
using Mouse = PIGUI::PIMouseEventType_t;
using Service = PluginClient::Interfaces::OverlayEditorInterface;

namespace {

using PluginTest = HostedPlugin;

TEST_F(PluginTest, SaysWhoItIs) {
    LoadedPlugin plugin(host);
    EXPECT_EQ(plugin.text(Function::Name, PIParameterName_t::NameText), "OverlayEditor");
    EXPECT_EQ(plugin.text(Function::Description, PIParameterName_t::InfoText),
              "Overlay Editor Plug-in lets you create and edit shapes in 3-D in HALVIS.");
    EXPECT_NE(plugin.text(Function::Author, PIParameterName_t::InfoText), "");
    EXPECT_THAT(plugin.text(Function::Version, PIParameterName_t::InfoText),
                MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+ \\(20[0-9][0-9]-[01][0-9]-[0-3][0-9]\\)"));
    EXPECT_THAT(host.calls, IsEmpty()) << "before start-up the host is left alone";
    plugin.dispatch(Function::Close);
}

TEST_F(PluginTest, DrawsSavesAndLeavesNothing) {
    const std::string file = directory + "/circle.zel";
    for (int round = 0; round < 3; ++round) {
        {
            LoadedPlugin plugin(host);
            EXPECT_EQ(plugin.dispatch(Function::StartUp), 0);
            ASSERT_EQ(host.actions.count("Overlay Editor Dialog"), 1u);
            ASSERT_EQ(host.services.count(OVERLAYEDITOR_SERVICE_NAME), 1u);
            ASSERT_EQ(host.contextMenus.size(), 1u);
            EXPECT_EQ(plugin.mouse(Mouse::LeftPress, 5, 5), 0) << "nothing is drawn yet";

            openDialog();
            EXPECT_FALSE(host.find("Save")->enabled);
            EXPECT_FALSE(host.find("Edit")->enabled);
            addCircle();
            EXPECT_TRUE(host.find("Edit")->checked);
            EXPECT_EQ(form.field("Name:").text, "Circle 1");

            drag(plugin, 100, 100, 130, 100);
            const double radius = halCore::Sodano::inverse(atPixel(100, 100), atPixel(130, 100)).distance;
            char expected[32];
            std::snprintf(expected, sizeof expected, "%.2f m", radius);
            EXPECT_EQ(form.text("Radius:"), expected);
            EXPECT_THAT(host.lastText, HasSubstr("circle"));

            plugin.mouse(Mouse::RightPress, 0, 0);
            host.fireTimeouts();
            EXPECT_FALSE(host.find("Edit")->checked);
            EXPECT_TRUE(host.find("Stop")->checked);
            EXPECT_EQ(host.timeouts.size(), 1u) << "one chain";

            std::vector<void*> saved;
            auto* const service = static_cast<Service*>(host.services[OVERLAYEDITOR_SERVICE_NAME]);
            service->registerNewZelFunction([&](const auto& overlays) { saved = overlays; });
            host.fileDialogAnswers = {file};
            host.activate(*host.find("Save As..."));
            std::string contents;
            EXPECT_EQ(UTILS::readFile(file, contents), "");
            EXPECT_THAT(contents, HasSubstr("3d name Circle 1"));
            ASSERT_EQ(saved.size(), 1u);
            EXPECT_EQ(host.overlays[saved[0]].path, file);
            EXPECT_FALSE(host.overlays[saved[0]].shown) << "the editor's circle is drawn in its place";

            EXPECT_EQ(plugin.dispatch(Function::Close), 0);
            EXPECT_TRUE(host.overlays[saved[0]].shown);
            expectNothingLeft();
            EXPECT_EQ(host.settings["RangeUnits"], "meters");
        }
        EXPECT_FALSE(LoadedPlugin::isMapped());
        host.overlays.clear();
    }
}

TEST_F(PluginTest, CloseWithoutARecordCleansUpTheSame) {
    {
        LoadedPlugin plugin(host);
        plugin.dispatch(Function::StartUp);
        openDialog();
        addCircle();
        plugin.mouse(Mouse::LeftPress, 10, 10);
        plugin.dispatch(Function::Close, nullptr);
        expectNothingLeft();
        EXPECT_EQ(plugin.mouse(Mouse::LeftRelease, 10, 10), 0);
    }
    EXPECT_FALSE(LoadedPlugin::isMapped());
}

TEST_F(PluginTest, CloseWithoutADialogDeletesWhatExists) {
    LoadedPlugin plugin(host);
    plugin.event(PIApplicationEvents_t::ScenarioCleared);
    plugin.dispatch(Function::StartUp);
    for (int code = -1; code < 40; ++code) plugin.event(static_cast<PIApplicationEvents_t>(code), 5);
    plugin.dispatch(Function::Close);
    expectNothingLeft();
}

TEST_F(PluginTest, AHostThatRefusesEverythingIsSurvived) {
    host.refuseAll = true;
    {
        LoadedPlugin plugin(host);
        for (int round = 0; round < 2; ++round)
            for (int number = 0; number < kClientFunctionCount; ++number)
                if (const auto function = static_cast<Function>(number); function != Function::Close) {
                    plugin.dispatch(function);
                    plugin.dispatch(function, nullptr);
                }
        drag(plugin, 1, 1, 20, 20);
        plugin.dispatch(Function::Close);
    }
    EXPECT_FALSE(LoadedPlugin::isMapped());
}

TEST_F(PluginTest, RightClickSendsOverlaysToTheEditor) {
    LoadedPlugin plugin(host);
    plugin.dispatch(Function::StartUp);
    int menu = 0;
    PIHALVIS::ZelMenuData clicked;
    auto& observer = *host.contextMenus.at(0);

    observer.menuRequested(PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME, &clicked, &menu);
    clicked.overlays = {&menu};
    observer.menuRequested("PlatformList", &clicked, &menu);
    observer.menuRequested(PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME, nullptr, &menu);
    EXPECT_THAT(host.contextItems, IsEmpty());

    FakeHost::Overlay overlay;
    overlay.text = "start\n3d name Harbour\ncircle\ncenterll 21.3 -158\nradius 500\nrangeunits m\nend\n";
    overlay.path = "/somewhere/harbour.zel";
    void* const handle = &overlay;
    host.overlays[handle] = overlay;
    clicked.overlays = {handle};
    observer.menuRequested(PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME, &clicked, &menu);
    ASSERT_EQ(host.contextItems.count("Send to Overlay Editor"), 1u);
    host.contextItems["Send to Overlay Editor"]->Call(nullptr, nullptr);
    EXPECT_EQ(form.field("File:").text, "/somewhere/harbour.zel");
    EXPECT_FALSE(host.overlays[handle].shown) << "edited, so not drawn twice";

    // The host unloads it while it is edited: the shape stays in the editor.
    host.overlays.erase(handle);
    for (auto* zels : host.observers) zels->removedZEL(handle);
    plugin.event(PIApplicationEvents_t::ScenarioReplaced);
    EXPECT_EQ(form.field("File:").text, "");
    plugin.dispatch(Function::Close);
    expectNothingLeft();
}

TEST_F(PluginTest, TheServiceCallsItsFunctionsInTheirOrder) {
    LoadedPlugin plugin(host);
    plugin.dispatch(Function::StartUp);
    auto& service = *static_cast<Service*>(host.services.at(OVERLAYEDITOR_SERVICE_NAME));
    std::vector<std::string> called;
    const auto first = service.registerNewZelFunction([&](const auto&) { called.push_back("first"); });
    const auto second = service.registerNewZelFunction([&](const auto&) {
        called.push_back("second");
        throw std::runtime_error("lost");
    });
    const auto third = service.registerNewZelFunction([&](const auto&) {
        called.push_back("third");
        service.removeNewZelFunction(second);
    });
    service.registerNewZelFunction({});
    EXPECT_EQ(first, 1u);
    service.executeFunctions(nullptr);
    EXPECT_THAT(called, ElementsAre("first", "second", "third"));
    EXPECT_THAT(host.notifications, ElementsAre(HasSubstr("lost")));

    called.clear();
    service.removeNewZelFunction(first);
    service.removeNewZelFunction(999);
    service.executeFunctions(nullptr);
    EXPECT_THAT(called, ElementsAre("third"));
    EXPECT_GT(service.registerNewZelFunction({}), third) << "ids are never reused";
    plugin.dispatch(Function::Close);
}

}  // namespace
