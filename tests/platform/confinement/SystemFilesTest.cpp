#include "platform/confinement/SystemFiles.h"

#include "support/Environment.h"
#include "support/RegionOverride.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

using support::EnvironmentVariable;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;

class SystemFilesTest : public testing::Test {
protected:
    const EnvironmentVariable home{"HOME", "/somebody"};
    const EnvironmentVariable data{"XDG_DATA_HOME", nullptr};
    const EnvironmentVariable config{"XDG_CONFIG_HOME", nullptr};
    const EnvironmentVariable cache{"XDG_CACHE_HOME", nullptr};
    const EnvironmentVariable folders{"XDG_DATA_DIRS", nullptr};
    const EnvironmentVariable authority{"XAUTHORITY", nullptr};
};

} // namespace

TEST_F(SystemFilesTest, holdNothingOfTheUsers) {
    EXPECT_THAT(platform::systemFiles().readable, Each(Not(StartsWith("/somebody"))));
    EXPECT_THAT(platform::systemFiles().writable, ElementsAre("/dev/null"));
}

TEST_F(SystemFilesTest, holdTheFilesThatAVariableNames) {
    const EnvironmentVariable locales("LOCPATH", "/locales:relative:/more");
    const EnvironmentVariable zones("TZDIR", "/zones");
    EXPECT_THAT(platform::systemFiles().readable, IsSupersetOf({"/locales", "/more", "/zones"}));
    EXPECT_THAT(platform::systemFiles().readable, Not(Contains("relative")));
}

TEST_F(SystemFilesTest, holdTheTimeZonesFileButNoFolderInItsPlace) {
    const support::TemporaryFolder folder;
    const std::string file = folder.write("zone", "TZif");
    platform::Region region = platform::Region::current();
    for (const auto& [zone, isHeld] : {std::pair(file, true), std::pair(folder.path(), false)}) {
        region.timeZone = ":" + zone;
        const support::RegionOverride current(region);
        EXPECT_EQ(std::ranges::count(platform::systemFiles().readable, zone), isHeld ? 1 : 0) << zone;
    }
}

TEST_F(SystemFilesTest, ofADesktopAreSomeOfTheUsersAndNoWholeBaseFolder) {
    const auto files = platform::desktopFiles();
    EXPECT_THAT(files.writable, ElementsAre());
    EXPECT_THAT(files.readable, IsSupersetOf({"/somebody/.Xauthority", "/somebody/.icons", "/somebody/.fonts",
                                              "/somebody/.local/share/fonts", "/somebody/.local/share/icons",
                                              "/somebody/.local/share/themes", "/somebody/.config/fontconfig",
                                              "/somebody/.cache/fontconfig"}));
    for (const char* whole : {"/", "/etc", "/home", "/run", "/tmp", "/var", "/somebody", "/somebody/.config",
                              "/somebody/.local/share", "/somebody/.cache", ""})
        EXPECT_THAT(files.readable, Not(Contains(whole)));
}

TEST_F(SystemFilesTest, ofADesktopAreWhereTheBaseFoldersAre) {
    data.set("/elsewhere/data");
    config.set("/elsewhere/config");
    cache.set("relative");
    folders.set("/snap/share:/usr/share");
    authority.set("/run/user/7/key");
    EXPECT_THAT(platform::desktopFiles().readable,
                IsSupersetOf({"/elsewhere/data/fonts", "/elsewhere/config/fontconfig",
                              "/somebody/.cache/fontconfig", "/snap/share/icons", "/run/user/7/key"}));
    EXPECT_THAT(platform::desktopFiles().readable, Not(Contains("/somebody/.config/fontconfig")));
}
