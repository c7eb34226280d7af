#include "exchange/ExchangeTest.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/system/Workspace.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace exchange {
namespace {

using testing::ElementsAre;
using Action = TodayTransactionAction;

class LaunchTest : public ExchangeTest {
protected:
    LaunchTest() {
        platform::Workspace::setOpener([this](const QString& url) {
            opened.push_back(url.toStdString());
            settingsWhenOpened = settings();
            return opens;
        });
    }
    ~LaunchTest() override { platform::Workspace::setOpener({}); }

    [[nodiscard]] std::string setting(const std::string& key) const {
        const plist::Value* value = settingsWhenOpened.find(key);
        return value && value->string() ? std::string(*value->string()) : "none";
    }

    std::vector<std::string> opened;
    plist::Dictionary settingsWhenOpened;
    bool opens = true;
};

TEST_F(LaunchTest, infoNamesTheTransactionAndOpensTheHost) {
    TodayWidgetLogic::performTransactionAction(transactionOf("plan <7>", 1773146700.1234567), Action::Info(),
                                               nullptr);
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_edit_transaction"));
    EXPECT_EQ(setting("edit_transaction_plan_pk"), "plan <7>");
    EXPECT_EQ(setting("url_string"), "tw_edit_transaction");
    const plist::Value* date = settingsWhenOpened.find("edit_transaction_date");
    ASSERT_TRUE(date && date->real());
    EXPECT_EQ(*date->real(), 1773146700.1234567);
    EXPECT_EQ(settingsWhenOpened.size(), 3u);
}

TEST_F(LaunchTest, infoTouchesNeitherFeedNorLog) {
    write("notifications.xml", "not even a property list <");
    TodayWidgetLogic::performTransactionAction(transactionOf("plan", 20), Action::Info(), nullptr);
    EXPECT_EQ(feed(), "not even a property list <");
    EXPECT_FALSE(std::filesystem::exists(path("-")));
}

TEST_F(LaunchTest, newTransactionLeavesItsRequest) {
    TodayWidgetLogic::performNewTransaction(nullptr);
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_new_transaction"));
    EXPECT_EQ(setting("url_string"), "tw_new_transaction");
    EXPECT_EQ(settingsWhenOpened.size(), 1u);
}

TEST_F(LaunchTest, allTransactionsLeavesItsRequest) {
    TodayWidgetLogic::performAllTransactions(nullptr);
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_all_transactions"));
    EXPECT_EQ(setting("url_string"), "tw_all_transactions");
    EXPECT_EQ(settingsWhenOpened.size(), 1u);
}

TEST_F(LaunchTest, keepsTheHostsSettingsAndTheLastTransaction) {
    setSettings({{"notification_days_count", plist::Value(std::int64_t(3))},
                 {"edit_transaction_plan_pk", plist::Value("older")},
                 {"ratio", plist::Value(0.1)}});
    TodayWidgetLogic::performNewTransaction(nullptr);
    EXPECT_EQ(*settingsWhenOpened.find("notification_days_count"), plist::Value(std::int64_t(3)));
    EXPECT_EQ(*settingsWhenOpened.find("ratio"), plist::Value(0.1));
    EXPECT_EQ(setting("edit_transaction_plan_pk"), "older");
}

TEST_F(LaunchTest, opensTheHostWithoutSettings) {
    breakSettings();
    platform::Workspace::setOpener([this](const QString& url) {
        opened.push_back(url.toStdString());
        return true;
    });
    TodayWidgetLogic::performTransactionAction(transactionOf("plan", 20), Action::Info(), nullptr);
    TodayWidgetLogic::performNewTransaction(nullptr);
    TodayWidgetLogic::performAllTransactions(nullptr);
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_edit_transaction", "korvelWidget://tw_new_transaction",
                                    "korvelWidget://tw_all_transactions"));
}

TEST_F(LaunchTest, opensTheHostWithoutAContainerAndMakesNone) {
    removeContainer();
    TodayWidgetLogic::performTransactionAction(transactionOf("plan", 20), Action::Info(), nullptr);
    EXPECT_THAT(opened, ElementsAre("korvelWidget://tw_edit_transaction"));
    EXPECT_FALSE(std::filesystem::exists(container));
}

TEST_F(LaunchTest, ignoresThatNothingCouldBeOpened) {
    opens = false;
    TodayWidgetLogic::performAllTransactions(nullptr);
    EXPECT_EQ(opened.size(), 1u);
}

TEST_F(LaunchTest, loggedActionsOpenNothing) {
    writeFeed({plist::Value(recordOf("plan", 20))});
    for (const Action action :
         {Action::Later(1), Action::Paid(), Action::Delete(true), Action::Delete(false)})
        TodayWidgetLogic::performTransactionAction(transactionOf("plan", 20), action, nullptr);
    EXPECT_TRUE(opened.empty());
}

} // namespace
} // namespace exchange
