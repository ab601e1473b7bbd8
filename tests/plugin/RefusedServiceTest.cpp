#include <algorithm>
#include <filesystem>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/Files.h"
#include "plugin/HostedPlugin.h"

namespace {

using Function = LoadedPlugin::Function;
using Id = FakeHost::Id;

/// What a user goes without where the host does not serve everything: the tables of docs/host-guide.md.
class RefusedServiceTest : public HostedPlugin {
  protected:
    bool drawn(const char* text) const { return host.lastText.find(text) != std::string::npos; }
    std::ptrdiff_t files() const {
        return std::count_if(host.overlays.begin(), host.overlays.end(),
                             [](const auto& entry) { return !entry.second.path.empty(); });
    }

    /// A session, whatever of it is possible.
    /// \return what was not
    std::string play() {
        std::string lost;
        const auto want = [&](bool works, const char* feature) {
            if (!works) lost.append(lost.empty() ? "" : ", ").append(feature);
        };
        forget();
        host.lastText.clear();
        host.cameraCenter.reset();
        host.settings = {{"Precision", "4"}};
        {
            LoadedPlugin plugin(host);
            plugin.dispatch(Function::StartUp);
            want(host.find("Overlay Editor..."), "menu item");
            want(host.actions.contains("Overlay Editor Dialog"), "actions");
            want(host.icons == 1, "icon");
            want(host.services.size() == 1, "published service");
            want(host.contextMenus.size() == 1, "context menu");
            press("Overlay Editor...");
            command("Overlay Editor Dialog");
            want(form.has("Prec:") && form.field("Prec:").number == 4.0, "read settings");

            addCircle();
            drag(plugin, 100, 100, 130, 100);
            want(drawn("\ncircle\n"), "draw");
            want(host.grabs == 1, "grabbed mouse");
            want(!host.screenTexts.empty(), "hints");
            plugin.mouse(Mouse::RightPress, 0, 0);
            host.fireTimeouts();
            want(host.find("Edit") && !host.find("Edit")->checked, "buttons follow");
            if (form.has("Radius:")) form.type("Radius:", "5000");
            want(drawn("\nradius 5000\n"), "type numbers");
            press("Center");
            want(host.cameraCenter.has_value(), "center");

            const std::string file = directory + "/x.zel";
            host.fileDialogAnswers = {file, file};
            press("Save As...");
            want(UTILS::fileIsFile(file), "save");
            want(files() == 1, "show the file");
            press("Delete All");
            const int before = host.loads;
            press("...");
            want(host.loads > before && drawn("\nradius 5000\n"), "load");

            attachToShip();
            want(drawn("\ncenterxyz "), "attach");

            quickCircle(plugin);
            want(UTILS::fileIsFile(directory + "/.config/OverlayEditor/zel/Circle_1.zel"), "quick draw");

            host.overlays[this] = {"start\ncircle\ncenterll 1 2\nradius 77\nrangeunits m\nend\n", "/h.zel"};
            press("Load HALVIS...");
            chooseItem("ZEL File Name\tPlatform", "/h.zel");
            press("OK\tLoad the selected existing ZEL");
            want(drawn("\nradius 77\n"), "load from the host");
            plugin.dispatch(Function::Close);
            want(host.settings.contains("RangeUnits"), "keep settings");
        }
        want(!LoadedPlugin::isMapped(), "unloading");
        return lost;
    }
};

/// In the order of the session; what is not named here is done without: less to see, or less comfort.
const std::string kEditing =
    "draw, grabbed mouse, hints, type numbers, center, save, show the file, load, attach";
const std::map<Id, std::string> kLost{
    {Id::RegistrySetValue, "keep settings"},
    {Id::RegistryGetValue, "read settings"},
    {Id::CreateMenuItem, "menu item"},
    {Id::CreateButton, "buttons follow, center, save, show the file, load, attach, load from the host"},
    {Id::CreateTextField, "type numbers, load"},
    {Id::CreateCheckButton, "attach"},
    {Id::CreateOptionMenu, kEditing},
    {Id::CreateSpinner, "read settings"},
    {Id::CreateList, "center, attach, load from the host"},
    {Id::OptionMenuAppendOption, kEditing},
    {Id::WindowSetInt, "read settings"},
    {Id::MouseGrab, "grabbed mouse"},
    {Id::Icon, "icon"},
    {Id::FileDialog, "save, show the file, load, attach"},
    {Id::GetPlatformList, "attach"},
    {Id::GetHeader, "attach"},
    {Id::GetDataPoint, "attach"},
    {Id::Timeout, "buttons follow"},
    {Id::Action, "actions, quick draw"},
    {Id::Service, "published service"},
    {Id::Camera, "center"},
    {Id::Cursor, "draw, quick draw"},
    {Id::OverlayFiles, "draw, type numbers, show the file, load, attach, load from the host"},
    {Id::ScreenText, "hints"},
    {Id::OverlayLists, "load from the host"},
    {Id::ContextMenu, "context menu"},
    {Id::CreateLabel, "read settings, " + kEditing},
    {Id::WidgetValue, kEditing},
    {Id::ListItems, "center, attach, load from the host"},
};

TEST_F(RefusedServiceTest, TakesItsFeaturesAndNoOthers) {
    EXPECT_EQ(play(), "");
    ASSERT_GT(host.calls.size(), kLost.size());
    for (const auto& [refused, count] : std::map(host.calls)) {
        SCOPED_TRACE(static_cast<int>(refused));
        host.answer = [refused = refused](Id service, void*) {
            return service == refused ? std::optional<PIServiceResult>(0) : std::nullopt;
        };
        const auto lost = kLost.find(refused);
        EXPECT_EQ(play(), lost == kLost.end() ? "" : lost->second);
    }
}

/// Whichever call has failed, the editor draws once the host serves again.
TEST_F(RefusedServiceTest, OneFailureIsNotForever) {
    int calls = 0, at = std::numeric_limits<int>::max();
    bool throws = false;
    host.answer = [&](Id, void*) -> std::optional<PIServiceResult> {
        if (++calls != at) return std::nullopt;
        if (throws) throw std::runtime_error("deliberate");
        return 0;
    };
    const auto work = [&] {
        forget();
        calls = 0;
        LoadedPlugin plugin(host);
        const bool started = plugin.dispatch(Function::StartUp) == 0;
        openDialog();
        addCircle();
        drag(plugin, 100, 100, 130, 100);
        plugin.mouse(Mouse::RightPress, 0, 0);
        const int all = calls;
        command("Overlay Editor Dialog");
        addCircle();
        host.lastText.clear();
        drag(plugin, 100, 100, 130, 100);
        // Unless the menu has lost an option, or the way in.
        const bool whole = form.has("Shape:") && form.field("Shape:").items.size() == 17;
        if (started && whole) {
            EXPECT_TRUE(drawn("\ncircle\n")) << "call " << at << (throws ? " threw" : " refused");
        }
        plugin.dispatch(Function::Close);
        return all;
    };
    const int all = work();
    ASSERT_GT(all, 300);
    for (at = 1; at <= all; at += 11, throws = !throws) work();
}

}  // namespace
