#include "center/Counts.h"

#include "TestLanguage.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLocale>

using center::countsText;

TEST(CountsTest, saysWhatThereIs) {
    const TestLanguage english(QStringLiteral("en"));
    EXPECT_EQ(countsText({2, 1}), QStringLiteral("2 overdue, 1 due today"));
    EXPECT_EQ(countsText({1, 0}), QStringLiteral("1 overdue"));
    EXPECT_EQ(countsText({0, 3}), QStringLiteral("3 due today"));
    EXPECT_EQ(countsText({}), QStringLiteral("Nothing is due"));
}

TEST(CountsTest, hasTheDigitsAndTheCommaOfTheLanguage) {
    const TestLanguage arabic(QStringLiteral("ar_EG"));
    EXPECT_EQ(countsText({2, 1}), QStringLiteral("متأخر: ٢، مستحق اليوم: ١"));
}

// A key without a text shows itself, and a text without its places would not say the numbers.
TEST(CountsTest, hasATextInEachLanguage) {
    for (const char* name : {"ar", "de", "en", "es", "fa", "fr", "he", "it", "ja", "ru"}) {
        const TestLanguage language(QString::fromLatin1(name));
        const QString both = countsText({23456, 7});
        EXPECT_TRUE(both.contains(QLocale().toString(23456))) << name;
        EXPECT_TRUE(both.contains(QLocale().toString(7))) << name;
        EXPECT_TRUE(both.contains(countsText({23456, 0}))) << name;
        EXPECT_TRUE(both.contains(countsText({0, 7}))) << name;
        for (const char* key :
             {"NothingIsDueText", "TrayShowTitle", "TrayAddTitle", "TrayOpenApplicationTitle",
              "TrayShowFolderTitle", "TrayQuitTitle", "NotificationOpenTitle", "NotificationNotTodayTitle"})
            EXPECT_NE(qtTrId(key), QLatin1String(key)) << name;
    }
}
