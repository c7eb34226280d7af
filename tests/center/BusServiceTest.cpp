#include "center/BusService.h"

#include "support/FakeService.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

using center::BusService;
using support::waitFor;

namespace {

const QString name = QStringLiteral("org.example.Service");
const QString path = QStringLiteral("/object");
const QString interface = QStringLiteral("org.example.Interface");
const QString method = QStringLiteral("Method");
const QString signalName = QStringLiteral("Changed");

class BusServiceTest : public testing::Test {
protected:
    std::unique_ptr<support::FakeService> makeFake() const {
        return std::make_unique<support::FakeService>(bus, name);
    }

    support::PrivateBus bus;
};

} // namespace

TEST_F(BusServiceTest, isPresentWhenItWasThereBefore) {
    const auto fake = makeFake();
    const BusService service(bus.connection(), name, BusService::Start::Never);
    EXPECT_FALSE(service.isPresent()) << "nobody waits for the answer";
    EXPECT_TRUE(waitFor([&] { return service.isPresent(); }));
}

TEST_F(BusServiceTest, tellsWhenItComesGoesAndIsReplaced) {
    BusService service(bus.connection(), name, BusService::Start::Never);
    int told = 0;
    service.setOwnerChanged([&] { ++told; });
    bus.settle();
    EXPECT_EQ(told, 0);
    auto fake = makeFake();
    EXPECT_TRUE(waitFor([&] { return service.isPresent(); }));
    fake.reset();
    EXPECT_TRUE(waitFor([&] { return !service.isPresent(); }));
    fake = makeFake();
    EXPECT_TRUE(waitFor([&] { return service.isPresent(); }));
    bus.settle();
    EXPECT_EQ(told, 3);
}

TEST_F(BusServiceTest, givesTheReplyOfACall) {
    const auto fake = makeFake();
    fake->answer(method, {42});
    BusService service(bus.connection(), name, BusService::Start::Never);
    EXPECT_TRUE(waitFor([&] { return service.isPresent(); }));
    std::optional<QDBusMessage> reply;
    service.call(path, interface, method, {QStringLiteral("a")},
                 [&](const QDBusMessage& its) { reply = its; });
    EXPECT_FALSE(reply) << "nobody waits for the answer";
    ASSERT_TRUE(waitFor([&] { return reply.has_value(); }));
    EXPECT_EQ(reply->arguments(), QVariantList{42});
    ASSERT_EQ(fake->calls(method).size(), 1U);
    EXPECT_EQ(fake->calls(method)[0].arguments, QVariantList{QStringLiteral("a")});
}

TEST_F(BusServiceTest, givesTheErrorOfACall) {
    const auto fake = makeFake();
    BusService service(bus.connection(), name, BusService::Start::ByCall);
    std::optional<QDBusMessage> reply;
    service.call(path, interface, method, {}, [&](const QDBusMessage& its) { reply = its; });
    ASSERT_TRUE(waitFor([&] { return reply.has_value(); }));
    EXPECT_EQ(reply->type(), QDBusMessage::ErrorMessage);
}

TEST_F(BusServiceTest, givesNoReplyOfAnOwnerThatHasGone) {
    auto fake = makeFake();
    fake->staySilentTo(method);
    BusService service(bus.connection(), name, BusService::Start::Never);
    EXPECT_TRUE(waitFor([&] { return service.isPresent(); }));
    int replies = 0;
    service.call(path, interface, method, {}, [&](const QDBusMessage&) { ++replies; });
    EXPECT_TRUE(waitFor([&] { return fake->calls(method).size() == 1; }));
    fake.reset();
    EXPECT_TRUE(waitFor([&] { return !service.isPresent(); }));
    bus.settle();
    EXPECT_EQ(replies, 0);
}

TEST_F(BusServiceTest, callsNobodyWhereNobodyIs) {
    BusService service(bus.connection(), name, BusService::Start::Never);
    int replies = 0;
    service.call(path, interface, method, {}, [&](const QDBusMessage&) { ++replies; });
    bus.settle();
    EXPECT_EQ(replies, 0);
}

TEST_F(BusServiceTest, givesNoReplyOnceItIsGone) {
    const auto fake = makeFake();
    fake->answer(method, {});
    int replies = 0;
    {
        BusService service(bus.connection(), name, BusService::Start::ByCall);
        service.call(path, interface, method, {}, [&](const QDBusMessage&) { ++replies; });
    }
    EXPECT_TRUE(waitFor([&] { return fake->calls(method).size() == 1; }));
    bus.settle();
    EXPECT_EQ(replies, 0);
}

TEST_F(BusServiceTest, hearsTheSignalsOfEachOwner) {
    BusService service(bus.connection(), name, BusService::Start::Never);
    QVariantList heard;
    service.listen(path, interface, signalName,
                   [&](const QDBusMessage& message) { heard += message.arguments(); });
    for (int i = 0; i < 2; ++i) {
        const auto fake = makeFake();
        EXPECT_TRUE(waitFor([&] { return service.isPresent(); }));
        bus.settle();
        fake->send(path, interface, signalName, {i});
        EXPECT_TRUE(waitFor([&] { return heard.size() == i + 1; }));
        fake->send(path, interface, QStringLiteral("Other"), {7});
        fake->send(QStringLiteral("/other"), interface, signalName, {8});
        bus.settle();
    }
    EXPECT_EQ(heard, (QVariantList{0, 1}));
}

TEST_F(BusServiceTest, hearsNoSignalOfAnotherService) {
    const auto fake = makeFake();
    const support::FakeService other(bus, QStringLiteral("org.example.Other"));
    BusService service(bus.connection(), name, BusService::Start::Never);
    QVariantList heard;
    service.listen(path, interface, signalName,
                   [&](const QDBusMessage& message) { heard += message.arguments(); });
    EXPECT_TRUE(waitFor([&] { return service.isPresent(); }));
    bus.settle();
    other.send(path, interface, signalName, {1});
    fake->send(path, interface, signalName, {2});
    EXPECT_TRUE(waitFor([&] { return !heard.isEmpty(); }));
    bus.settle();
    EXPECT_EQ(heard, QVariantList{2});
}

TEST_F(BusServiceTest, isSilentWithoutABus) {
    BusService service(QDBusConnection(QStringLiteral("none")), name, BusService::Start::ByCall);
    int told = 0;
    service.setOwnerChanged([&] { ++told; });
    service.listen(path, interface, signalName, [&](const QDBusMessage&) { ++told; });
    service.call(path, interface, method, {}, [&](const QDBusMessage&) { ++told; });
    bus.settle();
    EXPECT_EQ(told, 0);
    EXPECT_FALSE(service.isPresent());
}
