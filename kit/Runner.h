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
    std::string
        output;  ///< what the plug-in wrote meanwhile, its messages to the host included; the end of it
};

/// Runs one check in a new process of this same program, in a directory of its own, which is HOME, too. The
/// process is ended when it takes longer; a signal, an exit before the end and the time limit are faults, and
/// tell what was going on.
/// \param limitSeconds of the clock
/// \throws std::runtime_error when no process can be made
Outcome runCheck(const Check& check, const Settings& settings, double limitSeconds);

/// The same in this process, as the new process does and as a debugger wants it. \return the exit status
int runHere(const Check& check, const Settings& settings);

}  // namespace kit
