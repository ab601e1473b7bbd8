#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pi/OverlayEditorInterface.h"
#include "plugin/HostedPlugin.h"
#include "support/Rows.h"

using PluginClient::Interfaces::OVERLAYEDITOR_SERVICE_NAME;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
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
    EXPECT_EQ(plugin.text(Function::Author, PIParameterName_t::InfoText), "the OverlayEditor authors");
    EXPECT_EQ(plugin.text(Function::URL, PIParameterName_t::InfoText), "https://overlayeditor.example");
    EXPECT_EQ(plugin.text(Function::ContactInfo, PIParameterName_t::InfoText),
              "maintainers@overlayeditor.example");
    EXPECT_EQ(plugin.dispatch(Function::Callback), 0);
    EXPECT_THAT(plugin.text(Function::Version, PIParameterName_t::InfoText),
                MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+ \\(20[0-9][0-9]-[01][0-9]-[0-3][0-9]\\)"));
    EXPECT_THAT(host.calls, IsEmpty()) << "before start-up the host is left alone";
    plugin.dispatch(Function::Close);
}

/// What the host is told that outlives the call, in order; the same thing several times in a row once.
TEST_F(PluginTest, StartsAndClosesInOrder) {
    std::vector<std::string> order;
    std::string icon;
    const auto note = [&](const std::string& what) {
        if (order.empty() || order.back() != what) order.push_back(what);
    };
    using Id = FakeHost::Id;
    const std::map<Id, std::vector<const char*>> names{
        {Id::Icon, {"icon", "icon on dialog", "icon on menu item", "no icon"}},
        {Id::Action, {"action", nullptr, "no action"}},
        {Id::ContextMenu, {"context menu", "no context menu"}},
        {Id::Service, {"service", "no service"}}};
    host.answer = [&](Id service, void* args) -> std::optional<PIServiceResult> {
        auto* const base = static_cast<PI_DATA_BASE_CLASS*>(args);
        if (const auto named = names.find(service); named != names.end()) {
            const auto& record = *static_cast<PI_DATA_CATCHALL*>(base);
            const auto selector = static_cast<std::size_t>(record.integers.at(0));
            if (selector >= named->second.size() || !named->second[selector]) return std::nullopt;
            note(named->second[selector]);
            if (service == Id::Icon && selector == 0)
                icon.assign(static_cast<const char*>(record.pointers.at(0)),
                            static_cast<std::size_t>(record.integers.at(1)));
            if (service == Id::Action && selector == 0) order.back() += " " + record.strings.at(1);
        } else if (service == Id::CreateMenuItem) {
            note("menu item " + static_cast<PI_DATA_POINTER_STRING_AND_FUNCTION*>(base)->text);
        } else if (service == Id::CreateDialogBox) {
            note("dialog");
        } else if (service == Id::BindWidget) {
            const auto& record = *static_cast<PI_DATA_POINTER_AND_POINTER*>(base);
            const Id kind = host.widgets[record.pointer].kind;
            if (!record.second && kind == Id::CreateDialogBox) note("no dialog");
            if (!record.second && kind == Id::CreateMenuItem) note("no menu item");
        }
        return std::nullopt;
    };
    LoadedPlugin plugin(host);
    plugin.dispatch(Function::StartUp);
    ASSERT_EQ(order.size(), 33u);
    const auto quick = order.begin() + 12;
    EXPECT_EQ(*quick, "action Quick Free Draw");
    EXPECT_EQ(quick[18], "action Black Shape Color");
    order.erase(quick, quick + 19);
    EXPECT_THAT(order, ElementsAre("icon", "menu item Overlay Editor...", "action Overlay Editor Dialog",
                                   "action Undo Overlay Edit", "action Redo Overlay Edit",
                                   "action Finish Overlay Shape", "action Remove Last Overlay Point",
                                   "action Delete Overlay Shape", "action Duplicate Overlay Shape",
                                   "action Type Next Overlay Point", "action Cancel Overlay Drawing",
                                   "icon on menu item", "context menu", "service"));
    EXPECT_EQ(icon.substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(icon.substr(16, 8), std::string("\0\0\0\x10\0\0\0\x10", 8)) << "16 by 16";

    order.clear();
    openDialog();
    openDialog();
    EXPECT_THAT(order, ElementsAre("dialog", "icon on dialog")) << "made once";

    order.clear();
    plugin.dispatch(Function::Close);
    EXPECT_THAT(order, ElementsAre("no action", "no menu item", "no service", "no context menu", "no dialog",
                                   "no action", "no icon"));
}

TEST_F(PluginTest, AClearedScenarioTakesQuickShapesOnceTheDialogHasBeenOpened) {
    LoadedPlugin plugin(host);
    plugin.dispatch(Function::StartUp);
    const auto loaded = [&] {
        return std::count_if(host.overlays.begin(), host.overlays.end(),
                             [](const auto& entry) { return !entry.second.path.empty(); });
    };
    std::ptrdiff_t drawn = 0;
    for (const auto code : {PIApplicationEvents_t::ScenarioCleared, PIApplicationEvents_t::ScenarioReplaced,
                            PIApplicationEvents_t::ScenarioClosed}) {
        quickCircle(plugin);
        const auto before = loaded();
        EXPECT_GE(before, 1);
        for (int other = 0; other < 20; ++other) {
            const auto event = static_cast<PIApplicationEvents_t>(other);
            if (!form.has("Shape:") || (other != 2 && other != 3 && other != 16)) plugin.event(event);
        }
        EXPECT_EQ(loaded(), before);
        openDialog();
        command("Quick Circle Draw");
        drag(plugin, 40, 40, 60, 40);
        plugin.event(code);
        EXPECT_EQ(loaded(), 0);
        EXPECT_EQ(quickFiles(), ++drawn) << "what was not finished is not saved; the files stay";
    }
    plugin.dispatch(Function::Close);
}

TEST_F(PluginTest, TheListOfPlatformsFollowsTheScenario) {
    LoadedPlugin plugin(host);
    plugin.dispatch(Function::StartUp);
    openDialog();
    addCircle();
    check("Attach:", true);
    const auto platforms = [&] {
        for (const auto& [handle, widget] : host.widgets)
            if (widget.kind == FakeHost::Id::CreateList && widget.caption == "Name") return widget.items;
        return std::vector<std::string>();
    };
    ASSERT_THAT(platforms(), ElementsAre("Ship"));
    host.platforms[78].header.name = "Tug";
    plugin.event(PIApplicationEvents_t::PlatformAdded, 78);
    EXPECT_THAT(platforms(), ElementsAre("Ship", "Tug"));
    host.platforms.erase(kShip);
    plugin.event(PIApplicationEvents_t::EntityRemoved, kShip);
    EXPECT_THAT(platforms(), ElementsAre("Tug"));
    plugin.dispatch(Function::Close);
}

TEST_F(PluginTest, TheNoteOfAPickedPlatformGoesWithIt) {
    LoadedPlugin plugin(host);
    plugin.dispatch(Function::StartUp);
    host.cursorPlatform = kShip;
    command("Attach Quick Shape");
    const auto note = [&] {
        return std::ranges::any_of(host.screenTexts, [](const auto& entry) {
            return entry.second.find("Attach To: Ship") != std::string::npos;
        });
    };
    for (const auto code : {PIApplicationEvents_t::EntityRemoved, PIApplicationEvents_t::ScenarioCleared}) {
        command("Pick Attach Platform");
        plugin.mouse(Mouse::LeftPress, 5, 5);
        plugin.mouse(Mouse::LeftRelease, 5, 5);
        command("Pick Attach Platform");
        EXPECT_TRUE(note());
        plugin.event(code, kShip);
        EXPECT_FALSE(note());
    }
    plugin.dispatch(Function::Close);
}

TEST_F(PluginTest, WhatIsSavedIsToldAndNothingIsLeft) {
    const std::string file = directory + "/circle.zel";
    LoadedPlugin plugin(host);
    EXPECT_EQ(plugin.dispatch(Function::StartUp), 0);
    EXPECT_EQ(plugin.mouse(Mouse::LeftPress, 5, 5), 0) << "nothing is drawn yet";
    openDialog();
    addCircle();
    drag(plugin, 100, 100, 130, 100);
    plugin.mouse(Mouse::RightPress, 0, 0);

    std::vector<void*> saved;
    auto* const service = static_cast<Service*>(host.services[OVERLAYEDITOR_SERVICE_NAME]);
    service->registerNewZelFunction(
        [&](const auto& overlays) { saved.insert(saved.end(), overlays.begin(), overlays.end()); });
    host.fileDialogAnswers = {file};
    press("Save As...");
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(host.overlays[saved[0]].path, file);
    EXPECT_FALSE(host.overlays[saved[0]].shown) << "the editor's circle is drawn in its place";
    host.fileDialogAnswers = {directory + "/no/such.zel"};
    press("Save As...");
    EXPECT_EQ(saved.size(), 1u) << "nobody hears of what is not saved";

    EXPECT_EQ(plugin.dispatch(Function::Close), 0);
    EXPECT_TRUE(host.overlays[saved[0]].shown);
    expectNothingLeft();
    EXPECT_EQ(host.settings["RangeUnits"], "meters");
}

/// Whatever keys the host binds them to.
TEST_F(PluginTest, CommandsDoWhatTheirNamesSay) {
    LoadedPlugin plugin(host);
    plugin.dispatch(Function::StartUp);
    openDialog();
    const auto pointsAfter = [&](const char* label) {
        command(label);
        std::size_t points = 0;
        for (const auto& [handle, overlay] : host.overlays)
            points += test::split(overlay.text, "\nlla ").size() - 1;
        return points;
    };
    add("Line");
    for (const int x : {40, 60, 80, 90}) drag(plugin, x, 40, x, 40);
    EXPECT_EQ(pointsAfter("Remove Last Overlay Point"), 3u);
    drag(plugin, 70, 50, 70, 50);
    EXPECT_EQ(pointsAfter("Undo Overlay Edit"), 3u) << "it was drawn on";
    EXPECT_EQ(pointsAfter("Undo Overlay Edit"), 4u);
    EXPECT_EQ(pointsAfter("Redo Overlay Edit"), 3u);
    EXPECT_EQ(host.grabs, 1);
    EXPECT_EQ(pointsAfter("Finish Overlay Shape"), 3u);
    EXPECT_EQ(host.grabs, 0);
    EXPECT_EQ(pointsAfter("Duplicate Overlay Shape"), 6u);
    EXPECT_EQ(pointsAfter("Delete Overlay Shape"), 3u);
    addCircle();
    plugin.mouse(Mouse::LeftPress, 100, 100);
    command("Cancel Overlay Drawing");
    EXPECT_EQ(host.grabs, 0);
    plugin.dispatch(Function::Close);
}

/// What the host tells while a file dialog is open comes before what the dialog was asked for.
TEST_F(PluginTest, AFileDialogAnswersIntoWhatIsThereThen) {
    LoadedPlugin plugin(host);
    plugin.dispatch(Function::StartUp);
    openDialog();
    addCircle();
    drag(plugin, 100, 100, 130, 100);
    attachToShip();
    auto meanwhile = PIApplicationEvents_t::EntityRemoved;
    host.onCall = [&](FakeHost::Id service) {
        if (service == FakeHost::Id::FileDialog) plugin.event(meanwhile, kShip);
    };
    const std::string file = directory + "/circle.zel";
    host.fileDialogAnswers = {file, file};
    press("Save As...");
    EXPECT_EQ(host.overlays.rbegin()->second.path, file);
    EXPECT_EQ(host.overlays.rbegin()->second.platform, 0u);
    meanwhile = PIApplicationEvents_t::ScenarioCleared;
    press("...");
    EXPECT_EQ(form.field("File:").text, file);
    for (const char* key : {"LastOverlayEditorLoadFile", "LastOverlayEditorSaveFile"})
        EXPECT_EQ(host.settings[key], file);
    plugin.dispatch(Function::Close);
}

TEST_F(PluginTest, AFrameIsAskedForWhenWhatTheToolShowsHasChanged) {
    LoadedPlugin plugin(host);
    plugin.dispatch(Function::StartUp);
    openDialog();
    addCircle();
    drag(plugin, 100, 100, 130, 100);
    const auto asks = [&](const auto& act) {
        host.redraws = 0;
        act();
        return host.redraws > 0;
    };
    EXPECT_TRUE(asks([&] { form.type("Radius:", "5000"); }));
    EXPECT_TRUE(asks([&] { form.choose("Rng:", 1); }));
    attachToShip();
    host.fireTimeouts();
    EXPECT_FALSE(asks([&] { host.fireTimeouts(); })) << "nothing has moved";
    host.platforms[kShip].point.latRad += 0.01;
    EXPECT_TRUE(asks([&] { host.fireTimeouts(); }));
    plugin.dispatch(Function::Close);
}

/// Whatever way it ends, what is complete is saved, and what is not saved rescued.
TEST_F(PluginTest, NoShapeIsLostByTheWayItEnds) {
    LoadedPlugin plugin(host);
    FakeHost second;
    const std::function<void()> ways[] = {[&] { plugin.dispatch(Function::Close, nullptr); },
                                          [&] { plugin.initialise(second); }, [&] { plugin.cleanUp(); }};
    for (const auto& end : ways) {
        std::filesystem::remove_all(directory + "/quick");
        plugin.initialise(host);
        plugin.dispatch(Function::StartUp);
        openDialog();
        addCircle();
        drag(plugin, 100, 100, 130, 100);
        command("Quick Circle Draw");
        drag(plugin, 40, 40, 60, 40);
        // At work it goes on, and with the host that it has.
        host.onCall = [&](FakeHost::Id) { plugin.initialise(second); };
        press("Center");
        host.onCall = {};
        end();
        EXPECT_TRUE(second.calls.empty() && host.cameraCenter);
        expectNothingLeft();
        EXPECT_EQ(quickFiles(), 2);
    }
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

    // Every menu has a callback of its own. What the host unloads while another one is sent to the editor is
    // not loaded; the menu that opens then offers nothing.
    auto* const first = host.contextItems["Send to Overlay Editor"];
    FakeHost::Overlay another = overlay;
    FakeHost::Overlay other = overlay;
    host.overlays[&another] = another;
    host.overlays[&other] = other;
    clicked.overlays = {&another, &other};
    observer.menuRequested(PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME, &clicked, &menu);
    auto* const last = host.contextItems["Send to Overlay Editor"];
    EXPECT_NE(last, first);
    host.notifications.clear();
    host.answer = [&](FakeHost::Id service, void* args) -> std::optional<PIServiceResult> {
        if (service != FakeHost::Id::OverlayFiles) return std::nullopt;
        const auto& record = *static_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(args));
        const auto reads = static_cast<std::int64_t>(PISelector::OverlayFiles::SerializeToStream);
        if (record.integers.at(0) != reads || host.overlays.erase(&other) == 0) return std::nullopt;
        observer.menuRequested(PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME, &clicked, &menu);
        for (auto* zels : std::vector(host.observers)) zels->removedZEL(&other);
        return std::nullopt;
    };
    last->Call(nullptr, nullptr);
    host.answer = {};
    EXPECT_EQ(host.contextItems["Send to Overlay Editor"], last);
    for (const std::string& text : host.notifications) EXPECT_THAT(text, Not(HasSubstr("gave no text")));
    EXPECT_EQ(form.field("File:").text, "/somewhere/harbour.zel");

    // The host unloads it while it is edited: the shape stays in the editor.
    host.overlays.erase(&another);
    for (auto* zels : host.observers) zels->removedZEL(&another);
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
    const auto first = service.registerNewZelFunction([&](const auto&) {
        called.push_back("first");
        command("Quick Circle Draw");
        EXPECT_EQ(host.grabs, 0) << "what comes from inside waits";
    });
    const auto second = service.registerNewZelFunction([&](const auto&) {
        called.push_back("second");
        throw std::runtime_error("lost");
    });
    const auto third = service.registerNewZelFunction([&](const auto&) {
        called.push_back("third");
        service.removeNewZelFunction(second);
        service.registerNewZelFunction([&](const auto&) { called.push_back("late"); });
    });
    service.registerNewZelFunction({});
    EXPECT_EQ(first, 1u);
    service.executeFunctions(nullptr);
    EXPECT_THAT(called, ElementsAre("first", "second", "third"));
    EXPECT_EQ(host.grabs, 1);
    EXPECT_THAT(host.notifications, ElementsAre(HasSubstr("lost")));

    called.clear();
    service.removeNewZelFunction(first);
    service.removeNewZelFunction(999);
    service.executeFunctions(nullptr);
    EXPECT_THAT(called, ElementsAre("third", "late"));
    EXPECT_GT(service.registerNewZelFunction([&](const auto&) { plugin.dispatch(Function::Close); }), third)
        << "ids are never reused";
    service.executeFunctions(nullptr);
    EXPECT_THAT(called, ElementsAre("third", "late", "third", "late", "late"));
    EXPECT_EQ(plugin.dispatch(Function::Close), kStatusClosed);
    expectNothingLeft();
}

}  // namespace
