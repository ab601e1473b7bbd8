#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "kit/Findings.h"

/// The kit holds plug-ins against pi/HostContract.h.
///
/// A check is a function that loads the library under test, once or often, plays a host and its user, and
/// tells Findings what breaks the contract. Each check runs in a process of its own (Runner), so that a
/// crash, a hang or an exit is one check's finding and not the end of the others. From the top:
///
///     main        options, and the report
///     Runner      a process for a check: time limit, signals, what the check has told until then
///     checks/     the checks, and the table of them
///     Session     a plug-in's whole life, in which Hands do what a user does
///     Plugin      the library and its exports; every entry is watched for exceptions and results
///     Host        the services: it keeps what it is told, judges each call, and fails where it is asked to
///     Findings    what was found, told at once; Situation, what was going on
///
/// Includes run down that list only.
namespace kit {

/// How the checks are to be made.
struct Settings {
    std::string library;     ///< absolute path of the plug-in
    std::string home;        ///< absolute path of a directory that was made for the process alone
    std::uint64_t seed = 1;  ///< of all that happens by chance; the same seed makes the same sessions
    int rounds = 150;        ///< how often "rounds" loads and unloads the library
    bool thorough = false;   ///< every service call in turn, not only some of a session
    bool strict = false;     ///< also what the contract does not ask; remarks count as faults
};

struct Context {
    const Settings& settings;
    Findings& findings;
    Situation& situation;
};

struct Check {
    std::string_view name;
    std::string_view about;  ///< what holds when it passes
    void (*run)(Context&);
    bool beyond = false;  ///< the contract does not ask it: only with Settings::strict
};

/// All checks, in the order in which they run.
std::span<const Check> checks();

}  // namespace kit
