#include "bridge/LocalDays.h"

#include "bridge/BridgeTest.h"
#include "exchange/Days.h"

#include <gtest/gtest.h>

namespace bridge {

namespace {

using LocalDaysTest = BridgeTest;

} // namespace

TEST_F(LocalDaysTest, areThoseOfTheZone) {
    EXPECT_EQ(today(), dayOf("2026-03-10"));
    EXPECT_EQ(dayOfMoment(-0.5), dayOf("1969-12-31"));
    region.emplace(platform::Region{"en_US", "Pacific/Kiritimati"}); // UTC+14
    EXPECT_EQ(today(), dayOf("2026-03-11"));
    EXPECT_EQ(endOfDay(dayOf("2026-03-11")), exchange::utc(2026, 3, 11, 9, 59, 59));
    EXPECT_EQ(dayOfMoment(exchange::utc(2026, 3, 11, 9, 59, 59) + 0.9), dayOf("2026-03-11"));
    EXPECT_EQ(dayOfMoment(exchange::utc(2026, 3, 11, 10)), dayOf("2026-03-12"));
}

TEST_F(LocalDaysTest, endBeforeTheClockShowsTheNextDate) {
    const struct {
        const char* zone;
        const char* day;
        double end;
    } rows[] = {
        {"UTC", "2026-03-10", exchange::utc(2026, 3, 10, 23, 59, 59)},
        {"Europe/Berlin", "2026-03-29", exchange::utc(2026, 3, 29, 21, 59, 59)},
        {"Europe/Berlin", "2026-10-25", exchange::utc(2026, 10, 25, 22, 59, 59)},
        // The next day starts at 01:00.
        {"America/Sao_Paulo", "2018-11-03", exchange::utc(2018, 11, 4, 2, 59, 59)},
        // Midnight comes twice and is the first.
        {"America/Havana", "2024-11-02", exchange::utc(2024, 11, 3, 3, 59, 59)},
        // At midnight the clock goes back to 23:00.
        {"America/Sao_Paulo", "2018-02-17", exchange::utc(2018, 2, 18, 2, 59, 59)},
    };
    for (const auto& row : rows) {
        region.emplace(platform::Region{"en_US", row.zone});
        EXPECT_EQ(endOfDay(dayOf(row.day)), row.end) << row.zone << ' ' << row.day;
        EXPECT_EQ(dayOfMoment(row.end), dayOf(row.day)) << row.zone << ' ' << row.day;
    }
}

} // namespace bridge
