// The host application is started for Info by a process that is not confined.
#include "ctl/ConfinementTest.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ctl {
namespace {

namespace plist = platform::plist;
using testing::HasSubstr;

class OpenerProcessTest : public CtlConfinementTest {
protected:
    OpenerProcessTest() {
        prctl(PR_SET_CHILD_SUBREAPER, 1); // whoever loses its parent becomes a child of this process
        writeOutside("bin/gio", "#!/bin/sh\ncat /proc/self/status " + outside("secret") + " > " +
                                    outside("opened.new") + "; echo \"$*\" >> " + outside("opened.new") +
                                    "; mv " + outside("opened.new") + " " + outside("opened"));
        chmod(outside("bin/gio").c_str(), 0755);
    }
    ~OpenerProcessTest() override { prctl(PR_SET_CHILD_SUBREAPER, 0); }

    [[nodiscard]] std::string withOpener(const std::string& rest) const {
        return "PATH=" + outside("bin") + ":/usr/bin:/bin; " + rest;
    }
    // Waits for all children of this process, also those that it has adopted.
    static int countOfChildren() {
        int count = 0;
        while (waitpid(-1, nullptr, 0) > 0)
            ++count;
        return count;
    }
};

TEST_F(OpenerProcessTest, isStartedUnconfined) {
    EXPECT_EQ(shell(withOpener("exec $CTL act plan 20 info")), 0) << err;
    EXPECT_EQ(countOfChildren(), 1) << "the opener";
    const std::string opened = textOf(outside("opened"));
    EXPECT_THAT(opened, HasSubstr("\nNoNewPrivs:\t0\n"));
    EXPECT_THAT(opened, HasSubstr("\nSeccomp:\t0\n"));
    EXPECT_THAT(opened, HasSubstr("secretopen korvelWidget://tw_edit_transaction\n"));
    EXPECT_EQ(*settings().find("edit_transaction_plan_pk"), plist::Value("plan"));
}

TEST_F(OpenerProcessTest, isNotStartedWhereNothingIsAskedFor) {
    for (const std::string streams : {"", " >&-", " 2>&-", " <&- >&- 2>&-"}) {
        EXPECT_EQ(shell(withOpener("exec $CTL act other 20 info" + streams)), 1) << streams;
        EXPECT_EQ(countOfChildren(), 0) << "nothing is left";
        EXPECT_FALSE(std::filesystem::exists(outside("opened"))) << streams;
    }
}

TEST_F(OpenerProcessTest, failsWithoutAnOpener) {
    EXPECT_EQ(shell("PATH=" + outside("none") + " $CTL act plan 20 info"), 1);
    EXPECT_EQ(err, "korvel-todayctl: neither gio nor xdg-open could be started to open the host\n");
    EXPECT_EQ(*settings().find("url_string"), plist::Value("tw_edit_transaction"));
}

// The command waits for the container's lock, which this process holds, when it is ended.
class EndedTest : public OpenerProcessTest, public testing::WithParamInterface<int> {
protected:
    // The child of a process; waits for there to be one.
    static pid_t childOf(pid_t parent) {
        for (;;)
            for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
                std::ifstream status(entry.path() / "stat");
                std::string pid;
                std::string name;
                std::string state;
                pid_t its = 0;
                if (status >> pid >> name >> state >> its && its == parent)
                    return std::stoi(pid);
            }
    }
};

INSTANTIATE_TEST_SUITE_P(BySignal, EndedTest, testing::Values(SIGTERM, SIGKILL));

TEST_P(EndedTest, leavesNoProcess) {
    const int lock = ::open(container.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    const pid_t command = fork();
    if (command == 0) {
        setenv("PATH", outside("bin").c_str(), 1);
        execl(KORVEL_TODAYCTL, KORVEL_TODAYCTL, "--containers", scratch.c_str(), "act", "plan", "20", "info",
              nullptr);
        _exit(127);
    }
    const pid_t waiting = childOf(command);
    ASSERT_EQ(kill(command, GetParam()), 0);
    int status = 0;
    EXPECT_EQ(waitpid(command, &status, 0), command);
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(waitpid(waiting, &status, 0), waiting);
    EXPECT_TRUE(WIFEXITED(status)) << "by itself";
    EXPECT_FALSE(std::filesystem::exists(outside("opened")));
    ::close(lock);
}

} // namespace
} // namespace ctl
