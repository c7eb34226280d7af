#pragma once

#include "support/TemporaryFolder.h"

#include <QDBusConnection>
#include <QString>
#include <QStringList>

#include <functional>
#include <sys/types.h>

namespace support {

// Processes events until a condition holds. False if it does not hold within ten seconds.
[[nodiscard]] bool waitFor(const std::function<bool()>& condition);

// A message bus of a test's own, without any service on it. It ends with this object.
class PrivateBus final {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] const QString& address() const { return address_; }

    // The connection of the program under test.
    [[nodiscard]] const QDBusConnection& connection() const { return connection_; }

    // Processes events until all messages that were sent so far, by the program or a fake service, have been
    // handled, and those that were sent because of them: some rounds of it.
    void settle() const;

private:
    friend class FakeService;

    // An error is an answer, too.
    void awaitAnswer(const QString& service) const;

    TemporaryFolder folder_;
    pid_t daemon_ = -1;
    QString address_;
    QDBusConnection connection_;
    mutable QStringList fakeServices_; // the unique names of those that are there
};

// A connection's name that no other has.
[[nodiscard]] QString freshConnectionName();

} // namespace support
