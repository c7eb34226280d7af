#include "center/BusService.h"

#include <QDBusError>

#include <chrono>

namespace center {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds timeLimit = 10s; // a service that has to be started first needs some

// Waits for the reply of one call, and goes after it or with its parent. Qt gives it the reply in turn with
// the signals that came before and after; a QDBusPendingCallWatcher that is made when the reply is there
// already would be told later than of such a signal.
class Answer final : public QObject {
    Q_OBJECT

public:
    Answer(BusService::Handler handler, QObject* parent)
        : QObject(parent)
        , handler_(std::move(handler)) {}

    Q_SLOT void replied(const QDBusMessage& reply) {
        deleteLater();
        handler_(reply);
    }
    Q_SLOT void failed(const QDBusError& error, const QDBusMessage& call) {
        replied(call.createErrorReply(error));
    }

private:
    BusService::Handler handler_;
};

void send(const QDBusConnection& bus, const QDBusMessage& call, QObject* context,
          BusService::Handler handler) {
    bus.callWithCallback(call, new Answer(std::move(handler), context), SLOT(replied(QDBusMessage)),
                         SLOT(failed(QDBusError, QDBusMessage)), static_cast<int>(timeLimit.count()));
}

} // namespace

// The watcher listens before the owner is asked for, so that no change falls in between.
BusService::BusService(const QDBusConnection& bus, QString name, Start start)
    : bus_(bus)
    , name_(std::move(name))
    , start_(start) {
    if (!bus_.isConnected())
        return;
    watcher_ = std::make_unique<QDBusServiceWatcher>(name_, bus_, QDBusServiceWatcher::WatchForOwnerChange);
    QObject::connect(watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
                     [this](const QString&, const QString&, const QString& owner) { setOwner(owner); });
    const QString itself = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage question = QDBusMessage::createMethodCall(itself, QStringLiteral("/org/freedesktop/DBus"),
                                                           itself, QStringLiteral("GetNameOwner"));
    question << name_;
    send(bus_, question, this, [this](const QDBusMessage& reply) {
        setOwner(reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toString()
                                                            : QString());
    });
}

BusService::~BusService() {
    for (const Listener& listener : listeners_)
        disconnectSignal(listener);
}

void BusService::listen(const QString& path, const QString& interface, const QString& signal,
                        Handler handler) {
    listeners_.push_back({path, interface, signal, std::move(handler)});
    connectSignal(listeners_.back());
}

void BusService::call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments, Handler replied) {
    if (!bus_.isConnected() || (start_ == Start::Never && !isPresent()))
        return;
    QDBusMessage message = QDBusMessage::createMethodCall(name_, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(start_ == Start::ByCall);
    if (!replied)
        replied = [](const QDBusMessage&) {};
    send(bus_, message, this,
         [this, asked = owner_, replied = std::move(replied)](const QDBusMessage& reply) {
             if (asked.isEmpty() || asked == owner_)
                 replied(reply);
         });
}

void BusService::readProperty(const QString& path, const QString& interface, const QString& property,
                              Handler replied) {
    call(path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
         {interface, property}, std::move(replied));
}

// A handler may listen to more signals.
void BusService::received(const QDBusMessage& signal) {
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
        const Listener& listener = listeners_[i];
        if (signal.path() == listener.path && signal.interface() == listener.interface &&
            signal.member() == listener.signal) {
            const Handler handler = listener.handler;
            handler(signal);
            return;
        }
    }
}

void BusService::setOwner(const QString& owner) {
    if (owner == owner_)
        return;
    for (const Listener& listener : listeners_)
        disconnectSignal(listener);
    owner_ = owner;
    for (const Listener& listener : listeners_)
        connectSignal(listener);
    if (ownerChanged_)
        ownerChanged_();
}

// The unique name of the owner: with the well-known one Qt would ask the bus for the owner and wait.
void BusService::connectSignal(const Listener& listener) {
    if (isPresent())
        bus_.connect(owner_, listener.path, listener.interface, listener.signal, this,
                     SLOT(received(QDBusMessage)));
}

void BusService::disconnectSignal(const Listener& listener) {
    if (isPresent())
        bus_.disconnect(owner_, listener.path, listener.interface, listener.signal, this,
                        SLOT(received(QDBusMessage)));
}

} // namespace center

#include "BusService.moc"
