#include "platform/plist/Value.h"

#include <gtest/gtest.h>

using platform::plist::Dictionary;

TEST(Dictionary, findsNothingInAnEmptyOne) {
    EXPECT_EQ(Dictionary().find("key"), nullptr);
}
