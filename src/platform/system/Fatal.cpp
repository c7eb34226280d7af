#include "platform/system/Fatal.h"

#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace platform {

namespace {

// The limit of the core file's size does not apply to a handler that reads cores from a pipe, but a process
// that is not dumpable leaves no core at all.
void disableCoreFiles() noexcept {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
}

// Unlike abort(), this does not call a handler that a library may have installed, such as one that prints a
// stack trace.
void raiseSigabrt() noexcept {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigaction(SIGABRT, &action, nullptr);
    raise(SIGABRT); // stays pending if it is blocked, until it is unblocked below
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGABRT);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

} // namespace

void fatal() noexcept {
    disableCoreFiles();
    raiseSigabrt();
    _exit(128 + SIGABRT);
}

} // namespace platform
