#include "bridge/Feed.h"

#include "bridge/BridgeTest.h"
#include "platform/plist/Writer.h"

#include <gtest/gtest.h>

namespace bridge {

namespace plist = platform::plist;

namespace {

class FeedTest : public BridgeTest {
protected:
    [[nodiscard]] static std::string whole(std::vector<plist::Value> records) {
        return *plist::writeXml(plist::Value(plist::Array(std::move(records))));
    }

    Feed feed(const std::vector<Plan>& plans) {
        files_ = {{"p:f:", "/f", true, {}, plans}};
        const Icons icons{[](const Plan& plan) { return std::string_view(plan.isSingle ? "once" : "again"); },
                          [](std::string_view) { return std::string_view(); }};
        return feedOf(shownOccurrences(files_, {}), icons, "en_US");
    }

private:
    std::vector<FilePlans> files_;
};

} // namespace

TEST_F(FeedTest, isWhatThePanelReads) {
    Plan rent = planOf("1", {"2026-03-10", "2026-04-10"});
    Plan salary = planOf("2", {"2026-03-09"});
    salary.direction = Direction::Income;
    salary.isSingle = true;
    Plan saving = planOf("3", {"2026-03-11"});
    saving.direction = Direction::Transfer;
    saving.amount.reset();
    const Feed made = feed({rent, salary, saving});
    EXPECT_EQ(made.bytes, R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<array>
	<dict>
		<key>amount</key>
		<string>+€870.00</string>
		<key>date</key>
		<real>1773100799</real>
		<key>expense</key>
		<false/>
		<key>image</key>
		<string>once</string>
		<key>income</key>
		<true/>
		<key>name</key>
		<string>Plan 2</string>
		<key>planpk</key>
		<string>p:f:2</string>
		<key>single</key>
		<true/>
		<key>source</key>
		<string>korvel-today-bridge</string>
	</dict>
	<dict>
		<key>amount</key>
		<string>−€870.00</string>
		<key>date</key>
		<real>1773187199</real>
		<key>expense</key>
		<true/>
		<key>image</key>
		<string>again</string>
		<key>income</key>
		<false/>
		<key>name</key>
		<string>Plan 1</string>
		<key>planpk</key>
		<string>p:f:1</string>
		<key>single</key>
		<false/>
		<key>source</key>
		<string>korvel-today-bridge</string>
	</dict>
	<dict>
		<key>amount</key>
		<string></string>
		<key>date</key>
		<real>1773273599</real>
		<key>expense</key>
		<false/>
		<key>image</key>
		<string>again</string>
		<key>income</key>
		<false/>
		<key>name</key>
		<string>Plan 3</string>
		<key>planpk</key>
		<string>p:f:3</string>
		<key>single</key>
		<false/>
		<key>source</key>
		<string>korvel-today-bridge</string>
	</dict>
	<dict>
		<key>amount</key>
		<string>−€870.00</string>
		<key>date</key>
		<real>1775865599</real>
		<key>expense</key>
		<true/>
		<key>image</key>
		<string>again</string>
		<key>income</key>
		<false/>
		<key>name</key>
		<string>Plan 1</string>
		<key>planpk</key>
		<string>p:f:1</string>
		<key>single</key>
		<false/>
		<key>source</key>
		<string>korvel-today-bridge</string>
	</dict>
</array>
</plist>
)");
    EXPECT_EQ(made.icons, (std::set<std::string>{"again", "once"}));
    ASSERT_EQ(made.records.size(), 4U);
    EXPECT_EQ(made.records[0].plan, "p:f:2");
    EXPECT_EQ(made.records[0].date, exchange::utc(2026, 3, 9, 23, 59, 59));
    EXPECT_EQ(made.records[0].nominal, dayOf("2026-03-09"));
}

TEST_F(FeedTest, tellsOccurrencesOfOneDayApart) {
    Plan plan = planOf("1", {"2026-03-07", "2026-03-08", "2026-03-09"});
    for (Occurrence& occurrence : plan.occurrences)
        occurrence.day = dayOf("2026-03-09");
    const Feed made = feed({plan, planOf("2", {"2026-03-09"})});
    const double end = exchange::utc(2026, 3, 9, 23, 59, 59);
    ASSERT_EQ(made.records.size(), 4U);
    for (std::size_t index = 0; index < 3; ++index) {
        EXPECT_EQ(made.records[index].nominal, plan.occurrences[index].nominal);
        EXPECT_EQ(made.records[index].date, end - 2 + static_cast<double>(index));
    }
    EXPECT_EQ(made.records[3].plan, "p:f:2");
    EXPECT_EQ(made.records[3].date, end);
}

TEST_F(FeedTest, showsTheFirstNameThereIs) {
    Plan plan;
    plan.account = "Giro";
    EXPECT_EQ(shownName(plan), "Giro");
    plan.payee = "Harbour";
    EXPECT_EQ(shownName(plan), "Harbour");
    plan.name = "\tGym\x01of\n1 \uFFFE";
    EXPECT_EQ(shownName(plan), "Gym of 1");
}

TEST_F(FeedTest, hasKeysThatEveryListHolds) {
    EXPECT_EQ(portableKey("SCH000001"), "SCH000001");
    EXPECT_EQ(portableKey("Miete ä 🏠"), "Miete ä 🏠");
    EXPECT_EQ(portableKey("50 %\n\x7f"), "50 %25%0A%7F");
    EXPECT_EQ(portableKey("a\xff"), "a%FF");
}

TEST_F(FeedTest, isOursOnlyWithOurMarkInEachRecord) {
    const auto ours = exchange::with(exchange::recordOf("p", 1), sourceKey, plist::Value(sourceName));
    const auto foreign = plist::Value(exchange::recordOf("p", 1));
    const std::string file = path("notifications.xml") + ": ";
    EXPECT_EQ(whyForeign(container), "");
    write("notifications.xml", whole({ours, ours}));
    EXPECT_EQ(whyForeign(container), "");
    write("notifications.xml", whole({ours, foreign}));
    EXPECT_EQ(whyForeign(container), file + "the feed is another program's, which has written record 2");
    write("notifications.xml",
          whole({exchange::with(exchange::recordOf("p", 1), sourceKey, plist::Value(1.0))}));
    EXPECT_EQ(whyForeign(container), file + "the feed is another program's, which has written record 1");
    for (const char* bytes : {"", "<plist><array>", "{}", "<plist><dict/></plist>"}) {
        write("notifications.xml", bytes);
        EXPECT_EQ(whyForeign(container),
                  file + "the feed cannot be read, so that it may be another program's");
    }
}

TEST_F(FeedTest, isThatOfTheAccountWhereItIsEmpty) {
    write("notifications.xml", whole({}));
    EXPECT_EQ(whyForeign(container), "");
    setSettings({{"account_pk", plist::Value(accountName)}});
    EXPECT_EQ(whyForeign(container), "");
    setSettings({{"account_pk", plist::Value("anna")}});
    EXPECT_EQ(whyForeign(container), path("notifications.xml") +
                                         ": the feed is another program's, whose account "
                                         "\"anna\" the settings name");
    breakSettings();
    EXPECT_NE(whyForeign(container), "");
}

} // namespace bridge
