#include "gui/LaunchHtmlFile.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <fx.h>
#include <sys/wait.h>
#include <unistd.h>

namespace UTILS {

namespace {

constexpr const char* kOpener = "xdg-open";

/// Starts a program that nobody waits for. \return 0, or the system's error number
int startDetached(const char* program, const char* argument) {
    int report[2];
    if (::pipe2(report, O_CLOEXEC) != 0) return errno;
    // The child starts the program and ends at once; the program then belongs to the system.
    const pid_t child = ::fork();
    if (child < 0) {
        const int error = errno;
        ::close(report[0]);
        ::close(report[1]);
        return error;
    }
    if (child == 0) {
        int error = 0;
        const pid_t program_id = ::fork();
        if (program_id == 0) {
            ::execl(program, program, argument, static_cast<char*>(nullptr));
            error = errno;
        } else if (program_id < 0) {
            error = errno;
        }
        // Nothing is left to do about a report that cannot be written.
        if (error != 0 && ::write(report[1], &error, sizeof error) < 0) ::_exit(2);
        ::_exit(0);
    }
    ::close(report[1]);
    int error = 0;
    // Ends when the program has replaced its process, which closes the pipe.
    while (::read(report[0], &error, sizeof error) < 0 && errno == EINTR) continue;
    ::close(report[0]);
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
    return error;
}

}  // namespace

std::string LaunchHtmlFile(const std::string& address) {
    const FX::FXString opener = FX::FXPath::search(FX::FXSystem::getExecPath(), kOpener);
    if (opener.empty()) return std::string(kOpener) + ": command not found";
    const int error = startDetached(opener.text(), address.c_str());
    return error == 0 ? std::string() : std::strerror(error);
}

}  // namespace UTILS
