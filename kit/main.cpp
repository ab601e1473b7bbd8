// hpi-check-plugin: holds a plug-in library against the contract. kit/Check.h tells how it is built.
#include <algorithm>
#include <cmath>
#include <csignal>
#include <deque>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string_view>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "common/Printable.h"
#include "kit/LibraryFile.h"
#include "kit/Runner.h"

namespace kit {

namespace {

enum Status { kPassed = 0, kFailed = 1, kUnusable = 2 };

struct Options {
    Settings settings;
    std::vector<std::string> only;
    Limits limits;
    bool json = false, list = false, verbose = false, inProcess = false;
};

std::vector<const Check*> wanted(const Options& options) {
    std::vector<const Check*> chosen;
    for (const Check& check : checks()) {
        const bool named = std::ranges::find(options.only, check.name) != options.only.end();
        const bool due = options.settings.strict || !check.beyond;
        if (named || (options.only.empty() && due)) chosen.push_back(&check);
    }
    return chosen;
}

bool hasPassed(const Outcome& outcome, const Settings& settings) {
    return outcome.faults.empty() && (!settings.strict || outcome.remarks.empty());
}

/// The last lines as a terminal may show them, behind some blanks.
std::string indented(const std::string& text, std::size_t most) {
    std::istringstream stream(text);
    std::deque<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
        if (lines.size() > most) lines.pop_front();
    }
    std::string result;
    for (const std::string& line : lines)
        result.append(10, ' ').append(UTILS::printable(line, UTILS::kLongestShown)).append("\n");
    return result;
}

void print(const Check& check, const Outcome& outcome, const Options& options) {
    const bool passed = hasPassed(outcome, options.settings);
    std::cout << (passed ? "ok      " : "FAULT   ") << check.name << ": " << check.about << '\n';
    for (const std::string& fault : outcome.faults) std::cout << "        fault: " << fault << '\n';
    for (const std::string& remark : outcome.remarks) std::cout << "        remark: " << remark << '\n';
    if (options.verbose) {
        std::cout << "        " << std::round(outcome.seconds * 10.0) / 10.0 << " s";
        for (const auto& [name, value] : outcome.figures) std::cout << ", " << name << ' ' << value;
        std::cout << '\n';
    }
    if (!passed && !outcome.output.empty())
        std::cout << "        it has written:\n" << indented(outcome.output, options.verbose ? 100 : 4);
    std::cout.flush();
}

nlohmann::ordered_json toJson(const Check& check, const Outcome& outcome, const Settings& settings) {
    nlohmann::ordered_json figures = nlohmann::ordered_json::object();
    for (const auto& [name, value] : outcome.figures) figures[name] = value;
    return {
        {"name", check.name},         {"about", check.about},     {"passed", hasPassed(outcome, settings)},
        {"seconds", outcome.seconds}, {"faults", outcome.faults}, {"remarks", outcome.remarks},
        {"figures", figures},         {"output", outcome.output}};
}

int runAll(const Options& options) {
    const auto chosen = wanted(options);
    if (options.inProcess) return runHere(*chosen.front(), options.settings);
    heedSignals();
    nlohmann::ordered_json results = nlohmann::ordered_json::array();
    std::size_t failed = 0;
    for (const Check* const check : chosen) {
        const Outcome outcome = runCheck(*check, options.settings, options.limits);
        if (!hasPassed(outcome, options.settings)) ++failed;
        if (options.json)
            results.push_back(toJson(*check, outcome, options.settings));
        else
            print(*check, outcome, options);
    }
    if (options.json) {
        const nlohmann::ordered_json report{{"library", options.settings.library},
                                            {"seed", options.settings.seed},
                                            {"passed", failed == 0},
                                            {"checks", results}};
        std::cout << report.dump(2, ' ', true, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    } else {
        std::cout << chosen.size() << (chosen.size() == 1 ? " check, " : " checks, ") << failed
                  << " with faults\n";
    }
    return failed ? kFailed : kPassed;
}

void printList(bool json) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Check& check : checks()) {
        list.push_back({{"name", check.name}, {"about", check.about}, {"strict", check.beyond}});
        if (!json)
            std::cout << check.name << ": " << check.about << (check.beyond ? " (--strict)" : "") << '\n';
    }
    if (json) std::cout << list.dump(2) << '\n';
}

