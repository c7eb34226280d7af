#include "platform/storage/FileReplacement.h"

#include "FailingCalls.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

using platform::FileReplacement;
using support::TemporaryFolder;
using testing::ElementsAre;

TEST(FileReplacementTest, putsThePiecesTogether) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    FileReplacement file(folder.path("file"));
    EXPECT_TRUE(file.append("one "));
    EXPECT_TRUE(file.append(""));
    EXPECT_TRUE(file.append("two"));
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_FALSE(file.finish());
    EXPECT_EQ(folder.read("file"), "one two");
    EXPECT_EQ(folder.count(), 1U);
}

TEST(FileReplacementTest, touchesNothingBeforeTheFirstPiece) {
    const TemporaryFolder folder;
    const FailingCalls calls;
    const FileReplacement file(folder.path("file"));
    EXPECT_THAT(calls.made(), ElementsAre());
}

TEST(FileReplacementTest, leavesTheOldFileWhereItIsNotFinished) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    {
        FileReplacement file(folder.path("file"));
        EXPECT_TRUE(file.append("new"));
        EXPECT_EQ(folder.count(), 2U);
    }
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(folder.count(), 1U);
}

TEST(FileReplacementTest, writesNothingAfterAPieceThatFailed) {
    const TemporaryFolder folder;
    folder.write("file", "old");
    {
        FailingCalls calls;
        FileReplacement file(folder.path("file"));
        EXPECT_TRUE(file.append("one"));
        const std::size_t before = calls.made().size();
        calls.failAt(before, ENOSPC);
        EXPECT_FALSE(file.append("two"));
        EXPECT_FALSE(file.append("three"));
        EXPECT_EQ(file.finish(), std::errc::no_space_on_device);
        EXPECT_EQ(calls.made().size(), before + 1);
    }
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(folder.count(), 1U);
}

TEST(FileReplacementTest, makesAnEmptyFileOfNoPieces) {
    const TemporaryFolder folder;
    FileReplacement file(folder.path("file"));
    EXPECT_FALSE(file.finish());
    EXPECT_EQ(folder.read("file"), "");
}

TEST(FileReplacementTest, aRefusedTargetIsToldWithTheFirstPiece) {
    const TemporaryFolder folder;
    FileReplacement file(folder.path("absent/file"));
    EXPECT_FALSE(file.append("new"));
    EXPECT_EQ(file.finish(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(folder.count(), 0U);
}
