#include "program/Program.h"

#include "center/CenterProcess.h"
#include "panel/Confinement.h"
#include "panel/PanelProcess.h"
#include "panel/Snapshot.h"
#include "platform/storage/GroupContainers.h"
#include "platform/system/DisplayConnection.h"
#include "platform/system/NumberText.h"
#include "platform/system/SessionBus.h"
#include "program/Options.h"
#include "resources/Language.h"

#include <QApplication>
#include <QFile>

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace program {

namespace {

// That of whoever has started this program: of Wayland, else of X11's startup notification.
// It is taken out of the environment, since what this program starts has none of it.
std::string takeActivationToken() {
    std::string taken;
    for (const char* name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        if (taken.empty())
            taken = qgetenv(name).toStdString();
        qunsetenv(name);
    }
    return taken;
}

// A file that is opened later must not become a standard stream.
void openStandardStreams() {
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDWR);
    if (descriptor > STDERR_FILENO)
        close(descriptor);
}

// Without an address, the library of the bus would start one where there is none.
void startNoSessionBus() {
    if (!qEnvironmentVariableIsEmpty(platform::sessionBusVariable))
        return;
    const QByteArray path = qgetenv("XDG_RUNTIME_DIR") + "/bus";
    const bool isThere = QFile::exists(QFile::decodeName(path));
    qputenv(platform::sessionBusVariable,
            isThere ? "unix:path=" + path : QByteArray(platform::addressOfNoBus));
}

// Qt would take options of its own from the arguments, which this program does not have.
class Application final {
public:
    explicit Application(char** arguments)
        : application_(count_, arguments) {
        platform::DisplayConnection::setReached();
        QGuiApplication::setDesktopFileName(QStringLiteral("com.korvel.today"));
        resources::installLanguage();
    }

private:
    int count_ = 1;
    QApplication application_;
};

// The role in which the program starts itself; nobody else has such a socket to give.
std::optional<int> socketOfExtension(int argc, char** argv) {
    if (argc != 3 || std::string_view(argv[1]) != "--extension")
        return std::nullopt;
    return platform::numberFromText<int>(argv[2]).value_or(-1);
}

bool isSocket(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode);
}

int usageError(const QString& message) {
    std::fprintf(stderr, "korvel-today: %s\n", qUtf8Printable(message));
    return 2;
}

} // namespace

int run(int argc, char** argv) {
    openStandardStreams();
    if (const auto socket = socketOfExtension(argc, argv)) {
        if (!isSocket(*socket))
            return usageError(QStringLiteral("--extension is for the program itself"));
        panel::Confinement confinement;
        if (const std::error_code error = confinement.begin(*socket)) {
            std::fprintf(stderr, "korvel-today: the panel's process cannot be confined: %s\n",
                         error.message().c_str());
            return 1;
        }
        platform::DisplayConnection::watch();
        const Application application(argv);
        return panel::runExtension(*socket, confinement);
    }
    const auto parsed = parseOptions({argv + 1, argv + argc});
    if (const auto* fault = std::get_if<UsageError>(&parsed))
        return usageError(QStringLiteral("argument %1: %2").arg(fault->place).arg(fault->message));
    auto options = std::get<Options>(parsed);
    if (!options.containers.empty())
        options.containers = std::filesystem::absolute(options.containers).string();
    if (options.showsHelp || options.showsVersion) {
        const QString help = options.isJson ? helpJson() : helpText();
        std::fputs(qUtf8Printable(options.showsHelp ? help : versionText()), stdout);
        return 0;
    }
    if (!options.containers.empty())
        platform::GroupContainers::setFolder(options.containers);
    if (options.snapshot)
        panel::prepareSnapshot(*options.snapshot);
    const center::Start start{{options.command, takeActivationToken()}, options.containers};
    std::optional<center::SingleInstance> instance;
    if (!options.snapshot) {
        instance.emplace(center::instanceName(options.containers));
        if (const auto status = center::askRunning(*instance, start))
            return *status;
    }
    startNoSessionBus();
    platform::DisplayConnection::watch();
    const Application application(argv);
    if (options.snapshot)
        return panel::writeSnapshot(*options.snapshot) ? 0 : 1;
    return center::runCenter(*instance, start);
}

} // namespace program
