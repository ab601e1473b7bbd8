#pragma once

#include <QObject>
#include <QString>
#include <vector>

namespace sandbox {

/// What the plug-ins, the libraries and the host itself have to say. Severities are halNotify's: smaller
/// is worse.
struct LogEntry {
    int severity = 0;
    QString source;
    QString text;

    /// As it is shown: "severity  source: text". Nothing in it passes for another entry: further lines are
    /// indented.
    QString shown() const;
};

/// The host's log, oldest entry first. Violations of the host contract are counted apart, so that a test
/// can fail on them.
class Log : public QObject {
    Q_OBJECT

  public:
    void add(int severity, const QString& source, const QString& text);
    /// Reports that a plug-in broke the host contract.
    void misuse(const QString& source, const QString& text);

    const std::vector<LogEntry>& entries() const { return entries_; }
    /// The violations reported since the last call of this function.
    QStringList takeMisuses();
    bool hasMisuses() const { return !misuses_.isEmpty(); }

    /// Also writes each entry to standard error.
    void setEcho(bool echo) { echo_ = echo; }

    static QString severityName(int severity);

  signals:
    void added(const sandbox::LogEntry& entry);

  private:
    std::vector<LogEntry> entries_;
    QStringList misuses_;
    bool echo_ = false;
};

}  // namespace sandbox
