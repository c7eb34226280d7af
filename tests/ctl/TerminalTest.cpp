#include "ctl/Terminal.h"

#include <gtest/gtest.h>

namespace ctl {
namespace {

TEST(TerminalTest, escapesWhatWouldMoveTheCursorOrTurnTheText) {
    EXPECT_EQ(terminalText("two\nlines\tand\r\nmore"), "two lines and\\u000d more");
    EXPECT_EQ(terminalText("\x1b[31mred\x07"), "\\u001b[31mred\\u0007");
    EXPECT_EQ(terminalText(std::string("a\0b\x7F", 4)), "a\\u0000b\\u007f");
    EXPECT_EQ(terminalText("a\u0085b\u2028c\u2029d"), "a\\u0085b\\u2028c\\u2029d");
    EXPECT_EQ(terminalText("\u009b31m \u202Eright to left\u2066"), "\\u009b31m \\u202eright to left\\u2066");
    EXPECT_EQ(terminalText("\u061C\u200E\u200F\uFEFF"), "\\u061c\\u200e\\u200f\\ufeff");
    EXPECT_EQ(terminalText("\\u202e"), "\\u202e");
}

TEST(TerminalTest, escapesBytesThatAreNoText) {
    EXPECT_EQ(terminalText("no text: \xFF"), "no text: \\xff");
    EXPECT_EQ(terminalText("\xC0\x9B"), "\\xc0\\x9b") << "an overlong form";
    EXPECT_EQ(terminalText("\xE5\xAE"), "\\xe5\\xae") << "cut off";
    EXPECT_EQ(terminalText("\xC3(\x80"), "\\xc3(\\x80");
    EXPECT_EQ(terminalText("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "above U+10FFFF";
    EXPECT_EQ(terminalText("\xF8\x88\x80\x80\x80"), "\\xf8\\x88\\x80\\x80\\x80");
    EXPECT_EQ(terminalText("a\xED\xA0\xBC"), "a\\ud83c") << "a lone surrogate";
}

TEST(TerminalTest, keepsLineFeedsAndTabsOfLines) {
    EXPECT_EQ(terminalLines("a\tb\nc\r\x1b\u202E\xFF"), "a\tb\nc\\u000d\\u001b\\u202e\\xff");
}

TEST(TerminalTest, refersToTheCharactersOfXml) {
    EXPECT_EQ(terminalXml("<string>\ta\n\x1b\u202E家</string>"), "<string>\ta\n&#x001b;&#x202e;家</string>");
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
