#include "platform/system/DetachedProcess.h"

#include "OpenerFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using platform::findProgram;
using platform::startDetached;
using support::EnvironmentVariable;
using testing::ElementsAre;

namespace {

class DetachedProcessTest : public testing::Test {
protected:
    void SetUp() override { folder.install("probe"); }
    OpenerReport start(const std::vector<std::string>& arguments = {"probe"}) {
        EXPECT_TRUE(startDetached(folder.program("probe"), arguments));
        return folder.reportOf("probe");
    }

    OpenerFolder folder;
};

} // namespace

TEST_F(DetachedProcessTest, passesTheArgumentsByteForByte) {
    const std::vector<std::string> arguments = {"probe",      "",
                                                "a b",        "%20'\"\\$(x)`y`*",
                                                "line\nfeed", "\xc3\xa4\xf0\x9f\x98\x80",
                                                "\xff\xfe",   std::string(100'000, 'x')};
    EXPECT_EQ(start(arguments).arguments, arguments);
}

TEST_F(DetachedProcessTest, startsNothingForAnArgumentWithANul) {
    const AdoptedOrphans orphans;
    EXPECT_FALSE(startDetached(folder.program("probe"), {"probe", std::string("a\0b", 3)}));
    EXPECT_FALSE(folder.hasReport("probe"));
}

TEST_F(DetachedProcessTest, leavesNoChildBehind) {
    start();
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(DetachedProcessTest, returnsWhileTheProgramRuns) {
    folder.makeProbesWait();
    const OpenerReport report = start();
    ASSERT_GT(report.process, 0);
    EXPECT_EQ(kill(report.process, 0), 0);
    folder.release();
    EXPECT_TRUE(waitForEnd(report.process));
}

TEST_F(DetachedProcessTest, theProgramHasASessionOfItsOwnAndDoesNotLeadIt) {
    const OpenerReport report = start();
    EXPECT_NE(report.session, getsid(0));
    EXPECT_NE(report.session, report.process); // so no terminal can become its own
}

TEST_F(DetachedProcessTest, theProgramsStreamsLeadNowhere) {
    const auto files = start().files;
    for (const int standard : {0, 1, 2})
        EXPECT_EQ(files.at(standard), "/dev/null");
}

TEST_F(DetachedProcessTest, theProgramInheritsNoFile) {
    const int kept = open("/etc/passwd", O_RDONLY); // without O_CLOEXEC
    const int high = fcntl(kept, F_DUPFD, 900);
    EXPECT_EQ(start().files.size(), 3U);
    close(kept);
    close(high);
}

TEST_F(DetachedProcessTest, worksWhereTheStandardStreamsAreClosed) {
    EXPECT_EXIT(
        {
            for (const int standard : {0, 1, 2})
                close(standard);
            const bool isStarted = startDetached(folder.program("probe"), {"probe"});
            const auto files = folder.reportOf("probe").files;
            _exit(isStarted && files.size() == 3 && files.at(0) == "/dev/null" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(DetachedProcessTest, theProgramHasFreshSignals) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto handler = signal(SIGPIPE, SIG_IGN);
    const OpenerReport report = start();
    signal(SIGPIPE, handler);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(report.ignoredSignals, "0000000000000000");
    EXPECT_EQ(report.blockedSignals, "0000000000000000");
}

TEST_F(DetachedProcessTest, leavesTheCallersSignalsAsTheyWere) {
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, nullptr, &before);
    start();
    sigset_t after;
    pthread_sigmask(SIG_BLOCK, nullptr, &after);
    for (int number = 1; number < NSIG; ++number)
        EXPECT_EQ(sigismember(&before, number), sigismember(&after, number)) << number;
}

TEST_F(DetachedProcessTest, isFalseWhereNoProcessCanBeMade) {
    EXPECT_EXIT(
        {
            // Root is not bound by a limit of processes, so the call becomes another user's.
            rlimit none;
            none.rlim_cur = none.rlim_max = 0;
            setrlimit(RLIMIT_NPROC, &none);
            if (geteuid() == 0 && setresuid(65534, 65534, 65534) != 0)
                _exit(2);
            _exit(startDetached("/bin/true", {"true"}) ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(DetachedProcessTest, isFalseWhereTheProgramCannotBeExecuted) {
    folder.folder().write("bin/script", "#!/nowhere/interpreter\n");
    std::filesystem::permissions(folder.program("script"), std::filesystem::perms(0755));
    EXPECT_FALSE(startDetached(folder.program("script"), {"script"}));
    EXPECT_FALSE(startDetached("/nowhere/program", {"program"}));
}

TEST_F(DetachedProcessTest, findsAProgramInTheOrderOfThePath) {
    std::filesystem::create_directory(folder.folder().path("first"));
    const std::string first = folder.folder().path("first");
    const EnvironmentVariable path("PATH", "/nowhere:" + first + ":" + folder.folder().path("bin"));
    EXPECT_EQ(findProgram("probe"), folder.program("probe"));
    std::filesystem::create_symlink(KORVEL_OPENER_PROBE, first + "/probe");
    EXPECT_EQ(findProgram("probe"), first + "/probe");
}

TEST_F(DetachedProcessTest, findsNoProgramThatIsNotThere) {
    EXPECT_EQ(findProgram("other"), std::nullopt);
}

TEST_F(DetachedProcessTest, aFolderIsNoProgram) {
    std::filesystem::create_directory(folder.program("folder"));
    EXPECT_EQ(findProgram("folder"), std::nullopt);
}

TEST_F(DetachedProcessTest, aFileThatCannotBeExecutedIsNoProgram) {
    folder.folder().write("bin/text", "#!/bin/sh\n");
    EXPECT_EQ(findProgram("text"), std::nullopt);
}

TEST_F(DetachedProcessTest, aLinkToNothingIsNoProgram) {
    std::filesystem::create_symlink("/nowhere", folder.program("dangling"));
    EXPECT_EQ(findProgram("dangling"), std::nullopt);
}

TEST_F(DetachedProcessTest, usesTheSystemsPathWhereNoneIsSet) {
    const EnvironmentVariable path("PATH", nullptr);
    EXPECT_TRUE(findProgram("sh"));
}

TEST_F(DetachedProcessTest, anEmptyPathLeadsToTheCurrentFolder) {
    const EnvironmentVariable path("PATH", "");
    EXPECT_EQ(findProgram("a name that no file here has"), std::nullopt);
}
