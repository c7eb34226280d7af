#include "ctl/Bomb.h"
#include "ctl/ShellTest.h"
#include "model/GroupIdentifiers.h"

// The built program itself.
namespace ctl {
namespace {

class ProcessTest : public ShellTest {};

TEST_F(ProcessTest, publishesAndLists) {
    EXPECT_EQ(
        shell("echo '[{\"date\": \"2020-01-01\", \"name\": \"Rent\", \"image\": \"i\", \"amount\": \"5\", "
              "\"income\": 0, \"expense\": 1, \"planpk\": \"p\", \"single\": true}]' | \"$CTL\" publish -"),
        0)
        << err;
    EXPECT_EQ(shell("TZ=UTC \"$CTL\" list"), 0) << err;
    EXPECT_EQ(out, "2020-01-01 00:00  !  p  5  Rent\n1 of 1 shown\n");
}

TEST_F(ProcessTest, exitsWithItsThreeStatuses) {
    EXPECT_EQ(shell("\"$CTL\" --version"), 0);
    EXPECT_EQ(shell("\"$CTL\" publish /nowhere/none.json"), 1);
    EXPECT_EQ(err, "korvel-todayctl: /nowhere/none.json: No such file or directory\n");
    EXPECT_EQ(shell("\"$CTL\" nothing"), 2);
}

TEST_F(ProcessTest, noticesThatItsOutputIsLost) {
    EXPECT_EQ(shell("\"$CTL\" list > /dev/full"), 1);
    EXPECT_EQ(err, "korvel-todayctl: standard output: it cannot be written\n");
}

#ifndef __SANITIZE_ADDRESS__ // which takes all address space
TEST_F(ProcessTest, needsLittleMemoryToRefuseAListThatIsTooLarge) {
    write("Library/Preferences/" + std::string(fullEditionGroupIdentifier) + ".plist", bombOfKey("bomb"));
    write("bomb", bombArray());
    for (const std::string& command :
         {"plist '" + path("bomb") + "'", "plist --to xml '" + path("bomb") + "'",
          std::string("settings get bomb"), std::string("settings get bomb --json")}) {
        EXPECT_EQ(shell("ulimit -v 200000; \"$CTL\" " + command), 1) << command;
        EXPECT_EQ(out, "");
        EXPECT_NE(err.find("too large when written out\n"), std::string::npos) << err;
    }
}
#endif

TEST_F(ProcessTest, isLinkedWithoutWidgets) {
    EXPECT_EQ(shell("ldd \"$CTL\""), 0);
    EXPECT_NE(out.find("libQt6Core"), std::string::npos) << out;
    EXPECT_EQ(out.find("libQt6Widgets"), std::string::npos) << out;
    EXPECT_EQ(out.find("libQt6Gui"), std::string::npos) << out;
}

} // namespace
} // namespace ctl
