#include "sandbox/script/TurnWatch.h"

#include <QObject>
#include <algorithm>
#include <ctime>
#include <utility>

namespace sandbox {

namespace {

std::chrono::nanoseconds threadTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

TurnWatch::TurnWatch() {
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { turn(); });
}

TurnWatch::Longest TurnWatch::take() {
    if (!timer_.isActive()) {
        constexpr std::chrono::milliseconds kOften{5};
        timer_.start(kOften);
        sinceTurn_.start();
        atWork_ = threadTime();
    }
    turn();
    return std::exchange(longest_, {});
}

void TurnWatch::turn() {
    using Milliseconds = std::chrono::duration<double, std::milli>;
    const Milliseconds clock = std::chrono::nanoseconds(sinceTurn_.nsecsElapsed());
    const std::chrono::nanoseconds now = threadTime();
    longest_.clock = std::max(longest_.clock, clock.count());
    longest_.processor = std::max(longest_.processor, Milliseconds(now - atWork_).count());
    sinceTurn_.start();
    atWork_ = now;
}

}  // namespace sandbox
