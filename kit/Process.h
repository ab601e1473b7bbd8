#pragma once

#include <map>
#include <string>
#include <vector>

namespace kit {

/// What belongs to the whole process, and what a plug-in must leave as it was: open files, threads, child
/// processes, signals, locale, directory, mask of new files, environment, rounding.
class ProcessState {
  public:
    static ProcessState now();
    /// What differs, each with its name; nothing when all is the same.
    std::vector<std::string> differences(const ProcessState& before) const;

  private:
    std::map<std::string, std::string> facts_;
};

/// Memory of this process, in bytes.
struct Memory {
    double resident = 0.0;
    double heap = 0.0;  ///< handed out by malloc and not freed
    static Memory now();
    /// Whether the figures mean something: sanitizers and valgrind keep memory on their own account.
    static bool isMeasurable();
};

/// The processes that this one has started and not waited for, and those that came to it.
std::vector<int> childProcesses();

/// Whether a directory is one that a process of this program makes for itself, and may be emptied.
bool isScratch(const std::string& directory);
/// How the names of such directories begin, in the directory for temporary files.
constexpr const char* kScratch = "/hpi-check-";

/// What another process has in memory, in bytes; 0 when it is gone.
double residentOf(int process);

/// The names of the symbols that a library defines and shows, sorted, without weak ones; nothing when it is
/// no 64-bit ELF file.
std::vector<std::string> visibleSymbols(const std::string& library);

}  // namespace kit
