#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <fstream>
#include <random>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "model/FileVersion.h"
#include "model/JournalFile.h"
#include "model/NewestFiles.h"
#include "model/QuietServiceTable.h"
#include "model/RescueFile.h"
#include "support/TemporaryDirectory.h"

// Clocks that are set back and forth, and files of any time: rescue files are kept in the order in which they
// were written, a file is known to be another whatever its time says, and each journal that was left is
// found. The argument is the number of rounds; SEED draws others.

namespace {

/// Seconds by which the clocks are wrong.
long wallClockAhead = 0;
long steadyClockAhead = 0;
/// The second one's lead when a file was changed last.
long changedAhead = 0;

}  // namespace

extern "C" [[gnu::visibility("default")]] int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const long status = ::syscall(SYS_clock_gettime, clock, time);
    if (clock == CLOCK_REALTIME) time->tv_sec += wallClockAhead;
    if (clock == CLOCK_MONOTONIC) time->tv_sec += steadyClockAhead;
    return static_cast<int>(status);
}
/// Of a file system whose clock ticks every two seconds.
extern "C" [[gnu::visibility("default")]] int stat(const char* path, struct stat* info) noexcept {
    if (::fstatat(AT_FDCWD, path, info, 0) != 0) return -1;
    info->st_ctim.tv_sec += changedAhead;
    for (timespec* const time : {&info->st_ctim, &info->st_mtim})
        *time = {.tv_sec = time->tv_sec & ~1L, .tv_nsec = 0};
    return 0;
}
extern "C" [[gnu::visibility("default")]] time_t time(time_t* to) noexcept {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    if (to) *to = now.tv_sec;
    return now.tv_sec;
}

namespace {

using namespace OverlayEditor;

std::mt19937 chance;

long below(long limit) {
    return static_cast<long>(chance() % static_cast<unsigned long>(limit));
}

/// What file systems can hold: 1902 to 2400.
time_t anyTime() {
    constexpr time_t kKnown[] = {0, 1, -1, 0x7fffffff, 0x80000000, 0xffffffff, 253402300800 / 20};
    return below(2) == 0 ? kKnown[below(std::size(kKnown))] : -2'000'000'000 + below(15'000'000) * 1000;
}

void setTime(const std::string& path, time_t seconds, long nanoseconds = 0) {
    const timespec times[] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    ::utimensat(AT_FDCWD, path.c_str(), times, 0);
}

timespec timeOf(const std::string& path) {
    struct stat info {};
    ::lstat(path.c_str(), &info);
    return info.st_mtim;
}

bool fails(const char* what, long round) {
    std::printf("round %ld: %s\n", round, what);
    return false;
}

/// The clock is set between one rescue file and the next: as seen from the new one, all others are of another
/// time.
bool rescueFiles(const std::string& directory, long rounds) {
    ::setenv("HOME", directory.c_str(), 1);
    const QuietServiceTable host;
    std::deque<std::string> written;
    for (long round = 0; round < rounds; ++round) {
        const long step = below(3) == 0   ? 0
                          : below(2) == 0 ? 2 * below(20) - 20
                                          : 1'000'000L * (below(400) - 200);
        wallClockAhead = anyTime() - 1'700'000'000;
        for (const std::string& path : written)
            setTime(path, timeOf(path).tv_sec + step, timeOf(path).tv_nsec);
        const std::string text = "start\ncircle\n# " + std::to_string(round) + "\nend\n";
        written.push_back(writeRescueFile(text, Unrescued::AreLost));
        if (written.size() > kMostKeptFiles) written.pop_front();
        std::string kept;
        if (!UTILS::readFile(written.back(), kept).empty() || kept != text)
            return fails("the last one is gone", round);
        for (const std::string& path : written)
            if (!UTILS::fileIsFile(path))
                return fails("one of the twenty that were written last is gone", round);
        if (UTILS::namesIn(UTILS::directoryOf(written.back())).size() != written.size())
            return fails("older ones stay", round);
    }
    return true;
}

/// Others write a file in place or anew, of the same size, and give it any time, or leave it that of the last
/// tick.
bool changedFiles(const std::string& directory, long rounds) {
    const std::string path = directory + "/watched.zel";
    const std::string ours = "the text that is known";
    for (long round = 0; round < rounds; ++round) {
        std::ofstream(path) << ours;
        std::string text, error;
        const FileVersion known =
            below(2) == 0 ? FileVersion(path, ours) : FileVersion::read(path, text, error);
        for (int change = 0; change < 6; ++change) {
            // Several within a tick, and the editor may look between two of them.
            std::string theirs;
            for (long times = 1 + below(3); times > 0; --times) {
                theirs = ours;
                if (below(3) != 0)
                    theirs[static_cast<std::size_t>(below(static_cast<long>(theirs.size())))] = '!';
                const timespec before = timeOf(path);
                if (below(3) == 0) UTILS::fileRemove(path);
                std::ofstream(path) << theirs;
                changedAhead = steadyClockAhead;
                if (below(2) == 0)
                    setTime(path, anyTime());
                else if (below(2) == 0)
                    setTime(path, before.tv_sec, before.tv_nsec);
                wallClockAhead = anyTime() - 1'700'000'000;
                if (below(2) == 0) static_cast<void>(known.isOnDisk());
            }
            steadyClockAhead += 4;
            if (known.isOnDisk() != (theirs == ours)) return fails("a changed file is not noticed", round);
        }
    }
    return true;
}

/// Sessions were killed while the clock was wrong.
bool journals(const std::string& directory, long rounds) {
    for (long round = 0; round < rounds; ++round) {
        const long count = 1 + below(5);
        std::string error;
        for (long i = 0; i < count; ++i) {
            const auto journal = JournalFile::create(directory, error);
            if (!journal || !journal->append("something").empty())
                return fails("there can be no journal", round);
            setTime(journal->path(), anyTime());
        }
        const auto found = JournalFile::abandonedIn({directory});
        if (found.size() != static_cast<std::size_t>(count)) return fails("a journal is not found", round);
        if (!std::ranges::is_sorted(found, [](const std::string& a, const std::string& b) {
                return timeOf(a).tv_sec > timeOf(b).tv_sec;
            }))
            return fails("they are not in their order", round);
        const std::size_t before = UTILS::namesIn(directory).size();
        for (const std::string& path : found) {
            const auto journal = JournalFile::take(path);
            if (!journal) return fails("a journal cannot be taken", round);
            // Set aside, or done with.
            wallClockAhead = -1'700'000'000;
            round % 2 == 0 ? static_cast<void>(journal->setAside()) : journal->remove();
        }
        if (round % 2 == 0 && UTILS::namesIn(directory).size() < std::min(before, kMostKeptFiles))
            return fails("what is set aside takes another one's name", round);
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const long rounds = argc > 1 ? std::atol(argv[1]) : 100;
    chance.seed(std::getenv("SEED") ? static_cast<unsigned>(std::atoi(std::getenv("SEED"))) : 1U);
    halNotify::setNotifyHandler([](halNotify::Severity, const std::string&) {});
    const TemporaryDirectory files;
    const TemporaryDirectory rescued;
    const TemporaryDirectory lost;
    if (!rescueFiles(rescued.path(), rounds) || !changedFiles(files.path(), rounds) ||
        !journals(lost.path(), rounds))
        return 1;
    std::printf("%ld rounds each of rescue files, changed files and journals\n", rounds);
    return 0;
}
