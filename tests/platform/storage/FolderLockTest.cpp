#include "platform/storage/FolderLock.h"

#include "FailingCalls.h"
#include "platform/storage/StorageError.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <unistd.h>

namespace {

using platform::FolderLock;

class FolderLockTest : public testing::Test {
protected:
    ~FolderLockTest() override { FolderLock::setPolicy(FolderLock::optional); }

    [[nodiscard]] bool isFree() const {
        const int other = open(folder.path().c_str(), O_RDONLY | O_DIRECTORY);
        const bool result = flock(other, LOCK_EX | LOCK_NB) == 0;
        close(other);
        return result;
    }

    const support::TemporaryFolder folder;
};

TEST_F(FolderLockTest, keepsOthersOutForAsLongAsItLives) {
    auto lock = std::make_unique<FolderLock>(folder.path());
    EXPECT_FALSE(lock->error());
    EXPECT_FALSE(isFree());
    lock.reset();
    EXPECT_TRUE(isFree());
    EXPECT_EQ(folder.count(), 0U) << "no file of its own";
}

TEST_F(FolderLockTest, isNotInheritedByProgramsThatAreStarted) {
    class Calls final : public platform::FileSystemCalls {
    public:
        Calls() { setCurrent(this); }
        ~Calls() override { setCurrent(nullptr); }
        int lock(int file, int operation) override {
            isInherited = (fcntl(file, F_GETFD) & FD_CLOEXEC) == 0;
            return FileSystemCalls::lock(file, operation);
        }
        bool isInherited = true;
    } calls;
    const FolderLock lock(folder.path());
    EXPECT_FALSE(calls.isInherited);
}

TEST_F(FolderLockTest, waitsAsLongAsThePolicySaysAndThenGoesOnOrFails) {
    const FolderLock others(folder.path());
    for (const FolderLock::Policy& policy : {FolderLock::optional, FolderLock::required}) {
        FolderLock::setPolicy(policy);
        FailingCalls calls;
        const FolderLock lock(folder.path());
        EXPECT_EQ(calls.paused(), policy.longestWait);
        EXPECT_EQ(lock.error(),
                  policy.isRequired ? make_error_code(platform::StorageError::LockHeld) : std::error_code());
    }
    EXPECT_EQ(FolderLock::optional.longestWait.count(), 200);
    EXPECT_EQ(FolderLock::required.longestWait.count(), 5000);
}

TEST_F(FolderLockTest, isTakenAsSoonAsTheOtherProgramIsDone) {
    class Calls final : public FailingCalls {
    public:
        explicit Calls(std::unique_ptr<FolderLock>& others)
            : others_(others) {}
        void pause(std::chrono::milliseconds duration) override {
            FailingCalls::pause(duration);
            others_.reset();
        }

    private:
        std::unique_ptr<FolderLock>& others_;
    };
    FolderLock::setPolicy(FolderLock::required);
    auto others = std::make_unique<FolderLock>(folder.path());
    Calls calls(others);
    const FolderLock lock(folder.path());
    EXPECT_FALSE(lock.error());
    EXPECT_LE(calls.paused().count(), 5);
    EXPECT_FALSE(isFree());
}

TEST_F(FolderLockTest, isDoneWithoutWhereTheFileSystemHasNone) {
    FolderLock::setPolicy(FolderLock::required);
    for (const int error : {ENOLCK, EOPNOTSUPP, ENOSYS, EINVAL, EBADF}) {
        FailingCalls calls;
        calls.failAll("lock", error);
        EXPECT_FALSE(FolderLock(folder.path()).error()) << error;
        EXPECT_EQ(calls.paused().count(), 0) << error;
    }
    EXPECT_FALSE(FolderLock(folder.path("absent")).error());
}

TEST_F(FolderLockTest, failsWhereItIsRequiredAndRefused) {
    for (const char* const call : {"lock", "open"}) {
        FailingCalls calls;
        calls.failAll(call, EACCES);
        FolderLock::setPolicy(FolderLock::required);
        EXPECT_EQ(FolderLock(folder.path()).error(), std::errc::permission_denied) << call;
        FolderLock::setPolicy(FolderLock::optional);
        EXPECT_FALSE(FolderLock(folder.path()).error()) << call;
    }
}

TEST_F(FolderLockTest, goesOnAfterASignal) {
    class Calls final : public FailingCalls {
    public:
        int lock(int file, int operation) override {
            if (interruptions_-- > 0)
                return errno = EINTR, -1;
            return FailingCalls::lock(file, operation);
        }

    private:
        int interruptions_ = 2;
    } calls;
    const FolderLock lock(folder.path());
    EXPECT_FALSE(isFree());
}

} // namespace
