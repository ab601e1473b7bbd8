#include "gui/OtherFormats.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <fx.h>
#include <poll.h>
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

/// A program that runs, and what it says on its standard error.
class OtherFormatReading::Program {
  public:
    /// \param error gets 0, or the system's error number
    Program(const char* program, char* const* arguments, int& error) {
        int ends[2];
        error = ::pipe2(ends, O_CLOEXEC) != 0 ? errno : 0;
        if (error != 0) return;
        said_.emplace(ends[0]);
        ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
        const Descriptor writeEnd(ends[1]);
        posix_spawn_file_actions_t actions;
        if (error = ::posix_spawn_file_actions_init(&actions); error != 0) return;
        ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_adddup2(&actions, writeEnd.get(), STDERR_FILENO);
        error = ::posix_spawn(&child_, program, &actions, nullptr, arguments, environ);
        ::posix_spawn_file_actions_destroy(&actions);
        if (error != 0) child_ = 0;
    }
    ~Program() {
        if (child_ == 0) return;
        ::kill(child_, SIGKILL);
        end_();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// \param milliseconds -1 to wait for its end \return whether it has ended
    bool wait(int milliseconds) {
        char block[4096];
        while (child_ != 0) {
            const ssize_t count = ::read(said_->get(), block, sizeof block);
            if (count > 0) {
                text_.append(block, static_cast<std::size_t>(count));
            } else if (count < 0 && errno == EAGAIN) {
                pollfd ready{said_->get(), POLLIN, 0};
                if (::poll(&ready, 1, std::exchange(milliseconds, std::min(milliseconds, 0))) == 0)
                    return false;
            } else if (count == 0 || errno != EINTR) {
                // It has closed its end.
                end_();
            }
        }
        return true;
    }
    const std::string& text() const { return text_; }
    /// Whether it has ended well, at most with something to say; also where nobody knows.
    bool isGood() const { return status_ == 0 || (WIFEXITED(status_) && WEXITSTATUS(status_) == 1); }

  private:
    void end_() {
        while (::waitpid(child_, &status_, 0) < 0 && errno == EINTR) continue;
        child_ = 0;
    }

    std::optional<Descriptor> said_;
    pid_t child_ = 0;
    int status_ = 0;
    std::string text_;
};

OtherFormatReading::OtherFormatReading(std::string fileName) : fileName_(std::move(fileName)) {
    const FX::FXString program = FX::FXPath::search(FX::FXSystem::getExecPath(), kProgram);
    if (program.empty()) {
        problem_ = "the zel command, which reads such files, is not installed";
        return;
    }
    directory_ = temporaryDirectory() + "/overlayeditor-XXXXXX";
    if (!::mkdtemp(directory_.data())) {
        problem_ = reasonOf(errno);
        directory_.clear();
        return;
    }
    out_ = directory_ + "/overlay.zel";
    std::string in = fileName_;
    std::string name = kProgram;
    std::string command = "convert";
    char* const arguments[] = {name.data(), command.data(), in.data(), out_.data(), nullptr};
    int error = 0;
    program_ = std::make_unique<Program>(program.text(), arguments, error);
    if (error != 0) problem_ = reasonOf(error);
}

OtherFormatReading::~OtherFormatReading() {
    program_.reset();
    if (directory_.empty()) return;
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

bool OtherFormatReading::wait(std::chrono::milliseconds most) {
    return !problem_.empty() || program_->wait(static_cast<int>(most.count()));
}

std::string OtherFormatReading::take(std::string& text, std::vector<std::string>& messages) {
    if (!problem_.empty()) return problem_;
    program_->wait(-1);
    const bool isMade = program_->isGood() && fileIsFile(out_);
    std::string problem = isMade ? readFile(out_, text) : "the zel command has made no overlay of it";
    messages = linesOf(program_->text());
    // Of what becomes of the file, the user knows the file.
    for (std::string& line : messages)
        if (line.starts_with(out_)) line.replace(0, out_.size(), fileName_);
    if (!problem.empty() && !messages.empty()) {
        // What the command says last is why there is no file.
        problem = messages.back();
        if (problem.starts_with("zel: ")) problem.erase(0, 5);
        messages.pop_back();
    }
    return problem;
}

}  // namespace UTILS
