#include "platform/system/Fatal.h"

#include <QtGlobal>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const auto endsBySigabrt = testing::KilledBySignal(SIGABRT);

void sayAborted(int) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, "aborted", 7);
}

} // namespace

TEST(FatalTest, endsBySigabrtWithNothingPrinted) {
    EXPECT_EXIT(platform::fatal(), endsBySigabrt, "^$");
}

TEST(FatalTest, leavesAHandlerOfSigabrtOut) {
    EXPECT_EXIT(
        {
            signal(SIGABRT, sayAborted);
            platform::fatal();
        },
        endsBySigabrt, "^$");
}

TEST(FatalTest, endsWhereSigabrtIsIgnored) {
    EXPECT_EXIT(
        {
            signal(SIGABRT, SIG_IGN);
            platform::fatal();
        },
        endsBySigabrt, "^$");
}

TEST(FatalTest, endsWhereSigabrtIsBlocked) {
    EXPECT_EXIT(
        {
            sigset_t all;
            sigfillset(&all);
            sigprocmask(SIG_SETMASK, &all, nullptr);
            platform::fatal();
        },
        endsBySigabrt, "^$");
}

TEST(FatalTest, leavesQtsMessageHandlerOut) {
    EXPECT_EXIT(
        {
            qInstallMessageHandler(
                [](QtMsgType, const QMessageLogContext&, const QString&) { sayAborted(0); });
            platform::fatal();
        },
        endsBySigabrt, "^$");
}

TEST(FatalTest, runsNoExitHandler) {
    EXPECT_EXIT(
        {
            std::atexit([] { sayAborted(0); });
            platform::fatal();
        },
        endsBySigabrt, "^$");
}

// The status of the process tells whether the kernel wrote a core, to a file or to a handler.
TEST(FatalTest, leavesNoCore) {
    EXPECT_EXIT(
        {
            rlimit unlimited;
            unlimited.rlim_cur = unlimited.rlim_max = RLIM_INFINITY;
            setrlimit(RLIMIT_CORE, &unlimited);
            platform::fatal();
        },
        [](int status) { return WIFSIGNALED(status) && !WCOREDUMP(status); }, "^$");
}

TEST(RequireTest, isFatalWhereTheConditionDoesNotHold) {
    EXPECT_EXIT(platform::require(false), endsBySigabrt, "^$");
}

TEST(RequireTest, returnsWhereTheConditionHolds) {
    EXPECT_EXIT(
        {
            platform::require(true);
            _exit(3);
        },
        testing::ExitedWithCode(3), "^$");
}
