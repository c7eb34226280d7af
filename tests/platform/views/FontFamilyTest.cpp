#include "platform/views/FontFamily.h"

#include "platform/views/Fonts.h"

#include <QFontDatabase>
#include <QFontInfo>

#include <gtest/gtest.h>

using platform::concreteFontFamily;

// What Qt draws a generic name with, by its own long way round.
TEST(FontFamily, isTheOneThatQtWouldChooseForAGenericName) {
    for (const char* generic : {"Sans Serif", "sans-serif", "Sans", "Serif", "Monospace", "system-ui"}) {
        const QString name = QString::fromLatin1(generic);
        EXPECT_EQ(concreteFontFamily(name), QFontInfo(QFont(name)).family()) << generic;
    }
}

TEST(FontFamily, ofAGenericNameIsOneThatHasFonts) {
    const QString family = concreteFontFamily(QStringLiteral("Sans Serif"));
    EXPECT_NE(family, QStringLiteral("Sans Serif"));
    EXPECT_TRUE(QFontDatabase::hasFamily(family));
}

TEST(FontFamily, asksForGenericNamesInAnyCase) {
    EXPECT_EQ(concreteFontFamily(QStringLiteral("SANS SERIF")),
              concreteFontFamily(QStringLiteral("Sans Serif")));
}

TEST(FontFamily, keepsANameThatIsNotGeneric) {
    for (const char* concrete : {"DejaVu Sans", "No Such Font At All", ""}) {
        const QString name = QString::fromLatin1(concrete);
        EXPECT_EQ(concreteFontFamily(name), name);
    }
}

TEST(FontFamily, keepsTwoGenericNamesApart) {
    const QString sans = concreteFontFamily(QStringLiteral("Sans Serif"));
    EXPECT_NE(concreteFontFamily(QStringLiteral("Monospace")), sans);
    EXPECT_EQ(concreteFontFamily(QStringLiteral("Sans Serif")), sans);
}

TEST(FontFamily, ofTheSystemFontIsConcrete) {
    const QString family = platform::systemFont(15).family();
    EXPECT_EQ(family, concreteFontFamily(family));
    EXPECT_TRUE(QFontDatabase::hasFamily(family));
}
