#include "bridge/icons/FoldedText.h"

#include <gtest/gtest.h>

#include <string>

namespace bridge {
namespace {

std::string folded(std::string_view text) {
    return foldedText(text).toStdString();
}

TEST(FoldedTextTest, setsWordsApartBySingleSpaces) {
    EXPECT_EQ(folded("rent"), " rent ");
    EXPECT_EQ(folded("  Expenses:Auto : Gas & oil-2! "), " expenses auto gas oil 2 ");
    EXPECT_EQ(folded("l'eau"), " l eau ");
}

TEST(FoldedTextTest, ignoresCaseAndAccents) {
    EXPECT_EQ(folded("ÉLECTRICITÉ"), folded("electricite"));
    EXPECT_EQ(folded("Straße"), folded("STRASSE"));
    EXPECT_EQ(folded("Ёлка и Йод"), folded("елка и иод"));
    EXPECT_EQ(folded("e\xCC\x81t\xCC\x81"), folded("ét\xCC\x81"));
    EXPECT_EQ(folded("\xC4\xB0nternet"), " internet "); // a dotted capital I
}

TEST(FoldedTextTest, knowsOtherFormsOfALetter) {
    EXPECT_EQ(folded("ＲＥＮＴ"), " rent ");
    EXPECT_EQ(folded("ｶﾞｽ"), folded("ガス"));
    EXPECT_EQ(folded("بيمه"), folded("بیمه"));   // Arabic and Persian Yeh
    EXPECT_EQ(folded("كارت"), folded("کارت"));   // Kaf
    EXPECT_EQ(folded("مدرسة"), folded("مدرسه")); // Teh Marbuta and Heh
    EXPECT_EQ(folded("تَأْمِين"), folded("تامين"));
    EXPECT_EQ(folded("مـــاء"), folded("ماء")); // stretched
    EXPECT_EQ(folded("בַּיִת"), folded("בית"));
}

TEST(FoldedTextTest, keepsJapaneseSyllablesApart) {
    EXPECT_NE(folded("ガス"), folded("カス"));
    EXPECT_NE(folded("プール"), folded("フール"));
    EXPECT_EQ(folded("コーヒー・カフェ"), " コーヒー カフェ ");
}

TEST(FoldedTextTest, dropsTheArabicArticleOfALongerWord) {
    EXPECT_EQ(folded("السيارة والبيت"), folded("سيارة والبيت"));
    EXPECT_EQ(folded("الماء"), folded("ماء"));
    EXPECT_EQ(folded("الام"), " الام ");
}

TEST(FoldedTextTest, takesAZeroWidthNonJoinerForASpace) {
    EXPECT_EQ(folded("پس\xE2\x80\x8Cانداز"), folded("پس انداز"));
}

TEST(FoldedTextTest, isASpaceWithoutALetterOrDigit) {
    for (const std::string_view text : {"", " ", "—", ":::", "\xCC\x81", "\xD9\x80"})
        EXPECT_EQ(folded(text), " ") << text;
}

TEST(FoldedTextTest, takesTextThatIsNoUtf8) {
    EXPECT_EQ(folded("rent\xFF\xFE home\xC3"), " rent home ");
    EXPECT_EQ(folded(std::string_view("a\0b", 3)), " a b ");
    EXPECT_EQ(folded("\xED\xA0\x80x"), " x "); // an encoded surrogate
}

} // namespace
} // namespace bridge
