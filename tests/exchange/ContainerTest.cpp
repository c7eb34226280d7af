#include "exchange/ExchangeTest.h"
#include "exchange/SharedFiles.h"
#include "exchange/TodayWidgetLogicTestAccess.h"
#include "model/GroupIdentifiers.h"

#include <filesystem>
#include <fstream>

namespace exchange {
namespace {

using Access = TodayWidgetLogicTestAccess;
using Count = TodayTransactionsCount;

class ContainerTest : public ExchangeTest {};

TEST_F(ContainerTest, isTheFullEditionsWhateverElseExists) {
    EXPECT_EQ(Access::getGroupContainerID(), fullEditionGroupIdentifier);
    std::filesystem::create_directories(scratch + "/" + std::string(freeEditionGroupIdentifier));
    EXPECT_EQ(Access::containerFolder(), container);
    removeContainer();
    EXPECT_EQ(Access::containerFolder(), std::nullopt);
}

TEST_F(ContainerTest, isNeverMade) {
    removeContainer();
    EXPECT_EQ(Access::accountPk(), "-");
    EXPECT_EQ(TodayWidgetLogic::getTransactionsCountToShow(), Count::Custom(5));
    EXPECT_TRUE(TodayWidgetLogic::getTodayTransactionsArray().empty());
    EXPECT_FALSE(std::filesystem::exists(container));
}

TEST_F(ContainerTest, isAbsentWhereAFileStandsInItsPlace) {
    removeContainer();
    std::ofstream(container) << "no folder";
    EXPECT_EQ(Access::containerFolder(), std::nullopt);
    EXPECT_TRUE(TodayWidgetLogic::getTodayTransactionsArray().empty());
}

TEST_F(ContainerTest, hasItsFilesAtFixedPlaces) {
    EXPECT_EQ(feedFile("/c"), "/c/notifications.xml");
    EXPECT_EQ(actionLogFile(accountFolder("/c", "-")), "/c/-/actions.xml");
    EXPECT_EQ(actionLogFile(accountFolder("/c", "Mein Konto ä")), "/c/Mein Konto ä/actions.xml");
}

TEST_F(ContainerTest, tellsWhatTheListIsMadeFrom) {
    const std::string settings = "/Library/Preferences/" + std::string(fullEditionGroupIdentifier) + ".plist";
    const auto expected = [&](const std::string& account) {
        return platform::PathWatcher::Paths{{container + "/notifications.xml", container + settings},
                                            {container + "/" + account + "/icons"}};
    };
    EXPECT_EQ(pathsOfList(), expected("-"));
    setSettings({{"account_pk", plist::Value("anna")}});
    EXPECT_EQ(pathsOfList(), expected("anna"));
    removeContainer();
    EXPECT_EQ(pathsOfList(), expected("-"));
}

TEST_F(ContainerTest, takesAnAccountKeyAsItStands) {
    EXPECT_EQ(actionLogFile(accountFolder("/c", "")), "/c/actions.xml") << "empty: the container itself";
    EXPECT_EQ(actionLogFile(accountFolder("/c", "/etc")), "/c/etc/actions.xml") << "absolute: still inside";
    EXPECT_EQ(actionLogFile(accountFolder("/c", "..")), "/c/../actions.xml") << "not checked, on purpose";
    EXPECT_EQ(actionLogFile(accountFolder("/c", "a/b")), "/c/a/b/actions.xml");
}

TEST_F(ContainerTest, namesTheHostsUrlScheme) {
    EXPECT_EQ(Access::getUrlScheme(), QStringLiteral("korvelWidget"));
}

// --- the account key

struct AccountRow {
    const char* name;
    plist::Value setting;
    const char* key;
};

class AccountKeyTable : public ExchangeTest, public testing::WithParamInterface<AccountRow> {};

TEST_P(AccountKeyTable, isTheSettingAsText) {
    setSettings({{"account_pk", GetParam().setting}});
    EXPECT_EQ(Access::accountPk(), GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, AccountKeyTable,
    testing::Values(AccountRow{"String", plist::Value("acc-1"), "acc-1"},
                    AccountRow{"StringWithSpacesAndLetters", plist::Value("Hošek a syn"), "Hošek a syn"},
                    AccountRow{"EmptyString", plist::Value(""), ""},
                    AccountRow{"Integer", plist::Value(std::int64_t(42)), "42"},
                    AccountRow{"Real", plist::Value(1.5), "1.5"},
                    AccountRow{"Boolean", plist::Value(true), "1"},
                    AccountRow{"Data", plist::Value(plist::Data{"acc"}), "-"},
                    AccountRow{"Date", plist::Value(plist::Date{1}), "-"},
                    AccountRow{"Array", plist::Value(plist::Array{plist::Value("acc")}), "-"},
                    AccountRow{"Dictionary", plist::Value(plist::Dictionary()), "-"}),
    [](const auto& row) { return row.param.name; });

TEST_F(ContainerTest, usesAHyphenForNoAccountKey) {
    EXPECT_EQ(Access::accountPk(), "-") << "no settings file";
    setSettings({{"other", plist::Value("x")}});
    EXPECT_EQ(Access::accountPk(), "-") << "no such key";
    breakSettings();
    EXPECT_EQ(Access::accountPk(), "-") << "settings that cannot be opened";
}

TEST_F(ContainerTest, seesAnAccountKeyThatTheHostHasJustWritten) {
    setSettings({{"account_pk", plist::Value("before")}});
    EXPECT_EQ(Access::accountPk(), "before");
    setSettings({{"account_pk", plist::Value("after")}});
    EXPECT_EQ(Access::accountPk(), "after");
}

// --- the count to show

struct CountRow {
    const char* name;
    plist::Value setting;
    Count count;
};

class ShownCountTable : public ExchangeTest, public testing::WithParamInterface<CountRow> {};

TEST_P(ShownCountTable, dependsOnTheSignAlone) {
    setSettings({{"show_transactions_count", GetParam().setting}});
    EXPECT_EQ(TodayWidgetLogic::getTransactionsCountToShow(), GetParam().count);
}

plist::Value integer(std::int64_t value) {
    return plist::Value(value);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, ShownCountTable,
    testing::Values(
        CountRow{"Zero", integer(0), Count::Custom(5)}, CountRow{"Three", integer(3), Count::Custom(5)},
        CountRow{"Twelve", integer(12), Count::Custom(5)},
        CountRow{"Largest", integer(std::numeric_limits<std::int64_t>::max()), Count::Custom(5)},
        CountRow{"Above63Bits", plist::Value(plist::Integer{~std::uint64_t(0), true}), Count::Custom(5)},
        CountRow{"MinusOne", integer(-1), Count::None()},
        CountRow{"Smallest", integer(std::numeric_limits<std::int64_t>::min()), Count::None()},
        CountRow{"True", plist::Value(true), Count::Custom(5)},
        CountRow{"RealAboveMinusOne", plist::Value(-0.9), Count::Custom(5)},
        CountRow{"RealMinusOne", plist::Value(-1.0), Count::None()},
        CountRow{"RealMinusInfinity", plist::Value(-std::numeric_limits<double>::infinity()), Count::None()},
        CountRow{"RealNaN", plist::Value(std::numeric_limits<double>::quiet_NaN()), Count::Custom(5)},
        CountRow{"NegativeText", plist::Value("-2 rows"), Count::None()},
        CountRow{"OtherText", plist::Value("none"), Count::Custom(5)},
        CountRow{"Data", plist::Value(plist::Data{"-1"}), Count::Custom(5)},
        CountRow{"Date", plist::Value(plist::Date{-1}), Count::Custom(5)},
        CountRow{"Array", plist::Value(plist::Array{integer(-1)}), Count::Custom(5)},
        CountRow{"Dictionary", plist::Value(plist::Dictionary()), Count::Custom(5)}),
    [](const auto& row) { return row.param.name; });

TEST_F(ContainerTest, showsFiveWhereTheCountIsAbsent) {
    EXPECT_EQ(TodayWidgetLogic::getTransactionsCountToShow(), Count::Custom(5)) << "no settings file";
    setSettings({});
    EXPECT_EQ(TodayWidgetLogic::getTransactionsCountToShow(), Count::Custom(5)) << "no such key";
}

TEST_F(ContainerTest, showsNoneWhereTheSettingsCannotBeOpened) {
    breakSettings();
    EXPECT_EQ(TodayWidgetLogic::getTransactionsCountToShow(), Count::None());
}

TEST_F(ContainerTest, keepsNoSettingBetweenTwoCalls) {
    setSettings({{"show_transactions_count", integer(-1)}});
    EXPECT_EQ(TodayWidgetLogic::getTransactionsCountToShow(), Count::None());
    setSettings({{"show_transactions_count", integer(1)}});
    EXPECT_EQ(TodayWidgetLogic::getTransactionsCountToShow(), Count::Custom(5));
}

} // namespace
} // namespace exchange
