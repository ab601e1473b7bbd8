#pragma once

#include <QWidget>

class QComboBox;
class QPlainTextEdit;

namespace sandbox {

class Log;
struct LogEntry;

/// The log, its end in sight unless the user has turned back to read: long lines are wrapped, colours tell
/// how serious an entry is, and a menu leaves out what is less so.
class LogPanel : public QWidget {
    Q_OBJECT

  public:
    explicit LogPanel(const Log& log);

  signals:
    /// The user has turned to it.
    void looked();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void append(const LogEntry& entry);
    void fill();

    const Log& log_;
    QComboBox* filter_;
    QPlainTextEdit* text_;
    bool following_ = true;
};

}  // namespace sandbox
