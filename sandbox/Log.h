#pragma once

#include <QObject>
#include <QString>
#include <map>
#include <string>
#include <utility>
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

    /// Also writes each entry to standard error, those that there are at once.
    void setEcho(bool echo);

    static QString severityName(int severity);

    /// Of what one file or one plug-in's step has to say in one go, this many of a severity are told.
    static constexpr std::size_t kMostOfAKind = 100;

  signals:
    void added(const sandbox::LogEntry& entry);

  private:
    std::vector<LogEntry> entries_;
    QStringList misuses_;
    bool echo_ = false;
};

/// The messages on one file: the first hundred of each severity, and how many more there are.
class FileMessages {
  public:
    FileMessages(Log& log, QString file) : log_(log), file_(std::move(file)) {}
    ~FileMessages();
    FileMessages(const FileMessages&) = delete;
    FileMessages& operator=(const FileMessages&) = delete;

    void add(int severity, std::size_t line, const std::string& text);
    /// So many others, of which nothing is known but their number.
    void addUntold(int severity, std::size_t count) { counts_[severity] += count; }

  private:
    Log& log_;
    QString file_;
    std::map<int, std::size_t> counts_;
};

}  // namespace sandbox
