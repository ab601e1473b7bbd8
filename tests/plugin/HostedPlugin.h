#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Vec3.h"
#include "geo/Angles.h"
#include "gui/Form.h"
#include "plugin/LoadedPlugin.h"
#include "support/TemporaryDirectory.h"

/// A host for the plug-in with a view, and what its user does.
class HostedPlugin : public ::testing::Test {
  protected:
    using Function = LoadedPlugin::Function;
    using Mouse = PIGUI::PIMouseEventType_t;

    HostedPlugin() {
        // Where a host that does not serve settings leaves unsaved shapes, or answers a path that is none.
        ::setenv("HOME", directory.c_str(), 1);
        std::filesystem::current_path(directory);
        host.pixelToLla = [](int x, int y) { return std::optional(atPixel(x, y)); };
        host.settings["AutoSaveZelDir"] = directory + "/quick";
        host.platforms[kShip].header.name = "Ship";
    }

    ~HostedPlugin() override { std::filesystem::current_path(before); }

    /// A view in which a pixel is a hundredth of a degree.
    static halCore::Vec3 atPixel(int x, int y) {
        return {(20.0 + y * 0.01) * halCore::kRadiansPerDegree,
                (-150.0 + x * 0.01) * halCore::kRadiansPerDegree, 0.0};
    }
    /// Presses what is there; a host that refuses has none of it.
    void press(const char* caption) {
        if (auto* const widget = host.find(caption)) host.activate(*widget);
    }
    void command(const char* label) {
        const auto action = host.actions.find(label);
        std::int32_t asked = 1;
        if (action != host.actions.end()) action->second->Call(nullptr, &asked);
    }
    void openDialog() { press("Overlay Editor..."); }
    void add(const std::string& kind) {
        if (!form.has("Shape:")) return;
        auto& menu = form.field("Shape:");
        const auto option = std::find(menu.items.begin(), menu.items.end(), kind);
        if (option == menu.items.end()) return;
        menu.number = static_cast<double>(option - menu.items.begin());
        host.activate(menu);
    }
    void addCircle() { add("Circle"); }
    void check(const char* label, bool checked) {
        if (form.has(label)) form.check(label, checked);
    }
    void chooseItem(const char* headers, const char* start) {
        for (auto& [handle, widget] : host.widgets) {
            if (widget.kind != FakeHost::Id::CreateList || widget.caption != headers) continue;
            const auto item = std::find_if(widget.items.begin(), widget.items.end(),
                                           [&](const auto& text) { return text.starts_with(start); });
            if (item != widget.items.end()) widget.number = static_cast<double>(item - widget.items.begin());
        }
    }
    void attachToShip() {
        check("Attach:", true);
        chooseItem("Name", "Ship");
        press("OK\tAttach the current ZEL to the selected platform");
    }
    void drag(LoadedPlugin& plugin, int x0, int y0, int x1, int y1) {
        plugin.mouse(Mouse::Motion, x0, y0);
        plugin.mouse(Mouse::LeftPress, x0, y0);
        plugin.mouse(Mouse::Motion, x1, y1);
        refresh(plugin);
        plugin.mouse(Mouse::LeftRelease, x1, y1);
    }
    void click(LoadedPlugin& plugin, int x, int y) {
        plugin.mouse(Mouse::Motion, x, y);
        plugin.mouse(Mouse::LeftPress, x, y);
        plugin.mouse(Mouse::LeftRelease, x, y);
    }
    /// Whatever the kind wants, a drag or clicks, until the right button ends it.
    void draw(LoadedPlugin& plugin) {
        drag(plugin, 40, 40, 60, 40);
        click(plugin, 60, 60);
        click(plugin, 40, 70);
        plugin.mouse(Mouse::RightPress, 0, 0);
    }
    void quickCircle(LoadedPlugin& plugin) {
        command("Quick Circle Draw");
        drag(plugin, 40, 40, 60, 40);
        plugin.mouse(Mouse::RightPress, 0, 0);
    }
    static void refresh(LoadedPlugin& plugin) {
        PIFunctionParams_t record;
        record.integers[PIParameterName_t::Width] = 800;
        record.integers[PIParameterName_t::Height] = 600;
        plugin.dispatch(Function::PreDrawOnRefresh, &record);
    }
    /// As if nothing had been before: the host forgets also what it once refused to destroy.
    void forget() {
        host.widgets.clear();
        host.timeouts.clear();
        host.overlays.clear();
        host.observers.clear();
        host.contextMenus.clear();
        host.actions.clear();
        host.services.clear();
        host.screenTexts.clear();
        host.notifications.clear();
        host.fileDialogAnswers.clear();
        host.icons = host.grabs = 0;
        for (const auto& entry : std::filesystem::directory_iterator(directory))
            std::filesystem::remove_all(entry);
    }
    std::ptrdiff_t quickFiles() const {
        using Directory = std::filesystem::directory_iterator;
        std::error_code none;
        return std::distance(Directory(directory + "/quick", none), Directory());
    }
    void expectNothingLeft() {
        using ::testing::IsEmpty;
        EXPECT_THAT(host.widgets, IsEmpty());
        EXPECT_THAT(host.timeouts, IsEmpty());
        EXPECT_THAT(host.actions, IsEmpty());
        EXPECT_THAT(host.services, IsEmpty());
        EXPECT_THAT(host.observers, IsEmpty());
        EXPECT_THAT(host.contextMenus, IsEmpty());
        EXPECT_THAT(host.screenTexts, IsEmpty());
        EXPECT_EQ(host.icons, 0);
        EXPECT_EQ(host.grabs, 0);
        for (const auto& [handle, overlay] : host.overlays)
            EXPECT_NE(overlay.path, "") << "only files stay:\n" << overlay.text;
    }
    /// How often a campaign is to go round.
    static int rounds(int usual) {
        const char* const wanted = std::getenv("CAMPAIGN_ROUNDS");
        return wanted ? std::atoi(wanted) : usual;
    }

