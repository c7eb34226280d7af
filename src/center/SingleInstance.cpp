#include "center/SingleInstance.h"

#include "center/Commands.h"

#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace center {

using namespace std::chrono_literals;

namespace {

constexpr auto longestWait = 10s;
constexpr auto betweenTries = 10ms;
constexpr auto betweenFailures = 1s;
constexpr std::size_t mostVisitors = 64;

// The address of a file in an open folder, which is short however long the folder's path is.
sockaddr_un addressIn(int folder, const std::string& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", folder, name.c_str());
    return address;
}

int makeSocket() {
    return socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

bool listenAt(int socket, const sockaddr_un& address) {
    unlink(address.sun_path); // of one that was killed
    constexpr int waiting = 64;
    return bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
           ::listen(socket, waiting) == 0;
}

bool connectTo(int socket, const sockaddr_un& address) {
    return connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

int millisecondsUntil(std::chrono::steady_clock::time_point moment) {
    const auto left = moment - std::chrono::steady_clock::now();
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(
        0, std::chrono::ceil<std::chrono::milliseconds>(left).count()));
}

} // namespace

// The first one locks the file and then listens; one that ends meanwhile leaves a file that nobody locks. So
// both are tried in turn until one of them succeeds.
SingleInstance::SingleInstance(std::string name)
    : name_(std::move(name)) {
    lockOrConnect();
}

void SingleInstance::lockOrConnect() {
    isFirst_ = true;
    const char* path = std::getenv("XDG_RUNTIME_DIR");
    const int folder = path && path[0] == '/' ? open(path, O_PATH | O_DIRECTORY | O_CLOEXEC) : -1;
    if (folder < 0)
        return;
    const sockaddr_un address = addressIn(folder, name_ + ".socket");
    const auto end = std::chrono::steady_clock::now() + longestWait;
    for (;;) {
        socket_ = makeSocket();
        if (lock(folder)) {
            if (lock_ < 0 || !listenAt(socket_, address))
                close(std::exchange(socket_, -1));
            break;
        }
        if (connectTo(socket_, address)) {
            isFirst_ = false;
            break;
        }
        close(std::exchange(socket_, -1));
        if (millisecondsUntil(end) == 0) {
            isFirst_ = false;
            break;
        }
        poll(nullptr, 0, static_cast<int>(betweenTries.count()));
    }
    close(folder);
}

SingleInstance::~SingleInstance() {
    notifier_.reset();
    visitors_.clear();
    for (const int descriptor : {socket_, lock_})
        if (descriptor >= 0)
            close(descriptor);
}

// True where this one is the first, or where nobody can tell, since there can be no such file.
bool SingleInstance::lock(int folder) {
    lock_ = openat(folder, (name_ + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (lock_ < 0 || flock(lock_, LOCK_EX | LOCK_NB) == 0)
        return true;
    close(std::exchange(lock_, -1));
    return false;
}

std::optional<SingleInstance::Answer> SingleInstance::ask(const channel::Command& command) {
    const auto packet = channel::packetOf(channel::FromFurtherStart(command));
    if (!packet)
        return Answer::None;
    while (!isFirst_ && socket_ >= 0) {
        pollfd waiting{socket_, POLLIN, 0};
        std::array<char, channel::longestPacket> answer;
        ssize_t size = 0; // of what has ended
        if (send(socket_, packet->data(), packet->size(), MSG_NOSIGNAL) >= 0) {
            if (poll(&waiting, 1, static_cast<int>(std::chrono::milliseconds(longestWait).count())) <= 0)
                return Answer::None;
            size = recv(socket_, answer.data(), answer.size(), 0);
        }
        if (size <= 0 && command.name == quitCommand)
            return Answer::Done; // its end is the answer
        if (size > 0) {
            const std::string_view bytes(answer.data(), static_cast<std::size_t>(size));
            return channel::messageOf<channel::ToFurtherStart>(bytes) ? Answer::Done : Answer::None;
        }
        close(std::exchange(socket_, -1));
        lockOrConnect();
    }
    return isFirst_ ? std::nullopt : std::optional(Answer::None);
}

void SingleInstance::listen(std::function<void(const channel::Command&)> handler) {
    if (socket_ < 0)
        return;
    asked_ = std::move(handler);
    notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { accept(); });
}

void SingleInstance::stopListening() {
    notifier_.reset();
    if (socket_ >= 0)
        close(std::exchange(socket_, -1));
}

// Who connects and says nothing makes room for others in the end. Where none can be accepted the notifier
// would not rest.
void SingleInstance::accept() {
    const int socket = accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (socket < 0) {
        notifier_->setEnabled(false);
        QTimer::singleShot(betweenFailures, notifier_.get(), [this] { notifier_->setEnabled(true); });
        return;
    }
    if (visitors_.size() == mostVisitors)
        visitors_.erase(visitors_.begin());
    auto& visitor = *visitors_.emplace_back(std::make_unique<Visitor>(socket));
    visitor.setReceived([this, &visitor](const channel::FromFurtherStart& message) {
        const auto& command = std::get<channel::Command>(message);
        asked_(command);
        if (command.name != quitCommand)
            visitor.send(channel::Done{});
    });
    visitor.setEnded([this, &visitor] {
        std::erase_if(visitors_, [&visitor](const auto& other) { return other.get() == &visitor; });
    });
}

} // namespace center
