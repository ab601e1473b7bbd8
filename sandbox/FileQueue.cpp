#include "sandbox/FileQueue.h"

#include <QFileInfo>
#include <chrono>
#include <utility>

#include "common/Notify.h"
#include "sandbox/Log.h"

namespace sandbox {

FileQueue::FileQueue(Log& log) : log_(log) {
    turn_.setSingleShot(true);
    connect(&turn_, &QTimer::timeout, this, &FileQueue::readOn);
}

void FileQueue::add(const QString& path, Open open, std::function<void(bool)> then) {
    waiting_.push_back({.path = path, .open = std::move(open), .then = std::move(then)});
    if (waiting_.size() == 1) readOn();
}

void FileQueue::readOn() {
    // What is small is read at once, whatever the clock says.
    constexpr std::size_t atLeast = 4000;
    constexpr std::chrono::milliseconds atOnce{25};
    constexpr int untoldMilliseconds = 1000;
    // Somebody may never end writing it.
    constexpr int mostOften = 5;
    const auto stampOf = [](const QString& path) {
        const QFileInfo file(path);
        return Stamp(file.lastModified(), file.size());
    };
    while (!waiting_.empty()) {
        Waiting& first = waiting_.front();
        if (!first.coming) {
            first.stamp = stampOf(first.path);
            ++first.opened;
            first.coming = first.open();
            if (!first.coming) {
                if (const Waiting gone = takeFirst(); gone.then) gone.then(false);
                continue;
            }
            first.begun.start();
        }
        Slice slice(atLeast, atOnce);
        if (!first.coming->goOn(slice)) {
            if (first.begun.elapsed() > untoldMilliseconds) emit reading(first.path, first.coming->percent());
            turn_.start(first.coming->pauseMilliseconds());
            return;
        }
        if (first.opened < mostOften && stampOf(first.path) != first.stamp) {
            first.coming.reset();
            continue;
        }
        const Waiting read = takeFirst();
        const bool shown = read.coming->show();
        if (read.then) read.then(shown);
    }
}

FileQueue::Waiting FileQueue::takeFirst() {
    Waiting first = std::move(waiting_.front());
    waiting_.pop_front();
    emit reading({}, 0);
    return first;
}

void FileQueue::cancel() {
    if (waiting_.empty()) return;
    const Waiting ended = takeFirst();
    log_.add(halNotify::Warning, "host", QString("%1 is not opened: it was canceled").arg(ended.path));
    if (ended.then) ended.then(false);
    if (!waiting_.empty()) turn_.start(0);
}

void FileQueue::cancelAll() {
    while (!waiting_.empty()) cancel();
    turn_.stop();
}

}  // namespace sandbox
