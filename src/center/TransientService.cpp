#include "center/TransientService.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QList>
#include <QStringDecoder>
#include <QStringList>
#include <QUuid>

#include <algorithm>
#include <array>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace center {

namespace {

// The structures of the manager's interface, as it names them.
struct Property {
    QString name;
    QDBusVariant value;
};

struct ExecCommand {
    QString path;
    QStringList arguments;
    QStringList flags;
};

struct AuxiliaryUnit {
    QString name;
    QList<Property> properties;
};

QDBusArgument& operator<<(QDBusArgument& out, const Property& property) {
    out.beginStructure();
    out << property.name << property.value;
    out.endStructure();
    return out;
}

QDBusArgument& operator<<(QDBusArgument& out, const ExecCommand& command) {
    out.beginStructure();
    out << command.path << command.arguments << command.flags;
    out.endStructure();
    return out;
}

QDBusArgument& operator<<(QDBusArgument& out, const AuxiliaryUnit& unit) {
    out.beginStructure();
    out << unit.name << unit.properties;
    out.endStructure();
    return out;
}

// Nothing is read in these forms; Qt wants both directions of a type.
template <class Structure>
const QDBusArgument& operator>>(const QDBusArgument& in,
                                Structure&) requires(std::is_same_v<Structure, Property> ||
                                                     std::is_same_v<Structure, ExecCommand> ||
                                                     std::is_same_v<Structure, AuxiliaryUnit>) {
    return in;
}

void registerTypes() {
    static const bool isDone = [] {
        qDBusRegisterMetaType<Property>();
        qDBusRegisterMetaType<QList<Property>>();
        qDBusRegisterMetaType<ExecCommand>();
        qDBusRegisterMetaType<QList<ExecCommand>>();
        qDBusRegisterMetaType<AuxiliaryUnit>();
        qDBusRegisterMetaType<QList<AuxiliaryUnit>>();
        return true;
    }();
    static_cast<void>(isDone);
}

Property property(const char* name, const QVariant& value) {
    return {QString::fromLatin1(name), QDBusVariant(value)};
}

Property text(const char* name, const char* value) {
    return property(name, QString::fromLatin1(value));
}

QStringList listOf(const std::vector<std::string>& texts) {
    QStringList list;
    for (const std::string& text : texts)
        list.append(QString::fromStdString(text));
    return list;
}

// The name does not begin with "app-": by such a name a desktop would take the program for an application
// that is called like the rest of it.
QString unusedName() {
    return QStringLiteral("korvel-today-open-%1.service").arg(QUuid::createUuid().toString(QUuid::Id128));
}

QList<Property> propertiesOf(const std::string& program, const std::vector<std::string>& arguments) {
    const ExecCommand command{QString::fromStdString(program),
                              listOf(arguments),
                              {QStringLiteral("no-env-expand")}}; // a dollar is one
    return {text("Description", "Opened by Korvel Today"),
            // An answer comes when the program is executed; the service lasts as long as any process of it,
            // since the program that opens a URL ends before the application that it starts.
            text("Type", "exec"), text("ExitType", "cgroup"),
            // Nothing is kept of one that has failed.
            text("CollectMode", "inactive-or-failed"), text("Slice", "app.slice"),
            text("StandardInput", "null"), text("StandardOutput", "null"), text("StandardError", "null"),
            property("Environment", listOf(TransientService::environmentOfSession())),
            property("ExecStartEx", QVariant::fromValue(QList<ExecCommand>{command}))};
}

bool tellsOfSession(std::string_view name) {
    constexpr std::array<std::string_view, 9> names = {
        "DISPLAY", "WAYLAND_DISPLAY",    "XAUTHORITY", "DBUS_SESSION_BUS_ADDRESS", "PATH",
        "LANG",    "DESKTOP_STARTUP_ID", "LANGUAGE",   "DESKTOP_SESSION"};
    constexpr std::array<std::string_view, 6> prefixes = {"XDG_", "LC_", "QT_", "GTK_", "KDE_", "GNOME_"};
    return std::ranges::find(names, name) != names.end() ||
           std::ranges::any_of(prefixes, [&](std::string_view prefix) { return name.starts_with(prefix); });
}

bool isTaken(std::string_view assignment) {
    const bool hasControls = std::ranges::any_of(
        assignment, [](char byte) { return (byte >= 0 && byte < ' ') || byte == '\x7f'; });
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString decoded = decoder(QByteArrayView(assignment.data(), qsizetype(assignment.size())));
    return !hasControls && !decoder.hasError() && !decoded.isEmpty();
}

TransientService::Outcome outcomeOf(const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ReplyMessage)
        return TransientService::Outcome::Started;
    const QDBusError::ErrorType type = QDBusError(reply).type();
    const bool isMissing = type == QDBusError::NoReply || type == QDBusError::Timeout ||
                           type == QDBusError::TimedOut || type == QDBusError::Disconnected;
    return isMissing ? TransientService::Outcome::Unknown : TransientService::Outcome::Refused;
}

} // namespace

TransientService::TransientService(const QDBusConnection& bus)
    : manager_(bus, QStringLiteral("org.freedesktop.systemd1"), BusService::Start::ByCall) {
    registerTypes();
}

void TransientService::start(const std::string& program, const std::vector<std::string>& arguments,
                             std::function<void(Outcome)> done) {
    manager_.call(QStringLiteral("/org/freedesktop/systemd1"),
                  QStringLiteral("org.freedesktop.systemd1.Manager"), QStringLiteral("StartTransientUnit"),
                  {unusedName(), QStringLiteral("fail"),
                   QVariant::fromValue(propertiesOf(program, arguments)),
                   QVariant::fromValue(QList<AuxiliaryUnit>())},
                  [done = std::move(done)](const QDBusMessage& reply) { done(outcomeOf(reply)); });
}

std::vector<std::string> TransientService::environmentOfSession() {
    std::vector<std::string> found;
    for (char** variable = environ; variable && *variable; ++variable) {
        const std::string_view assignment = *variable;
        if (tellsOfSession(assignment.substr(0, assignment.find('='))) && isTaken(assignment))
            found.emplace_back(assignment);
    }
    return found;
}

} // namespace center
