#include "channel/Connection.h"

#include <array>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace channel {

Packets::Packets(int socket)
    : socket_(socket)
    , notifier_(std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read)) {
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { readOne(); });
}

Packets::~Packets() {
    notifier_.reset();
    close(socket_);
}

bool Packets::send(std::string_view packet) const {
    const ssize_t sent = ::send(socket_, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(packet.size());
}

// One packet a turn of the event loop, so that an end that sends without pause leaves time for everything
// else.
void Packets::readOne() {
    std::array<char, longestPacket + 1> buffer;
    const ssize_t size = recv(socket_, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    // A packet of no bytes cannot be told from the end; nobody sends one.
    if (size <= 0 || !received_ ||
        !received_(std::string_view(buffer.data(), static_cast<std::size_t>(size))))
        end();
}

void Packets::end() {
    notifier_->setEnabled(false);
    shutdown(socket_, SHUT_RDWR);
    if (const auto ended = std::exchange(ended_, {}))
        ended();
}

} // namespace channel
