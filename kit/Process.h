#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace kit {

/// What belongs to the whole process, and what a plug-in must leave as it was: open files, threads, child
/// processes, signals and their mask, timers, the handlers of std::terminate and new, locale, directory, mask
/// of new files, limits, environment, the standard streams, and how numbers are rounded, flushed and trapped.
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
    double mapped = 0.0;  ///< of the address space, used or not
    double heap = 0.0;    ///< handed out by malloc and not freed
    static Memory now();
    /// Whether the figures mean something: sanitizers and valgrind keep memory on their own account.
    static bool isMeasurable();
};

/// The names of the libraries that this process has loaded.
std::set<std::string> mappedLibraries();

/// The processes that this one has started and not waited for, and those that came to it.
std::vector<int> childProcesses();

/// Whether a directory is one that a process of this program makes for itself, and may be emptied.
bool isScratch(const std::string& directory);
/// How the names of such directories begin, in the directory for temporary files.
constexpr const char* kScratch = "/hpi-check-";

/// What another process has in memory, in bytes; 0 when it is gone.
double residentOf(int process);

}  // namespace kit
