#include "center/SessionState.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

#include <unistd.h>
#include <utility>

namespace center {

namespace {

QString managerPath() {
    return QStringLiteral("/org/freedesktop/login1");
}

QString managerInterface() {
    return QStringLiteral("org.freedesktop.login1.Manager");
}

QString sessionInterface() {
    return QStringLiteral("org.freedesktop.login1.Session");
}

QString propertiesInterface() {
    return QStringLiteral("org.freedesktop.DBus.Properties");
}

QString screenSaverPath() {
    return QStringLiteral("/org/freedesktop/ScreenSaver");
}

QString screenSaverName() {
    return QStringLiteral("org.freedesktop.ScreenSaver"); // of the service and its interface
}

bool isReply(const QDBusMessage& message) {
    return message.type() == QDBusMessage::ReplyMessage;
}

std::optional<bool> truthOf(const QVariantMap& properties, const QString& name, std::optional<bool> before) {
    const auto found = properties.constFind(name);
    return found == properties.constEnd() ? before : std::optional(found->toBool());
}

} // namespace

SessionState::SessionState(const QDBusConnection& systemBus, const QDBusConnection& sessionBus)
    : login_(systemBus, QStringLiteral("org.freedesktop.login1"), BusService::Start::Never)
    , screenSaver_(sessionBus, screenSaverName(), BusService::Start::Never) {
    login_.setOwnerChanged([this] {
        isActive_.reset();
        hasLockedHint_.reset();
        update();
        findSession();
    });
    screenSaver_.setOwnerChanged([this] {
        isScreenSaverActive_.reset();
        update();
        readScreenSaver();
    });
    screenSaver_.listen(screenSaverPath(), screenSaverName(), QStringLiteral("ActiveChanged"),
                        [this](const QDBusMessage& signal) {
                            isScreenSaverActive_ = signal.arguments().value(0).toBool();
                            update();
                        });
}

bool SessionState::isLocked() const {
    return hasLockedHint_.value_or(false) || isScreenSaverActive_.value_or(false);
}

// A program that the user's service manager has started belongs to no session; "auto" is the user's session
// at the display then. Versions of logind that do not know it find that of the process at least.
void SessionState::findSession() {
    QVariantList questions;
    if (const QString id = qEnvironmentVariable("XDG_SESSION_ID"); !id.isEmpty())
        questions.append(id);
    questions.append(QStringLiteral("auto"));
    questions.append(static_cast<uint>(getpid()));
    askForSession(questions);
}

// Asks one question after the other until one is answered: an identifier or a number of a process.
void SessionState::askForSession(const QVariantList& questions) {
    if (questions.isEmpty())
        return;
    const QVariant& question = questions.front();
    const QString method = question.typeId() == QMetaType::UInt ? QStringLiteral("GetSessionByPID")
                                                                : QStringLiteral("GetSession");
    login_.call(managerPath(), managerInterface(), method, {question},
                [this, others = questions.mid(1)](const QDBusMessage& reply) {
                    if (isReply(reply))
                        follow(reply.arguments().value(0).value<QDBusObjectPath>().path());
                    else
                        askForSession(others);
                });
}

// Properties that have changed are told with their values, or by their names only.
void SessionState::follow(const QString& session) {
    if (session.isEmpty())
        return;
    if (session != std::exchange(session_, session))
        login_.listen(session, propertiesInterface(), QStringLiteral("PropertiesChanged"),
                      [this, session](const QDBusMessage& signal) {
                          const QVariantList arguments = signal.arguments();
                          if (session != session_ || arguments.value(0) != sessionInterface())
                              return;
                          take(qdbus_cast<QVariantMap>(arguments.value(1)));
                          if (!arguments.value(2).toStringList().isEmpty())
                              readSession();
                      });
    readSession();
}

void SessionState::readSession() {
    login_.call(session_, propertiesInterface(), QStringLiteral("GetAll"), {sessionInterface()},
                [this](const QDBusMessage& reply) {
                    if (isReply(reply))
                        take(qdbus_cast<QVariantMap>(reply.arguments().value(0)));
                });
}

void SessionState::take(const QVariantMap& properties) {
    isActive_ = truthOf(properties, QStringLiteral("Active"), isActive_);
    hasLockedHint_ = truthOf(properties, QStringLiteral("LockedHint"), hasLockedHint_);
    update();
}

void SessionState::readScreenSaver() {
    screenSaver_.call(screenSaverPath(), screenSaverName(), QStringLiteral("GetActive"), {},
                      [this](const QDBusMessage& reply) {
                          if (!isReply(reply))
                              return;
                          isScreenSaverActive_ = reply.arguments().value(0).toBool();
                          update();
                      });
}

void SessionState::update() {
    const bool isNowLocked = isLocked();
    const bool isNowInUse = isActiveAndUnlocked();
    const bool hasBeenLocked = !std::exchange(wasLocked_, isNowLocked) && isNowLocked;
    const bool hasChanged = isNowInUse != std::exchange(wasInUse_, isNowInUse);
    if (hasBeenLocked && locked_)
        locked_();
    if (hasChanged && changed_)
        changed_();
}

} // namespace center
