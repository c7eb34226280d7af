#include "platform/system/TerminationSignals.h"

#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

int events = -1; // counts the signals; the only thing that the handler of a signal touches

void count(int) {
    const int error = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(events, &one, sizeof one);
    errno = error;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> handler) {
    events = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (events < 0)
        return;
    notifier_ = std::make_unique<QSocketNotifier>(events, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [handler = std::move(handler)] {
                         std::uint64_t times = 0;
                         if (read(events, &times, sizeof times) == sizeof times)
                             handler();
                     });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        Caught caught{signal, {}};
        sigaction(signal, nullptr, &caught.before);
        if (caught.before.sa_handler == SIG_IGN)
            continue;
        struct sigaction action {};
        action.sa_handler = count;
        action.sa_flags = SA_RESTART;
        sigaction(signal, &action, nullptr);
        caught_.push_back(caught);
    }
}

TerminationSignals::~TerminationSignals() {
    for (const Caught& caught : caught_)
        sigaction(caught.signal, &caught.before, nullptr);
    notifier_.reset();
    if (events >= 0)
        close(std::exchange(events, -1));
}

} // namespace platform
