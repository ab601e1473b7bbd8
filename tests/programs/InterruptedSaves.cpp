#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/Files.h"
#include "common/SaveFile.h"
#include "common/TemporaryFile.h"
#include "support/Child.h"
#include "support/TemporaryDirectory.h"

// InterruptedSaves killed ZEL ROUNDS: a file of several megabytes is saved by the editor's saveFile and by
// "zel format -i", and the process is killed at a random moment. InterruptedSaves full ZEL: there is room for
// 4 KiB of the file, for 8, and so on. The file is the old one or the new one, whole, and what a dead process
// leaves goes with the next save.

namespace {

using Clock = std::chrono::steady_clock;
using Action = std::function<void()>;

constexpr std::size_t kStep = 4096;

std::string file;

std::string contents() {
    std::string text;
    UTILS::readFile(file, text);
    return text;
}

std::size_t entries() {
    return UTILS::namesIn(UTILS::directoryOf(file)).size();
}

/// Circles that "zel format" writes otherwise.
std::string circles(std::size_t bytes) {
    std::string text;
    for (int i = 0; text.size() < bytes; ++i)
        text += "start\n  circle\ncenterll " + std::to_string(i % 80) + ".5 7\nradius 5\nend\n";
    return text;
}

pid_t run(const Action& action) {
    const pid_t child = ::fork();
    if (child != 0) return child;
    const int nowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(nowhere, STDOUT_FILENO);
    ::dup2(nowhere, STDERR_FILENO);
    action();
    std::_Exit(0);
}

int statusOf(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void format(const std::string& zel) {
    ::execl(zel.c_str(), zel.c_str(), "format", "-i", file.c_str(), static_cast<char*>(nullptr));
    std::_Exit(127);
}

bool fails(const char* what, const char* problem, std::size_t which) {
    std::printf("%s, %zu: %s\n", what, which, problem);
    return false;
}

/// \param save a save of the new text over the old one, in a process of its own
bool killed(const char* what, const Action& save, const std::string& old, std::size_t rounds) {
    std::mt19937 chance(std::getenv("SEED") ? static_cast<unsigned>(std::atoi(std::getenv("SEED"))) : 1U);
    UTILS::saveFile(file, old);
    const auto begin = Clock::now();
    if (statusOf(run(save)) != 0) return fails(what, "it does not save", 0);
    const std::chrono::duration<double> whole = Clock::now() - begin;
    const std::string fresh = contents();
    if (fresh == old) return fails(what, "nothing is saved", 0);
    std::size_t seenOld = 0;
    std::size_t left = 0;
    for (std::size_t round = 0; round < rounds; ++round) {
        // Also sees to what the round before has left.
        UTILS::saveFile(file, old);
        if (entries() != 1) return fails(what, "what a killed save leaves stays", round);
        const pid_t child = run(save);
        // Its end comes later on a busy machine; before the writing begins there is little to see.
        std::uniform_real_distribution<> moment(round % 2 == 0 ? 0.0 : 0.5, 1.2);
        ::usleep(static_cast<useconds_t>(1e6 * whole.count() * moment(chance)));
        ::kill(child, SIGKILL);
        statusOf(child);
        const std::string now = contents();
        if (now != old && now != fresh) return fails(what, "the file is neither of the two", round);
        seenOld += now == old;
        left += entries() > 1;
    }
    std::printf("%s: %zu saves killed, the file is the old one after %zu; %zu left a temporary file\n", what,
                rounds, seenOld, left);
    return (seenOld > 0 && seenOld < rounds) || fails(what, "the moments are badly chosen", rounds);
}

bool full(const char* what, const Action& save, const std::string& old) {
    UTILS::saveFile(file, old);
    statusOf(run(save));
    const std::string fresh = contents();
    if (fresh == old) return fails(what, "nothing is saved", 0);
    std::size_t steps = 0;
    for (std::size_t room = 0; room < fresh.size() + kStep; room += kStep, ++steps) {
        UTILS::saveFile(file, old);
        const int status = statusOf(run([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{room, room};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            save();
        }));
        const std::string now = contents();
        const bool fits = room >= fresh.size();
        if (now != (fits ? fresh : old)) return fails(what, "the file is not as it should be", room);
        if ((status == 0) != fits) return fails(what, "the status is wrong", room);
        if (entries() != 1) return fails(what, "a temporary file is left", room);
    }
    std::printf("%s: full at %zu places, each 4 KiB\n", what, steps);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc > 2 ? argv[1] : "";
    const TemporaryDirectory directory;
    file = directory.path() + "/shapes.zel";
    const std::string zel = argc > 2 ? argv[2] : "";
    const std::string old = circles(mode == "full" ? 1'000'000 : 5'000'000);
    const std::string fresh(old.size() + 100, 'n');
    const auto saved = [&](bool replaces) {
        std::string replaced;
        if (!UTILS::saveFile(file, fresh, replaces ? &replaced : nullptr).empty()) std::_Exit(1);
    };
    const auto named = [](const Action& save) {
        return [save] { makeNamelessFilesFail() ? save() : std::_Exit(3); };
    };
    const struct {
        const char* name;
        Action save;
    } saves[] = {{"the editor", [&] { saved(true); }},
                 {"the editor, where each file has a name", named([&] { saved(true); })},
                 {"zel format -i", [&] { format(zel); }},
                 {"zel format -i, where each file has a name", named([&] { format(zel); })}};
    const auto rounds = static_cast<std::size_t>(argc > 3 ? std::atoi(argv[3]) : 0);
    for (const auto& [name, save] : saves)
        if (!(mode == "full" ? full(name, save, old) : killed(name, save, old, rounds / 4))) return 1;
    return 0;
}
