#include "center/Notifications.h"

#include "TestLanguage.h"
#include "support/FakeService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusArgument>

#include <memory>
#include <string>
#include <vector>

using center::Notifications;
using support::waitFor;
using testing::ElementsAre;

namespace {

const QString name = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString notify = QStringLiteral("Notify");
const QString closeMethod = QStringLiteral("CloseNotification");
constexpr uint id = 7;

class NotificationsTest : public testing::Test {
protected:
    NotificationsTest() {
        startService();
        notifications.setOpened([this](const QString& token) { opened.push_back(token.toStdString()); });
        bus.settle();
    }

    void startService() {
        service = std::make_unique<support::FakeService>(bus, name);
        service->answer(notify, {id});
        service->answer(closeMethod, {});
    }

    void showOne() {
        const std::size_t before = service->calls(notify).size();
        notifications.show(2, 1);
        EXPECT_TRUE(waitFor([&] { return service->calls(notify).size() == before + 1; }));
        bus.settle();
    }

    void send(const QString& signal, const QVariantList& arguments) const {
        service->send(path, name, signal, arguments);
        bus.settle();
    }

    [[nodiscard]] std::vector<uint> closed() const {
        std::vector<uint> ids;
        for (const auto& call : service->calls(closeMethod))
            ids.push_back(call.arguments.value(0).toUInt());
        return ids;
    }

    TestLanguage english{QStringLiteral("en")};
    support::PrivateBus bus;
    std::unique_ptr<support::FakeService> service;
    Notifications notifications{bus.connection()};
    std::vector<std::string> opened;
};

} // namespace

TEST_F(NotificationsTest, saysTheCountsAndNothingElse) {
    showOne();
    ASSERT_EQ(service->calls(notify).size(), 1U);
    const QVariantList arguments = service->calls(notify)[0].arguments;
    ASSERT_EQ(arguments.size(), 8);
    EXPECT_EQ(arguments[0], QStringLiteral("Korvel Today"));
    EXPECT_EQ(arguments[1], QVariant(0U)) << "it replaces none";
    EXPECT_EQ(arguments[2], QStringLiteral("com.korvel.today"));
    EXPECT_EQ(arguments[3], QStringLiteral("2 overdue, 1 due today"));
    EXPECT_EQ(arguments[4], QString());
    EXPECT_EQ(
        arguments[5].toStringList(),
        (QStringList{QStringLiteral("default"), QStringLiteral("Open"), QStringLiteral("open"),
                     QStringLiteral("Open"), QStringLiteral("not-today"), QStringLiteral("Not today")}));
    const auto hints = qdbus_cast<QVariantMap>(arguments[6]);
    EXPECT_EQ(hints.value(QStringLiteral("desktop-entry")), QStringLiteral("com.korvel.today"));
    EXPECT_EQ(arguments[7], QVariant(-1));
}

TEST_F(NotificationsTest, opensByItsButtonAndByAClickOnIt) {
    for (const char* action : {"open", "default"}) {
        showOne();
        send(QStringLiteral("ActionInvoked"), {id, QString::fromLatin1(action)});
    }
    EXPECT_THAT(opened, ElementsAre("", ""));
}

TEST_F(NotificationsTest, givesTheActivationToken) {
    showOne();
    send(QStringLiteral("ActivationToken"), {id, QStringLiteral("token")});
    EXPECT_TRUE(opened.empty());
    send(QStringLiteral("ActionInvoked"), {id, QStringLiteral("open")});
    EXPECT_THAT(opened, ElementsAre("token"));
    showOne();
    send(QStringLiteral("ActionInvoked"), {id, QStringLiteral("open")});
    EXPECT_THAT(opened, ElementsAre("token", "")) << "a token is good for one time";
}

TEST_F(NotificationsTest, notTodayOpensNothingAndClosesIt) {
    showOne();
    send(QStringLiteral("ActionInvoked"), {id, QStringLiteral("not-today")});
    EXPECT_TRUE(opened.empty());
    EXPECT_THAT(closed(), ElementsAre(id));
}

TEST_F(NotificationsTest, ignoresTheNotificationsOfOthers) {
    send(QStringLiteral("ActionInvoked"), {id, QStringLiteral("open")});
    showOne();
    send(QStringLiteral("ActivationToken"), {id + 1, QStringLiteral("theirs")});
    send(QStringLiteral("ActionInvoked"), {id + 1, QStringLiteral("open")});
    EXPECT_TRUE(opened.empty());
    send(QStringLiteral("NotificationClosed"), {id + 1, 1U});
    send(QStringLiteral("ActionInvoked"), {id, QStringLiteral("open")});
    EXPECT_THAT(opened, ElementsAre(""));
}

TEST_F(NotificationsTest, isClosedWhenNothingIsDueAnyMore) {
    showOne();
    notifications.setCounts(0, 1);
    bus.settle();
    EXPECT_TRUE(closed().empty());
    notifications.setCounts(0, 0);
    bus.settle();
    EXPECT_THAT(closed(), ElementsAre(id));
    notifications.setCounts(0, 0);
    bus.settle();
    EXPECT_THAT(closed(), ElementsAre(id)) << "once";
}

TEST_F(NotificationsTest, isClosedThoughTheServiceHasNotAnsweredYet) {
    notifications.show(1, 0);
    notifications.setCounts(0, 0);
    EXPECT_TRUE(waitFor([this] { return !closed().empty(); }));
    EXPECT_THAT(closed(), ElementsAre(id));
}

TEST_F(NotificationsTest, isNotClosedWhereItsUserHasClosedIt) {
    showOne();
    send(QStringLiteral("NotificationClosed"), {id, 2U});
    notifications.setCounts(0, 0);
    bus.settle();
    EXPECT_TRUE(closed().empty());
}

TEST_F(NotificationsTest, isForgottenWithItsService) {
    showOne();
    service.reset();
    startService();
    bus.settle();
    send(QStringLiteral("ActionInvoked"), {id, QStringLiteral("open")});
    EXPECT_TRUE(opened.empty()) << "the number is another program's now";
    showOne();
    send(QStringLiteral("ActionInvoked"), {id, QStringLiteral("open")});
    EXPECT_THAT(opened, ElementsAre(""));
}

TEST_F(NotificationsTest, isSilentWithoutAService) {
    service.reset();
    bus.settle();
    notifications.show(1, 1);
    notifications.setCounts(0, 0);
    Notifications nowhere(QDBusConnection(QStringLiteral("none")));
    nowhere.show(1, 1);
    nowhere.setCounts(0, 0);
    bus.settle();
    EXPECT_TRUE(opened.empty());
}
