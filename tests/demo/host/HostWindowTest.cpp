#include "host/HostWindow.h"

#include "support/Application.h"
#include "support/Containers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* logWithOne = R"(<plist><array><dict><key>type</key><integer>1</integer>
<key>pk</key><string>plan-rent</string><key>date</key><real>5.5</real><key>param</key><integer>0</integer>
</dict></array></plist>)";

class HostWindowTest : public testing::Test {
protected:
    HostWindowTest() {
        EXPECT_EQ(makeMailbox(mailbox), std::error_code());
        containers.writeSettings("<plist><dict><key>account_pk</key><string>anna</string></dict></plist>");
        containers.writeFeed("<plist><array><dict><key>planpk</key><string>plan-rent</string>"
                             "<key>name</key><string>Rent</string></dict></array></plist>");
    }

    std::unique_ptr<HostWindow> open() {
        return std::make_unique<HostWindow>(
            mailbox, [this](const QString& line) { said.push_back(line.toStdString()); });
    }

    support::Containers containers;
    support::TemporaryFolder folder;
    std::string mailbox = folder.path("box");
    std::vector<std::string> said;
};

TEST_F(HostWindowTest, showsAndSaysEachRequest) {
    const auto window = open();
    ASSERT_EQ(deliver(mailbox, "korvelWidget://tw_new_transaction"), std::error_code());
    ASSERT_EQ(deliver(mailbox, "korvelWidget://tw_all_transactions"), std::error_code());
    window->takeRequests();
    EXPECT_EQ(window->requests().rowCount(), 2);
    EXPECT_THAT(said, ElementsAre("request\tkorvelWidget://tw_new_transaction\n",
                                  "request\tkorvelWidget://tw_all_transactions\n"));
}

TEST_F(HostWindowTest, comesBackForARequest) {
    const auto window = open();
    window->show();
    window->close();
    EXPECT_FALSE(window->isVisible());
    ASSERT_EQ(deliver(mailbox, "korvelWidget://tw_new_transaction"), std::error_code());
    window->takeRequests();
    EXPECT_TRUE(window->isVisible());
}

TEST_F(HostWindowTest, showsWhatTheLogHoldsAtItsStart) {
    containers.write("anna/actions.xml", logWithOne);
    EXPECT_EQ(open()->log().rowCount(), 1);
    EXPECT_THAT(said, ElementsAre("logged\ttype 1, pk plan-rent, date 5.5, param 0\n"));
}

// What was paid has left the feed before the log is read.
TEST_F(HostWindowTest, remembersTheNamesOfPlansThatHaveLeftTheFeed) {
    const auto window = open();
    containers.writeFeed("<plist><array/></plist>");
    containers.write("anna/actions.xml", logWithOne);
    window->readFiles();
    EXPECT_EQ(window->log().index(0, LogModel::Transaction).data().toString(), QStringLiteral("Rent"));
}

TEST_F(HostWindowTest, followsTheAccountOfTheSettings) {
    containers.write("anna/actions.xml", logWithOne);
    const auto window = open();
    containers.writeSettings("<plist><dict/></plist>");
    window->readFiles();
    EXPECT_EQ(window->log().rowCount(), 0);
    EXPECT_EQ(said.back(), "log\t0\n");
}

TEST_F(HostWindowTest, watchesTheFoldersThatAreThere) {
    const QString container = QString::fromStdString(containers.path());
    EXPECT_THAT(foldersToWatch(), ElementsAre(QString::fromStdString(containers.folder().path()), container,
                                              container + QStringLiteral("/Library/Preferences")));
    containers.write("anna/actions.xml", logWithOne);
    EXPECT_TRUE(foldersToWatch().contains(container + QStringLiteral("/anna")));
}

TEST_F(HostWindowTest, paintsItsSentenceOnlyWhileATableIsEmpty) {
    const auto window = open();
    QuietTable table(QStringLiteral("Nothing so far."));
    QuietTable plain{QString()};
    RequestModel model;
    for (QuietTable* each : {&table, &plain}) {
        each->setModel(&model);
        each->resize(400, 200);
    }
    EXPECT_NE(table.grab().toImage(), plain.grab().toImage());
    model.add({QStringLiteral("a:b"), QTime(1, 2), QString(), std::nullopt, QString()});
    EXPECT_EQ(table.grab().toImage(), plain.grab().toImage());
}

} // namespace
} // namespace host
