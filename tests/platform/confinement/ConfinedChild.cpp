#include "platform/confinement/ConfinedChild.h"

#include "platform/storage/Files.h"

#include <cerrno>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

namespace {

constexpr int notConfined = 255; // no error has this number

} // namespace

std::string inConfinedChild(const std::function<std::error_code()>& confine,
                            const std::function<long()>& attempt) {
    const pid_t child = fork();
    if (child < 0)
        return "no process";
    if (child == 0) {
        alarm(20); // a process that hangs is killed
        if (confine())
            _exit(notConfined);
        errno = 0;
        _exit(attempt() < 0 ? errno : 0);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return "killed";
    const int error = WEXITSTATUS(status);
    if (error == notConfined)
        return "not confined";
    return error == 0 ? "done" : strerrorname_np(error);
}

long readWholeFile(const std::string& path) {
    std::error_code error;
    const bool isRead = platform::readFile(path, &error).has_value();
    errno = error.value();
    return isRead ? 0 : -1;
}

long asCall(const std::error_code& result) {
    errno = result.value();
    return result ? -1 : 0;
}

} // namespace support
