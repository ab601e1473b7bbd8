#include "kit/probe/Report.h"

#include <algorithm>
#include <set>
#include <utility>

namespace probe {

std::size_t Report::add(int service, std::string expectation, Verdict verdict, std::string answer) {
    entries_.push_back({service, std::move(expectation), verdict, std::move(answer)});
    return entries_.size() - 1;
}

void Report::decide(std::size_t entry, Verdict verdict, std::string answer) {
    entries_[entry].verdict = verdict;
    entries_[entry].answer = std::move(answer);
}

void Report::end() {
    for (Entry& entry : entries_)
        if (entry.verdict == Verdict::Waits) entry.verdict = Verdict::Wrong, entry.answer = "it never came";
}

int Report::count(Verdict verdict) const {
    return static_cast<int>(
        std::ranges::count_if(entries_, [verdict](const Entry& entry) { return entry.verdict == verdict; }));
}

std::string Report::summary() const {
    const auto part = [&](Verdict verdict, const char* name) {
        return std::to_string(count(verdict)).append(" ").append(name);
    };
    return part(Verdict::Holds, "hold, ") + part(Verdict::LeftOut, "left out, ") +
           part(Verdict::Wrong, "wrong, ") + part(Verdict::Waits, "wait, ") +
           part(Verdict::Skipped, "skipped");
}

std::string Report::text(int underWay) const {
    const char* const names[] = {"holds    ", "left out ", "WRONG    ", "waits    ", "skipped  "};
    std::string text;
    std::set<int> leftOut;
    for (const Entry& entry : entries_) {
        std::string answer = entry.answer;
        std::ranges::replace(answer, '\n', ' ');
        text.append(names[static_cast<int>(entry.verdict)]);
        if (entry.service) text.append(std::to_string(entry.service)).append(" ");
        text.append(entry.expectation).append(answer.empty() ? "" : ": " + answer).append("\n");
        if (entry.verdict == Verdict::LeftOut && entry.service) leftOut.insert(entry.service);
    }
    if (underWay)
        return text + names[static_cast<int>(Verdict::Wrong)] + std::to_string(underWay) +
               " the call returns: it has not, and the report ends here\n";
    if (!leftOut.empty()) {
        text.append("This host leaves out something of");
        for (const int service : leftOut) text.append(" ").append(std::to_string(service));
        text.append("\n");
    }
    return text.append(summary()).append("\n");
}

}  // namespace probe
