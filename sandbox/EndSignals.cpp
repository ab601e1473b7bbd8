#include "sandbox/EndSignals.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

namespace sandbox {

namespace {

constexpr std::array kSignals = {SIGTERM, SIGHUP, SIGINT};
/// Written by the handler, read in the event loop.
int ends[2] = {-1, -1};

void handle(int number) {
    const auto byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const ssize_t written = ::write(ends[0], &byte, 1);
}

}  // namespace

EndSignals::EndSignals(std::function<void(int)> told) : told_(std::move(told)) {
    QCoreApplication::instance()->installEventFilter(this);
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return;
    notifier_ = new QSocketNotifier(ends[1], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] {
        unsigned char number = 0;
        if (::read(ends[1], &number, 1) == 1) told_(number);
    });
    struct sigaction action {};
    action.sa_handler = &handle;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int number : kSignals) ::sigaction(number, &action, nullptr);
}

EndSignals::~EndSignals() {
    for (const int number : kSignals) ::signal(number, SIG_DFL);
    delete notifier_;
    for (int& end : ends) ::close(std::exchange(end, -1));
}

bool EndSignals::eventFilter(QObject* object, QEvent* event) {
    // A session manager's; that of the last window that was closed is no event of the system's.
    if (event->type() != QEvent::Quit || !event->spontaneous()) return QObject::eventFilter(object, event);
    told_(0);
    return true;
}

}  // namespace sandbox
