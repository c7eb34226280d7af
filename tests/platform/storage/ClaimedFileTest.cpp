#include "platform/storage/ClaimedFile.h"

#include "FailingCalls.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace {

using platform::claimedPath;
using platform::claimFile;
using platform::replaceClaimedFile;

class ClaimedFile : public testing::Test {
protected:
    const support::TemporaryFolder folder;
    const std::string file = folder.path("file");
};

TEST_F(ClaimedFile, renamesTheFileInItsFolder) {
    folder.write("file", "text");
    EXPECT_FALSE(claimFile(file));
    EXPECT_FALSE(folder.has("file"));
    EXPECT_EQ(claimedPath(file), folder.path("file.aside"));
    EXPECT_EQ(folder.read("file.aside"), "text");
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(ClaimedFile, replacesAnEarlierClaim) {
    folder.write("file", "new");
    folder.write("file.aside", "old");
    EXPECT_FALSE(claimFile(file));
    EXPECT_EQ(folder.read("file.aside"), "new");
}

TEST_F(ClaimedFile, endsWithOtherBytesAtTheOriginalPath) {
    folder.write("file", "text");
    std::filesystem::permissions(file, std::filesystem::perms(0640));
    EXPECT_FALSE(claimFile(file));
    EXPECT_FALSE(replaceClaimedFile(file, "other"));
    EXPECT_EQ(folder.read("file"), "other");
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(ClaimedFile, keepsAFileThatWasMadeInTheMeantime) {
    folder.write("file", "new");
    folder.write("file.aside", "old");
    EXPECT_FALSE(replaceClaimedFile(file, "other"));
    EXPECT_EQ(folder.read("file"), "new");
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(ClaimedFile, keepsTheClaimedFileWhenTheNewOneCannotBeWritten) {
    folder.write("file.aside", "old");
    for (const char* const call : {"openAt", "write", "sync", "link"}) {
        FailingCalls calls;
        calls.failAll(call, EIO);
        EXPECT_EQ(replaceClaimedFile(file, "other"), std::errc::io_error) << call;
        EXPECT_EQ(folder.read("file.aside"), "old") << call;
        EXPECT_EQ(folder.count(), 1U) << call;
    }
}

TEST_F(ClaimedFile, followsALinkAndLeavesIt) {
    folder.write("elsewhere/real", "text");
    std::filesystem::create_symlink("elsewhere/real", file);
    EXPECT_FALSE(claimFile(file));
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(claimedPath(file), folder.path("elsewhere/real.aside"));
    EXPECT_EQ(folder.read("elsewhere/real.aside"), "text");
    EXPECT_FALSE(replaceClaimedFile(file, "other"));
    EXPECT_EQ(folder.read("elsewhere/real"), "other");
    EXPECT_EQ(folder.count("elsewhere"), 1U);
}

TEST_F(ClaimedFile, returnsTheErrorOfTheStepThatFails) {
    EXPECT_EQ(claimFile(file), std::errc::no_such_file_or_directory);
    EXPECT_EQ(replaceClaimedFile(file, ""), std::errc::no_such_file_or_directory);
    EXPECT_EQ(claimFile(folder.path("nowhere/file")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(claimedPath(folder.path("nowhere/file")), std::nullopt);
    EXPECT_EQ(claimFile(""), std::errc::invalid_argument);
    EXPECT_EQ(replaceClaimedFile(std::string("a\0b", 3), ""), std::errc::invalid_argument);
}

TEST_F(ClaimedFile, syncsEachChange) {
    folder.write("file", "text");
    FailingCalls calls;
    EXPECT_FALSE(claimFile(file));
    EXPECT_FALSE(replaceClaimedFile(file, ""));
    EXPECT_THAT(calls.made(),
                testing::ElementsAre("readLink", "open", "rename", "sync", "close", // claimed
                                     "readLink", "open", "statusAt", "openAt", "changeOwner", "changeMode",
                                     "sync", "close", "link", "unlink", // the new file
                                     "unlink", "sync", "close"));
}

TEST_F(ClaimedFile, keepsTheFileInPlaceWhenTheRenameFails) {
    folder.write("file", "text");
    FailingCalls calls;
    calls.failAll("rename", EACCES);
    EXPECT_EQ(claimFile(file), std::errc::permission_denied);
    EXPECT_EQ(folder.read("file"), "text");
    EXPECT_FALSE(folder.has("file.aside"));
}

TEST_F(ClaimedFile, returnsTheErrorOfTheSync) {
    folder.write("file", "text");
    FailingCalls calls;
    calls.failAll("sync", EIO);
    EXPECT_EQ(claimFile(file), std::errc::io_error);
    EXPECT_EQ(replaceClaimedFile(file, ""), std::errc::io_error);
}

} // namespace
