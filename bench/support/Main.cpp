#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

// Benchmarks are named "<what>/<who>". The first <who> of a <what> is the one that the others are compared
// with: the report tells how many times as fast each is, with the same arguments. Times are the fastest of
// several repetitions in mixed order, so that the ratios hold on a machine that does other things as well.

namespace {

class RatioReporter : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            Entry& entry = entries_[{run.family_index, run.per_family_instance_index}];
            const double time = nanoseconds(run);
            entry.nanoseconds = entry.name.empty() ? time : std::min(entry.nanoseconds, time);
            const std::string& function = run.run_name.function_name;
            const std::string arguments = run.run_name.args.empty() ? "" : "/" + run.run_name.args;
            entry.name = function + arguments;
            entry.group = function.substr(0, function.find('/')) + arguments;
        }
    }

    void Finalize() override {
        std::map<std::string, double> baselines;
        for (const auto& [index, entry] : entries_) {
            const auto [baseline, isFirst] = baselines.try_emplace(entry.group, entry.nanoseconds);
            std::printf("%-48s %14.1f ns", entry.name.c_str(), entry.nanoseconds);
            if (!isFirst) std::printf("  %7.2f times as fast", baseline->second / entry.nanoseconds);
            std::printf("\n");
        }
    }

  private:
    struct Entry {
        std::string name;
        std::string group;
        double nanoseconds = 0.0;
    };

    /// For one item where the benchmark counts items, else for one iteration: the processor's time, or what
    /// the benchmark has measured itself.
    static double nanoseconds(const Run& run) {
        const auto rate = run.counters.find("items_per_second");
        if (rate != run.counters.end()) return 1e9 / rate->second.value;
        const bool measuresItself = !run.run_name.time_type.empty();
        const double seconds = measuresItself ? run.real_accumulated_time : run.cpu_accumulated_time;
        return seconds / static_cast<double>(run.iterations) * 1e9;
    }

    std::map<std::pair<std::int64_t, std::int64_t>, Entry> entries_;
};

}  // namespace

int main(int argc, char** argv) {
    // What the command line says comes later and wins.
    std::string defaults[] = {"--benchmark_repetitions=7", "--benchmark_min_time=0.05",
                              "--benchmark_enable_random_interleaving=true"};
    std::vector<char*> arguments(argv, argv + argc);
    for (std::string& text : defaults) arguments.insert(arguments.begin() + 1, text.data());
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
