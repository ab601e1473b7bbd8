#include "kit/Findings.h"

#include <cstdio>

#include <unistd.h>

#include "common/NumberText.h"
#include "common/Printable.h"

namespace kit {

void Situation::setRound(const std::string& text) {
    std::snprintf(round, sizeof round, "%s", text.c_str());
}

void Situation::setEntry(const std::string& text) {
    std::snprintf(entry, sizeof entry, "%s", text.c_str());
    service = 0;
}

std::string Situation::text() const {
    std::string text = round;
    if (*entry) text.append(text.empty() ? "in " : ": in ").append(entry);
    if (service) text.append(", behind service ").append(std::to_string(service));
    return text;
}

void Findings::tell_(Kind kind, const std::string& text) {
    constexpr std::size_t kMost = 100;
    const std::lock_guard lock(mutex_);
    if (kind == Fault) ++faults_;
    if (!known_.insert(text).second) return;
    const std::string where = situation_.text();
    const std::string behind = where.empty() ? "" : " (" + UTILS::printable(where) + ")";
    if (++told_[kind] <= kMost) write_(kind, UTILS::printable(text, UTILS::kLongestShown) + behind);
    if (told_[kind] == kMost) write_(kind, "these are the first hundred, further ones are not told");
}

void Findings::figure(const std::string& name, double value) {
    const std::lock_guard lock(mutex_);
    write_(Figure, name + " " + UTILS::writeNumber(value));
}

void Findings::done() {
    const std::lock_guard lock(mutex_);
    write_(Done, !isRead_ ? "" : faults_ ? "there are faults" : "no fault");
}

void Findings::write_(Kind kind, const std::string& text) {
    static constexpr const char* kLetters[] = {"F ", "R ", "V ", "D "};
    static constexpr const char* kWords[] = {"fault: ", "remark: ", "", ""};
    const std::string line = (isRead_ ? kWords : kLetters)[kind] + text + "\n";
    std::size_t written = 0;
    while (written < line.size()) {
        const auto count = ::write(descriptor_, line.data() + written, line.size() - written);
        if (count <= 0) return;
        written += static_cast<std::size_t>(count);
    }
}

}  // namespace kit
