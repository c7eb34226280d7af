#include "ctl/ShellTest.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace ctl {

namespace {

std::string textOf(const std::string& file) {
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

} // namespace

int ShellTest::shell(const std::string& line, const std::function<void()>& before) {
    const std::string output = scratch + "/output";
    const std::string errors = scratch + "/errors";
    const pid_t child = fork();
    if (child == 0) {
        constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
        dup2(::open(output.c_str(), flags, 0600), STDOUT_FILENO);
        dup2(::open(errors.c_str(), flags, 0600), STDERR_FILENO);
        setenv("CTL", KORVEL_TODAYCTL, 1);
        setenv("KORVEL_GROUP_CONTAINERS", scratch.c_str(), 1);
        if (before)
            before();
        execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    out = textOf(output);
    err = textOf(errors);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace ctl
