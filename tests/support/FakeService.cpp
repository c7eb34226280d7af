#include "support/FakeService.h"

#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QHash>
#include <QMutex>
#include <QSet>
#include <QThread>

#include <utility>

namespace support {

class FakeService::Object final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override {
        const QMutexLocker locker(&mutex);
        return introspection;
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QMutexLocker locker(&mutex);
        const QString method = message.member();
        if (message.interface() == QLatin1String("org.freedesktop.DBus.Introspectable"))
            return false;
        calls.push_back({message.path(), method, message.arguments()});
        if (silent.contains(method))
            return true;
        if (message.interface() == QLatin1String("org.freedesktop.DBus.Properties"))
            return handleProperties(message, connection);
        if (!answers.contains(method))
            return connection.send(message.createErrorReply(QDBusError::UnknownMethod, method));
        return connection.send(message.createReply(answers.value(method)));
    }

    mutable QMutex mutex;
    QHash<QString, QVariantList> answers;
    QSet<QString> silent;
    QVariantMap properties;
    QString introspection;
    std::vector<Call> calls;

private:
    bool handleProperties(const QDBusMessage& message, const QDBusConnection& connection) const {
        if (message.member() == QLatin1String("GetAll"))
            return connection.send(message.createReply(properties));
        const QString name = message.arguments().value(1).toString();
        if (message.member() != QLatin1String("Get") || !properties.contains(name))
            return connection.send(message.createErrorReply(QDBusError::UnknownProperty, name));
        return connection.send(
            message.createReply(QVariant::fromValue(QDBusVariant(properties.value(name)))));
    }
};

class FakeService::Life final {
public:
    Life(const PrivateBus& itsBus, QString itsName)
        : bus(itsBus)
        , name(std::move(itsName))
        , connection(QDBusConnection::connectToBus(itsBus.address(), freshConnectionName())) {
        // Qt adds children to the object, on the object's own thread only.
        EXPECT_TRUE(connection.registerVirtualObject(QStringLiteral("/"), &object, QDBusConnection::SubPath));
        object.moveToThread(&thread);
        thread.start();
        EXPECT_TRUE(connection.registerService(name)) << qPrintable(name);
        bus.fakeServices_.append(connection.baseService());
    }
    // The name first, which the bus has released when this returns.
    ~Life() {
        bus.fakeServices_.removeAll(connection.baseService());
        connection.unregisterService(name);
        connection.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
        QDBusConnection::disconnectFromBus(connection.name());
        thread.quit();
        thread.wait();
    }
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

    const PrivateBus& bus;
    QString name;
    QDBusConnection connection;
    QThread thread;
    Object object;
};

FakeService::FakeService(const PrivateBus& bus, const QString& name)
    : life_(std::make_unique<Life>(bus, name)) {}

FakeService::~FakeService() = default;

void FakeService::answer(const QString& method, const QVariantList& values) {
    const QMutexLocker locker(&life_->object.mutex);
    life_->object.answers.insert(method, values);
}

void FakeService::refuse(const QString& method) {
    const QMutexLocker locker(&life_->object.mutex);
    life_->object.answers.remove(method);
}

void FakeService::staySilentTo(const QString& method) {
    const QMutexLocker locker(&life_->object.mutex);
    life_->object.silent.insert(method);
}

void FakeService::setProperty(const QString& name, const QVariant& value) {
    const QMutexLocker locker(&life_->object.mutex);
    life_->object.properties.insert(name, value);
}

void FakeService::setIntrospection(const QString& xml) {
    const QMutexLocker locker(&life_->object.mutex);
    life_->object.introspection = xml;
}

void FakeService::send(const QString& path, const QString& interface, const QString& signal,
                       const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createSignal(path, interface, signal);
    message.setArguments(arguments);
    EXPECT_TRUE(life_->connection.send(message));
}

std::vector<FakeService::Call> FakeService::calls(const QString& method) const {
    const QMutexLocker locker(&life_->object.mutex);
    std::vector<Call> found;
    for (const Call& call : life_->object.calls)
        if (call.method == method)
            found.push_back(call);
    return found;
}

QString FakeService::uniqueName() const {
    return life_->connection.baseService();
}

} // namespace support
