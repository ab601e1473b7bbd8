#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <vector>

#include <malloc.h>

#include "plugin/HostedPlugin.h"

namespace {

using Function = LoadedPlugin::Function;
using Lifecycle = HostedPlugin;

std::ptrdiff_t openFiles() {
    using Directory = std::filesystem::directory_iterator;
    return std::distance(Directory("/proc/self/fd"), Directory());
}

/// Resident pages of this process.
long residentPages() {
    long size = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return resident;
}

TEST_F(Lifecycle, OverAndOverInOneProcess) {
    constexpr int kWarmUp = 10;
    constexpr long kMorePages = 64;
    const int count = rounds(50);
    const auto filesBefore = openFiles();
    long pagesBefore = 0;
    for (int round = 0; round < count; ++round) {
        {
            LoadedPlugin plugin(host);
            work(plugin);
            drawAll(plugin);
            // Every other time the quick shapes go with the plug-in, and the host has only what was saved.
            const bool autoDelete = round % 2 != 0;
            check("Auto-delete:", autoDelete);
            plugin.dispatch(Function::Close);
            expectNothingLeft();
            EXPECT_EQ(host.overlays.size() == 1, autoDelete);
        }
        ASSERT_FALSE(LoadedPlugin::isMapped()) << "round " << round;
        ASSERT_FALSE(HasFailure()) << "round " << round;
        EXPECT_EQ(openFiles(), filesBefore);
        EXPECT_EQ(host.platforms.size(), 1u);
        // What the host keeps of its own.
        host.overlays.clear();
        host.notifications.clear();
        std::filesystem::remove_all(directory + "/quick");
        if (round == kWarmUp) pagesBefore = residentPages();
    }
    // Checkers that keep freed memory for a while grow by themselves.
    const bool checked = ::mallinfo2().arena == 0 || std::getenv("LD_PRELOAD");
    if (count <= kWarmUp || checked) return;
    const long morePages = residentPages() - pagesBefore;
    RecordProperty("more_pages", static_cast<int>(morePages));
    EXPECT_LT(morePages, kMorePages);
}

/// What other events bring, with numbers that none of them has.
PIFunctionParams_t wrongRecord() {
    PIFunctionParams_t record;
    for (int slot = -1; slot < 30; ++slot) {
        const auto name = static_cast<PIParameterName_t>(slot);
        record.integers[name] = slot % 2 ? std::numeric_limits<std::int32_t>::max() : -1;
        record.strings[name] = "not this";
        record.pointers[name] = nullptr;
    }
    return record;
}

bool same(const PIFunctionParams_t& a, const PIFunctionParams_t& b) {
    const auto equal = [](const auto& x, const auto& y) {
        return std::equal(x.begin(), x.end(), y.begin(), y.end());
    };
    return equal(a.strings, b.strings) && equal(a.integers, b.integers) && equal(a.pointers, b.pointers);
}

TEST_F(Lifecycle, EveryNumberInEveryState) {
    enum State { Loaded, Made, Running, Closed, CleanedUp };
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    for (const State state : {Loaded, Made, Running, Closed, CleanedUp}) {
        LoadedPlugin plugin(host, state != Loaded);
        if (state > Made) plugin.dispatch(Function::StartUp);
        if (state > Running) plugin.dispatch(Function::Close);
        if (state == CleanedUp) plugin.cleanUp();
        // From above: starting up is the last thing that is tried.
        for (std::int32_t number = kClientFunctionCount + 1; number >= -1; --number) {
            if (number == static_cast<std::int32_t>(Function::Close) && state < Closed) continue;
            SCOPED_TRACE(testing::Message() << "state " << state << ", number " << number);
            const bool known = number >= 0 && number < kClientFunctionCount;
            const auto function = static_cast<Function>(known ? number : number < 0 ? -kMost - 1 : kMost);
            EXPECT_EQ(plugin.dispatch(function, nullptr), 0);
            for (const PIFunctionParams_t& before : {PIFunctionParams_t(), wrongRecord()}) {
                PIFunctionParams_t record = before;
                EXPECT_EQ(plugin.dispatch(function, &record), 0);
                const bool alive = state == Made || state == Running;
                const auto* const status = record.integers.find(PIParameterName_t::Status);
                const bool saysSo = state > Running && status && *status == kStatusClosed;
                EXPECT_TRUE((alive && known) || saysSo || same(record, before));
            }
        }
        if (state < Closed) plugin.dispatch(Function::Close);
        expectNothingLeft();
    }
    EXPECT_FALSE(LoadedPlugin::isMapped());
}

/// A second start and a clean-up close what was not closed, where it was made.
TEST_F(Lifecycle, WhatTheHostForgetsIsMadeUpFor) {
    LoadedPlugin plugin(host);
    FakeHost second;
    for (const bool again : {true, false}) {
        plugin.initialise(host);
        plugin.dispatch(Function::StartUp);
        openDialog();
        addCircle();
        drag(plugin, 100, 100, 130, 100);
        // At work it goes on, and with the host that it has.
        host.onCall = [&](FakeHost::Id) { plugin.initialise(second); };
        press("Center");
        host.onCall = {};
        again ? plugin.initialise(second) : plugin.cleanUp();
        EXPECT_TRUE(second.calls.empty() && host.cameraCenter);
        expectNothingLeft();
        EXPECT_EQ(quickFiles(), 1) << "what is not saved is rescued";
    }
    plugin.mouse(Mouse::RightPress, 0, 0);
    plugin.event(PIApplicationEvents_t::ScenarioCleared);
    EXPECT_EQ(plugin.dispatch(Function::StartUp), kStatusClosed);
}

}  // namespace
