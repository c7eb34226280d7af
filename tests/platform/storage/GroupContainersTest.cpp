#include "platform/storage/GroupContainers.h"

#include "support/Containers.h"
#include "support/Environment.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <pwd.h>
#include <unistd.h>

using platform::GroupContainers;
using support::Containers;
using support::EnvironmentVariable;

namespace {

// The environment without a folder and without the variables.
class GroupContainersTest : public testing::Test {
protected:
    EnvironmentVariable folder{"KORVEL_GROUP_CONTAINERS", nullptr};
    EnvironmentVariable data{"XDG_DATA_HOME", nullptr};
    EnvironmentVariable home{"HOME", "/home/anna"};
};

} // namespace

TEST_F(GroupContainersTest, theFolderGivenGoesFirst) {
    folder.set("/variable");
    GroupContainers::setFolder("/given");
    EXPECT_EQ(GroupContainers::folder(), "/given");
    GroupContainers::setFolder("");
    EXPECT_EQ(GroupContainers::folder(), "/variable");
}

TEST_F(GroupContainersTest, theVariableGoesBeforeTheDataFolder) {
    folder.set("/variable");
    data.set("/data");
    EXPECT_EQ(GroupContainers::folder(), "/variable");
}

TEST_F(GroupContainersTest, theDataFolderHoldsTheContainers) {
    data.set("/data");
    EXPECT_EQ(GroupContainers::folder(), "/data/group-containers");
}

TEST_F(GroupContainersTest, theDataFolderIsInTheHomeFolderUnlessSet) {
    EXPECT_EQ(GroupContainers::folder(), "/home/anna/.local/share/group-containers");
}

TEST_F(GroupContainersTest, anEmptyVariableCountsAsUnset) {
    folder.set("");
    data.set("");
    EXPECT_EQ(GroupContainers::folder(), "/home/anna/.local/share/group-containers");
}

TEST_F(GroupContainersTest, aRelativeDataFolderCountsAsUnset) {
    data.set("data");
    EXPECT_EQ(GroupContainers::folder(), "/home/anna/.local/share/group-containers");
}

TEST_F(GroupContainersTest, theUsersHomeFolderCountsWhereTheVariableIsUnset) {
    home.set(nullptr);
    const std::string known = getpwuid(getuid())->pw_dir;
    EXPECT_EQ(GroupContainers::folder(), known + "/.local/share/group-containers");
}

TEST_F(GroupContainersTest, aContainerIsTheFolderNamedByItsIdentifier) {
    const Containers containers;
    EXPECT_EQ(GroupContainers::containerForGroup(Containers::identifier()), containers.path());
    EXPECT_EQ(GroupContainers::containerPath("other"), containers.folder().path("other"));
}

TEST_F(GroupContainersTest, aMissingContainerIsNoneAndIsNotMade) {
    const Containers containers(Containers::Container::Absent);
    EXPECT_EQ(GroupContainers::containerForGroup(Containers::identifier()), std::nullopt);
    EXPECT_EQ(containers.folder().count(), 0U);
}

TEST_F(GroupContainersTest, aFileIsNoContainer) {
    const Containers containers(Containers::Container::Absent);
    containers.folder().write(Containers::identifier(), "no folder");
    EXPECT_EQ(GroupContainers::containerForGroup(Containers::identifier()), std::nullopt);
}

TEST_F(GroupContainersTest, aLinkToAFolderIsAContainer) {
    const Containers containers(Containers::Container::Absent);
    std::filesystem::create_directory(containers.folder().path("elsewhere"));
    std::filesystem::create_symlink("elsewhere", containers.path());
    EXPECT_TRUE(GroupContainers::containerForGroup(Containers::identifier()));
}

TEST_F(GroupContainersTest, anIdentifierThatIsNoSingleNameHasNoContainer) {
    const Containers containers;
    std::filesystem::create_directories(containers.path("below"));
    for (const std::string& identifier :
         {std::string(), std::string("."), std::string(".."), Containers::identifier() + "/below",
          "/" + Containers::identifier(), Containers::identifier() + std::string("\0x", 2)})
        EXPECT_EQ(GroupContainers::containerForGroup(identifier), std::nullopt) << identifier;
}

TEST_F(GroupContainersTest, aContainerMadeMeanwhileIsSeen) {
    const Containers containers(Containers::Container::Absent);
    EXPECT_FALSE(GroupContainers::containerForGroup(Containers::identifier()));
    std::filesystem::create_directory(containers.path());
    EXPECT_TRUE(GroupContainers::containerForGroup(Containers::identifier()));
}
