#include "platform/system/TimeZone.h"

#include "ZoneBytes.h"

#include <gtest/gtest.h>

using platform::TimeZone;
using platform::ZoneFile;
using platform_test::ZoneBytes;

namespace {

constexpr std::int32_t day = 86400;
constexpr std::int32_t hour = 3600;
constexpr std::int64_t change = 100 * day; // in UTC

// A zone whose offset changes from 0 at a moment.
TimeZone zone(std::int64_t moment, std::int32_t offset) {
    ZoneBytes bytes;
    bytes.transitions = {{moment, 1}};
    bytes.offsets = {0, offset};
    return TimeZone(ZoneFile::fromBytes(bytes.text()).value());
}

} // namespace

TEST(TimeZoneTest, isUtcIfNothingIsSaid) {
    EXPECT_EQ(TimeZone().wallTimeAt(change), change);
    EXPECT_EQ(TimeZone().momentOf(change), change);
    EXPECT_EQ(TimeZone().firstMomentFrom(change), change);
}

TEST(TimeZoneTest, wallTimeIsTheMomentPlusTheOffset) {
    const TimeZone forward = zone(change, hour);
    EXPECT_EQ(forward.wallTimeAt(change - 1), change - 1);
    EXPECT_EQ(forward.wallTimeAt(change), change + hour);
}

TEST(TimeZoneTest, everyWallTimeHasItsMoment) {
    const TimeZone forward = zone(change, hour);
    for (std::int64_t moment = change - 3 * day; moment < change + 3 * day; moment += 600) {
        EXPECT_EQ(forward.momentOf(forward.wallTimeAt(moment)), moment);
        EXPECT_EQ(forward.firstMomentFrom(forward.wallTimeAt(moment)), moment);
    }
}

TEST(TimeZoneTest, aSkippedTimeIsAfterTheGap) {
    const TimeZone forward = zone(change, hour);
    for (const int minutes : {0, 1, 30, 59}) {
        EXPECT_EQ(forward.firstMomentFrom(change + minutes * 60), change);
        EXPECT_EQ(forward.wallTimeAt(forward.momentOf(change + minutes * 60)), change + hour + minutes * 60);
    }
}

TEST(TimeZoneTest, aTimeThatComesTwiceIsTheFirst) {
    const TimeZone back = zone(change, -hour);
    for (const int minutes : {1, 30, 60}) {
        EXPECT_EQ(back.momentOf(change - minutes * 60), change - minutes * 60);
        EXPECT_EQ(back.firstMomentFrom(change - minutes * 60), change - minutes * 60);
    }
    EXPECT_EQ(back.momentOf(change), change + hour);
    EXPECT_EQ(back.firstMomentFrom(change), change + hour);
}

// Samoa had no 30 December 2011.
TEST(TimeZoneTest, aDayMayBeSkipped) {
    const TimeZone samoa = zone(change, day);
    EXPECT_EQ(samoa.firstMomentFrom(change), change);
    EXPECT_EQ(samoa.wallTimeAt(samoa.momentOf(change + 12 * hour)), change + day + 12 * hour);
}

TEST(TimeZoneTest, aGapMayStartBeforeMidnight) {
    const TimeZone toronto = zone(change - 1800, hour);
    EXPECT_EQ(toronto.wallTimeAt(toronto.firstMomentFrom(change)), change + 1800);
}

// At midnight the clock goes to 01:00, at 02:00 to 23:00 and an hour later, at midnight, to 03:00.
TEST(TimeZoneTest, changesMayFollowEachOtherClosely) {
    ZoneBytes bytes;
    bytes.offsets = {0, hour, -2 * hour};
    bytes.transitions = {{change, 1}, {change + hour, 2}, {change + 2 * hour, 1}};
    const TimeZone busy(ZoneFile::fromBytes(bytes.text()).value());
    EXPECT_EQ(busy.momentOf(change - 600), change - 600); // comes twice
    EXPECT_EQ(busy.momentOf(change + 90 * 60), change + 30 * 60);
    EXPECT_EQ(busy.firstMomentFrom(change), change);                       // skipped by the first change
    EXPECT_EQ(busy.firstMomentFrom(change + 2 * hour), change + 2 * hour); // and by the last
    EXPECT_EQ(busy.wallTimeAt(busy.momentOf(change + 2 * hour)), change + 5 * hour);
    EXPECT_EQ(busy.momentOf(change + 3 * hour), change + 2 * hour);
}

TEST(TimeZoneTest, theNextDateStartsAtMidnight) {
    EXPECT_EQ(TimeZone().nextDateAfter(change), change + day);
    EXPECT_EQ(TimeZone().nextDateAfter(change - 1), change);
    EXPECT_EQ(TimeZone().nextDateAfter(-1), 0);
    EXPECT_EQ(TimeZone().nextDateAfter(-day), 0);
    const TimeZone forward = zone(change + 12 * hour, hour);
    EXPECT_EQ(forward.nextDateAfter(change), change + day - hour);
}

TEST(TimeZoneTest, theNextDateStartsAfterAGap) {
    EXPECT_EQ(zone(change, hour).nextDateAfter(change - 600), change);
    EXPECT_EQ(zone(change - 1800, hour).nextDateAfter(change - 3600), change - 1800);
    EXPECT_EQ(zone(change, day).nextDateAfter(change - 600), change) << "a date is skipped";
}

// Ten minutes after midnight the clock goes back by an hour.
TEST(TimeZoneTest, aDateThatComesTwiceStartsTwice) {
    const TimeZone back = zone(change + 600, -hour);
    EXPECT_EQ(back.nextDateAfter(change - 1), change);
    EXPECT_EQ(back.nextDateAfter(change), change + 600) << "the date of before comes again";
    EXPECT_EQ(back.nextDateAfter(change + 600), change + hour);
    const TimeZone atMidnight = zone(change, -hour);
    EXPECT_EQ(atMidnight.nextDateAfter(change - 1), change + hour);
}
