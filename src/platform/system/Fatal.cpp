#include "platform/system/Fatal.h"

#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace platform {

namespace {

// A core limit of zero does not bind a core handler that is a pipe; a process that is not dumpable has none.
void askForNoCore() noexcept {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
}

// Whatever a library has installed for SIGABRT (a printer of stack traces, say) stays out of it. Not abort(),
// which would call it first.
void endBySigabrt() noexcept {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigaction(SIGABRT, &action, nullptr);
    raise(SIGABRT); // pending where it is blocked, delivered by the line that unblocks it
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGABRT);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

} // namespace

void fatal() noexcept {
    askForNoCore();
    endBySigabrt();
    _exit(128 + SIGABRT);
}

} // namespace platform
