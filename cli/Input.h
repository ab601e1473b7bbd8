#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <vector>

#include "cli/Progress.h"

namespace cli {

/// The name that stands for standard input.
inline constexpr const char* kStandardInput = "-";

/// Every failure to read: the exit code is 2 then.
class Failures {
  public:
    /// Prints "zel: <file>: <reason>" on the standard error.
    void report(const std::string& file, const std::string& reason);
    bool any() const { return any_; }

  private:
    bool any_ = false;
};

/// What the arguments name: the files themselves, and with `recursive` the .zel files in directories.
/// Everything that is no file to be read (a directory, a device, nothing at all) is reported.
std::vector<std::string> inputFiles(const std::vector<std::string>& arguments, bool recursive,
                                    Failures& failures);

/// The files' sizes together, those of pipes and of standard input not counted.
std::uint64_t totalSize(const std::vector<std::string>& files);

/// A file or standard input as a stream, read in blocks, which tells its progress.
class Input {
  public:
    Input(const std::string& file, Progress& progress);
    ~Input();

    std::istream& stream() { return stream_; }
    /// The whole text, or what can be read of it.
    std::string readAll();
    /// Why the file could not be opened, or not be read to its end; empty otherwise.
    std::string error() const;

  private:
    class Buffer;
    std::unique_ptr<Buffer> buffer_;
    std::istream stream_;
};

}  // namespace cli
