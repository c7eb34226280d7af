#include "center/SessionState.h"

#include "support/Environment.h"
#include "support/FakeService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusObjectPath>

#include <memory>
#include <unistd.h>

using center::SessionState;
using support::waitFor;

namespace {

const QString loginName = QStringLiteral("org.freedesktop.login1");
const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
const QString sessionPath = QStringLiteral("/org/freedesktop/login1/session/_31");
const QString screenSaverName = QStringLiteral("org.freedesktop.ScreenSaver");
const QString screenSaverPath = QStringLiteral("/org/freedesktop/ScreenSaver");
const QString getSession = QStringLiteral("GetSession");
const QString getSessionByPid = QStringLiteral("GetSessionByPID");
const QString getAll = QStringLiteral("GetAll");

class SessionStateTest : public testing::Test {
protected:
    void startLogin(bool isActive, bool isLocked) {
        login = std::make_unique<support::FakeService>(systemBus, loginName);
        login->setProperty(QStringLiteral("Active"), isActive);
        login->setProperty(QStringLiteral("LockedHint"), isLocked);
        login->answer(getSession, {QVariant::fromValue(QDBusObjectPath(sessionPath))});
    }

    void startScreenSaver(bool isActive) {
        screenSaver = std::make_unique<support::FakeService>(sessionBus, screenSaverName);
        screenSaver->answer(QStringLiteral("GetActive"), {isActive});
    }

    SessionState& make() {
        state = std::make_unique<SessionState>(systemBus.connection(), sessionBus.connection());
        state->setChanged([this] { ++changed; });
        state->setLocked([this] { ++locked; });
        settle();
        return *state;
    }

    void settle() const {
        systemBus.settle();
        sessionBus.settle();
    }

    void sessionChanges(const QVariantMap& values, const QStringList& names = {}) const {
        login->send(sessionPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                    QStringLiteral("PropertiesChanged"), {sessionInterface, values, names});
        settle();
    }

    void screenSaverChanges(bool isActive) const {
        screenSaver->send(screenSaverPath, screenSaverName, QStringLiteral("ActiveChanged"), {isActive});
        settle();
    }

    support::EnvironmentVariable sessionId{"XDG_SESSION_ID", "1"};
    support::PrivateBus systemBus;
    support::PrivateBus sessionBus;
    std::unique_ptr<support::FakeService> login;
    std::unique_ptr<support::FakeService> screenSaver;
    std::unique_ptr<SessionState> state;
    int changed = 0;
    int locked = 0;
};

} // namespace

TEST_F(SessionStateTest, countsAsInUseWhereNobodyTells) {
    make();
    EXPECT_TRUE(state->isActiveAndUnlocked());
    const SessionState nowhere(QDBusConnection(QStringLiteral("none")),
                               QDBusConnection(QStringLiteral("none")));
    settle();
    EXPECT_TRUE(nowhere.isActiveAndUnlocked());
    EXPECT_EQ(changed + locked, 0);
}

TEST_F(SessionStateTest, isWhatLogindTells) {
    startLogin(true, false);
    make();
    EXPECT_TRUE(state->isActiveAndUnlocked());
    EXPECT_EQ(login->calls(getAll).size(), 1U);
    EXPECT_EQ(login->calls(getAll)[0].path, sessionPath);
    EXPECT_EQ(changed + locked, 0);
}

TEST_F(SessionStateTest, knowsASessionThatIsInactiveFromTheStart) {
    startLogin(false, false);
    make();
    EXPECT_FALSE(state->isActiveAndUnlocked());
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(locked, 0) << "another user's session is in front; nothing is locked";
}

TEST_F(SessionStateTest, followsLogind) {
    startLogin(true, false);
    make();
    sessionChanges({{QStringLiteral("LockedHint"), true}});
    EXPECT_FALSE(state->isActiveAndUnlocked());
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(locked, 1);
    sessionChanges({{QStringLiteral("Active"), false}});
    sessionChanges({{QStringLiteral("LockedHint"), false}});
    EXPECT_FALSE(state->isActiveAndUnlocked());
    EXPECT_EQ(changed, 1);
    sessionChanges({{QStringLiteral("Active"), true}, {QStringLiteral("IdleHint"), true}});
    EXPECT_TRUE(state->isActiveAndUnlocked());
    EXPECT_EQ(changed, 2);
    EXPECT_EQ(locked, 1);
}

