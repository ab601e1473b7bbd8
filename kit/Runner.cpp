#include "kit/Runner.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/Descriptor.h"
#include "common/Files.h"
#include "common/NumberText.h"
#include "common/Printable.h"
#include "kit/Process.h"

namespace kit {

namespace {

// Where the new process finds what it shares.
constexpr int kFindings = 3, kSituation = 4;

std::runtime_error failure(const char* what) {
    return std::runtime_error(std::string(what) + ": " + UTILS::reasonOf(errno));
}

/// The signal with which this process was to be ended; 0: none.
volatile std::sig_atomic_t endSignal = 0;

Situation* mapSituation(int descriptor) {
    void* const memory =
        ::mmap(nullptr, sizeof(Situation), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : new (memory) Situation;
}

/// A directory that goes with the object, contents and all.
class Scratch {
  public:
    Scratch()
        : path_(std::filesystem::canonical(UTILS::temporaryDirectory()).native() + kScratch + "XXXXXX") {
        if (!::mkdtemp(path_.data())) throw failure("there is no temporary directory");
        std::filesystem::create_directory(home());
    }
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    const std::string& path() const { return path_; }
    std::string home() const { return path_ + "/home"; }

  private:
    std::string path_;
};

std::vector<std::string> argumentsOf(const Check& check, const Settings& settings, const std::string& home) {
    std::vector<std::string> arguments{"hpi-check-plugin", "--in-process",
                                       "--only",           std::string(check.name),
                                       "--seed",           std::to_string(settings.seed),
                                       "--rounds",         std::to_string(settings.rounds),
                                       "--home",           home};
    if (settings.thorough) arguments.emplace_back("--thorough");
    if (settings.strict) arguments.emplace_back("--strict");
    arguments.push_back(settings.library);
    return arguments;
}

/// In the new process, between fork and exec: only what is safe there.
[[noreturn]] void become(char* const* arguments, const char* directory, int findings, int situation,
                         int output) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // Away from the numbers that they shall have.
    findings = ::fcntl(findings, F_DUPFD, 10);
    situation = ::fcntl(situation, F_DUPFD, 10);
    output = ::fcntl(output, F_DUPFD, 10);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    ::dup2(findings, kFindings);
    ::dup2(situation, kSituation);
    for (const int descriptor : {findings, situation, output}) ::close(descriptor);
    if (::chdir(directory) == 0) ::execv("/proc/self/exe", arguments);
    ::_exit(127);
}

void take(Outcome& outcome, const std::string& line, bool& done) {
    const std::string text = line.size() > 2 ? line.substr(2) : std::string();
    switch (line.empty() ? ' ' : line.front()) {
        case 'F':
            outcome.faults.push_back(text);
            break;
        case 'R':
            outcome.remarks.push_back(text);
            break;
        case 'V': {
            const auto blank = text.find(' ');
            outcome.figures.emplace_back(text.substr(0, blank),
                                         UTILS::readNumber(text.substr(blank + 1)).value_or(0.0));
            break;
        }
        case 'D':
            done = true;
            break;
        default:
            break;
    }
}

std::string ending(int status) {
    if (WIFSIGNALED(status))
        return std::string("it dies of signal ")
            .append(std::to_string(WTERMSIG(status)))
            .append(" (")
            .append(::strsignal(WTERMSIG(status)))
            .append(")");
    return "the process ends with status " + std::to_string(WEXITSTATUS(status));
}

std::string endOf(const std::string& text, std::size_t lines) {
    std::size_t at = text.size();
    while (at > 0 && (text[at - 1] != '\n' || at == text.size() || lines-- > 1)) --at;
    return text.substr(at);
}

/// What is written without end goes: more follows.
void keepShort(const std::string& output) {
    constexpr std::uintmax_t kMost = 1 << 20;
    std::error_code ignored;
    if (const auto size = std::filesystem::file_size(output, ignored); !ignored && size > kMost)
        std::filesystem::resize_file(output, 0, ignored);
}

std::string tailOf(const std::string& path) {
    constexpr std::streamoff kMost = 1 << 16;
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file.tellg();
    file.seekg(std::max<std::streamoff>(0, size - kMost));
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Those that a check has left come to this process, whatever session and group they have made.
void endOrphans() {
    constexpr int kGenerations = 100;
    for (int i = 0; i < kGenerations; ++i) {
        const auto processes = childProcesses();
        if (processes.empty()) return;
        for (const int process : processes) {
            ::kill(process, SIGKILL);
            ::waitpid(process, nullptr, 0);
        }
    }
}

/// What users have, and developers often do not: with a comma in numbers, where there is such a locale.
const char* usersLocale() {
    for (const char* const name : {"de_DE.UTF-8", "fr_FR.UTF-8"})
        if (const locale_t locale = ::newlocale(LC_ALL_MASK, name, nullptr))
            return ::freelocale(locale), name;
    return "C.UTF-8";
}

}  // namespace

void heedSignals() {
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
        action.sa_handler = [](int number) { endSignal = number; };
        ::sigaction(signal, &action, nullptr);
    }
}

Outcome runCheck(const Check& check, const Settings& settings, const Limits& limits) {
    using Clock = std::chrono::steady_clock;
    const Scratch scratch;
    const std::string home = scratch.home(), output = scratch.path() + "/output";
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw failure("no pipe");
    const UTILS::Descriptor reading(ends[0]);
    auto writing = std::make_unique<UTILS::Descriptor>(ends[1]);
    const UTILS::Descriptor shared(::memfd_create("situation", MFD_CLOEXEC));
    if (!shared.isOpen() || ::ftruncate(shared.get(), sizeof(Situation)) != 0) throw failure("no memory");
    Situation* const situation = mapSituation(shared.get());
    if (!situation) throw failure("no memory");
    const UTILS::Descriptor log(::open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));

