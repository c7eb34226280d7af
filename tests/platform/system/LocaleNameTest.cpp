#include "platform/system/LocaleName.h"

#include "support/Environment.h"

#include <gtest/gtest.h>

using platform::dateLocaleName;
using platform::icuLocaleName;
using support::EnvironmentVariable;

namespace {

struct Row {
    const char* name;
    const char* posix;
    const char* icu;
};

class LocaleNameTableTest : public testing::TestWithParam<Row> {};

} // namespace

TEST_P(LocaleNameTableTest, isMapped) {
    EXPECT_EQ(icuLocaleName(GetParam().posix), GetParam().icu);
}

INSTANTIATE_TEST_SUITE_P(
    LocaleName, LocaleNameTableTest,
    testing::Values(
        Row{"nothing", "", "en_US_POSIX"}, Row{"C", "C", "en_US_POSIX"},
        Row{"CWithCodeset", "C.UTF-8", "en_US_POSIX"}, Row{"POSIX", "POSIX", "en_US_POSIX"},
        Row{"languageAlone", "de", "de"}, Row{"territory", "de_AT", "de_AT"},
        Row{"codeset", "de_AT.UTF-8", "de_AT"}, Row{"euro", "de_AT@euro", "de_AT"},
        Row{"codesetAndEuro", "de_AT.ISO-8859-15@euro", "de_AT"}, Row{"latin", "sr_RS@latin", "sr_Latn_RS"},
        Row{"latinWithCodeset", "sr_RS.UTF-8@latin", "sr_Latn_RS"},
        Row{"latinWithoutTerritory", "sr@latin", "sr_Latn"}, Row{"cyrillic", "uz_UZ@cyrillic", "uz_Cyrl_UZ"},
        Row{"devanagari", "ks_IN@devanagari", "ks_Deva_IN"}, Row{"iqtelif", "tt_RU@iqtelif", "tt_Latn_RU"},
        Row{"valencia", "ca_ES.UTF-8@valencia", "ca_ES_VALENCIA"},
        Row{"calendar", "th_TH.UTF-8@calendar=buddhist", "th_TH@calendar=buddhist"},
        Row{"severalKeywords", "ja_JP@calendar=japanese;numbers=latn",
            "ja_JP@calendar=japanese;numbers=latn"},
        Row{"path", "/usr/share/locale/de_AT", "en_US_POSIX"}, Row{"codesetAlone", ".UTF-8", "en_US_POSIX"},
        Row{"noise", "\xff\xfe%s", "en_US_POSIX"}),
    [](const auto& row) { return row.param.name; });

TEST(DateLocaleNameTest, theFirstSetOfThreeVariablesSpeaks) {
    const EnvironmentVariable lang("LANG", "fr_FR.UTF-8");
    const EnvironmentVariable time("LC_TIME", "de_DE.UTF-8");
    const EnvironmentVariable all("LC_ALL", "it_IT.UTF-8");
    EXPECT_EQ(dateLocaleName(), "it_IT");
    all.set(nullptr);
    EXPECT_EQ(dateLocaleName(), "de_DE");
    time.set(nullptr);
    EXPECT_EQ(dateLocaleName(), "fr_FR");
    lang.set(nullptr);
    EXPECT_EQ(dateLocaleName(), "en_US_POSIX");
}

TEST(DateLocaleNameTest, anEmptyVariableCountsAsUnset) {
    const EnvironmentVariable lang("LANG", "fr_FR.UTF-8");
    const EnvironmentVariable time("LC_TIME", "");
    const EnvironmentVariable all("LC_ALL", "");
    EXPECT_EQ(dateLocaleName(), "fr_FR");
}

TEST(DateLocaleNameTest, theLanguageOfTextsDoesNotBearOnDates) {
    const EnvironmentVariable lang("LANG", nullptr);
    const EnvironmentVariable time("LC_TIME", "de_DE.UTF-8");
    const EnvironmentVariable all("LC_ALL", nullptr);
    const EnvironmentVariable messages("LC_MESSAGES", "it_IT.UTF-8");
    EXPECT_EQ(dateLocaleName(), "de_DE");
}
