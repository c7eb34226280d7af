#include "platform/system/CurrentTimeZone.h"

#include "ZoneBytes.h"
#include "platform/system/Calendar.h"
#include "platform/system/DateText.h"
#include "support/Environment.h"
#include "support/Moments.h"
#include "support/RegionOverride.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using platform::Calendar;
using platform::currentTimeZone;
using platform::mediumDateText;
using platform_test::ZoneBytes;
using support::EnvironmentVariable;
using support::RegionOverride;
using support::TemporaryFolder;

namespace {

constexpr std::int32_t hour = 3600;

std::int64_t utc(int year, unsigned month, unsigned day, int hours = 0) {
    return static_cast<std::int64_t>(support::utc(year, month, day, hours));
}

// The offset on 10 July 2026.
std::int32_t summerOffset() {
    return currentTimeZone().offsetAt(utc(2026, 7, 10)).seconds;
}

// A zone file whose offset is always the same.
std::string fixedZone(std::int32_t offset) {
    ZoneBytes zone;
    zone.offsets = {offset};
    return zone.text();
}

struct Row {
    const char* name;
    const char* tz;
    std::int32_t offset; // in summer
};

class TimeZoneTextTest : public testing::TestWithParam<Row> {};

struct Broken {
    const char* name;
    std::string bytes;
};

class BrokenFileTest : public testing::TestWithParam<Broken> {};

} // namespace

TEST_P(TimeZoneTextTest, isReadAsTheCLibraryDoes) {
    const EnvironmentVariable tz("TZ", GetParam().tz);
    EXPECT_EQ(summerOffset(), GetParam().offset);
}

INSTANTIATE_TEST_SUITE_P(
    CurrentTimeZone, TimeZoneTextTest,
    testing::Values(
        Row{"name", "America/Havana", -4 * hour}, Row{"colonAndName", ":America/Havana", -4 * hour},
        Row{"nameWithDigits", "Etc/GMT+3", -3 * hour}, Row{"nameLikeARule", "EST5EDT", -4 * hour},
        Row{"path", "/usr/share/zoneinfo/Europe/Kyiv", 3 * hour},
        Row{"colonAndPath", ":/usr/share/zoneinfo/Europe/Kyiv", 3 * hour},
        Row{"rule", "CET-1CEST,M3.5.0,M10.5.0/3", 2 * hour},
        Row{"colonAndRule", ":CET-1CEST,M3.5.0,M10.5.0/3", 2 * hour}, Row{"numericRule", "<+03>-3", 3 * hour},
        Row{"nameWithDates", "EST5EDT,M3.2.0,M11.1.0", -4 * hour}, Row{"utc", "UTC", 0}, Row{"empty", "", 0},
        Row{"colon", ":", 0}, Row{"unknownName", "Foo/Bar", 0}, Row{"folder", "Europe", 0},
        Row{"pathOfAFolder", "/usr/share/zoneinfo/", 0}, Row{"pathOfAnotherFile", "/etc/passwd", 0},
        Row{"pathOfADevice", "/dev/zero", 0}, Row{"pathOfNothing", "/usr/share/zoneinfo/Foo/Bar", 0},
        Row{"brokenRule", "CET-1CEST,M13", 0}, Row{"noise", "\xff\xfe%s", 0}),
    [](const auto& row) { return row.param.name; });

