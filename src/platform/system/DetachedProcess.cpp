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

void takeEmptyFiles() {
    const int null = open("/dev/null", O_RDWR);
    if (null < 0)
        _exit(127);
    for (int standard = 0; standard <= 2; ++standard)
        dup2(null, standard);
    close_range(3, ~0U, 0);
}

// In the first child, between fork and exec: nothing here may allocate or lock.
[[noreturn]] void startAndLeave(const char* path, char* const* arguments) {
    setsid();
    const pid_t program = fork();
    if (program != 0)
        _exit(program < 0 ? 1 : 0);
    takeDefaultSignals();
    takeEmptyFiles();
    execv(path, arguments);
    _exit(127);
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

    // No handler of this process may run in the child.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t child = fork();
    if (child == 0)
        startAndLeave(path.c_str(), pointers.data());
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (child < 0)
        return false;
    int status = 0; // the child ends at once; the program is then nobody's child here
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return true; // reaped by someone else: it ran
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace platform
