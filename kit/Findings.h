#pragma once

#include <cstddef>
#include <mutex>
#include <set>
#include <string>

namespace kit {

/// What is going on, in memory that the process which runs the check shares: when the plug-in crashes or
/// hangs, this tells where.
struct Situation {
    char round[160] = {};  ///< which of many tries: "service call 57 is refused"
    char entry[160] = {};  ///< what the host does to the plug-in: "event 16", "button \"Edit\""
    int service = 0;       ///< the service that the plug-in has called last from inside it; 0: none

    void setRound(const std::string& text);
    void setEntry(const std::string& text);
    /// "service call 57 is refused: in event 16, behind service 424"; empty when nothing was going on.
    std::string text() const;
};

/// What a check finds, each thing once. Written at once to the process that runs the check, so that it
/// outlives a crash: a line for each, its kind, a blank, and the text. Of a kind the first hundred are told.
class Findings {
  public:
    /// \param descriptor where the lines go; not owned
    /// \param situation outlives the findings
    /// \param isRead by a person: the kinds are words then
    Findings(int descriptor, const Situation& situation, bool isRead = false)
        : descriptor_(descriptor), isRead_(isRead), situation_(situation) {}

    /// The plug-in breaks the contract. The round in which it was seen first is told with it.
    void fault(const std::string& text) { tell_(Fault, text); }
    /// The contract allows it, or leaves it open; better without.
    void remark(const std::string& text) { tell_(Remark, text); }
    /// A figure for the report.
    void figure(const std::string& name, double value);
    /// The check has come to its end.
    void done();

    std::size_t faults() const { return faults_; }

  private:
    enum Kind { Fault, Remark, Figure, Done };
    void tell_(Kind kind, const std::string& text);
    void write_(Kind kind, const std::string& text);

    int descriptor_;
    bool isRead_;
    const Situation& situation_;
    std::mutex mutex_;  // a plug-in may come on threads of its own, which is one of the faults
    std::set<std::string> known_;
    std::size_t told_[2] = {};  // by kind
    std::size_t faults_ = 0;
};

}  // namespace kit
