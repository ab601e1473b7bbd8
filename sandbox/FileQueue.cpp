#include "sandbox/FileQueue.h"

#include <QFileInfo>
#include <chrono>
#include <utility>

#include "common/Notify.h"
#include "sandbox/Log.h"

namespace sandbox {

FileQueue::FileQueue(Log& log) : log_(log) {
    turn_.setSingleShot(true);
    connect(&turn_, &QTimer::timeout, this, &FileQueue::goOn);
}

void FileQueue::add(const QString& path, Open open, std::function<void(bool)> then) {
    waiting_.push_back({.path = path, .open = std::move(open), .then = std::move(then)});
    if (waiting_.size() == 1) goOn();
}

void FileQueue::goOn() {
    while (!waiting_.empty()) {
        if (!goOnWithFirst()) {
            if (waiting_.empty()) return;
            constexpr int untoldMilliseconds = 1000;
            const Waiting& first = waiting_.front();
            if (first.coming && first.begun.elapsed() > untoldMilliseconds)
                emit reading(first.path, first.coming->percent());
            turn_.start(first.isRead || !first.coming ? 0 : first.coming->pauseMilliseconds());
            return;
        }
        const Waiting done = takeFirst();
        if (done.then) done.then(done.coming && done.coming->isShown());
    }
}

bool FileQueue::goOnWithFirst() {
    // What is small is read at once, whatever the clock says.
    constexpr std::size_t atLeast = 4000;
    constexpr std::chrono::milliseconds atOnce{15};
    // Somebody may never end writing it.
    constexpr int mostOften = 5;
    const auto stampOf = [](const QString& path) {
        const QFileInfo file(path);
        return Stamp(file.lastModified(), file.size());
    };
    Waiting& first = waiting_.front();
    Slice slice(atLeast, atOnce);
    while (!first.isRead) {
        if (!first.coming) {
            first.stamp = stampOf(first.path);
            ++first.opened;
            first.coming = first.open();
            if (!first.coming) return true;
            first.begun.start();
        }
        if (!first.coming->goOn(slice)) return false;
        first.isRead = first.opened == mostOften || stampOf(first.path) == first.stamp;
        if (!first.isRead) first.coming.reset();
    }
    // Who hears of what is shown may cancel it.
    const std::shared_ptr<ComingFile> coming = first.coming;
    const bool isAll = coming->show(slice);
    return isAll && !waiting_.empty() && waiting_.front().coming == coming;
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
    const bool shown = ended.coming && ended.coming->isShown();
    log_.add(halNotify::Warning, "host",
             QString("%1 is %2opened: it was canceled").arg(ended.path, shown ? "only in part " : "not "));
    if (ended.then) ended.then(shown);
    if (!waiting_.empty()) turn_.start(0);
}

void FileQueue::cancelAll() {
    while (!waiting_.empty()) cancel();
    turn_.stop();
}

}  // namespace sandbox
