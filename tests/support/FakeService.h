#pragma once

#include "support/PrivateBus.h"

#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <memory>
#include <vector>

namespace support {

// A service on a private bus that answers as a test has told it and keeps what it was asked. It lives on a
// thread of its own, so that a program that waits for it gets its answer. The bus outlives it.
class FakeService final {
public:
    struct Call {
        QString path;
        QString method;
        QVariantList arguments;
    };

    FakeService(const PrivateBus& bus, const QString& name);
    // The service leaves the bus.
    ~FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    // What a method answers from now on. Others answer by an error.
    void answer(const QString& method, const QVariantList& values);
    // The method is one of those that answer by an error again.
    void refuse(const QString& method);
    // The method does not answer.
    void staySilentTo(const QString& method);
    // The value of a property, of whatever interface.
    void setProperty(const QString& name, const QVariant& value);
    // What the service says of itself, in XML.
    void setIntrospection(const QString& xml);

    void send(const QString& path, const QString& interface, const QString& signal,
              const QVariantList& arguments = {}) const;

    // The calls of a method so far.
    [[nodiscard]] std::vector<Call> calls(const QString& method) const;

    [[nodiscard]] QString uniqueName() const;

private:
    class Object;
    class Life;
    std::unique_ptr<Life> life_;
};

} // namespace support
