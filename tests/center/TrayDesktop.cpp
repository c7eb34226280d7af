#include "TrayDesktop.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const TrayDesktop* theDesktop = nullptr;

// Starts an X server, which prints the number of its display to this pipe. -1 if that fails.
pid_t startServer(int numberPipe) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, numberPipe, 3);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string words[] = {"Xvfb",       "-displayfd", "3",   "-screen",   "0",
                           "640x480x24", "-nolisten",  "tcp", "-terminate"};
    char* arguments[std::size(words) + 1] = {};
    for (std::size_t i = 0; i < std::size(words); ++i)
        arguments[i] = words[i].data();
    pid_t process = -1;
    if (posix_spawnp(&process, "Xvfb", &actions, nullptr, arguments, environ) != 0)
        process = -1;
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

} // namespace

TrayDesktop::TrayDesktop() {
    theDesktop = this;
    int pipe[2];
    if (pipe2(pipe, O_CLOEXEC) != 0)
        return;
    server_ = startServer(pipe[1]);
    close(pipe[1]);
    std::string display = ":";
    for (char byte = 0; read(pipe[0], &byte, 1) == 1 && byte != '\n';)
        display += byte;
    close(pipe[0]);
    setenv("DISPLAY", display.c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("NO_AT_BRIDGE", "1", 1);
    setenv("XDG_DATA_DIRS", "/dev/null", 1); // an installed panel's icons have the names of ours
    setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().toUtf8().constData(), 1);
}

TrayDesktop::~TrayDesktop() {
    if (server_ > 0) {
        kill(server_, SIGTERM);
        waitpid(server_, nullptr, 0);
    }
}

const TrayDesktop& TrayDesktop::current() {
    return *theDesktop;
}
