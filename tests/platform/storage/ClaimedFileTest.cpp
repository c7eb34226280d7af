#include "platform/storage/ClaimedFile.h"

#include "FailingCalls.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/StorageError.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <memory>

namespace {

using platform::isMade;
using platform::StorageError;

class ClaimedFile : public testing::Test {
protected:
    ClaimedFile() { EXPECT_FALSE(claim.find(file)); }

    const support::TemporaryFolder folder;
    const std::string file = folder.path("file");
    platform::ClaimedFile claim;
};

TEST_F(ClaimedFile, renamesTheFileInItsFolder) {
    folder.write("file", "text");
    EXPECT_FALSE(claim.claim());
    EXPECT_FALSE(folder.has("file"));
    EXPECT_EQ(claim.path(), folder.path("file.aside"));
    EXPECT_EQ(folder.read("file.aside"), "text");
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(ClaimedFile, keepsAnEarlierClaim) {
    folder.write("file", "new");
    folder.write("file.aside", "old");
    EXPECT_EQ(claim.claim(), std::errc::file_exists);
    EXPECT_EQ(folder.read("file.aside"), "old");
    EXPECT_EQ(folder.read("file"), "new");
}

TEST_F(ClaimedFile, keepsAnEarlierClaimWhereTheFileSystemHasNoSuchRename) {
    for (const int error : {EINVAL, ENOSYS}) {
        folder.write("file", "new");
        folder.write("file.aside", "old");
        FailingCalls calls;
        calls.failAll("renameToFree", error);
        EXPECT_EQ(claim.claim(), std::errc::file_exists);
        EXPECT_EQ(folder.read("file.aside"), "old");
        EXPECT_EQ(folder.read("file"), "new");
        std::filesystem::remove(folder.path("file.aside"));
        EXPECT_FALSE(claim.claim());
        EXPECT_EQ(folder.read("file.aside"), "new");
        EXPECT_FALSE(folder.has("file"));
    }
}

TEST_F(ClaimedFile, endsWithOtherBytesAtTheOriginalPath) {
    folder.write("file", "text");
    std::filesystem::permissions(file, std::filesystem::perms(0640));
    EXPECT_FALSE(claim.claim());
    EXPECT_FALSE(claim.resume());
    EXPECT_FALSE(claim.replace("other"));
    EXPECT_EQ(folder.read("file"), "other");
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(ClaimedFile, isKeptUnderAnotherNameIfAsked) {
    for (const char* const name : {"file.odd", "file.odd-2", "file.odd-3"}) {
        folder.write("file", name);
        std::string kept;
        EXPECT_FALSE(claim.claim());
        EXPECT_FALSE(claim.resume());
        EXPECT_FALSE(claim.replaceAndKeep("other", ".odd", kept));
        EXPECT_EQ(kept, folder.path(name));
        EXPECT_EQ(folder.read(name), name);
        EXPECT_EQ(folder.read("file"), "other");
        EXPECT_FALSE(folder.has("file.aside"));
    }
}

TEST_F(ClaimedFile, keepsAFileThatWasMadeInTheMeantime) {
    folder.write("file", "new");
    folder.write("file.aside", "old");
    EXPECT_FALSE(claim.resume());
    EXPECT_FALSE(claim.replace("other"));
    EXPECT_EQ(folder.read("file"), "new");
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(ClaimedFile, keepsTheClaimedFileWhenTheNewOneCannotBeWritten) {
    folder.write("file.aside", "old");
    EXPECT_FALSE(claim.resume());
    for (const char* const call : {"openAt", "write", "sync", "renameToFree"}) {
        FailingCalls calls;
        calls.failAll(call, EIO);
        const std::error_code error = claim.replace("other");
        EXPECT_EQ(error, std::errc::io_error) << call;
        EXPECT_FALSE(isMade(error)) << call;
        EXPECT_EQ(folder.read("file.aside"), "old") << call;
        EXPECT_EQ(folder.count(), 1U) << call;
    }
}

TEST_F(ClaimedFile, doesNotTakeTheModeOfALinkInItsPlace) {
    folder.write("elsewhere", "");
    folder.write("file.aside", "old");
    EXPECT_FALSE(claim.resume());
    std::filesystem::remove(folder.path("file.aside"));
    std::filesystem::create_symlink("elsewhere", folder.path("file.aside"));
    EXPECT_EQ(claim.replace("other"), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(folder.has("file"));
}

TEST_F(ClaimedFile, followsALinkAndLeavesIt) {
    folder.write("elsewhere/real", "text");
    std::filesystem::create_symlink("elsewhere/real", file);
    EXPECT_FALSE(claim.find(file));
    EXPECT_FALSE(claim.claim());
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(claim.path(), folder.path("elsewhere/real.aside"));
    EXPECT_EQ(folder.read("elsewhere/real.aside"), "text");
    EXPECT_FALSE(claim.resume());
    EXPECT_FALSE(claim.replace("other"));
    EXPECT_EQ(folder.read("elsewhere/real"), "other");
    EXPECT_EQ(folder.count("elsewhere"), 1U);
}

TEST_F(ClaimedFile, returnsTheErrorOfTheStepThatFails) {
    EXPECT_EQ(claim.claim(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(claim.resume(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(claim.find(folder.path("nowhere/file")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(claim.find(""), std::errc::invalid_argument);
    EXPECT_EQ(claim.find(std::string("a\0b", 3)), std::errc::invalid_argument);
}

TEST_F(ClaimedFile, syncsEachChange) {
    folder.write("file", "text");
    FailingCalls calls;
    EXPECT_FALSE(claim.claim());
    EXPECT_FALSE(claim.resume());
    EXPECT_FALSE(claim.replace(""));
    EXPECT_THAT(calls.made(),
                testing::ElementsAre("renameToFree", "sync",           // claimed
                                     "openAt", "statusAt", "statusOf", // resumed
                                     "statusAt", "statusOf", "statusOf", "openAt", "changeOwner",
                                     "changeMode", "sync", "close", "renameToFree", // the new file
                                     "close", "unlink", "sync"));
}

TEST_F(ClaimedFile, keepsTheFileInPlaceWhenTheRenameFails) {
    folder.write("file", "text");
    FailingCalls calls;
    calls.failAll("renameToFree", EACCES);
    EXPECT_EQ(claim.claim(), std::errc::permission_denied);
    EXPECT_EQ(folder.read("file"), "text");
    EXPECT_FALSE(folder.has("file.aside"));
}

TEST_F(ClaimedFile, tellsThatAClaimMayBeLostWhereTheSyncOfItsFolderFails) {
    folder.write("file", "text");
    FailingCalls calls;
    calls.failAt(1, EIO);
    const std::error_code error = claim.claim();
    EXPECT_EQ(error, std::errc::io_error);
    EXPECT_TRUE(isMade(error));
    EXPECT_TRUE(folder.has("file.aside"));
}

TEST_F(ClaimedFile, isReadWhereItWasEvenIfItsFolderIsReplaced) {
    folder.write("folder/file.aside", "old");
    ASSERT_FALSE(claim.find(folder.path("folder/file")));
    ASSERT_FALSE(claim.resume());
    std::filesystem::rename(folder.path("folder"), folder.path("moved"));
    folder.write("folder/file.aside", "new");
    EXPECT_EQ(claim.read(), "old");
    EXPECT_FALSE(claim.replace("other"));
    EXPECT_EQ(folder.read("moved/file"), "other");
    EXPECT_EQ(folder.read("folder/file.aside"), "new");
}

TEST_F(ClaimedFile, isNotLookedForWithoutEndWhereItsStatusFails) {
    folder.write("file.aside", "old");
    FailingCalls calls;
    calls.failAll("statusAt", EIO);
    EXPECT_EQ(claim.resume(), std::errc::io_error);
}

TEST_F(ClaimedFile, leavesANewFileInTheOldPlaceWhereTheFileSystemHasNoSuchRename) {
    // Another program replaces the file between the two steps of the renaming.
    class Meanwhile final : public FailingCalls {
    public:
        explicit Meanwhile(const support::TemporaryFolder& folder)
            : folder_(folder) {
            failAll("renameToFree", EINVAL);
        }
        int link(int opened, const char* from, const char* to) override {
            const int result = FailingCalls::link(opened, from, to);
            folder_.write("next", "newer");
            std::filesystem::rename(folder_.path("next"), folder_.path("file"));
            return result;
        }

    private:
        const support::TemporaryFolder& folder_;
    };
    folder.write("file", "old");
    Meanwhile calls(folder);
    EXPECT_FALSE(claim.claim());
    EXPECT_EQ(folder.read("file.aside"), "old");
    EXPECT_EQ(folder.read("file"), "newer");
}

TEST_F(ClaimedFile, isEndedWhereTheFileSystemHasNoLinks) {
    folder.write("file", "old");
    FailingCalls calls;
    calls.failAll("link", EPERM);
    EXPECT_FALSE(claim.claim());
    EXPECT_FALSE(claim.resume());
    EXPECT_FALSE(claim.replace("other"));
    EXPECT_EQ(folder.read("file"), "other");
}

TEST_F(ClaimedFile, isWorkedOnByOneProgramOnly) {
    folder.write("file.aside", "old");
    auto other = std::make_unique<platform::ClaimedFile>();
    ASSERT_FALSE(other->find(file));
    ASSERT_FALSE(other->resume());
    FailingCalls calls; // which does not pause
    EXPECT_EQ(claim.resume(), StorageError::LockHeld);
    EXPECT_EQ(calls.paused(), platform::FolderLock::optional.longestWait);
    other.reset(); // its program ends and leaves the claim
    EXPECT_FALSE(claim.resume());
}

TEST_F(ClaimedFile, isNotTakenForTheOneThatAnotherProgramHasEnded) {
    // The other program ends its claim, and a third makes one, after this one has opened the file.
    class Meanwhile final : public FailingCalls {
    public:
        explicit Meanwhile(const support::TemporaryFolder& folder)
            : folder_(folder) {}
        int lock(int opened, int operation) override {
            if (!isDone_)
                folder_.write("next", "new");
            if (!isDone_)
                std::filesystem::rename(folder_.path("next"), folder_.path("file.aside"));
            isDone_ = true;
            return FailingCalls::lock(opened, operation);
        }

    private:
        const support::TemporaryFolder& folder_;
        bool isDone_ = false;
    };
    folder.write("file.aside", "old");
    Meanwhile calls(folder);
    EXPECT_FALSE(claim.resume());
    platform::ClaimedFile other;
    ASSERT_FALSE(other.find(file));
    EXPECT_EQ(other.resume(), StorageError::LockHeld) << "the lock is the new file's";
}

} // namespace
