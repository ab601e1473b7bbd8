#include "kit/Process.h"

#include <cfenv>
#include <cfloat>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <locale>
#include <new>
#include <set>
#include <sstream>
#include <tuple>
#include <utility>

#include <link.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "common/Files.h"

namespace kit {

namespace {

std::string entriesOf(const char* directory) {
    const auto names = UTILS::namesIn(directory);
    const std::set<std::string> sorted(names.begin(), names.end());
    std::string text;
    for (const std::string& name : sorted) {
        // That of the directory itself, which is closed again.
        std::error_code gone;
        const auto target = std::filesystem::read_symlink(std::string(directory) + "/" + name, gone);
        if (!gone && target.string().find("/proc/") != 0) text += target.string() + "; ";
    }
    return text;
}

std::string signalHandlers() {
    std::string text;
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_DFL)
            text += std::to_string(signal) + (action.sa_handler == SIG_IGN ? " ignored; " : " handled; ");
    }
    return text;
}

std::string blockedSignals() {
    std::string text;
    sigset_t blocked;
    if (::sigprocmask(SIG_SETMASK, nullptr, &blocked) != 0) return text;
    for (int signal = 1; signal < NSIG; ++signal)
        if (::sigismember(&blocked, signal) == 1) text += std::to_string(signal) + "; ";
    return text;
}

/// Those that are set; when they are due changes all the time.
std::string timers() {
    std::string text;
    for (const int kind : {ITIMER_REAL, ITIMER_VIRTUAL, ITIMER_PROF}) {
        itimerval value{};
        if (::getitimer(static_cast<__itimer_which_t>(kind), &value) == 0 &&
            (value.it_value.tv_sec || value.it_value.tv_usec))
            text += "interval timer " + std::to_string(kind) + "; ";
    }
    std::ifstream file("/proc/self/timers");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with("ID:")) text += line + "; ";
    return text;
}

/// Whether numbers too small for a double's usual form become zero.
std::string smallNumbers() {
    const volatile double least = DBL_MIN, smaller = 4.9406564584124654e-324;
    const volatile double half = least / 2.0, same = smaller * 1.0;
    return half == 0.0 || same == 0.0 ? "become zero" : "stay";
}

/// Its flags, its precision, and the buffer that it writes into.
std::string stateOf(const std::ostream& stream) {
    std::ostringstream text;
    text << stream.flags() << ", " << stream.precision() << ", " << static_cast<const void*>(stream.rdbuf());
    return text.str();
}

}  // namespace

ProcessState ProcessState::now() {
    ProcessState state;
    auto& facts = state.facts_;
    facts["open files"] = entriesOf("/proc/self/fd");
    facts["number of threads"] = std::to_string(UTILS::namesIn("/proc/self/task").size());
    std::string& children = facts["child processes"];
    for (const int child : childProcesses()) children += std::to_string(child) + "; ";
    facts["signals"] = signalHandlers();
    facts["locale"] = std::setlocale(LC_ALL, nullptr);
    facts["working directory"] = std::filesystem::current_path();
    facts["rounding of numbers"] = std::to_string(std::fegetround());
    facts["small numbers"] = smallNumbers();
    facts["exceptions of numbers that are caught"] = std::to_string(::fegetexcept());
    facts["blocked signals"] = blockedSignals();
    facts["timers"] = timers();
    const auto handler = reinterpret_cast<std::uintptr_t>(std::get_terminate());
    facts["handler of std::terminate"] = std::to_string(handler);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    std::ostringstream octal;
    octal << std::oct << '0' << mask;
    facts["mask of new files"] = octal.str();
    facts["handler of std::set_new_handler"] =
        std::to_string(reinterpret_cast<std::uintptr_t>(std::get_new_handler()));
    facts["C++ locale"] = std::locale().name();
    facts["std::cout"] = stateOf(std::cout);
    facts["std::cerr"] = stateOf(std::cerr);
    facts["std::clog"] = stateOf(std::clog);
    const char* const limits[] = {"CPU",      "FSIZE",  "DATA",    "STACK", "CORE",  "RSS",
                                  "NPROC",    "NOFILE", "MEMLOCK", "AS",    "LOCKS", "SIGPENDING",
                                  "MSGQUEUE", "NICE",   "RTPRIO",  "RTTIME"};
    for (int kind = 0; kind < static_cast<int>(std::size(limits)); ++kind) {
        rlimit limit{};
        ::getrlimit(static_cast<__rlimit_resource_t>(kind), &limit);
        facts[std::string("RLIMIT_") + limits[kind]] = std::to_string(limit.rlim_cur);
    }
    char name[17] = {};
    ::prctl(PR_GET_NAME, name);
    facts["name of the thread"] = name;
    std::set<std::string> variables;
    for (char** variable = environ; *variable; ++variable) variables.insert(*variable);
    for (const std::string& variable : variables) facts["environment"] += variable + "; ";
    return state;
}

std::vector<std::string> ProcessState::differences(const ProcessState& before) const {
    std::vector<std::string> different;
    for (const auto& [name, fact] : facts_)
        if (const std::string& old = before.facts_.at(name); fact != old)
            different.push_back(name + ": \"" + fact + "\", before \"" + old + "\"");
    return different;
}

std::set<std::string> mappedLibraries() {
    std::set<std::string> names;
    ::dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* into) {
            static_cast<std::set<std::string>*>(into)->insert(info->dlpi_name);
            return 0;
        },
        &names);
    return names;
}

std::vector<int> childProcesses() {
    std::vector<int> found;
    for (const std::string& thread : UTILS::namesIn("/proc/self/task")) {
        std::ifstream file("/proc/self/task/" + thread + "/children");
        for (int process = 0; file >> process;) found.push_back(process);
    }
    return found;
}

bool isScratch(const std::string& directory) {
    const std::filesystem::path path(directory);
    return path.is_absolute() && path.parent_path().native().find(kScratch) != std::string::npos;
}

namespace {

/// All that a process has mapped, and what of it is in memory, in bytes.
std::pair<double, double> sizesOf(int process) {
    double size = 0.0, resident = 0.0;
    std::ifstream("/proc/" + std::to_string(process) + "/statm") >> size >> resident;
    const auto page = static_cast<double>(::sysconf(_SC_PAGESIZE));
    return {size * page, resident * page};
}

}  // namespace

double residentOf(int process) {
    return sizesOf(process).second;
}

Memory Memory::now() {
    Memory memory;
    std::tie(memory.mapped, memory.resident) = sizesOf(::getpid());
    const auto info = ::mallinfo2();
    memory.heap = static_cast<double>(info.uordblks + info.hblkhd);
    return memory;
}

bool Memory::isMeasurable() {
    return ::mallinfo2().arena != 0 && !std::getenv("LD_PRELOAD");
}

}  // namespace kit
