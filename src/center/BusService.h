#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace center {

// A service of a bus, known by its well-known name: whether it is there, calls of its methods and its
// signals. Nothing waits: replies come by the event loop. Without a bus, or as long as nobody owns the name,
// this is silent. Signals count only from the owner of the name. Main thread only.
class BusService final : public QObject {
    Q_OBJECT

public:
    enum class Start {
        Never, // a call is sent only to a service that runs
        ByCall // a call starts the service
    };
    using Handler = std::function<void(const QDBusMessage&)>;

    BusService(const QDBusConnection& bus, QString name, Start start);
    ~BusService() override;

    [[nodiscard]] bool isPresent() const { return !owner_.isEmpty(); }

    // Called when the service has come, has gone or was replaced by another one of its name.
    void setOwnerChanged(std::function<void()> handler) { ownerChanged_ = std::move(handler); }

    // Listens to a signal, of this owner of the name and of all later ones.
    void listen(const QString& path, const QString& interface, const QString& signal, Handler handler);

    // Calls a method. The handler is given the reply or an error, a missing answer after ten seconds too; not
    // the reply of an owner that has gone meanwhile, nor any once this object is gone.
    void call(const QString& path, const QString& interface, const QString& method,
              const QVariantList& arguments, Handler replied = {});

    // Reads a property in the same way.
    void readProperty(const QString& path, const QString& interface, const QString& property,
                      Handler replied);

private:
    struct Listener {
        QString path;
        QString interface;
        QString signal;
        Handler handler;
    };

    Q_SLOT void received(const QDBusMessage& signal);
    void setOwner(const QString& owner);
    void connectSignal(const Listener& listener);
    void disconnectSignal(const Listener& listener);

    QDBusConnection bus_;
    QString name_;
    Start start_;
    QString owner_; // its unique name; empty if nobody owns the name
    std::unique_ptr<QDBusServiceWatcher> watcher_;
    std::vector<Listener> listeners_;
    std::function<void()> ownerChanged_;
};

} // namespace center
