#include "bridge/plans/Day.h"

#include <gtest/gtest.h>

using bridge::dayOfText;
using bridge::textOfDay;
using namespace std::chrono_literals;

TEST(Day, isReadAndWritten) {
    for (const char* text : {"2026-11-21", "2028-02-29", "0001-01-01", "9999-12-31", "1969-12-31"}) {
        const auto day = dayOfText(text);
        ASSERT_TRUE(day) << text;
        EXPECT_EQ(textOfDay(*day), text);
    }
    EXPECT_EQ(*dayOfText("2026-11-21"), bridge::Day(2026y / 11 / 21));
}

TEST(Day, isNothingWhereTheTextNamesNone) {
    for (const char* text :
         {"", "2026-11-2", "2026-11-211", "2026-11-31", "2027-02-29", "2026-13-01", "2026-00-10",
          "0000-01-01", "2026/11/21", "+026-11-21", "2026-11--1", " 026-11-21", "2026-11-21T00"})
        EXPECT_FALSE(dayOfText(text)) << text;
}
