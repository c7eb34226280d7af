#include "center/Extension.h"

#include "platform/storage/GroupContainers.h"
#include "platform/system/SessionBus.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace center {

using namespace std::chrono_literals;

namespace {

constexpr int socketOfExtension = 3; // the first descriptor after the standard streams
constexpr auto longestAnswer = 15s;  // of a process that has much to do
constexpr auto longestEnd = 5s;      // a choice is carried out after half a second

// The program's own path; where an update has put another file there, the file that runs.
QString ownProgram() {
    const QString running = QStringLiteral("/proc/self/exe");
    const QString path = QCoreApplication::applicationFilePath();
    struct stat ours {};
    struct stat there {};
    const bool isSame = stat(running.toLatin1().constData(), &ours) == 0 &&
                        stat(QFile::encodeName(path).constData(), &there) == 0 &&
                        ours.st_dev == there.st_dev && ours.st_ino == there.st_ino;
    return isSame ? path : running;
}

} // namespace

Extension::Extension() {
    deadline_.setSingleShot(true);
    QObject::connect(&deadline_, &QTimer::timeout, &deadline_, [this] {
        if (process_)
            process_->kill();
    });
}

Extension::~Extension() {
    connection_.reset();
    if (process_)
        process_->disconnect();
}

// The session bus is the centre's alone: the extension gets an address that leads nowhere, since without one
// it would be found in the runtime folder; or that of the accessibility bus, while assistive programs are in
// use.
QProcessEnvironment Extension::environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(platform::sessionBusVariable),
                       accessibilityBus_.isEmpty() ? QLatin1String(platform::addressOfNoBus)
                                                   : accessibilityBus_);
    environment.remove(QStringLiteral("AT_SPI_BUS_ADDRESS"));
    environment.insert(QStringLiteral("KORVEL_GROUP_CONTAINERS"),
                       QFile::decodeName(platform::GroupContainers::folder().c_str()));
    // Nothing is typed into the panel, and input methods are reached over the session bus.
    environment.insert(QStringLiteral("QT_IM_MODULE"), QStringLiteral("none"));
    // The first two are spent with the centre's own first window, and of the session's manager the centre is
    // the client.
    for (const char* variable :
         {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID", "SESSION_MANAGER", "QT_IM_MODULES"})
        environment.remove(QLatin1String(variable));
    return environment;
}

void Extension::start() {
    if (process_)
        return;
    int ends[2];
    isReady_ = isEnding_ = wasAsked_ = false;
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        QTimer::singleShot(0, &deadline_, [this] {
            if (ended_)
                ended_(false);
        });
        return;
    }
    connection_ = std::make_unique<channel::ConnectionToExtension>(ends[0]);
    connection_->setReceived([this](const channel::FromExtension& message) { take(message); });
    connection_->setEnded([this] { terminate(); });
    process_ = std::make_unique<QProcess>();
    process_->setProcessEnvironment(environment());
    process_->setProcessChannelMode(QProcess::ForwardedChannels);
    process_->setStandardInputFile(QProcess::nullDevice());
    process_->setChildProcessModifier([socket = ends[1]] {
        if (socket == socketOfExtension)
            fcntl(socket, F_SETFD, 0);
        else
            dup2(socket, socketOfExtension);
    });
    const auto ended = [this] { processEnded(); };
    QObject::connect(process_.get(), &QProcess::finished, process_.get(), ended, Qt::QueuedConnection);
    QObject::connect(
        process_.get(), &QProcess::errorOccurred, process_.get(),
        [ended](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                ended();
        },
        Qt::QueuedConnection);
    process_->start(ownProgram(), {QStringLiteral("--extension"), QString::number(socketOfExtension)});
    close(ends[1]);
    deadline_.start(longestAnswer);
}

void Extension::quit() {
    if (!process_)
        return;
    wasAsked_ = true;
    isReady_ = false;
    if (connection_)
        connection_->send(channel::Quit{});
    deadline_.start(longestEnd);
}

void Extension::waitForEnd() {
    connection_.reset(); // whose end means the same as a request to quit
    if (process_)
        process_->waitForFinished(2000);
}

void Extension::send(const channel::ToExtension& message) {
    if (!connection_)
        return;
    connection_->send(message);
    const bool isAnswered =
        std::holds_alternative<channel::Show>(message) || std::holds_alternative<channel::Hide>(message);
    if (isAnswered && isReady_)
        deadline_.start(longestAnswer);
}

void Extension::take(const channel::FromExtension& message) {
    if (!wasAsked_ &&
        (std::holds_alternative<channel::Shown>(message) || std::holds_alternative<channel::Closed>(message)))
        deadline_.stop();
    const auto* ready = std::get_if<channel::Ready>(&message);
    if (!ready) {
        if (received_)
            received_(message);
        return;
    }
    if (ready->version != channel::protocolVersion) {
        terminate();
        return;
    }
    if (wasAsked_)
        return;
    deadline_.stop();
    isReady_ = true;
    if (ready_)
        ready_();
}

// One that does not end by itself is killed.
void Extension::terminate() {
    isEnding_ = std::exchange(isReady_, false);
    if (!process_)
        return;
    process_->terminate();
    deadline_.start(longestEnd);
}

void Extension::processEnded() {
    if (!process_)
        return;
    deadline_.stop();
    connection_.reset();
    std::exchange(process_, nullptr).release()->deleteLater();
    isReady_ = isEnding_ = false;
    if (ended_)
        ended_(wasAsked_);
}

} // namespace center