    // What a check leaves behind comes here.
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    std::vector<std::string> arguments = argumentsOf(check, settings, home);
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    const auto begin = Clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(Clock::now() - begin).count(); };
    const pid_t child = ::fork();
    if (child < 0) throw failure("no process");
    if (child == 0) become(pointers.data(), home.c_str(), writing->get(), shared.get(), log.get());
    writing.reset();

    Outcome outcome;
    std::string lines;
    bool done = false, isOpen = true;
    std::string excess;
    const auto hasEnded = [child] {
        siginfo_t info{};
        return ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               info.si_pid == child;
    };
    for (;;) {
        if (endSignal) break;
        if (elapsed() > limits.seconds)
            excess = "it takes longer than " + UTILS::writeNumber(limits.seconds) + " seconds";
        else if (residentOf(child) > limits.mebibytes * 1024 * 1024)
            excess = "it takes more than " + UTILS::writeNumber(limits.mebibytes) + " MiB of memory";
        if (!excess.empty()) break;
        keepShort(output);
        constexpr int kLookAgain = 100, kSoon = 5;  // milliseconds
        pollfd waiting{isOpen ? reading.get() : -1, POLLIN, 0};
        if (::poll(&waiting, 1, isOpen ? kLookAgain : kSoon) <= 0) {
            // What it has started may hold the pipe open, or it may have closed it itself.
            if (hasEnded()) break;
            continue;
        }
        char buffer[4096];
        const auto count = ::read(reading.get(), buffer, sizeof buffer);
        isOpen = count > 0;
        if (!isOpen) continue;
        lines.append(buffer, static_cast<std::size_t>(count));
        for (std::size_t end; (end = lines.find('\n')) != std::string::npos; lines.erase(0, end + 1))
            take(outcome, lines.substr(0, end), done);
    }
    // What it has started, too.
    ::kill(-child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    endOrphans();
    if (endSignal) {
        ::munmap(situation, sizeof *situation);
        throw Ended{endSignal};
    }
    outcome.seconds = elapsed();

    const std::string where = situation->text();
    const auto fault = [&](const std::string& text) {
        outcome.faults.push_back(text + (where.empty() ? "" : " (" + UTILS::printable(where) + ")"));
    };
    if (!excess.empty())
        fault(excess);
    else if (!done || (status != 0 && outcome.faults.empty()))
        fault(ending(status) + (done ? " once the check is over" : ""));
    ::munmap(situation, sizeof *situation);
    outcome.output = endOf(tailOf(output), 20);
    return outcome;
}

int runHere(const Check& check, const Settings& given) {
    // A process that was made for it has what it shares; one that was not tells the person.
    const bool isShared = !given.home.empty();
    static Situation own;
    Situation* const shared = isShared ? mapSituation(kSituation) : nullptr;
    Situation& situation = shared ? *shared : own;
    const std::string directory = std::filesystem::current_path();
    std::unique_ptr<Scratch> scratch;
    Settings settings = given;
    if (isShared) {
        ::fcntl(kFindings, F_SETFD, FD_CLOEXEC);
        ::close(kSituation);
        // What is orphaned comes here, and is seen.
        ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    } else {
        scratch = std::make_unique<Scratch>();
        settings.home = scratch->home();
        std::filesystem::current_path(settings.home);
    }
    ::setenv("HOME", settings.home.c_str(), 1);
    ::setenv("LC_ALL", usersLocale(), 1);
    Findings findings(isShared ? kFindings : STDOUT_FILENO, situation, !isShared);
    Context context{settings, findings, situation};
    try {
        check.run(context);
    } catch (const std::exception& error) {
        findings.fault(error.what());
    }
    situation.setEntry({});
    situation.setRound({});
    findings.done();
    std::filesystem::current_path(directory);
    return findings.faults() ? 1 : 0;
}

}  // namespace kit
