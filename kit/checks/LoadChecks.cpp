#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "kit/LibraryFile.h"
#include "kit/Process.h"
#include "kit/checks/Checks.h"

namespace kit {

namespace {

constexpr std::array kExports{"HPI_CleanUpPlugin",          "HPI_GetBitWidth", "HPI_GetCompilerVersion",
                              "HPI_InitializeFunctionMap",  "HPI_IsDebugMode", "HPI_MinimumVersion",
                              "HPI_PluginDispatchFunction", "HPI_VersionInfo", "HPI_VersionInfoEx"};

/// The interface version as one double: 1.2.3 is 1.203, and from 1.10 on 1.20.0 is 1.902.
double legacyVersion(int major, int minor, int revision) {
    if (major == 0) return minor * 0.01;
    if (major >= 2) return major + 0.01 * minor + 0.0001 * revision;
    return minor <= 9 ? 1.0 + 0.1 * minor + 0.001 * revision : 1.9 + 0.0001 * minor + 0.000001 * revision;
}

void judgeVersions(Findings& findings, const Plugin& plugin, const std::string& when) {
    if (findings.faults()) return;  // the same again
    const auto expect = [&](bool holds, const std::string& text) {
        if (!holds) findings.fault(text + ", " + when);
    };
    const int major = plugin.versionInfoEx(0), minor = plugin.versionInfoEx(1),
              revision = plugin.versionInfoEx(2);
    expect(major == 1, "HPI_VersionInfoEx(0) is " + std::to_string(major) + ", not 1");
    for (const int selector : {3, -1, 1000})
        expect(plugin.versionInfoEx(selector) == major,
               "HPI_VersionInfoEx(" + std::to_string(selector) + ") is not the major version");
    const double legacy = legacyVersion(major, minor, revision);
    expect(std::abs(plugin.versionInfo() - legacy) < 1e-9,
           "HPI_VersionInfo is " + std::to_string(plugin.versionInfo()) + ", but HPI_VersionInfoEx says " +
               std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(revision) +
               ", which is " + std::to_string(legacy));
    const int minimum = plugin.minimumVersion();
    expect(minimum > 0 && minimum <= 13000,
           "HPI_MinimumVersion is " + std::to_string(minimum) + ": a host of 13000 does not do");
    expect(plugin.bitWidth() == 64, "HPI_GetBitWidth is not 64");
    expect(plugin.isDebugMode() == 0, "HPI_IsDebugMode is not 0");
    expect(plugin.compilerVersion() > 0, "HPI_GetCompilerVersion is no version");
}

/// What is lost in each quarter of the rounds, not in a step or two, in bytes a round.
double steadyLoss(const std::vector<double>& heaps) {
    constexpr std::size_t kQuarters = 4;
    if (heaps.size() <= 2 * kQuarters) return 0.0;
    double least = std::numeric_limits<double>::max();
    for (std::size_t quarter = 0; quarter < kQuarters; ++quarter) {
        const std::size_t from = (heaps.size() - 1) * quarter / kQuarters;
        const std::size_t to = (heaps.size() - 1) * (quarter + 1) / kQuarters;
        least = std::min(least, (heaps[to] - heaps[from]) / static_cast<double>(to - from));
    }
    return least;
}

}  // namespace

void checkExports(Context& context) {
    const auto symbols = visibleSymbols(context.settings.library);
    const auto has = [&](const char* name) {
        return std::binary_search(symbols.begin(), symbols.end(), std::string(name));
    };
    // A library can do without the table of its sections, which names them all.
    if (symbols.empty()) context.findings.remark("it cannot be seen what else the library exports");
    for (const char* const name : kExports)
        if (!symbols.empty() && !has(name))
            context.findings.fault(std::string("the library does not export ") + name);
    for (const std::string& name : symbols)
        if (std::ranges::find(kExports, name) == kExports.end())
            context.findings.remark("the library also exports " + name +
                                    ", which may be taken for another library's");
    if (context.findings.faults() == 0) Plugin(context.settings.library, context.findings, context.situation);
}

void checkVersions(Context& context) {
    Session session(context);
    session.prepare = [&](Plugin& plugin, Hands&) { judgeVersions(context.findings, plugin, "after init"); };
    session.use = [&](Plugin& plugin, Hands&) {
        judgeVersions(context.findings, plugin, "after StartUp");
        plugin.close();
        judgeVersions(context.findings, plugin, "after Close");
        plugin.cleanUp();
        judgeVersions(context.findings, plugin, "after clean-up");
    };
    {
        const Plugin plugin(context.settings.library, context.findings, context.situation);
        judgeVersions(context.findings, plugin, "once it is loaded");
    }
    session.play();
}

void checkLoading(Context& context) {
    constexpr int kRounds = 20;
    const ProcessState before = ProcessState::now();
    // What it is linked with may stay once it was there; what it loads itself it unloads itself.
    { const Plugin plugin(context.settings.library, context.findings, context.situation); }
    const auto libraries = mappedLibraries();
    const auto judge = [&](const std::string& when) {
        for (const std::string& name : mappedLibraries())
            if (!libraries.contains(name) && name != context.settings.library)
                context.findings.remark("a library that it has loaded is not unloaded: " + name);
        for (const std::string& difference : ProcessState::now().differences(before))
            context.findings.fault(when + " the process is not as it was: " + difference);
    };
    for (int round = 0; round < kRounds && context.findings.faults() == 0; ++round) {
        context.situation.setRound("round " + std::to_string(round + 1));
        { const Plugin plugin(context.settings.library, context.findings, context.situation); }
        judge("once it was loaded and unloaded");
        {
            Host host(context.findings, context.situation, &context);
            Plugin plugin(context.settings.library, context.findings, context.situation);
            plugin.initialise(host);
        }
        judge("once it was initialised and unloaded");
        Session session(context);
        session.seed += static_cast<std::uint64_t>(round);
        session.steps = 20;
        session.play();
        judge("once it was used and unloaded");
    }
}

void checkRounds(Context& context) {
    const int rounds = context.settings.rounds;
    constexpr int kFewRounds = 30;
    const int warmUp = std::min(100, rounds / 3);
    Memory first;
    std::vector<double> heaps, mapped;
    for (auto* const each : {&heaps, &mapped}) each->reserve(static_cast<std::size_t>(rounds));
    for (int round = 0; round < rounds && context.findings.faults() == 0; ++round) {
        context.situation.setRound("round " + std::to_string(round + 1));
        Session session(context);
        session.steps = 30;
        session.play();
        const Memory memory = Memory::now();
        if (round == warmUp) first = memory;
        if (round < warmUp) continue;
        heaps.push_back(memory.heap);
        mapped.push_back(memory.mapped);
    }
    context.situation.setRound({});
    if (rounds < kFewRounds)
        context.findings.remark("so few rounds tell nothing of memory: " + std::to_string(kFewRounds) +
                                " or more do");
    // Rounds that were cut short by another fault say nothing of memory.
    if (!Memory::isMeasurable() || rounds <= warmUp + 1 || context.findings.faults() != 0) return;
    const Memory last = Memory::now();
    const double since = rounds - warmUp - 1;
    const double heap = last.heap - first.heap, resident = last.resident - first.resident;
    context.findings.figure("rounds", rounds);
    context.findings.figure("heap-bytes-a-round", std::round(heap / since));
    context.findings.figure("more-resident-bytes", resident);
    // What the loader and the library of C keep for themselves comes in steps, and stops.
    constexpr double kAllowedHeap = 32.0 * 1024, kAllowedResident = 1024.0 * 1024;
    constexpr double kAllowedEach = 16.0, kPage = 4096.0;
    const bool isLost = heap > kAllowedHeap && heap / since > kAllowedEach;
    if (isLost || steadyLoss(heaps) > kAllowedEach)
        context.findings.fault("memory is lost: " + std::to_string(std::lround(heap / since)) +
                               " bytes of the heap in each of " + std::to_string(std::lround(since)) +
                               " rounds");
    else if (const double lost = steadyLoss(mapped); lost >= kPage)
        context.findings.fault("address space is lost: " + std::to_string(std::lround(lost)) +
                               " bytes more are mapped after each of " + std::to_string(std::lround(since)) +
                               " rounds");
    else if (resident > kAllowedResident)
        context.findings.fault("memory grows: " + std::to_string(std::lround(resident)) +
                               " bytes more are resident after " + std::to_string(std::lround(since)) +
                               " rounds");
}

}  // namespace kit
