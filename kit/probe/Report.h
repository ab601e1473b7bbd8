#pragma once

#include <string>
#include <vector>

#include "pi/HostContract.h"

namespace probe {

/// What became of one expectation.
enum class Verdict {
    Holds,
    LeftOut,  ///< the host refuses it, as it may
    Wrong,
    Waits,    ///< for something that has not come yet
    Skipped,  ///< the person did not do it
};

/// What the contract says of the services, and what the host has answered, in the order of asking.
class Report {
  public:
    /// \param service its number, 0 for what the host does of itself
    /// \return a place that can be changed later, when it is known
    std::size_t add(int service, std::string expectation, Verdict verdict, std::string answer = {});
    void decide(std::size_t entry, Verdict verdict, std::string answer = {});
    Verdict verdictOf(std::size_t entry) const { return entries_[entry].verdict; }
    /// What still waits never came.
    void end();

    int count(Verdict verdict) const;
    /// "57 hold, 3 left out, 0 wrong, 0 wait, 4 skipped"
    std::string summary() const;
    /// A line for each: verdict, service, expectation, answer; then the numbers that are left out; then the
    /// summary.
    /// \param underWay the number of a service whose call has not returned yet; 0 for none
    std::string text(int underWay = 0) const;

  private:
    struct Entry {
        int service;
        std::string expectation;
        Verdict verdict;
        std::string answer;
    };
    std::vector<Entry> entries_;
};

}  // namespace probe
