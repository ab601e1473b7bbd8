#include "gui/OtherFormats.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>

#include <fcntl.h>
#include <fx.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/Descriptor.h"
#include "common/Files.h"
#include "common/Strings.h"

namespace UTILS {

const char* const kOtherFormats = "*.geojson *.json *.kml *.kmz *.gpx *.csv *.gpkg *.shp";

namespace {

constexpr const char* kProgram = "zel";

/// Runs a program; what it says on its standard error is appended to `said`. \return 0, or the system's error
/// number
int run(const char* program, char* const* arguments, std::string& said) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return errno;
    const Descriptor readEnd(ends[0]);
    std::optional<Descriptor> writeEnd(ends[1]);
    posix_spawn_file_actions_t actions;
    if (const int error = ::posix_spawn_file_actions_init(&actions); error != 0) return error;
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, writeEnd->get(), STDERR_FILENO);
    pid_t child = 0;
    const int error = ::posix_spawn(&child, program, &actions, nullptr, arguments, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    // Reading ends when the child has closed its own.
    writeEnd.reset();
    if (error != 0) return error;
    char block[4096];
    while (true) {
        const ssize_t count = ::read(readEnd.get(), block, sizeof block);
        if (count > 0)
            said.append(block, static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            break;
    }
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
    return 0;
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (const std::string_view line = trimmed(text.substr(0, end)); !line.empty())
            lines.emplace_back(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

}  // namespace

bool isOtherFormat(const std::string& fileName) {
    const std::size_t dot = fileName.rfind('.');
    if (dot == std::string::npos || fileName.find('/', dot) != std::string::npos) return false;
    const std::string pattern = std::string("*").append(lowerCase(fileName.substr(dot))).append(" ");
    return (std::string(kOtherFormats) + " ").find(pattern) != std::string::npos;
}

std::string readOtherFormat(const std::string& fileName, std::string& text,
                            std::vector<std::string>& messages) {
    const FX::FXString program = FX::FXPath::search(FX::FXSystem::getExecPath(), kProgram);
    if (program.empty()) return "the zel command, which reads such files, is not installed";
    std::string directory = temporaryDirectory() + "/overlayeditor-XXXXXX";
    if (!::mkdtemp(directory.data())) return reasonOf(errno);
    std::string out = directory + "/overlay.zel";
    std::string in = fileName;
    std::string name = kProgram;
    std::string command = "convert";
    char* const arguments[] = {name.data(), command.data(), in.data(), out.data(), nullptr};
    std::string said;
    const int error = run(program.text(), arguments, said);
    std::string problem = error != 0 ? reasonOf(error) : readFile(out, text);
    ::unlink(out.c_str());
    ::rmdir(directory.c_str());
    messages = linesOf(said);
    // Of what becomes of the file, the user knows the file.
    for (std::string& line : messages)
        if (line.starts_with(out)) line.replace(0, out.size(), fileName);
    if (!problem.empty() && !messages.empty()) {
        // What the command says last is why there is no file.
        problem = messages.back();
        if (problem.starts_with("zel: ")) problem.erase(0, 5);
        messages.pop_back();
    }
    return problem;
}

}  // namespace UTILS
