#include "ctl/Terminal.h"

#include <gtest/gtest.h>

namespace ctl {
namespace {

TEST(TerminalTest, replacesWhatWouldMoveTheCursor) {
    EXPECT_EQ(terminalText("two\nlines\tand\r\nmore"), "two lines and  more");
    EXPECT_EQ(terminalText("\x1b[31mred\x07"), "\uFFFD[31mred\uFFFD");
    EXPECT_EQ(terminalText("a\u0085b\u2028c\u2029d"), "a b c d");
    EXPECT_EQ(terminalText("\u009b31m \u202Eright to left\u2066"), "\uFFFD31m \uFFFDright to left\uFFFD");
    EXPECT_EQ(terminalText("no text: \xFF"), "no text: \uFFFD");
}

TEST(TerminalTest, leavesLettersAlone) {
    EXPECT_EQ(terminalText("Größe Жук 家賃 🏠 قهوة"), "Größe Жук 家賃 🏠 قهوة");
}

TEST(TerminalTest, countsCells) {
    EXPECT_EQ(displayWidth(""), 0u);
    EXPECT_EQ(displayWidth("Rent"), 4u);
    EXPECT_EQ(displayWidth("Жук"), 3u);
    EXPECT_EQ(displayWidth("家賃"), 4u);
    EXPECT_EQ(displayWidth("🏠"), 2u);
    EXPECT_EQ(displayWidth("e\u0301"), 1u);
}

TEST(TerminalTest, fillsUpToAWidth) {
    EXPECT_EQ(padded("家", 4), "家  ");
    EXPECT_EQ(rightAligned("家", 4), "  家");
    EXPECT_EQ(padded("longer", 3), "longer");
}

} // namespace
} // namespace ctl
