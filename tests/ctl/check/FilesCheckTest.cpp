#include "ctl/check/Access.h"
#include "ctl/check/CheckTest.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sys/stat.h>

namespace ctl {
namespace {

using testing::Contains;
using testing::ElementsAre;

class FilesCheckTest : public CheckTest {};

TEST_F(FilesCheckTest, namesWhatEverybodyMayWrite) {
    setMode(".", 0777);
    setMode("notifications.xml", 0666);
    EXPECT_THAT(checked(), ElementsAre("0", "degrades writableByOthers . - -",
                                       "degrades writableByOthers notifications.xml - -"));
}

TEST_F(FilesCheckTest, acceptsWhatAGroupMayWrite) {
    setMode(".", 0775);
    setMode("notifications.xml", 0664);
    EXPECT_THAT(checked(), ElementsAre("0"));
}

// In a folder such as that of temporary files, only the owner of a file or of the folder may replace it.
TEST(AccessTest, aStickyFolderKeepsFilesForTheirOwners) {
    const auto keeps = [](mode_t mode, uid_t user, uid_t folderOwner, uid_t fileOwner) {
        struct stat folder {};
        struct stat file {};
        folder.st_mode = S_IFDIR | mode;
        folder.st_uid = folderOwner;
        file.st_uid = fileOwner;
        return isKeptFrom(user, folder, file);
    };
    EXPECT_TRUE(keeps(01777, 1000, 0, 0));
    EXPECT_TRUE(keeps(01777, 1000, 0, 1001));
    EXPECT_FALSE(keeps(0777, 1000, 0, 1001));
    EXPECT_FALSE(keeps(01777, 1000, 0, 1000));
    EXPECT_FALSE(keeps(01777, 1000, 1000, 1001));
    EXPECT_FALSE(keeps(01777, 0, 1000, 1001));
}

// A file of root's, whoever runs this: for root the container's owner is looked at.
TEST_F(FilesCheckTest, namesWhatBelongsToAnotherUser) {
    link("-/actions.xml", "/etc/passwd");
    const std::vector<std::string> lines = checkedByAUser();
    EXPECT_THAT(lines, Contains("degrades ownedByOther -/actions.xml - -"));
    EXPECT_THAT(lines, Contains("degrades linkLeadsOut -/actions.xml - -"));
    EXPECT_THAT(lines, Contains("loses logNotReplaceable -/actions.xml - -"));
}

TEST_F(FilesCheckTest, namesAFileWithTwoNames) {
    std::filesystem::create_hard_link(path("notifications.xml"), path("other.xml"));
    EXPECT_THAT(checked(), ElementsAre("0", "degrades hardLinked notifications.xml - -"));
}

TEST_F(FilesCheckTest, namesALinkToNothing) {
    link("-/actions.xml", "nothing.xml");
    EXPECT_THAT(checked(), ElementsAre("0", "degrades linkDangles -/actions.xml - -"));
    link("-/actions.xml", "nothing/actions.xml");
    EXPECT_THAT(checked(), ElementsAre("1", "loses logNotReplaceable -/actions.xml - -",
                                       "degrades linkDangles -/actions.xml - -"));
}

TEST_F(FilesCheckTest, namesAnAccountFolderThatIsALinkToNothing) {
    writeFeed({});
    link("-", "nothing");
    EXPECT_THAT(checked(),
                ElementsAre("1", "loses logNotReplaceable -/actions.xml - -", "degrades linkDangles - - -"));
}

TEST_F(FilesCheckTest, namesALinkThatLeadsToItself) {
    link("-/actions.xml", "actions.xml");
    EXPECT_THAT(checked(),
                ElementsAre("1", "loses logNotReplaceable -/actions.xml - -",
                            "loses logUnreadable -/actions.xml - -", "loses linkLoops -/actions.xml - -"));
}

TEST_F(FilesCheckTest, namesALinkThatLeadsOut) {
    desktop.write("icons/house.png", pngBytes(2, 2));
    link("-/icons", desktop.path("icons"));
    EXPECT_THAT(checked(), ElementsAre("0", "degrades linkLeadsOut -/icons - -"));
}

TEST_F(FilesCheckTest, acceptsALinkWithinTheContainer) {
    std::filesystem::rename(path("notifications.xml"), path("feed.xml"));
    link("notifications.xml", "feed.xml");
    EXPECT_THAT(checked(), ElementsAre("0"));
}

TEST_F(FilesCheckTest, acceptsAContainerThatIsALink) {
    std::filesystem::rename(container, desktop.path("container"));
    std::filesystem::create_symlink(desktop.path("container"), container);
    EXPECT_THAT(checked(), ElementsAre("0"));
}

TEST_F(FilesCheckTest, namesWhatWritersHaveLeft) {
    write("-/actions.xml.aside", "");
    write("other/actions.xml.aside-2", "");
    write("-/actions.xml.too-large", "");
    write(".new-0123456789abcdef", "");
    write("Library/Preferences/.korvel-0123", "");
    EXPECT_THAT(checked(), ElementsAre("0", "degrades leftoverClaim -/actions.xml.aside - -",
                                       "degrades leftoverTooLarge -/actions.xml.too-large - -",
                                       "degrades leftoverClaim other/actions.xml.aside-2 - -",
                                       "note leftoverTemporary .new-0123456789abcdef - -",
                                       "note leftoverTemporary Library/Preferences/.korvel-0123 - -"));
}

// The bytes and times of everything in the container and beside it.
std::string snapshot(const std::string& folder) {
    std::string text;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        struct stat status {};
        EXPECT_EQ(lstat(entry.path().c_str(), &status), 0);
        text += entry.path().string() + " " + std::to_string(status.st_ino) + " " +
                std::to_string(status.st_mode) + " " + std::to_string(status.st_size) + " " +
                std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec) + " " +
                std::to_string(status.st_ctim.tv_sec) + "." + std::to_string(status.st_ctim.tv_nsec) + "\n";
    }
    return text;
}

TEST_F(FilesCheckTest, changesNothing) {
    write("-/actions.xml", "<plist>");
    setSettings({{"account_pk", exchange::plist::Value("-")}});
    write(".new-1", "");
    const std::string before = snapshot(scratch) + snapshot(desktop.path());
    static_cast<void>(findings());
    EXPECT_EQ(snapshot(scratch) + snapshot(desktop.path()), before);
}

} // namespace
} // namespace ctl
