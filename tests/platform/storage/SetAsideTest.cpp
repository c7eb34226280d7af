#include "FailingCalls.h"
#include "platform/storage/Files.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace {

using platform::pathAside;
using platform::removeAside;
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

TEST_F(SetAside, removesWhatIsAsideAndNothingElse) {
    folder.write("file", "new");
    folder.write("file.aside", "old");
    EXPECT_FALSE(removeAside(file));
    EXPECT_FALSE(folder.has("file.aside"));
    EXPECT_EQ(folder.read("file"), "new");
}

TEST_F(SetAside, followsALinkAndLeavesIt) {
    folder.write("elsewhere/real", "text");
    std::filesystem::create_symlink("elsewhere/real", file);
    EXPECT_FALSE(setAside(file));
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(pathAside(file), folder.path("elsewhere/real.aside"));
    EXPECT_EQ(folder.read("elsewhere/real.aside"), "text");
    EXPECT_FALSE(removeAside(file));
    EXPECT_EQ(folder.count("elsewhere"), 0U);
}

TEST_F(SetAside, saysWhatFails) {
    EXPECT_EQ(setAside(file), std::errc::no_such_file_or_directory);
    EXPECT_EQ(removeAside(file), std::errc::no_such_file_or_directory);
    EXPECT_EQ(setAside(folder.path("nowhere/file")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(pathAside(folder.path("nowhere/file")), std::nullopt);
    EXPECT_EQ(setAside(""), std::errc::invalid_argument);
    EXPECT_EQ(removeAside(std::string("a\0b", 3)), std::errc::invalid_argument);
}

TEST_F(SetAside, isOnTheDiskWhenItIsDone) {
    folder.write("file", "text");
    FailingCalls calls;
    EXPECT_FALSE(setAside(file));
    EXPECT_FALSE(removeAside(file));
    EXPECT_THAT(calls.made(), testing::ElementsAre("readLink", "open", "rename", "sync", "close", "readLink",
                                                   "open", "unlink", "sync", "close"));
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
    EXPECT_EQ(removeAside(file), std::errc::io_error);
}

} // namespace
