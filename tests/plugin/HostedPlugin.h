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
    static constexpr std::uint64_t kShip = 77;

    FakeHost host;
    Form form{host};
    const TemporaryDirectory temporary;
    const std::string& directory = temporary.path();
    const std::filesystem::path before = std::filesystem::current_path();
};
