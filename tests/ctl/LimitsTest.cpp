#include "ctl/Limits.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>
#include <sys/resource.h>
#include <unistd.h>

namespace ctl {
namespace {

// Calls a function as one that may not throw.
void call(const std::function<void()>& function) noexcept {
    function();
}

template <class Exception>
void endWith(const Exception& exception) {
    prepareForLimits();
    call([&] { throw exception; });
}

constexpr const char* noMemory = "^korvel-todayctl: there is not enough memory\n$";

TEST(LimitsDeathTest, endsInOrderWhereMemoryIsShortInAFunctionThatMayNotThrow) {
    EXPECT_EXIT(endWith(std::bad_alloc()), testing::ExitedWithCode(1), noMemory);
    EXPECT_EXIT(endWith(std::length_error("a text")), testing::ExitedWithCode(1), noMemory);
}

TEST(LimitsDeathTest, hidesNoFaultOfTheProgram) {
    EXPECT_EXIT(endWith(std::logic_error("a fault")), testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT(
        {
            prepareForLimits();
            std::terminate();
        },
        testing::KilledBySignal(SIGABRT), "^$");
}

TEST(LimitsDeathTest, failsToWriteAFileThatMayNotGrow) {
    EXPECT_EXIT(
        {
            prepareForLimits();
            rlimit limit{};
            setrlimit(RLIMIT_FSIZE, &limit);
            const int file = open(testing::TempDir().c_str(), O_TMPFILE | O_WRONLY, 0600);
            _exit(file >= 0 && write(file, "a", 1) == -1 && errno == EFBIG ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(LimitsDeathTest, startsOtherProgramsWithTheSignalAsItWas) {
    EXPECT_EXIT(
        {
            prepareForLimits();
            execl("/bin/sh", "sh", "-c", "kill -XFSZ $$", nullptr);
        },
        testing::KilledBySignal(SIGXFSZ), "");
}

} // namespace
} // namespace ctl
