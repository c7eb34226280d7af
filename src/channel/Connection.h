#pragma once

#include "channel/Message.h"

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace channel {

// One end of a connection: packets of a SOCK_SEQPACKET socket, which keeps their bounds and their order and
// ends when the process at the other end does. Nothing blocks. Main thread only.
class Packets final {
public:
    // Takes over a connected socket, which it closes at the end.
    explicit Packets(int socket);
    ~Packets();
    Packets(const Packets&) = delete;
    Packets& operator=(const Packets&) = delete;

    // Called with each packet. False ends the connection, whose end is then told.
    void setReceived(std::function<bool(std::string_view packet)> handler) { received_ = std::move(handler); }
    // Called once, when the other end has closed the connection or died, or has sent what it may not. The
    // handler may destroy this object.
    void setEnded(std::function<void()> handler) { ended_ = std::move(handler); }

    // False where the connection has ended or the other end has not taken what was sent before.
    bool send(std::string_view packet) const;

private:
    void readOne();
    void end();

    int socket_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::function<bool(std::string_view)> received_;
    std::function<void()> ended_;
};

// A connection that receives messages of one kind and sends those of another. A malformed packet ends it.
template <class Incoming, class Outgoing>
class Connection final {
public:
    explicit Connection(int socket)
        : packets_(socket) {}

    void setReceived(std::function<void(const Incoming&)> handler) {
        packets_.setReceived([handler = std::move(handler)](std::string_view packet) {
            const auto message = messageOf<Incoming>(packet);
            if (message)
                handler(*message);
            return message.has_value();
        });
    }
    void setEnded(std::function<void()> handler) { packets_.setEnded(std::move(handler)); }
    bool send(const Outgoing& message) const {
        const auto packet = packetOf(message);
        return packet && packets_.send(*packet);
    }

private:
    Packets packets_;
};

using ConnectionToExtension = Connection<FromExtension, ToExtension>;
using ConnectionToCenter = Connection<ToExtension, FromExtension>;

} // namespace channel
