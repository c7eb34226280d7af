#include "FailingCalls.h"
#include "platform/storage/Files.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace {

using platform::pathAside;
using platform::replaceAside;
using platform::setAside;

class SetAside : public testing::Test {
protected:
    const support::TemporaryFolder folder;
    const std::string file = folder.path("file");
};

TEST_F(SetAside, givesAFileAnotherNameBesideItsOwn) {
    folder.write("file", "text");
    EXPECT_FALSE(setAside(file));
    EXPECT_FALSE(folder.has("file"));
    EXPECT_EQ(pathAside(file), folder.path("file.aside"));
    EXPECT_EQ(folder.read("file.aside"), "text");
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(SetAside, takesThePlaceOfWhatWasAside) {
    folder.write("file", "new");
    folder.write("file.aside", "old");
    EXPECT_FALSE(setAside(file));
    EXPECT_EQ(folder.read("file.aside"), "new");
}

TEST_F(SetAside, endsWithOtherBytesInTheOldPlace) {
    folder.write("file", "text");
    std::filesystem::permissions(file, std::filesystem::perms(0640));
    EXPECT_FALSE(setAside(file));
    EXPECT_FALSE(replaceAside(file, "other"));
    EXPECT_EQ(folder.read("file"), "other");
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(SetAside, leavesWhatCameToTheOldPlaceSince) {
    folder.write("file", "new");
    folder.write("file.aside", "old");
    EXPECT_FALSE(replaceAside(file, "other"));
    EXPECT_EQ(folder.read("file"), "new");
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(SetAside, keepsWhatIsAsideWhereItsPlaceCannotBeFilled) {
    folder.write("file.aside", "old");
    for (const char* const call : {"openAt", "write", "sync", "link"}) {
        FailingCalls calls;
        calls.failAll(call, EIO);
        EXPECT_EQ(replaceAside(file, "other"), std::errc::io_error) << call;
        EXPECT_EQ(folder.read("file.aside"), "old") << call;
        EXPECT_EQ(folder.count(), 1U) << call;
    }
}

TEST_F(SetAside, followsALinkAndLeavesIt) {
    folder.write("elsewhere/real", "text");
    std::filesystem::create_symlink("elsewhere/real", file);
    EXPECT_FALSE(setAside(file));
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(pathAside(file), folder.path("elsewhere/real.aside"));
    EXPECT_EQ(folder.read("elsewhere/real.aside"), "text");
    EXPECT_FALSE(replaceAside(file, "other"));
    EXPECT_EQ(folder.read("elsewhere/real"), "other");
    EXPECT_EQ(folder.count("elsewhere"), 1U);
}

TEST_F(SetAside, saysWhatFails) {
    EXPECT_EQ(setAside(file), std::errc::no_such_file_or_directory);
    EXPECT_EQ(replaceAside(file, ""), std::errc::no_such_file_or_directory);
    EXPECT_EQ(setAside(folder.path("nowhere/file")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(pathAside(folder.path("nowhere/file")), std::nullopt);
    EXPECT_EQ(setAside(""), std::errc::invalid_argument);
    EXPECT_EQ(replaceAside(std::string("a\0b", 3), ""), std::errc::invalid_argument);
}

TEST_F(SetAside, isOnTheDiskWhenItIsDone) {
    folder.write("file", "text");
    FailingCalls calls;
    EXPECT_FALSE(setAside(file));
    EXPECT_FALSE(replaceAside(file, ""));
    EXPECT_THAT(calls.made(),
                testing::ElementsAre("readLink", "open", "rename", "sync", "close", // aside
                                     "readLink", "open", "statusAt", "openAt", "changeOwner", "changeMode",
                                     "sync", "close", "link", "unlink", // the new one
                                     "unlink", "sync", "close"));
}

TEST_F(SetAside, leavesTheFileWhereTheRenameFails) {
    folder.write("file", "text");
    FailingCalls calls;
    calls.failAll("rename", EACCES);
    EXPECT_EQ(setAside(file), std::errc::permission_denied);
    EXPECT_EQ(folder.read("file"), "text");
    EXPECT_FALSE(folder.has("file.aside"));
}

TEST_F(SetAside, saysThatTheFolderCannotBeBroughtToTheDisk) {
    folder.write("file", "text");
    FailingCalls calls;
    calls.failAll("sync", EIO);
    EXPECT_EQ(setAside(file), std::errc::io_error);
    EXPECT_EQ(replaceAside(file, ""), std::errc::io_error);
}

} // namespace
