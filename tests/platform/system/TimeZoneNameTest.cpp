#include "platform/system/TimeZoneName.h"

#include "support/Environment.h"

#include <gtest/gtest.h>

#include <filesystem>

using platform::timeZoneName;
using platform::timeZoneNameOf;
using support::EnvironmentVariable;

namespace {

struct Row {
    const char* name;
    const char* tz;
    const char* zone;
};

class TimeZoneNameTableTest : public testing::TestWithParam<Row> {};

} // namespace

TEST_P(TimeZoneNameTableTest, isMapped) {
    EXPECT_EQ(timeZoneNameOf(GetParam().tz), GetParam().zone);
}

INSTANTIATE_TEST_SUITE_P(
    TimeZoneName, TimeZoneNameTableTest,
    testing::Values(Row{"name", "America/Sao_Paulo", "America/Sao_Paulo"},
                    Row{"colon", ":America/Havana", "America/Havana"}, Row{"UTC", "UTC", "UTC"},
                    Row{"nameWithDigits", "Etc/GMT+3", "Etc/GMT+3"},
                    Row{"nameLikeARule", "EST5EDT", "EST5EDT"},
                    Row{"posixFlavour", "posix/Asia/Beirut", "Asia/Beirut"},
                    Row{"rightFlavour", ":right/Asia/Beirut", "Asia/Beirut"},
                    Row{"path", ":/usr/share/zoneinfo/Europe/Kyiv", "Europe/Kyiv"},
                    Row{"pathOutsideOfZones", "/etc/passwd", "Etc/UTC"},
                    Row{"pathToNoZone", "/usr/share/zoneinfo/Foo/Bar", "Etc/UTC"},
                    Row{"empty", "", "Etc/UTC"}, Row{"unknown", "Foo/Bar", "Etc/UTC"},
                    Row{"namelessRule", "<-03>3", "GMT-03:00"}, Row{"westernRule", "EST5", "GMT-05:00"},
                    Row{"easternRule", "IST-5:30", "GMT+05:30"}, Row{"plusIsWest", "GMT+3", "GMT-03:00"},
                    Row{"ruleWithSummerTime", "CET-1CEST,M3.5.0,M10.5.0/3", "GMT+01:00"},
                    Row{"knownNameWithDates", "EST5EDT,M3.2.0,M11.1.0", "EST5EDT"},
                    Row{"unfinishedBracket", "<-03", "Etc/UTC"}, Row{"shortAbbreviation", "AB3", "Etc/UTC"},
                    Row{"hoursBeyondADay", "ABC30", "Etc/UTC"},
                    Row{"hugeNumber", "ABC99999999999", "Etc/UTC"}, Row{"minutesMissing", "ABC3:", "Etc/UTC"},
                    Row{"noise", "\xff\xfe%s", "Etc/UTC"}),
    [](const auto& row) { return row.param.name; });

TEST(TimeZoneNameTest, aChangeOfTheVariableIsSeen) {
    const EnvironmentVariable tz("TZ", "Asia/Beirut");
    EXPECT_EQ(timeZoneName(), "Asia/Beirut");
    tz.set("America/Havana");
    EXPECT_EQ(timeZoneName(), "America/Havana");
}

// The path that /etc/localtime leads to names the zone, as it does to the C library.
TEST(TimeZoneNameTest, theSystemsZoneCountsWhereTheVariableIsUnset) {
    const std::string path = std::filesystem::canonical("/etc/localtime").string();
    const EnvironmentVariable tz("TZ", nullptr);
    EXPECT_TRUE(path.ends_with("/zoneinfo/" + timeZoneName())) << path << " is not " << timeZoneName();
}

TEST(TimeZoneNameTest, theVariableMayNameTheSystemsZone) {
    const EnvironmentVariable tz("TZ", nullptr);
    const std::string system = timeZoneName();
    tz.set(":/etc/localtime");
    EXPECT_EQ(timeZoneName(), system);
    tz.set("/etc/localtime");
    EXPECT_EQ(timeZoneName(), system);
}