TEST_F(SessionStateTest, asksForWhatHasChangedWithoutAValue) {
    startLogin(true, false);
    make();
    login->setProperty(QStringLiteral("LockedHint"), true);
    sessionChanges({}, {QStringLiteral("LockedHint")});
    EXPECT_TRUE(state->isLocked());
}

TEST_F(SessionStateTest, ignoresTheChangesOfOthers) {
    startLogin(true, false);
    make();
    login->send(sessionPath + QStringLiteral("2"), QStringLiteral("org.freedesktop.DBus.Properties"),
                QStringLiteral("PropertiesChanged"),
                {sessionInterface, QVariantMap{{QStringLiteral("LockedHint"), true}}, QStringList()});
    login->send(
        sessionPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
        {QStringLiteral("org.example"), QVariantMap{{QStringLiteral("LockedHint"), true}}, QStringList()});
    settle();
    EXPECT_FALSE(state->isLocked());
}

TEST_F(SessionStateTest, asksForTheSessionOfItsEnvironment) {
    startLogin(true, false);
    make();
    ASSERT_EQ(login->calls(getSession).size(), 1U);
    EXPECT_EQ(login->calls(getSession)[0].arguments, QVariantList{QStringLiteral("1")});
}

TEST_F(SessionStateTest, asksForTheUsersSessionElse) {
    sessionId.set(nullptr);
    startLogin(true, true);
    make();
    ASSERT_EQ(login->calls(getSession).size(), 1U);
    EXPECT_EQ(login->calls(getSession)[0].arguments, QVariantList{QStringLiteral("auto")});
    EXPECT_TRUE(state->isLocked());
}

TEST_F(SessionStateTest, asksForTheSessionOfTheProcessLast) {
    startLogin(true, true);
    login->refuse(getSession);
    login->answer(getSessionByPid, {QVariant::fromValue(QDBusObjectPath(sessionPath))});
    make();
    EXPECT_EQ(login->calls(getSession).size(), 2U);
    ASSERT_EQ(login->calls(getSessionByPid).size(), 1U);
    EXPECT_EQ(login->calls(getSessionByPid)[0].arguments, QVariantList{static_cast<uint>(getpid())});
    EXPECT_TRUE(state->isLocked());
}

TEST_F(SessionStateTest, countsAsInUseWithoutASession) {
    startLogin(false, true);
    login->refuse(getSession);
    make();
    EXPECT_TRUE(state->isActiveAndUnlocked());
    EXPECT_TRUE(login->calls(getAll).empty());
}

TEST_F(SessionStateTest, asksAgainWhenLogindHasStartedAnew) {
    startLogin(true, true);
    make();
    login.reset();
    settle();
    EXPECT_TRUE(state->isActiveAndUnlocked()) << "nobody tells";
    startLogin(false, false);
    settle();
    EXPECT_FALSE(state->isActiveAndUnlocked());
    sessionChanges({{QStringLiteral("Active"), true}});
    EXPECT_TRUE(state->isActiveAndUnlocked());
}

TEST_F(SessionStateTest, isLockedWhileTheScreenSaverIsActive) {
    startScreenSaver(true);
    make();
    EXPECT_TRUE(state->isLocked());
    EXPECT_EQ(locked, 1);
    screenSaverChanges(false);
    EXPECT_TRUE(state->isActiveAndUnlocked());
    screenSaverChanges(true);
    EXPECT_EQ(locked, 2);
    EXPECT_EQ(changed, 3);
    screenSaver.reset();
    settle();
    EXPECT_TRUE(state->isActiveAndUnlocked());
}

TEST_F(SessionStateTest, isLockedOnceThoughBothTellIt) {
    startLogin(true, false);
    startScreenSaver(false);
    make();
    screenSaverChanges(true);
    sessionChanges({{QStringLiteral("LockedHint"), true}});
    EXPECT_EQ(locked, 1);
    screenSaverChanges(false);
    EXPECT_TRUE(state->isLocked());
    sessionChanges({{QStringLiteral("LockedHint"), false}});
    EXPECT_FALSE(state->isLocked());
    EXPECT_EQ(locked, 1);
    EXPECT_EQ(changed, 2);
}

TEST_F(SessionStateTest, doesWithoutAScreenSaverThatDoesNotTell) {
    screenSaver = std::make_unique<support::FakeService>(sessionBus, screenSaverName);
    make();
    EXPECT_TRUE(state->isActiveAndUnlocked());
}