    /// All that a user does in a long afternoon: every dialog, drawing, saving, quick drawing, attaching.
    /// \return whether the plug-in has started at all
    bool work(LoadedPlugin& plugin) {
        const bool started = plugin.dispatch(Function::StartUp) == 0;
        callsOfStart = calls;
        openDialog();
        addCircle();
        drag(plugin, 100, 100, 130, 100);
        plugin.mouse(Mouse::Wheel, 130, 100);
        host.fileDialogAnswers = {directory + "/x.zel", directory + "/x.zel"};
        press("Save As...");
        press("...");
        press("Load HALVIS...");
        press("Center");
        press("Help...");
        check("Attach:", true);
        press("Pick");
        host.cursorPlatform = kShip;
        plugin.mouse(Mouse::LeftPress, 5, 5);
        plugin.mouse(Mouse::LeftRelease, 5, 5);
        press("OK");
        plugin.mouse(Mouse::RightPress, 0, 0);
        host.fireTimeouts();
        quickCircle(plugin);
        command("Attach Quick Shape");
        command("Pick Attach Platform");
        plugin.mouse(Mouse::LeftPress, 5, 5);
        plugin.mouse(Mouse::LeftRelease, 5, 5);
        command("Purple Shape Color");
        quickCircle(plugin);
        command("Remove Last Quick Shape");
        quickCircle(plugin);
        plugin.event(PIApplicationEvents_t::PlatformAdded, kShip);
        plugin.event(PIApplicationEvents_t::EntityRemoved, kShip);
        command("Quick Circle Draw");
        drag(plugin, 10, 10, 20, 20);
        plugin.event(PIApplicationEvents_t::ScenarioCleared);
        addCircle();
        drag(plugin, 100, 100, 130, 100);
        quickCircle(plugin);
        press("Delete All");
        press("Close");
        command("Quick Circle Draw");
        plugin.mouse(Mouse::LeftPress, 1, 1);
        return started;
    }
    /// One shape of each family, with its panel, saved and read again; and one by each draw command.
    void drawAll(LoadedPlugin& plugin) {
        openDialog();
        for (const char* kind : {"Line", "Rectangle", "Cone", "Orbit", "Free Draw", "Text"}) {
            add(kind);
            draw(plugin);
        }
        host.fileDialogAnswers = {directory + "/x.zel", directory + "/x.zel"};
        press("Save As...");
        press("...");
        for (const char* kind : {"Free", "Line", "Poly", "Rectangle", "Triangle"}) {
            command((std::string("Quick ") + kind + " Draw").c_str());
            draw(plugin);
        }
    }

    static constexpr std::uint64_t kShip = 77;

    int calls = 0, callsOfStart = 0;  ///< where a test counts them

    FakeHost host;
    Form form{host};
    const TemporaryDirectory temporary;
    const std::string& directory = temporary.path();
    const std::filesystem::path before = std::filesystem::current_path();
};