TEST_P(BrokenFileTest, isUtc) {
    const TemporaryFolder folder;
    const EnvironmentVariable tz("TZ", folder.write("zone", fixedZone(hour)));
    ASSERT_EQ(summerOffset(), hour);
    std::filesystem::remove(folder.path("zone"));
    folder.write("zone", GetParam().bytes);
    EXPECT_EQ(summerOffset(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    CurrentTimeZone, BrokenFileTest,
    testing::Values(Broken{"empty", ""}, Broken{"other", "CET-1\n"},
                    Broken{"truncated", fixedZone(hour).substr(0, fixedZone(hour).size() - 1)},
                    Broken{"tooLarge", fixedZone(hour) + std::string(1024 * 1024, '\0')}),
    [](const auto& row) { return row.param.name; });

TEST(CurrentTimeZoneTest, aFileOfOneMegabyteIsRead) {
    const TemporaryFolder folder;
    std::string bytes = fixedZone(hour);
    bytes.resize(1024 * 1024);
    const EnvironmentVariable tz("TZ", folder.write("zone", bytes));
    EXPECT_EQ(summerOffset(), hour);
}

TEST(CurrentTimeZoneTest, isUtcIfTheFileIsAPipe) {
    const TemporaryFolder folder;
    const std::string path = folder.path("zone");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const EnvironmentVariable tz("TZ", path);
    EXPECT_EQ(summerOffset(), 0);
}

// A reader of the pipe would get the bytes of a valid zone.
TEST(CurrentTimeZoneTest, doesNotReadFromAPipe) {
    const TemporaryFolder folder;
    const std::string path = folder.path("zone");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int end = open(path.c_str(), O_RDONLY | O_NONBLOCK); // keeps what is written
    folder.write("zone", fixedZone(hour));
    const EnvironmentVariable tz("TZ", path);
    EXPECT_EQ(summerOffset(), 0);
    close(end);
}

TEST(CurrentTimeZoneTest, isUtcIfTheLinkLeadsNowhere) {
    const TemporaryFolder folder;
    const EnvironmentVariable tz("TZ", folder.path("zone"));
    std::filesystem::create_symlink("nothing", folder.path("zone"));
    EXPECT_EQ(summerOffset(), 0);
    std::filesystem::create_symlink("zone2", folder.path("zone3"));
    std::filesystem::create_symlink("zone3", folder.path("zone2"));
    tz.set(folder.path("zone2").c_str());
    EXPECT_EQ(summerOffset(), 0);
}

TEST(CurrentTimeZoneTest, anotherFolderOfZonesMayBeNamed) {
    const TemporaryFolder folder;
    folder.write("Some/Zone", fixedZone(5 * hour));
    const EnvironmentVariable zones("TZDIR", folder.path());
    const EnvironmentVariable tz("TZ", "Some/Zone");
    EXPECT_EQ(summerOffset(), 5 * hour);
    zones.set("");
    EXPECT_EQ(summerOffset(), 0);
}

TEST(CurrentTimeZoneTest, aFileCountsBeforeARuleOfThatText) {
    const TemporaryFolder folder;
    const EnvironmentVariable zones("TZDIR", folder.path());
    const EnvironmentVariable tz("TZ", "ABC-1");
    EXPECT_EQ(summerOffset(), hour);
    folder.write("ABC-1", fixedZone(5 * hour));
    EXPECT_EQ(summerOffset(), 5 * hour);
}

TEST(CurrentTimeZoneTest, aChangeOfTheVariableIsSeen) {
    const EnvironmentVariable tz("TZ", "Asia/Beirut");
    EXPECT_EQ(summerOffset(), 3 * hour);
    tz.set("America/Havana");
    EXPECT_EQ(summerOffset(), -4 * hour);
    tz.set("<+03>-3");
    EXPECT_EQ(summerOffset(), 3 * hour);
}

TEST(CurrentTimeZoneTest, aReplacedFileIsSeen) {
    const TemporaryFolder folder;
    const EnvironmentVariable tz("TZ", folder.write("zone", fixedZone(hour)));
    EXPECT_EQ(summerOffset(), hour);
    std::filesystem::rename(folder.write("new", fixedZone(2 * hour)), folder.path("zone"));
    EXPECT_EQ(summerOffset(), 2 * hour);
}

TEST(CurrentTimeZoneTest, aFileThatIsRewrittenInPlaceIsSeen) {
    const TemporaryFolder folder;
    const EnvironmentVariable tz("TZ", folder.write("zone", fixedZone(hour)));
    EXPECT_EQ(summerOffset(), hour);
    ZoneBytes other;
    other.offsets = {2 * hour};
    other.rule = "ABC-2";
    folder.write("zone", other.text());
    EXPECT_EQ(summerOffset(), 2 * hour);
}

TEST(CurrentTimeZoneTest, aFileThatIsRemovedAndMadeAgainIsSeen) {
    const TemporaryFolder folder;
    const EnvironmentVariable tz("TZ", folder.write("zone", fixedZone(hour)));
    EXPECT_EQ(summerOffset(), hour);
    std::filesystem::remove(folder.path("zone"));
    EXPECT_EQ(summerOffset(), 0);
    folder.write("zone", fixedZone(2 * hour));
    EXPECT_EQ(summerOffset(), 2 * hour);
}

// Where TZ is unset, the region's zone is the path /etc/localtime; here it is a path like it.
TEST(CurrentTimeZoneTest, aReplacedLinkIsSeen) {
    const TemporaryFolder folder;
    folder.write("Berlin", fixedZone(hour));
    folder.write("Kyiv", fixedZone(2 * hour));
    std::filesystem::create_symlink("Berlin", folder.path("localtime"));
    const RegionOverride region({"en_US", folder.path("localtime")});
    EXPECT_EQ(summerOffset(), hour);
    std::filesystem::create_symlink("Kyiv", folder.path("new"));
    std::filesystem::rename(folder.path("new"), folder.path("localtime"));
    EXPECT_EQ(summerOffset(), 2 * hour);
}

TEST(CurrentTimeZoneTest, theSystemsZoneCountsWhereTheVariableIsUnset) {
    const EnvironmentVariable tz("TZ", "/etc/localtime");
    const auto system = currentTimeZone().offsetAt(utc(2026, 7, 10));
    tz.set(":/etc/localtime");
    EXPECT_EQ(currentTimeZone().offsetAt(utc(2026, 7, 10)), system);
    tz.set("CET-1CEST,M3.5.0,M10.5.0/3");
    ASSERT_EQ(summerOffset(), 2 * hour);
    tz.set(nullptr);
    EXPECT_EQ(currentTimeZone().offsetAt(utc(2026, 7, 10)), system);
}

// A zone that has changed since ICU's data was made: in Almaty a day has started an hour later since 2024.
TEST(CurrentTimeZoneTest, daysAndDatesFollowTheFile) {
    const TemporaryFolder folder;
    ZoneBytes almaty;
    almaty.transitions = {{utc(2024, 2, 29, 18), 1}};
    almaty.offsets = {6 * hour, 5 * hour};
    folder.write("Asia/Almaty", almaty.text());
    const EnvironmentVariable zones("TZDIR", folder.path());
    const RegionOverride region({"en_US", "Asia/Almaty"});
    const auto morning = support::utc(2026, 3, 10, 11 - 5);
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(morning, 1), support::utc(2026, 3, 11, 11 - 5));
    EXPECT_EQ(Calendar::startOfDay(morning), support::utc(2026, 3, 10, -5));
    EXPECT_EQ(mediumDateText(support::utc(2026, 3, 10, 24 - 5) - 1), QStringLiteral("Mar 10, 2026"));
    EXPECT_EQ(mediumDateText(support::utc(2026, 3, 10, 24 - 5)), QStringLiteral("Mar 11, 2026"));
}

TEST(CurrentTimeZoneTest, daysAndDatesFollowTheRule) {
    const RegionOverride region({"en_US", "CET-1CEST,M3.5.0,M10.5.0/3"});
    EXPECT_EQ(Calendar::startOfDay(support::utc(2026, 7, 10, 12)), support::utc(2026, 7, 10, -2));
    EXPECT_EQ(Calendar::startOfDay(support::utc(2026, 1, 10, 12)), support::utc(2026, 1, 10, -1));
    EXPECT_EQ(Calendar::dateByAddingDaysWrapping(support::utc(2026, 3, 28, 2 - 1), 1),
              support::utc(2026, 3, 29, 3 - 2));
    EXPECT_EQ(mediumDateText(support::utc(2026, 7, 10, 24 - 2)), QStringLiteral("Jul 11, 2026"));
}

TEST(CurrentTimeZoneTest, aReplacedFileIsSeenByDaysAndDates) {
    const TemporaryFolder folder;
    const double evening = support::utc(2026, 7, 10, 22);
    const EnvironmentVariable tz("TZ", folder.write("zone", fixedZone(hour)));
    EXPECT_EQ(mediumDateText(evening), QStringLiteral("Jul 10, 2026"));
    EXPECT_EQ(Calendar::startOfDay(evening), support::utc(2026, 7, 10, -1));
    std::filesystem::rename(folder.write("new", fixedZone(2 * hour)), folder.path("zone"));
    EXPECT_EQ(mediumDateText(evening), QStringLiteral("Jul 11, 2026"));
    EXPECT_EQ(Calendar::startOfDay(evening), support::utc(2026, 7, 11, -2));
}

TEST(CurrentTimeZoneTest, tellsWhereItsFileIsLookedFor) {
    const RegionOverride plain({"en_US", "Europe/Berlin"});
    const EnvironmentVariable folder("TZDIR", "/zones");
    EXPECT_EQ(platform::currentTimeZoneFile(), "/zones/Europe/Berlin");
    const RegionOverride path({"en_US", ":/etc/localtime"});
    EXPECT_EQ(platform::currentTimeZoneFile(), "/etc/localtime");
    const RegionOverride rule({"en_US", "CET-1CEST,M3.5.0,M10.5.0/3"});
    EXPECT_EQ(platform::currentTimeZoneFile(), "/zones/CET-1CEST,M3.5.0,M10.5.0/3");
}
