#include <filesystem>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "plugin/HostedPlugin.h"

namespace {

using Function = LoadedPlugin::Function;
using Id = FakeHost::Id;

class DifficultHost : public HostedPlugin {
  protected:
    DifficultHost() { host.platforms[kShip].header.name = "Ship"; }

    /// The host forgets what it once refused to destroy.
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
        host.icons = host.grabs = 0;
    }
    std::ptrdiff_t quickFiles() const {
        using Directory = std::filesystem::directory_iterator;
        std::error_code none;
        return std::distance(Directory(directory + "/quick", none), Directory());
    }
    /// Works with a host at its worst, then, when it serves again, the plug-in that went through it draws.
    /// \return the number of service calls of the work
    int survive(const std::function<void()>& behave) {
        forget();
        std::filesystem::remove_all(directory + "/quick");
        calls = 0;
        LoadedPlugin plugin(host);
        running = &plugin;
        work(plugin);
        const int served = calls;
        running = nullptr;
        behave();
        if (host.actions.contains("Quick Circle Draw")) {
            plugin.mouse(Mouse::RightPress, 0, 0);
            const auto before = quickFiles();
            quickCircle(plugin);
            EXPECT_EQ(quickFiles(), before + 1);
        }
        plugin.dispatch(Function::Close);
        EXPECT_EQ(plugin.mouse(Mouse::Motion, 1, 1), 0);
        return served;
    }

    int calls = 0;
    LoadedPlugin* running = nullptr;
};

/// Handles, numbers and texts that mean nothing, wherever a catch-all record takes results.
PIServiceResult garbage(Id service, void* args) {
    static const std::set<Id> catchAll{Id::FileDialog, Id::WidgetValue, Id::ListItems,    Id::GetPlatformList,
                                       Id::Clock,      Id::Timeout,     Id::Action,       Id::Camera,
                                       Id::Cursor,     Id::ScreenText,  Id::OverlayLists, Id::OverlayFiles,
                                       Id::Icon,       Id::Service};
    if (catchAll.contains(service)) {
        auto& record = *static_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(args));
        record.integers.push_back(std::numeric_limits<std::int64_t>::max());
        for (int i = 0; i < 3; ++i) record.doubles.push_back(std::numeric_limits<double>::quiet_NaN());
        record.strings.push_back("\xff\n\t");
        record.pointers.push_back(reinterpret_cast<void*>(std::uintptr_t{0xBAD0}));
    }
    return 0xBAD0;
}

TEST_F(DifficultHost, RefusesFromOneCallOn) {
    int from = std::numeric_limits<int>::max();
    host.onCall = [&](Id) { host.refuseAll = running && ++calls >= from; };
    const auto behave = [&] { host.refuseAll = false; };
    const int all = survive(behave);
    ASSERT_GT(all, 400);
    for (from = 1; from <= all && !HasFailure(); from += rounds(0) ? 1 : 23) {
        SCOPED_TRACE(from);
        survive(behave);
    }
    EXPECT_FALSE(LoadedPlugin::isMapped());
}

TEST_F(DifficultHost, AnswersNonsenseFromOneCallOn) {
    int from = std::numeric_limits<int>::max();
    host.answer = [&](Id service, void* args) -> std::optional<PIServiceResult> {
        if (!running || ++calls < from) return std::nullopt;
        return garbage(service, args);
    };
    const int all = survive([] {});
    for (from = 1; from <= all && !HasFailure(); from += rounds(0) ? 1 : 23) {
        SCOPED_TRACE(from);
        survive([] {});
    }
    EXPECT_FALSE(LoadedPlugin::isMapped());
}

TEST_F(DifficultHost, DispatchesFromInsideEachService) {
    const auto mouse = [this](Mouse type) {
        return [this, type] { running->mouse(type, 15 + calls % 40, 25); };
    };
    const auto event = [this](PIApplicationEvents_t code) {
        return [this, code] { running->event(code, kShip); };
    };
    std::vector<std::function<void()>> events{
        mouse(Mouse::LeftPress),
        mouse(Mouse::LeftRelease),
        mouse(Mouse::RightPress),
        mouse(Mouse::Motion),
        mouse(Mouse::Wheel),
        [this] { refresh(*running); },
        [this] { host.fireTimeouts(); },
        event(PIApplicationEvents_t::ScenarioCleared),
        event(PIApplicationEvents_t::ScenarioReplaced),
        event(PIApplicationEvents_t::EntityRemoved),
        event(PIApplicationEvents_t::PlatformAdded),
        event(PIApplicationEvents_t::ScenarioClosed),
    };
    for (const char* label : {"Quick Circle Draw", "Remove Last Quick Shape", "Remove All Quick Shapes",
                              "Pick Attach Platform", "Attach Quick Shape"})
        events.push_back([this, label] { command(label); });
    std::size_t current = 0;
    int every = 1;
    host.onCall = [&](Id) {
        if (running && ++calls % every == 0) events[current]();
    };
    for (current = 0; current < events.size() && !HasFailure(); ++current)
        for (every = 1; every <= 3; ++every) {
            SCOPED_TRACE(std::to_string(current) + " every " + std::to_string(every));
            survive([] {});
            expectNothingLeft();
        }
    EXPECT_FALSE(LoadedPlugin::isMapped());
}

}  // namespace
