#pragma once

#include <QSocketNotifier>

#include <csignal>
#include <functional>
#include <memory>
#include <vector>

namespace platform {

// Calls a handler from the event loop, each time the process is asked to end: by SIGTERM, SIGINT or SIGHUP,
// none of which ends it any more while this object lives. A signal that was ignored before stays ignored.
// There is one such object at a time. Main thread only.
class TerminationSignals final {
public:
    explicit TerminationSignals(std::function<void()> handler);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    struct Caught {
        int signal;
        struct sigaction before;
    };

    std::vector<Caught> caught_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace platform
