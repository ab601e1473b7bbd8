#include "sandbox/Log.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "common/Notify.h"
#include "common/Printable.h"

namespace sandbox {

namespace {

/// A plug-in that logs in a loop must not eat the memory: the oldest half goes then.
constexpr std::size_t kMaximumEntries = 20000;

}  // namespace

QString LogEntry::shown() const {
    const auto printable = [](const QString& line) {
        return QString::fromStdString(UTILS::printable(line.toStdString(), UTILS::kLongestShown));
    };
    QStringList lines;
    for (const QString& line : text.split('\n')) lines << printable(line);
    return QString("%1  %2: ").arg(Log::severityName(severity), printable(source)) + lines.join("\n    ");
}

void Log::setEcho(bool echo) {
    echo_ = echo;
    if (!echo) return;
    for (const LogEntry& entry : entries_) std::fprintf(stderr, "%s\n", qPrintable(entry.shown()));
}

void Log::add(int severity, const QString& source, const QString& text) {
    if (entries_.size() >= kMaximumEntries)
        entries_.erase(entries_.begin(), entries_.begin() + kMaximumEntries / 2);
    entries_.push_back({severity, source, text.trimmed()});
    const LogEntry entry = entries_.back();
    if (echo_) std::fprintf(stderr, "%s\n", qPrintable(entry.shown()));
    emit added(entry);
}

void Log::misuse(const QString& source, const QString& text) {
    misuses_ << source + ": " + text;
    add(halNotify::Error, source, "misuse of the host: " + text);
}

QStringList Log::takeMisuses() {
    return std::exchange(misuses_, {});
}

QString Log::severityName(int severity) {
    static constexpr std::array names = {"always", "fatal", "error", "warning", "notice", "info", "debug"};
    return names[static_cast<std::size_t>(std::clamp(severity, 0, static_cast<int>(names.size()) - 1))];
}

FileMessages::~FileMessages() {
    for (const auto& [severity, count] : counts_)
        if (count > Log::kMostOfAKind)
            log_.add(severity, "host",
                     QString("%1: %2 more messages of this kind").arg(file_).arg(count - Log::kMostOfAKind));
}

void FileMessages::add(int severity, std::size_t line, const std::string& text) {
    if (++counts_[severity] > Log::kMostOfAKind) return;
    log_.add(severity, "host", QString("%1:%2: %3").arg(file_).arg(line).arg(QString::fromStdString(text)));
}

}  // namespace sandbox
