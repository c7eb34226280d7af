#include "center/SourceOffers.h"

#include "BridgeStandIn.h"
#include "center/BridgeUpdates.h"
#include "support/Containers.h"
#include "support/Environment.h"
#include "support/ManualWatches.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using channel::Source;
using channel::SourceFault;

namespace {

constexpr const char* twoFiles = R"([
    {"program": "homebank", "title": "HomeBank", "path": "/home/anna/bills.xhb", "connected": false},
    {"program": "kmymoney", "title": "KMyMoney", "path": "/home/anna/bills.kmy", "connected": false}])";

class SourceOffersTest : public testing::Test {
protected:
    void find(const std::string& found) {
        offers.find();
        EXPECT_EQ(bridge.next(), "sources --json");
        bridge.answer(found);
    }

    support::TemporaryFolder folder; // where no file was connected
    support::EnvironmentVariable config{"XDG_CONFIG_HOME", folder.path()};
    support::Containers containers;
    BridgeStandIn bridge;
    center::BridgeUpdates updates{bridge.call(), std::make_unique<support::ManualWatcher>(),
                                  std::make_unique<support::ManualAlarm>()};
    std::vector<channel::ToExtension> told;
    center::SourceOffers offers{bridge.call(), updates,
                                [this](const channel::ToExtension& message) { told.push_back(message); }};
};

} // namespace

TEST_F(SourceOffersTest, tellsWhatIsFound) {
    find(twoFiles);
    EXPECT_EQ(told, (std::vector<channel::ToExtension>{Source{0, "HomeBank", "/home/anna/bills.xhb"},
                                                       Source{1, "KMyMoney", "/home/anna/bills.kmy"}}));
}

TEST_F(SourceOffersTest, tellsNothingWhereNothingIsFound) {
    find("[]");
    offers.find();
    bridge.fail("there is no such program");
    EXPECT_TRUE(told.empty());
}

// A panel that was hidden meanwhile may still name a number of before.
TEST_F(SourceOffersTest, givesAFileTheSameNumberAgain) {
    find(twoFiles);
    told.clear();
    find(
        R"([{"title": "KMyMoney", "path": "/home/anna/bills.kmy"}, {"title": "GnuCash", "path": "/b.gnucash"}])");
    EXPECT_EQ(told, (std::vector<channel::ToExtension>{Source{1, "KMyMoney", "/home/anna/bills.kmy"},
                                                       Source{2, "GnuCash", "/b.gnucash"}}));
}

TEST_F(SourceOffersTest, looksOnceAtATime) {
    offers.find();
    offers.find();
    bridge.answer(twoFiles);
    EXPECT_EQ(bridge.next(), "");
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(SourceOffersTest, numbersTwentyFilesAtMost) {
    std::string many = "[";
    for (int number = 0; number < 30; ++number)
        many += std::string(number > 0 ? "," : "") + R"({"title": "HomeBank", "path": "/)" +
                std::to_string(number) + R"("})";
    find(many + "]");
    EXPECT_EQ(told.size(), 20U);
}

TEST_F(SourceOffersTest, connectsAFileAndPublishes) {
    find(twoFiles);
    told.clear();
    offers.connect(1);
    EXPECT_EQ(bridge.next(), "connect /home/anna/bills.kmy");
    bridge.answer();
    EXPECT_EQ(bridge.next(), "update");
    bridge.answer();
    EXPECT_EQ(bridge.next(), "status --json");
    EXPECT_TRUE(told.empty());
}

TEST_F(SourceOffersTest, tellsWhyAFileIsNotConnected) {
    find(twoFiles);
    told.clear();
    offers.connect(0);
    bridge.fail("/home/anna/bills.xhb is encrypted");
    EXPECT_EQ(bridge.next(), "");
    EXPECT_EQ(told, (std::vector<channel::ToExtension>{SourceFault{0, "/home/anna/bills.xhb is encrypted"}}));
}

TEST_F(SourceOffersTest, tellsWhyNothingIsPublished) {
    find(twoFiles);
    told.clear();
    offers.connect(0);
    bridge.answer();
    bridge.fail("the feed is another host's");
    EXPECT_EQ(told, (std::vector<channel::ToExtension>{SourceFault{0, "the feed is another host's"}}));
}

TEST_F(SourceOffersTest, connectsAFileAgainAfterAFailure) {
    find(twoFiles);
    offers.connect(0);
    offers.connect(0); // one click more
    bridge.fail("it is encrypted");
    EXPECT_EQ(bridge.next(), "");
    offers.connect(0);
    EXPECT_EQ(bridge.next(), "connect /home/anna/bills.xhb");
}

TEST_F(SourceOffersTest, connectsNothingThatWasNotOffered) {
    offers.connect(0);
    find(twoFiles);
    offers.connect(2);
    EXPECT_EQ(bridge.next(), "");
}

TEST_F(SourceOffersTest, shortensAReasonAtItsBeginning) {
    find(twoFiles);
    told.clear();
    offers.connect(0);
    bridge.fail("/" + std::string(2000, 'x') + ": it is cut off");
    const auto& fault = std::get<SourceFault>(told.at(0));
    EXPECT_TRUE(fault.reason.starts_with("…x"));
    EXPECT_TRUE(fault.reason.ends_with("x: it is cut off"));
    EXPECT_TRUE(channel::packetOf(told.at(0)));
}
