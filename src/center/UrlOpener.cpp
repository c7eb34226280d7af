#include "center/UrlOpener.h"

#include "platform/system/DetachedProcess.h"
#include "platform/system/Workspace.h"

#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QVariantMap>

#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace center {

namespace {

bool startChild(const platform::Workspace::Command& command) {
    return platform::startDetached(command.program, command.arguments);
}

std::string textOf(const char* path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The value of a line "name:\tvalue"; empty if there is none.
std::string_view valueOf(std::string_view status, std::string_view name) {
    const std::string start = std::string(name) + ":\t";
    std::size_t at = status.starts_with(start) ? 0 : status.find("\n" + start);
    if (at == std::string_view::npos)
        return {};
    at = status.find('\t', at) + 1;
    return status.substr(at, status.find('\n', at) - at);
}

} // namespace

UrlOpener::UrlOpener(const QDBusConnection& bus, Way way)
    : way_(way) {
    if (!bus.isConnected())
        return;
    if (way == Way::Service)
        services_.emplace(bus);
    else if (way == Way::Portal)
        portal_.emplace(bus, QStringLiteral("org.freedesktop.portal.Desktop"), BusService::Start::ByCall);
}

bool UrlOpener::open(const QString& url) {
    if (way_ == Way::Portal)
        return openByPortal(url);
    if (services_)
        return openByService(url);
    const auto command = platform::Workspace::commandFor(url);
    return command && startChild(*command);
}

UrlOpener::Way UrlOpener::wayOfProcess() {
    if (QFile::exists(QStringLiteral("/.flatpak-info")))
        return Way::Portal;
    return isConfined(textOf("/proc/self/status")) ? Way::Service : Way::Child;
}

bool UrlOpener::isConfined(std::string_view status) {
    const auto isSet = [status](std::string_view name) {
        const std::string_view value = valueOf(status, name);
        return !value.empty() && value != "0";
    };
    return isSet("NoNewPrivs") || isSet("Seccomp");
}

// Where no manager takes it, a confined application is better than none. Not where no answer came: the
// application would come up twice.
bool UrlOpener::openByService(const QString& url) {
    const auto command = platform::Workspace::commandFor(url);
    if (!command)
        return false;
    services_->start(command->program, command->arguments, [command](TransientService::Outcome outcome) {
        if (outcome == TransientService::Outcome::Refused)
            startChild(*command);
    });
    return true;
}

// The portal takes no paths and no URLs of files: it wants proof that the caller may read them.
bool UrlOpener::openByPortal(const QString& url) {
    if (!portal_)
        return false;
    const auto ask = [this](const char* method, const QVariant& what) {
        portal_->call(QStringLiteral("/org/freedesktop/portal/desktop"),
                      QStringLiteral("org.freedesktop.portal.OpenURI"), QString::fromLatin1(method),
                      {QString(), what, QVariantMap()});
    };
    if (!url.startsWith(u'/')) {
        ask("OpenURI", url);
        return true;
    }
    const int folder = ::open(QFile::encodeName(url).constData(), O_PATH | O_CLOEXEC);
    if (folder < 0)
        return false;
    QDBusUnixFileDescriptor descriptor;
    descriptor.giveFileDescriptor(folder);
    ask("OpenFile", QVariant::fromValue(descriptor));
    return true;
}

} // namespace center
