#include <filesystem>
#include <functional>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "plugin/HostedPlugin.h"

namespace {

using Function = LoadedPlugin::Function;
using Id = FakeHost::Id;

class DifficultHostBase : public HostedPlugin {
  protected:
    /// Works with a host at its worst; then, when it serves again, the plug-in that went through it draws, in
    /// the dialog and without it.
    /// \return the number of service calls of the work
    int survive() {
        forget();
        calls = 0;
        LoadedPlugin plugin(host);
        running = &plugin;
        const bool started = work(plugin);
        drawAll(plugin);
        const int served = calls;
        running = nullptr;
        if (!started) {
            // All that was made has gone, as far as the host let it go, and nothing has happened since.
            EXPECT_EQ(calls, callsOfStart);
            if (serves) expectNothingLeft();
            forget();
        }
        host.settings["AutoSaveZelDir"] = directory + "/quick";
        if (host.actions.contains("Quick Circle Draw")) {
            plugin.mouse(Mouse::RightPress, 0, 0);
            const auto before = quickFiles();
            quickCircle(plugin);
            EXPECT_EQ(quickFiles(), before + 1);
        }
        if (const auto dialog = host.actions.find("Overlay Editor Dialog"); dialog != host.actions.end()) {
            dialog->second->Call(nullptr, nullptr);
            addCircle();
            host.lastText.clear();
            drag(plugin, 100, 100, 130, 100);
            if (editorIsWhole_()) {
                EXPECT_THAT(host.lastText, ::testing::HasSubstr("\ncircle\n"));
            }
        }
        plugin.dispatch(Function::Close);
        EXPECT_EQ(plugin.mouse(Mouse::Motion, 1, 1), 0);
        return served;
    }
    /// The calls of a long session that a campaign tries; else some of them, others in each test.
    static int step(int usual) { return rounds(0) ? 1 : usual; }

    bool serves = true;  ///< but for one call
    LoadedPlugin* running = nullptr;

  private:
    /// The host made the menu that a user needs to add a shape, with "Add" and every kind in its place.
    bool editorIsWhole_() { return form.has("Shape:") && form.field("Shape:").items.size() == 17; }
};

enum class Fault { Refusal, Nothing, Garbage, Exception };

/// An exception; "Yes", and null or empty results wherever a catch-all record takes results; or handles,
/// numbers and texts that mean nothing.
PIServiceResult answerFault(Fault fault, Id service, void* args) {
    static const std::set<Id> catchAll{Id::FileDialog, Id::WidgetValue, Id::ListItems,    Id::GetPlatformList,
                                       Id::Clock,      Id::Timeout,     Id::Action,       Id::Camera,
                                       Id::Cursor,     Id::ScreenText,  Id::OverlayLists, Id::OverlayFiles,
                                       Id::Icon,       Id::Service};
    if (fault == Fault::Refusal) return 0;
    if (fault == Fault::Exception) throw std::runtime_error("deliberate");
    const bool garbage = fault == Fault::Garbage;
    if (catchAll.contains(service)) {
        auto& record = *static_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(args));
        record.integers.push_back(garbage ? std::numeric_limits<std::int64_t>::max() : 0);
        for (int i = 0; i < 3; ++i)
            record.doubles.push_back(garbage ? std::numeric_limits<double>::quiet_NaN() : 0.0);
        record.strings.push_back(garbage ? "\xff\n\t" : "");
        record.pointers.push_back(garbage ? reinterpret_cast<void*>(std::uintptr_t{0xBAD0}) : nullptr);
        return 1;
    }
    // Where the result is a handle, this is one, too.
    return garbage ? 0xBAD0 : 0;
}

class DifficultHost : public DifficultHostBase,
                      public ::testing::WithParamInterface<std::tuple<Fault, bool /* once */>> {};

