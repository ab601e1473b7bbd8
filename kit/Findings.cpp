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

void Findings::tell_(char kind, const std::string& text) {
    const std::lock_guard lock(mutex_);
    if (kind == 'F') ++faults_;
    if (!told_.insert(text).second) return;
    const std::string where = situation_.text();
    write_(std::string(1, kind).append(" ").append(UTILS::printable(text, UTILS::kLongestShown)) +
           (where.empty() ? "" : " (" + UTILS::printable(where) + ")"));
}

void Findings::figure(const std::string& name, double value) {
    const std::lock_guard lock(mutex_);
    write_("V " + name + " " + UTILS::writeNumber(value));
}

void Findings::done() {
    const std::lock_guard lock(mutex_);
    write_("D ");
}

void Findings::write_(const std::string& line) {
    const std::string whole = line + "\n";
    std::size_t written = 0;
    while (written < whole.size()) {
        const auto count = ::write(descriptor_, whole.data() + written, whole.size() - written);
        if (count <= 0) return;
        written += static_cast<std::size_t>(count);
    }
}

}  // namespace kit
