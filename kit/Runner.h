#pragma once

#include <string>
#include <utility>
#include <vector>

#include "kit/Check.h"

namespace kit {

/// What became of one check.
struct Outcome {
    std::vector<std::string> faults, remarks;
    std::vector<std::pair<std::string, double>> figures;
    double seconds = 0.0;
    /// The end of what the plug-in wrote meanwhile, its messages to the host included.
    std::string output;
};

/// What a check may take.
struct Limits {
    double seconds = 300.0;  ///< of the clock
    double mebibytes = 4096.0;
};

/// What runCheck throws, once nothing is left of the check, when this process was to be ended.
struct Ended {
    int signal;
};
/// From now on SIGHUP, SIGINT and SIGTERM end a check first. Those that are ignored stay so.
void heedSignals();

/// Runs one check in a new process of this same program, in a directory of its own, which is HOME, too. The
/// process is ended when it takes more than it may; a signal, an exit before the end and a limit are faults,
/// and tell what was going on.
/// \throws std::runtime_error when no process can be made; Ended
Outcome runCheck(const Check& check, const Settings& settings, const Limits& limits);

/// The same in this process, as the new process does and as a debugger wants it; a person reads what is found
/// on the standard output. \return the exit status
int runHere(const Check& check, const Settings& settings);

}  // namespace kit
