#include "platform/system/Region.h"

#include "support/Environment.h"
#include "support/RegionOverride.h"

#include <gtest/gtest.h>

using platform::Region;
using support::EnvironmentVariable;
using support::RegionOverride;

TEST(RegionTest, comesFromTheEnvironment) {
    const EnvironmentVariable all("LC_ALL", "th_TH.UTF-8@calendar=buddhist");
    const EnvironmentVariable tz("TZ", "Asia/Bangkok");
    EXPECT_EQ(Region::current(), (Region{"th_TH@calendar=buddhist", "Asia/Bangkok"}));
}

TEST(RegionTest, seesAChangeOfTheEnvironment) {
    const EnvironmentVariable all("LC_ALL", "de_DE.UTF-8");
    const EnvironmentVariable tz("TZ", "Europe/Berlin");
    EXPECT_EQ(Region::current(), (Region{"de_DE", "Europe/Berlin"}));
    all.set("pt_BR.UTF-8");
    tz.set("America/Sao_Paulo");
    EXPECT_EQ(Region::current(), (Region{"pt_BR", "America/Sao_Paulo"}));
}

TEST(RegionTest, theZoneIsTheSystemsWhereTheVariableIsUnset) {
    const EnvironmentVariable tz("TZ", nullptr);
    EXPECT_EQ(Region::current().timeZone, "/etc/localtime");
    tz.set("");
    EXPECT_EQ(Region::current().timeZone, "");
}

TEST(RegionTest, anOverrideHoldsWhileItLives) {
    const EnvironmentVariable all("LC_ALL", "de_DE.UTF-8");
    const EnvironmentVariable tz("TZ", "Europe/Berlin");
    {
        const RegionOverride fixed({"fa_IR", "Asia/Tehran"});
        EXPECT_EQ(Region::current(), (Region{"fa_IR", "Asia/Tehran"}));
        tz.set("UTC");
        EXPECT_EQ(Region::current().timeZone, "Asia/Tehran");
    }
    EXPECT_EQ(Region::current(), (Region{"de_DE", "UTC"}));
}

TEST(RegionTest, theOuterOverrideIsBackAfterAnInnerOne) {
    const RegionOverride outer({"fa_IR", "Asia/Tehran"});
    { const RegionOverride inner({"de_DE", "Europe/Berlin"}); }
    EXPECT_EQ(Region::current().locale, "fa_IR");
}
