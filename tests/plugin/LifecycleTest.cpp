#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <vector>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

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

enum class State { Loaded, Made, Running, Closed, CleanedUp };

/// In a process of its own: brings the plug-in into a state, dispatches one number with one record, and
/// closes. Tells whether the status was 0, and the record left alone where nobody was to answer.
class Dispatched {
  public:
    enum class Record { Null, Empty, Wrong };

    Dispatched(FakeHost& host, State state, std::int32_t number, Record kind)
        : plugin_(host, state != State::Loaded) {
        if (state > State::Made) plugin_.dispatch(Function::StartUp);
        if (state > State::Running) plugin_.dispatch(Function::Close);
        if (state == State::CleanedUp) plugin_.cleanUp();
        PIFunctionParams_t record;
        if (kind == Record::Wrong) fillWrongly(record);
        const PIFunctionParams_t before = record;
        const auto function = static_cast<Function>(number);
        good_ = plugin_.dispatch(function, kind == Record::Null ? nullptr : &record) == 0;

        const bool alive = state == State::Made || state == State::Running;
        const bool known = number >= 0 && number < kClientFunctionCount;
        if (kind == Record::Null || !alive || !known) good_ = good_ && same(record, before);
        if (state != State::CleanedUp) plugin_.dispatch(Function::Close);
    }
    bool good() const { return good_; }

  private:
    /// What other events bring, with numbers that none of them has.
    static void fillWrongly(PIFunctionParams_t& record) {
        for (int slot = -1; slot < 30; ++slot) {
            const auto name = static_cast<PIParameterName_t>(slot);
            record.integers[name] = slot % 2 ? std::numeric_limits<std::int32_t>::max() : -1;
            record.strings[name] = "not this";
            record.pointers[name] = nullptr;
        }
    }
    static bool same(const PIFunctionParams_t& a, const PIFunctionParams_t& b) {
        const auto equal = [](const auto& x, const auto& y) {
            return std::equal(x.begin(), x.end(), y.begin(), y.end());
        };
        return equal(a.strings, b.strings) && equal(a.integers, b.integers) && equal(a.pointers, b.pointers);
    }

    LoadedPlugin plugin_;
    bool good_ = false;
};

TEST_F(Lifecycle, EveryNumberInEveryState) {
    std::vector<std::int32_t> numbers{-1, kClientFunctionCount, std::numeric_limits<std::int32_t>::min(),
                                      std::numeric_limits<std::int32_t>::max()};
    for (std::int32_t number = 0; number < kClientFunctionCount; ++number) numbers.push_back(number);
    for (const auto state : {State::Loaded, State::Made, State::Running, State::Closed, State::CleanedUp})
        for (const std::int32_t number : numbers)
            for (const auto kind :
                 {Dispatched::Record::Null, Dispatched::Record::Empty, Dispatched::Record::Wrong}) {
                const pid_t child = ::fork();
                ASSERT_GE(child, 0);
                if (child == 0) {
                    bool good = false;
                    { good = Dispatched(host, state, number, kind).good(); }
                    ::_exit(good && !LoadedPlugin::isMapped() ? 0 : 1);
                }
                int status = 0;
                ASSERT_EQ(::waitpid(child, &status, 0), child);
                EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
                    << "number " << number << ", state " << static_cast<int>(state) << ", record "
                    << static_cast<int>(kind) << ": " << status;
            }
}

}  // namespace