/// Numbers are decimal, whatever they begin with.
std::string asDecimal(std::string& text) {
    const bool isNumber = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    if (!isNumber) return "\"" + UTILS::printable(text) + "\" is no whole number";
    text.erase(0, std::min(text.find_first_not_of('0'), text.size() - 1));
    return {};
}

int run(int argc, char** argv) {
    Options options;
    Settings& settings = options.settings;
    CLI::App app("Holds a plug-in library against the contract between HALVIS hosts and their plug-ins.",
                 "hpi-check-plugin");
    app.set_version_flag("--version", "hpi-check-plugin " KIT_VERSION);
    app.footer("Exit codes: 0 no fault, 1 faults, 2 wrongly called.");
    const CLI::Validator decimal(asDecimal, "");
    app.add_option("LIBRARY", settings.library, "The plug-in");
    app.add_flag("--list", options.list, "Tell what the checks are, and run none");
    app.add_option("--only", options.only, "Run the check of that name; may be given again")
        ->allow_extra_args(false);
    app.add_option("--seed", settings.seed, "Of all that happens by chance; the same makes the same sessions")
        ->transform(decimal)
        ->check(CLI::Range(0.0, 9e15, "NUMBER"));
    app.add_option("--rounds", settings.rounds, "How often \"rounds\" loads and unloads the library")
        ->transform(decimal)
        ->check(CLI::Range(1, 1000000));
    app.add_option("--limit", options.limits.seconds, "Seconds that a check may take")
        ->check(CLI::Range(0.1, 1e6));
    app.add_option("--memory", options.limits.mebibytes, "MiB of memory that a check may take")
        ->check(CLI::Range(0.1, 1e6));
    app.add_flag("--thorough", settings.thorough, "Try each service call of a session, not only some");
    app.add_flag("--strict", settings.strict,
                 "Also what the contract does not ask; and let remarks count as faults");
    app.add_flag("--json", options.json, "Print JSON");
    app.add_flag("-v,--verbose", options.verbose, "Print times and figures");
    app.add_option("--home", settings.home)->group("");  // between processes of this program
    app.add_flag("--in-process", options.inProcess,
                 "Run one check in this process, for a debugger or a memory checker");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kPassed : kUnusable;
    }
    if (options.list) return printList(options.json), kPassed;
    for (const std::string& name : options.only)
        if (std::ranges::find(checks(), name, &Check::name) == checks().end())
            throw std::runtime_error("there is no check \"" + name + "\"; --list names them");
    if (options.inProcess && options.only.size() != 1)
        throw std::runtime_error("--in-process is for one check: name it with --only");
    if (options.inProcess && options.json) throw std::runtime_error("--in-process prints no JSON");
    if (!std::isfinite(options.limits.seconds) || !std::isfinite(options.limits.mebibytes))
        throw std::runtime_error("a limit is a number");
    if (settings.library.empty()) throw std::runtime_error("which library?");
    judgeFile(settings.library);
    settings.library = std::filesystem::canonical(settings.library);
    return runAll(options);
}

}  // namespace

}  // namespace kit

int main(int argc, char** argv) {
    try {
        const int status = kit::run(argc, argv);
        std::cout.flush();
        if (std::cout) return status;
        std::cerr << "hpi-check-plugin: the output could not be written\n";
    } catch (const kit::Ended& ended) {
        // Nothing is left of the check; the caller is told by the signal.
        std::signal(ended.signal, SIG_DFL);
        std::raise(ended.signal);
    } catch (const std::exception& error) {
        std::cerr << "hpi-check-plugin: " << error.what() << '\n';
    }
    return kit::kUnusable;
}
