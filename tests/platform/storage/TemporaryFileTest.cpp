// What is left of temporary files: nothing, save by a process that is killed, and that for an hour.
#include "platform/storage/TemporaryFile.h"

#include "FailingCalls.h"
#include "platform/storage/Files.h"
#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using platform::replaceFile;
using support::TemporaryFolder;

class TemporaryFileTest : public testing::Test {
protected:
    static constexpr double written = 1'700'000'000;
    static constexpr double hour = 3600;

    // Leaves a file of that name, written at that moment.
    void leave(const std::string& name) const {
        folder.write(name, "left");
        const timespec moment{static_cast<time_t>(written), 0};
        const timespec times[] = {moment, moment};
        ASSERT_EQ(utimensat(AT_FDCWD, folder.path(name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }
    [[nodiscard]] bool isRemovedBy(double moment) {
        clock.set(moment);
        EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
        return !folder.has(abandoned);
    }

    const std::string abandoned = ".korvel-0123456789abcdef";
    const TemporaryFolder folder;
    support::ManualClock clock{written};
};

TEST_F(TemporaryFileTest, abandonedOnesGoAfterAnHour) {
    leave(abandoned);
    EXPECT_FALSE(isRemovedBy(written + hour - 1));
    EXPECT_TRUE(isRemovedBy(written + hour));
}

TEST_F(TemporaryFileTest, onesOfTheFutureStay) {
    leave(abandoned);
    EXPECT_FALSE(isRemovedBy(written - 100 * hour));
}

TEST_F(TemporaryFileTest, onesThatAreBeingWrittenStay) {
    leave(abandoned);
    const int writer = open(folder.path(abandoned).c_str(), O_RDONLY);
    ASSERT_EQ(flock(writer, LOCK_EX | LOCK_NB), 0);
    EXPECT_FALSE(isRemovedBy(written + 2 * hour));
    close(writer);
    EXPECT_TRUE(isRemovedBy(written + 2 * hour));
}

TEST_F(TemporaryFileTest, onesOfAFileSystemWithoutLocksStay) {
    leave(abandoned);
    FailingCalls calls;
    calls.failAll("lock", ENOLCK);
    EXPECT_FALSE(isRemovedBy(written + 2 * hour));
}

TEST_F(TemporaryFileTest, filesOfOtherNamesStay) {
    const std::vector<std::string> names = {".korvel-",
                                            ".korvel-0123456789abcde",
                                            ".korvel-0123456789abcdefa",
                                            ".korvel-0123456789ABCDEF",
                                            "korvel-0123456789abcdef",
                                            ".new-0123456789abcdef"};
    for (const std::string& name : names)
        leave(name);
    clock.set(written + 2 * hour);
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    for (const std::string& name : names)
        EXPECT_TRUE(folder.has(name)) << name;
}

TEST_F(TemporaryFileTest, foldersLinksAndFifosStay) {
    std::filesystem::create_directory(folder.path(".korvel-0000000000000001"));
    std::filesystem::create_symlink("nowhere", folder.path(".korvel-0000000000000002"));
    ASSERT_EQ(mkfifo(folder.path(".korvel-0000000000000003").c_str(), 0600), 0);
    clock.set(written + 1e9);
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    EXPECT_EQ(folder.count(), 4U);
}

TEST_F(TemporaryFileTest, aFolderThatCannotBeListedIsNoError) {
    FailingCalls calls;
    calls.failAll("names", EACCES);
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
}

TEST_F(TemporaryFileTest, isLockedByItsWriter) {
    class Calls final : public FailingCalls {
    public:
        explicit Calls(const TemporaryFolder& folder)
            : folder_(folder) {}
        ssize_t write(int file, const void* bytes, std::size_t count) override {
            for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
                const int other = ::open(entry.path().c_str(), O_RDONLY);
                isLocked = flock(other, LOCK_EX | LOCK_NB) != 0;
                ::close(other);
            }
            return FailingCalls::write(file, bytes, count);
        }
        bool isLocked = false;

    private:
        const TemporaryFolder& folder_;
    } calls(folder);
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    EXPECT_TRUE(calls.isLocked);
}

// --- signals

class SignalTable : public TemporaryFileTest, public testing::WithParamInterface<int> {};

// Sends this process a signal before each of the steps in turn.
class SignallingCalls final : public FailingCalls {
public:
    SignallingCalls(int signal, std::size_t step)
        : signal_(signal)
        , step_(step) {}
    ssize_t write(int file, const void* bytes, std::size_t count) override {
        return step(), FailingCalls::write(file, bytes, count);
    }
    int sync(int file) override { return step(), FailingCalls::sync(file); }
    int rename(int folder, const char* from, const char* to) override {
        return step(), FailingCalls::rename(folder, from, to);
    }

private:
    void step() {
        if (step_-- == 0)
            raise(signal_);
    }
    int signal_;
    std::size_t step_;
};

// The steps: write, the file's sync, rename, the folder's sync.
TEST_P(SignalTable, endsTheProcessButLeavesNoFile) {
    for (std::size_t step = 0; step < 4; ++step) {
        folder.write("file", "old");
        const pid_t child = fork();
        if (child == 0) {
            signal(GetParam(), SIG_DFL);
            SignallingCalls calls(GetParam(), step);
            (void)replaceFile(folder.path("file"), "new");
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == GetParam()) << step;
        EXPECT_EQ(folder.read("file"), "new") << step;
        EXPECT_EQ(folder.count(), 1U) << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Signals, SignalTable, testing::Values(SIGTERM, SIGINT, SIGHUP),
                         [](const auto& row) { return std::string(sigabbrev_np(row.param)); });

TEST_F(TemporaryFileTest, signalsThatWereBlockedStayBlocked) {
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGINT);
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    sigset_t after;
    pthread_sigmask(SIG_SETMASK, &before, &after);
    EXPECT_TRUE(sigismember(&after, SIGINT));
    EXPECT_FALSE(sigismember(&after, SIGTERM));
}

} // namespace
