#include "platform/system/DetachedProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {

namespace {

bool isProgram(const std::string& path) {
    struct stat file {};
    return stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) && access(path.c_str(), X_OK) == 0;
}

std::string searchPath() {
    if (const char* path = std::getenv("PATH"))
        return path;
    return "/usr/local/bin:/usr/bin:/bin";
}

void takeDefaultSignals() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal)
        sigaction(signal, &action, nullptr); // fails for those that cannot be handled
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Beside the three standard files only the one for the report stays open, until the program is executed. It
// is moved twice, since the process may have had no standard files.
constexpr int reportFile = 3;

void takeEmptyFiles(int report) {
    const int moved = fcntl(report, F_DUPFD_CLOEXEC, reportFile + 1);
    const int null = open("/dev/null", O_RDWR);
    if (moved < 0 || null < 0)
        _exit(127);
    for (int standard = 0; standard <= 2; ++standard)
        dup2(null, standard);
    dup3(moved, reportFile, O_CLOEXEC);
    close_range(reportFile + 1, ~0U, 0);
}

// In the first child, between fork and exec: nothing here may allocate or lock. A byte in the report says
// that the program cannot be executed; otherwise the report is closed empty.
[[noreturn]] void startAndLeave(const char* path, char* const* arguments, int report) {
    setsid();
    const pid_t program = fork();
    if (program != 0)
        _exit(program < 0 ? 1 : 0);
    takeDefaultSignals();
    takeEmptyFiles(report);
    execv(path, arguments);
    [[maybe_unused]] const ssize_t written = write(reportFile, "", 1);
    _exit(127);
}

// Waits for the first child, which ends at once; the program is then nobody's child here. False if the child
// could not start another.
bool hasLeft(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return true; // reaped by someone else: it ran
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Waits until the other end of a pipe is closed. False if there was a byte in it.
bool isEmpty(int pipe) {
    char byte = 0;
    ssize_t count = 0;
    do
        count = read(pipe, &byte, 1);
    while (count < 0 && errno == EINTR);
    return count == 0;
}

} // namespace

std::optional<std::string> findProgram(const std::string& name) {
    const std::string folders = searchPath();
    std::string_view rest = folders;
    for (;;) {
        const std::size_t end = rest.find(':');
        const std::string folder(rest.substr(0, end));
        const std::string path =
            (folder.empty() ? "." : folder) + "/" + name; // an empty entry is the current folder
        if (isProgram(path))
            return path;
        if (end == std::string_view::npos)
            return std::nullopt;
        rest.remove_prefix(end + 1);
    }
}

bool startDetached(const std::string& path, const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        if (argument.find('\0') != std::string::npos)
            return false;
        pointers.push_back(const_cast<char*>(argument.c_str())); // execv changes nothing
    }
    pointers.push_back(nullptr);

    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0)
        return false;
    // No handler of this process may run in the child.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t child = fork();
    if (child == 0)
        startAndLeave(path.c_str(), pointers.data(), report[1]);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    close(report[1]);
    const bool isStarted = child > 0 && hasLeft(child) && isEmpty(report[0]);
    close(report[0]);
    return isStarted;
}

} // namespace platform
