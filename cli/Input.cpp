#include "cli/Input.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/Printable.h"
#include "common/Strings.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

bool isOverlayFile(const fs::path& path) {
    return UTILS::equalsIgnoringCase(path.extension().string(), ".zel");
}

void addDirectory(const std::string& directory, std::vector<std::string>& files, Failures& failures) {
    std::error_code error;
    std::vector<std::string> found;
    fs::recursive_directory_iterator at(directory, error);
    while (!error && at != fs::recursive_directory_iterator()) {
        std::error_code noFile;
        if (isOverlayFile(at->path()) && at->is_regular_file(noFile)) found.push_back(at->path().string());
        at.increment(error);
    }
    if (error)
        failures.report(directory, error.message());
    else if (found.empty())
        failures.report(directory, "There is no .zel file in this directory");
    std::sort(found.begin(), found.end());
    files.insert(files.end(), found.begin(), found.end());
}

}  // namespace

void Failures::report(const std::string& file, const std::string& reason) {
    any_ = true;
    std::cerr << "zel: " << UTILS::printable(file) << ": " << reason << '\n';
}

std::vector<std::string> inputFiles(const std::vector<std::string>& arguments, bool recursive,
                                    Failures& failures) {
    std::vector<std::string> files;
    for (const std::string& argument : arguments) {
        struct stat status {};
        if (argument == kStandardInput)
            files.push_back(argument);
        else if (stat(argument.c_str(), &status) != 0)
            failures.report(argument, std::strerror(errno));
        else if (S_ISREG(status.st_mode) || S_ISFIFO(status.st_mode))
            files.push_back(argument);
        else if (!S_ISDIR(status.st_mode))
            failures.report(argument, "Is a device, not a file");
        else if (recursive)
            addDirectory(argument, files, failures);
        else
            failures.report(argument, "Is a directory (use -r for the .zel files in it)");
    }
    return files;
}

std::uint64_t totalSize(const std::vector<std::string>& files) {
    std::uint64_t total = 0;
    for (const std::string& file : files) {
        struct stat status {};
        if (file != kStandardInput && stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode))
            total += static_cast<std::uint64_t>(status.st_size);
    }
    return total;
}

class Input::Buffer : public std::streambuf {
  public:
    Buffer(const std::string& file, Progress& progress)
        : progress_(progress),
          file_(file == kStandardInput ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (file_ < 0) error_ = errno;
    }
    ~Buffer() override {
        if (file_ > STDIN_FILENO) close(file_);
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    int error() const { return error_; }

  protected:
    int_type underflow() override {
        const std::size_t got = readSome_(block_.data(), block_.size());
        if (got == 0) return traits_type::eof();
        setg(block_.data(), block_.data(), block_.data() + got);
        return traits_type::to_int_type(*gptr());
    }

    /// Large pieces come straight from the file.
    std::streamsize xsgetn(char* to, std::streamsize size) override {
        std::streamsize done = std::min<std::streamsize>(size, egptr() - gptr());
        if (done > 0) std::memcpy(to, gptr(), static_cast<std::size_t>(done));
        gbump(static_cast<int>(done));
        while (done < size) {
            const std::size_t got = readSome_(to + done, static_cast<std::size_t>(size - done));
            if (got == 0) break;
            done += static_cast<std::streamsize>(got);
        }
        return done;
    }

  private:
    /// 0 at the end, or when that is not possible.
    std::size_t readSome_(char* to, std::size_t size) {
        if (error_ != 0) return 0;
        ssize_t got = 0;
        do {
            got = read(file_, to, size);
        } while (got < 0 && errno == EINTR);
        if (got < 0) error_ = errno;
        if (got <= 0) return 0;
        progress_.advance(static_cast<std::uint64_t>(got));
        return static_cast<std::size_t>(got);
    }

    Progress& progress_;
    int file_;
    int error_ = 0;
    std::array<char, 1 << 16> block_;
};

Input::Input(const std::string& file, Progress& progress)
    : buffer_(std::make_unique<Buffer>(file, progress)), stream_(buffer_.get()) {}

Input::~Input() = default;

std::string Input::readAll() {
    constexpr std::size_t step = std::size_t(1) << 20U;
    std::string text;
    while (stream_) {
        const std::size_t before = text.size();
        text.resize(before + step);
        stream_.read(text.data() + before, step);
        text.resize(before + static_cast<std::size_t>(stream_.gcount()));
    }
    return text;
}

std::string Input::error() const {
    return buffer_->error() == 0 ? std::string() : std::strerror(buffer_->error());
}

}  // namespace cli
