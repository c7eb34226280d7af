#include "host/Request.h"

#include "host/RequestModel.h"
#include "platform/system/Region.h"
#include "support/Containers.h"
#include "support/RegionOverride.h"

#include <gtest/gtest.h>

namespace host {
namespace {

const QTime noon(12, 0, 5);

constexpr const char* settings = R"(<plist><dict>
<key>edit_transaction_plan_pk</key><string>plan-rent</string>
<key>edit_transaction_date</key><real>1773165600.125</real>
</dict></plist>)";

class RequestTest : public testing::Test {
protected:
    RequestTest() {
        containers.writeFeed(R"(<plist><array>
<dict><key>planpk</key><string>plan-rent</string><key>name</key><string>Rent &amp; heating</string></dict>
<dict><key>planpk</key><integer>1</integer><key>name</key><string>no plan</string></dict>
<string>no record</string>
</array></plist>)");
        names.learnFromFeed();
    }

    [[nodiscard]] Request read(const char* url) const {
        return readRequest(QString::fromUtf8(url), noon, names);
    }

    support::Containers containers;
    PlanNames names;
};

TEST_F(RequestTest, toShowATransactionNamesThatOfTheSettings) {
    containers.writeSettings(settings);
    const Request request = read("korvelWidget://tw_edit_transaction");
    EXPECT_EQ(request.meaning, QStringLiteral("Show this transaction"));
    ASSERT_TRUE(request.transaction);
    EXPECT_EQ(request.transaction->plan, QStringLiteral("plan-rent"));
    EXPECT_EQ(request.transaction->date, 1773165600.125);
    EXPECT_EQ(request.transactionName, QStringLiteral("Rent & heating"));
    EXPECT_EQ(outputLine(request).toStdString(),
              "request\tkorvelWidget://tw_edit_transaction\tplan-rent\t1773165600.125\n");
}

TEST_F(RequestTest, aboutAPlanOfUnknownNameGivesItsKey) {
    containers.writeSettings(settings);
    containers.writeFeed("<plist><array/></plist>");
    EXPECT_EQ(readRequest(QStringLiteral("korvelWidget://tw_edit_transaction"), noon, {}).transactionName,
              QStringLiteral("plan-rent"));
    EXPECT_EQ(read("korvelWidget://tw_edit_transaction").transactionName, QStringLiteral("Rent & heating"));
}

TEST_F(RequestTest, whoseTransactionTheSettingsDoNotNameSaysSo) {
    for (const char* text :
         {"<plist><dict/></plist>", "no settings",
          "<plist><dict><key>edit_transaction_plan_pk</key><string>a</string></dict></plist>",
          "<plist><dict><key>edit_transaction_plan_pk</key><string>a</string>"
          "<key>edit_transaction_date</key><string>today</string></dict></plist>"}) {
        containers.writeSettings(text);
        const Request request = read("korvelWidget://tw_edit_transaction");
        EXPECT_FALSE(request.transaction) << text;
        EXPECT_EQ(request.transactionName, QStringLiteral("none is named")) << text;
        EXPECT_EQ(outputLine(request).toStdString(), "request\tkorvelWidget://tw_edit_transaction\n");
    }
}

struct Meaning {
    const char* name;
    const char* url;
    const char* text;
};

class RequestMeaning : public RequestTest, public testing::WithParamInterface<Meaning> {};

TEST_P(RequestMeaning, isSaidInWords) {
    containers.writeSettings(settings); // which only an edit is about
    const Request request = read(GetParam().url);
    EXPECT_EQ(request.meaning.toStdString(), GetParam().text);
    EXPECT_EQ(request.url.toStdString(), GetParam().url);
    EXPECT_FALSE(request.transaction);
    EXPECT_EQ(outputLine(request).toStdString(), std::string("request\t") + GetParam().url + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Urls, RequestMeaning,
    testing::Values(Meaning{"add", "korvelWidget://tw_new_transaction", "Add a transaction"},
                    Meaning{"all", "korvelWidget://tw_all_transactions", "Show all transactions"},
                    Meaning{"lowerCaseScheme", "korvelwidget://tw_new_transaction", "Add a transaction"},
                    Meaning{"otherCaseOfThePath", "korvelWidget://TW_NEW_TRANSACTION",
                            "Nothing that is known here"},
                    Meaning{"more", "korvelWidget://tw_new_transaction/", "Nothing that is known here"},
                    Meaning{"otherScheme", "korvel://tw_new_transaction", "Nothing that is known here"},
                    Meaning{"nothing", "", "Nothing that is known here"}),
    [](const auto& listed) { return std::string(listed.param.name); });

TEST_F(RequestTest, isShownWithTheNewestFirst) {
    const support::RegionOverride region({"en_US", "UTC"});
    containers.writeSettings(settings);
    RequestModel model;
    model.add(read("korvelWidget://tw_edit_transaction"));
    model.add(readRequest(QStringLiteral("korvelWidget://tw_new_transaction"), QTime(13, 0), names));
    const auto text = [&](int row, int column) {
        return model.index(row, column).data().toString().toStdString();
    };
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(text(0, RequestModel::Time), "13:00:00");
    EXPECT_EQ(text(0, RequestModel::Transaction), "");
    EXPECT_EQ(text(0, RequestModel::Due), "");
    EXPECT_EQ(text(1, RequestModel::Time), "12:00:05");
    EXPECT_EQ(text(1, RequestModel::Meaning), "Show this transaction");
    EXPECT_EQ(text(1, RequestModel::Transaction), "Rent & heating");
    EXPECT_EQ(text(1, RequestModel::Due), "Mar 10, 2026");
    EXPECT_EQ(text(1, RequestModel::Url), "korvelWidget://tw_edit_transaction");
    EXPECT_EQ(model.index(1, RequestModel::Due).data(Qt::ToolTipRole).toString().toStdString(),
              "plan-rent, 1773165600.125");
}

} // namespace
} // namespace host
