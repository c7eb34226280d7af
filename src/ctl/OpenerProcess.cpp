#include "ctl/OpenerProcess.h"

#include "exchange/HostLaunch.h"
#include "platform/system/Workspace.h"

#include <exception>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ctl {

namespace {

constexpr char yes = 1;

// The other end of the socket closes as soon as the process that has it ends. What is thrown here ends this
// process alone, without an answer.
[[noreturn]] void waitAndOpen(int socket, const char* request) noexcept {
    std::set_terminate([] { _exit(1); });
    char word = 0;
    if (platform::retryInterrupted([&] { return read(socket, &word, 1); }) == 1 && word == yes &&
        exchange::openHost(request))
        (void)!write(socket, &yes, 1);
    _exit(0);
}

} // namespace

OpenerProcess::OpenerProcess(const char* request) {
    platform::Workspace::setOpener([this](const QString& /*url*/) { return open(); });
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return;
    platform::OpenFile own(ends[0]);
    const platform::OpenFile others(ends[1]);
    // Not in the place of a standard stream that is closed: messages would be written to it.
    socket_.emplace(fcntl(own.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    own.close();
    if (!socket_->isOpen())
        return;
    process_ = fork();
    if (process_ != 0)
        return;
    socket_.reset();
    platform::Workspace::setOpener({});
    waitAndOpen(others.number(), request);
}

OpenerProcess::~OpenerProcess() {
    platform::Workspace::setOpener({});
    socket_.reset();
    if (process_ > 0)
        (void)platform::retryInterrupted([this] { return waitpid(process_, nullptr, 0); });
}

bool OpenerProcess::open() const {
    char answer = 0;
    return process_ > 0 && send(socket_->number(), &yes, 1, MSG_NOSIGNAL) == 1 &&
           platform::retryInterrupted([&] { return recv(socket_->number(), &answer, 1, 0); }) == 1 &&
           answer == yes;
}

} // namespace ctl
