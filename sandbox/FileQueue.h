#pragma once

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "sandbox/ComingFile.h"

namespace sandbox {

class Log;

/// The files that a user waits for: large ones are read in the pauses of the event loop, one file after the
/// other. One that has changed by then is read again, so that nobody is shown what is on no disk any more.
class FileQueue : public QObject {
    Q_OBJECT

  public:
    using Open = std::function<std::unique_ptr<ComingFile>()>;

    explicit FileQueue(Log& log);
    /// \param open called when it is the file's turn; null for a file that cannot be read
    /// \param then told whether it is shown, at once or later; may be empty
    void add(const QString& path, Open open, std::function<void(bool shown)> then);
    /// Ends the reading that is under way, or all that wait, too.
    void cancel();
    void cancelAll();

  signals:
    /// A large file is being read, so many percent of it; "" when none is.
    void reading(const QString& path, int percent);

  private:
    /// Tells one state of a file from the next.
    using Stamp = std::pair<QDateTime, qint64>;
    struct Waiting {
        QString path;
        Open open;
        std::function<void(bool shown)> then;
        std::shared_ptr<ComingFile> coming = nullptr;  ///< until it is its turn
        QElapsedTimer begun = {};
        /// What the file was when it was opened, and how often it has been.
        Stamp stamp = {};
        int opened = 0;
        bool isRead = false;
    };
    void goOn();
    /// \return whether it is the first one's turn no more
    bool goOnWithFirst();
    Waiting takeFirst();

    Log& log_;
    std::deque<Waiting> waiting_;
    QTimer turn_;
};

}  // namespace sandbox
