#include <algorithm>
#include <ctime>
#include <filesystem>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "model/Journal.h"
#include "model/PolygonShape.h"
#include "pi/EntryScope.h"
#include "pi/HostContract.h"
#include "pi/PIBase.h"

namespace {

using namespace OverlayEditor;

/// A host with a directory for journals, and one timeout.
class WritingHost final : public PIServiceTable {
  public:
    WritingHost() {
        std::filesystem::create_directory(directory_);
        g_FunctionMap = this;
    }
    ~WritingHost() {
        g_FunctionMap = nullptr;
        std::filesystem::remove_all(directory_);
    }
    std::int32_t hostBuildNumber() override { return PIBase::buildNumber; }
    PIServiceResult handle(void*, PIServerFunctions_t service, void* args) override {
        auto* const record = static_cast<PI_DATA_BASE_CLASS*>(args);
        if (service == PIServerFunctions_t::RegistryGetValue)
            static_cast<PI_DATA_POINTER_AND_STRING*>(record)->text = directory_;
        if (service != PIServerFunctions_t::Timeout) return 1;
        auto& asked = *static_cast<PI_DATA_CATCHALL*>(record);
        armed_ = asked.integers[0] == static_cast<std::int64_t>(PISelector::Timeout::Create);
        asked.pointers.push_back(this);
        return 1;
    }
    /// Whether a timeout was armed, which fires now.
    bool fires() { return std::exchange(armed_, false); }

  private:
    const std::string directory_ =
        std::filesystem::temp_directory_path() / ("bench-journal-" + std::to_string(::getpid()));
    bool armed_ = false;
};

double processorSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// An overlay of lines is written to a new journal, a slice at a time: the time is the processor's for the
/// longest slice, while which the interface stands still. The goal is 1 ms for 100,000 points.
void longestSlice(benchmark::State& state) {
    WritingHost host;
    Preferences preferences;
    Overlay overlay;
    Attachment attachment(overlay);
    History history(preferences, overlay, attachment);
    Journal journal(history, [] { return JournalHead(); });
    {
        const EntryScope entry;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            auto* const line = new PolygonShape(preferences, PolygonShape::Line);
            for (std::int64_t j = 0; j < state.range(1); ++j)
                line->addPoint({1e-6 * static_cast<double>(j), 1e-3 * static_cast<double>(i), 5.0});
            overlay.addShape(line);
        }
    }
    std::int64_t slices = 0;
    for (auto _ : state) {
        journal.end();
        double longest = 0.0;
        const auto timed = [&](auto slice) {
            const double begin = processorSeconds();
            slice();
            longest = std::max(longest, processorSeconds() - begin);
            ++slices;
        };
        timed([&] {
            const EntryScope entry;
            journal.unsettle();
        });
        while (host.fires()) timed([&] { journal.onTimeout(nullptr, nullptr); });
        state.SetIterationTime(longest);
    }
    state.counters["slices"] =
        benchmark::Counter(static_cast<double>(slices), benchmark::Counter::kAvgIterations);
}
BENCHMARK(longestSlice)
    ->ArgNames({"lines", "points"})
    ->Args({1, 100000})
    ->Args({10000, 10})
    ->UseManualTime()
    ->Iterations(50)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
