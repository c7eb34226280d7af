#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDeadlineTimer>
#include <QTimer>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

// No folders of services: nothing is ever started by a call.
std::string configuration(const std::string& folder) {
    return "<busconfig><type>session</type><listen>unix:tmpdir=" + folder +
           "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>";
}

// Starts the daemon, which prints its address to this pipe. -1 if that fails.
pid_t start(const std::string& file, int addressPipe) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int its = 3;
    posix_spawn_file_actions_adddup2(&actions, addressPipe, its);
    // It complains of limits that only matter to the bus of a system.
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string configurationOption = "--config-file=" + file;
    std::array<std::string, 5> words = {"dbus-daemon", configurationOption, "--nofork", "--nopidfile",
                                        "--print-address=3"};
    std::array<char*, 6> arguments = {words[0].data(), words[1].data(), words[2].data(),
                                      words[3].data(), words[4].data(), nullptr};
    pid_t process = -1;
    if (posix_spawnp(&process, "dbus-daemon", &actions, nullptr, arguments.data(), environ) != 0)
        process = -1;
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

std::string firstLineOf(int pipe) {
    std::string line;
    for (char byte = 0; read(pipe, &byte, 1) == 1 && byte != '\n';)
        line += byte;
    return line;
}

} // namespace

bool support::waitFor(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(10s);
    QTimer waking; // the wait for events ends now and then
    waking.start(20ms);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

QString support::freshConnectionName() {
    static int count = 0;
    return QStringLiteral("test-%1").arg(++count);
}

support::PrivateBus::PrivateBus()
    : connection_(QString()) {
    const std::string file = folder_.write("bus.conf", configuration(folder_.path()));
    int pipe[2];
    if (pipe2(pipe, O_CLOEXEC) != 0)
        return;
    daemon_ = start(file, pipe[1]);
    close(pipe[1]);
    address_ = QString::fromStdString(firstLineOf(pipe[0]));
    close(pipe[0]);
    connection_ = QDBusConnection::connectToBus(address_, freshConnectionName());
    EXPECT_TRUE(connection_.isConnected()) << "no private bus";
}

support::PrivateBus::~PrivateBus() {
    QDBusConnection::disconnectFromBus(connection_.name());
    if (daemon_ > 0) {
        kill(daemon_, SIGTERM);
        waitpid(daemon_, nullptr, 0);
    }
}

// The bus delivers in order, and a fake service handles in order, so that the answer to a question comes
// after all that was sent before it.
void support::PrivateBus::settle() const {
    for (int round = 0; round < 6; ++round) {
        awaitAnswer(QStringLiteral("org.freedesktop.DBus"));
        for (const QString& service : fakeServices_)
            awaitAnswer(service);
        QCoreApplication::processEvents();
    }
}

void support::PrivateBus::awaitAnswer(const QString& service) const {
    const QDBusPendingCallWatcher question(connection_.asyncCall(QDBusMessage::createMethodCall(
        service, QStringLiteral("/"), QStringLiteral("org.example.Settling"), QStringLiteral("Settle"))));
    EXPECT_TRUE(waitFor([&] { return question.isFinished(); }));
}
