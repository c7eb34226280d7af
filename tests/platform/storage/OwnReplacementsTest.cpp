#include "platform/storage/OwnReplacements.h"

#include "platform/storage/Files.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using platform::FileVersion;
using platform::OwnReplacements;
using support::TemporaryFolder;

namespace {

class OwnReplacementsTest : public testing::Test {
protected:
    [[nodiscard]] FileVersion version() const { return FileVersion::at(path); }

    void replaceByUs(const std::string& bytes) const { ASSERT_FALSE(platform::replaceFile(path, bytes)); }

    // As another program does: this process notes nothing of it.
    void replaceByAnother(const std::string& bytes) const {
        std::filesystem::rename(folder.write("another", bytes), path);
    }

    TemporaryFolder folder;
    std::string path = folder.path("file");
};

} // namespace

TEST_F(OwnReplacementsTest, leadFromOneVersionToTheNext) {
    folder.write("file", "old");
    const FileVersion before = version();
    replaceByUs("new");
    EXPECT_TRUE(OwnReplacements::lead(before, version()));
}

TEST_F(OwnReplacementsTest, leadFromNoFileToTheFirst) {
    replaceByUs("new");
    EXPECT_TRUE(OwnReplacements::lead(FileVersion(), version()));
}

TEST_F(OwnReplacementsTest, leadOverSeveralVersions) {
    folder.write("file", "old");
    const FileVersion before = version();
    for (const char* bytes : {"1", "2", "3"})
        replaceByUs(bytes);
    EXPECT_TRUE(OwnReplacements::lead(before, version()));
}

TEST_F(OwnReplacementsTest, doNotLeadToTheVersionOfAnotherProgram) {
    replaceByUs("ours");
    const FileVersion ours = version();
    replaceByAnother("theirs");
    EXPECT_FALSE(OwnReplacements::lead(ours, version()));
    EXPECT_FALSE(OwnReplacements::lead(FileVersion(), version()));
}

TEST_F(OwnReplacementsTest, doNotLeadOverTheVersionOfAnotherProgram) {
    folder.write("file", "old");
    const FileVersion before = version();
    replaceByAnother("theirs");
    replaceByUs("ours");
    EXPECT_FALSE(OwnReplacements::lead(before, version()));
}

TEST_F(OwnReplacementsTest, doNotLeadToAFileThatIsGone) {
    replaceByUs("ours");
    const FileVersion ours = version();
    std::filesystem::remove(path);
    EXPECT_FALSE(OwnReplacements::lead(ours, version()));
}

TEST_F(OwnReplacementsTest, leadThroughALinkToTheFileThatItNames) {
    folder.write("below/target", "old");
    std::filesystem::create_symlink("below/target", path);
    const FileVersion before = version();
    replaceByUs("new");
    EXPECT_TRUE(OwnReplacements::lead(before, version()));
}

TEST_F(OwnReplacementsTest, areForgottenInTheEnd) {
    replaceByUs("first");
    const FileVersion first = version();
    for (int i = 0; i < 200; ++i)
        OwnReplacements::note({}, {});
    EXPECT_FALSE(OwnReplacements::lead(FileVersion(), first));
}

TEST(FileVersionTest, differsWhenTheFileDoes) {
    const TemporaryFolder folder;
    const std::string path = folder.path("file");
    const FileVersion absent = FileVersion::at(path);
    EXPECT_EQ(absent, FileVersion());
    folder.write("file", "one");
    const FileVersion first = FileVersion::at(path);
    EXPECT_NE(first, absent);
    EXPECT_EQ(first, FileVersion::at(path));
    std::filesystem::permissions(path, std::filesystem::perms::none);
    EXPECT_NE(FileVersion::at(path), first) << "another mode";
    std::filesystem::permissions(path, std::filesystem::perms(first.mode & 07777));
    EXPECT_EQ(FileVersion::at(path), first);
    folder.write("file", "more");
    EXPECT_NE(FileVersion::at(path), first) << "another size";
    EXPECT_EQ(FileVersion::at(std::string("a\0b", 3)), absent);
}