TEST_P(DifficultHost, FailsAtACall) {
    const auto [fault, once] = GetParam();
    int at = std::numeric_limits<int>::max();
    serves = once;
    host.answer = [&, fault = fault, once = once](Id service, void* args) -> std::optional<PIServiceResult> {
        if (!running) return std::nullopt;
        ++calls;
        if (once ? calls != at : calls < at) return std::nullopt;
        return answerFault(fault, service, args);
    };
    const int all = survive();
    RecordProperty("calls", all);
    ASSERT_GT(all, 1000);
    const int skipped = static_cast<int>(fault) + (once ? 4 : 0);
    for (at = 1 + skipped; at <= all && !HasFailure(); at += step(97)) {
        SCOPED_TRACE(at);
        survive();
    }
    EXPECT_FALSE(LoadedPlugin::isMapped());
}

std::string faultName(const ::testing::TestParamInfo<DifficultHost::ParamType>& suite) {
    const char* const names[] = {"Refusal", "Nothing", "Garbage", "Exception"};
    const auto [fault, once] = suite.param;
    return std::string(names[static_cast<int>(fault)]) + (once ? "Once" : "FromThen");
}

INSTANTIATE_TEST_SUITE_P(Faults, DifficultHost,
                         ::testing::Combine(::testing::Values(Fault::Refusal, Fault::Nothing, Fault::Garbage,
                                                              Fault::Exception),
                                            ::testing::Bool()),
                         faultName);

using InterruptingHost = DifficultHostBase;

TEST_F(InterruptingHost, DispatchesFromInsideEachService) {
    std::vector<std::pair<std::string, std::function<void()>>> events;
    for (const auto type :
         {Mouse::LeftPress, Mouse::LeftRelease, Mouse::RightPress, Mouse::Motion, Mouse::Wheel})
        events.emplace_back("mouse " + std::to_string(static_cast<int>(type)),
                            [this, type] { running->mouse(type, 15 + calls % 40, 25); });
    for (int code = 0; code <= 17; ++code)
        events.emplace_back("event " + std::to_string(code), [this, code] {
            running->event(static_cast<PIApplicationEvents_t>(code), kShip);
        });
    events.emplace_back("refresh", [this] { refresh(*running); });
    events.emplace_back("timeouts", [this] { host.fireTimeouts(); });
    events.emplace_back("start-up", [this] { running->dispatch(Function::StartUp); });
    for (const char* label :
         {"Overlay Editor Dialog", "Quick Free Draw", "Quick Circle Draw", "Quick Line Draw",
          "Quick Poly Draw", "Quick Rectangle Draw", "Quick Triangle Draw", "Remove Last Quick Shape",
          "Remove All Quick Shapes", "Set Quick Shape Directory", "Pick Attach Platform",
          "Attach Quick Shape", "Green Shape Color"})
        events.emplace_back(label, [this, label] { command(label); });
    for (const char* button : {"Edit", "Stop", "Center", "Delete", "Delete All", "Save", "Close"})
        events.emplace_back(button, [this, button] { press(button); });

    std::size_t current = 0;
    int every = 1;
    host.onCall = [&](Id) {
        if (running && ++calls % every == 0) events[current].second();
    };
    for (current = 0; current < events.size() && !HasFailure(); ++current)
        for (every = 1; every <= 3; every += step(2)) {
            SCOPED_TRACE(events[current].first + " every " + std::to_string(every));
            survive();
            expectNothingLeft();
        }
    EXPECT_FALSE(LoadedPlugin::isMapped());
}

TEST_F(InterruptingHost, ClosesFromInsideAService) {
    int at = std::numeric_limits<int>::max();
    host.onCall = [&](Id) {
        if (running && ++calls == at) running->dispatch(Function::Close, nullptr);
    };
    const int all = survive();
    for (at = 1; at <= all && !HasFailure(); at += step(31)) {
        SCOPED_TRACE(at);
        survive();
        expectNothingLeft();
    }
    EXPECT_FALSE(LoadedPlugin::isMapped());
}

}  // namespace
