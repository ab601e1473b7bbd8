#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/Files.h"
#include "common/SaveFile.h"
#include "programs/FailingMemory.h"
#include "support/TemporaryDirectory.h"

// Each allocation of "zel format -i" fails, once and from then on: the command ends by itself, with a message
// wherever the file is not the new one, and the file is the old one or the new one, whole. Linked with the
// command's own objects, whose main it wraps. The argument is the step from one allocation to the next.

extern "C" int __real_main(int argc, char** argv);

namespace {

std::string file;
std::string said;

std::string contents(const std::string& path) {
    std::string text;
    UTILS::readFile(path, text);
    return text;
}

/// In a process of its own. \return as waitpid has it
int format(long allocation, bool all) {
    const pid_t child = ::fork();
    if (child == 0) {
        const int out = ::open(said.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ::dup2(out, STDOUT_FILENO);
        ::dup2(out, STDERR_FILENO);
        std::vector<std::string> words{"zel", "format", "-i", file};
        std::vector<char*> arguments;
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        failing::arm(allocation, all);
        // Static objects end short of memory, too.
        std::exit(__real_main(static_cast<int>(words.size()), arguments.data()));
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

/// \return how many failed, or -1
long campaign(const char* name, const std::string& old, long step) {
    UTILS::saveFile(file, old);
    format(0, false);
    const std::string now = contents(file);
    if (now == old || now.size() < old.size() / 2) {
        std::printf("%s: it is not formatted\n", name);
        return -1;
    }
    long count = 0;
    for (const bool all : {false, true}) {
        bool failed = true;
        for (long allocation = 1; failed; allocation += step) {
            UTILS::saveFile(file, old);
            const int status = format(allocation, all);
            failed = failing::count() != 0;
            count += failed;
            const std::string after = contents(file);
            const char* const problem =
                !WIFEXITED(status)                                     ? "it is ended by a signal"
                : after != old && after != now                         ? "the file is neither of the two"
                : after == old && WEXITSTATUS(status) == 0             ? "it says that all is well"
                : after == old && contents(said).empty()               ? "it says nothing"
                : UTILS::namesIn(UTILS::directoryOf(file)).size() != 2 ? "a temporary file is left"
                                                                       : nullptr;
            if (problem) {
                std::printf("%s, allocation %ld%s: %s\n%s", name, allocation,
                            all ? " and all later ones" : "", problem, contents(said).c_str());
                return -1;
            }
        }
    }
    return count;
}

std::string circles(int count) {
    std::string text = "version 2\n\n";
    for (int i = 0; i < count; ++i)
        text += "start\n# a comment that is longer than a short string\n circle\ncenterll " +
                std::to_string(i % 80) + " 7\nradius 5\n3d name \"Ärger " + std::to_string(i) + "\"\nend\n\n";
    return text;
}

/// Longer than what is read at once: read in pieces, on several threads.
std::string lines() {
    std::string text = "# Lines\n";
    for (int i = 0; i < 3; ++i) {
        text += "start\nline\n";
        for (int point = 0; point < 25'000; ++point) text += "lla 10.25 " + std::to_string(i) + " 0\n";
        text += "  end\n";
    }
    return text;
}

}  // namespace

extern "C" int __wrap_main(int argc, char** argv) {
    const long step = argc > 1 ? std::atol(argv[1]) : 1;
    // Not one that goes with a child.
    const TemporaryDirectory directory;
    file = directory.path() + "/shapes.zel";
    said = directory.path() + "/said";
    long count = 0;
    for (const auto& [name, text] : {std::pair("circles", circles(40)), std::pair("long lines", lines())}) {
        const long failed = campaign(name, text, step);
        if (failed < 0) return 1;
        count += failed;
    }
    std::printf("%ld allocations failed\n", count);
    return 0;
}
