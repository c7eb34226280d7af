#include "host/Process.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace host {

namespace {

std::vector<std::string> environmentWith(const Variables& variables) {
    std::vector<std::string> result;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        bool isReplaced = false;
        for (const auto& [name, value] : variables)
            isReplaced = isReplaced || text.starts_with(name + '=');
        if (!isReplaced)
            result.push_back(text);
    }
    for (const auto& [name, value] : variables)
        result.push_back(name + '=' + value);
    return result;
}

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str())); // execvpe changes nothing
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

Process::Process(const std::vector<std::string>& words, const Variables& variables, const sigset_t& blocked) {
    const std::vector<std::string> environment = environmentWith(variables);
    const std::vector<char*> arguments = pointersTo(words);
    const std::vector<char*> entries = pointersTo(environment);
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ != 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent)
        _exit(127); // it died before it could be asked for
    sigprocmask(SIG_SETMASK, &blocked, nullptr);
    execvpe(arguments[0], arguments.data(), entries.data());
    std::fprintf(stderr, "korvel-demo-host: %s: %s\n", arguments[0], std::strerror(errno));
    _exit(127);
}

bool Process::hasEnded() {
    int status = 0;
    if (pid_ > 0 && waitpid(pid_, &status, WNOHANG) == pid_)
        collect(status);
    return pid_ <= 0;
}

void Process::collect(int status) {
    pid_ = -1;
    exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

Process::~Process() {
    if (hasEnded())
        return;
    kill(pid_, SIGTERM);
    kill(pid_, SIGCONT); // one that was stopped hears it only then
    sigset_t childEnds;
    sigemptyset(&childEnds);
    sigaddset(&childEnds, SIGCHLD);
    timespec start{};
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &start);
    do {
        if (hasEnded())
            return;
        // Another child's end, too, wakes this up; a second is never too long to look again.
        constexpr timespec moment{1, 0};
        sigtimedwait(&childEnds, nullptr, &moment);
        clock_gettime(CLOCK_MONOTONIC, &now);
    } while (now.tv_sec - start.tv_sec <= grace.tv_sec);
    if (hasEnded())
        return;
    kill(pid_, SIGKILL);
    int status = 0;
    waitpid(pid_, &status, 0);
}

} // namespace host
