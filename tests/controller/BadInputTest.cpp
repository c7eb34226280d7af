// Wrong and very large content of a container.
#include "controller/ControllerTest.h"

#include "support/Application.h"

#include <cmath>
#include <limits>

namespace controller {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BadInputTest : public ControllerTest {
protected:
    void expectEmptyList() const {
        EXPECT_THAT(names(), IsEmpty());
        EXPECT_THAT(shown(), ElementsAre("[TodayViewEmtyText]"));
        EXPECT_EQ(height(), 50.0);
    }
};

TEST_F(BadInputTest, noFeedIsAnEmptyList) {
    load();
    expectEmptyList();
}

TEST_F(BadInputTest, noContainerIsAnEmptyList) {
    removeContainer();
    load();
    expectEmptyList();
}

struct Feed {
    const char* name;
    const char* text;
};

void PrintTo(const Feed& listed, std::ostream* stream) {
    *stream << listed.name;
}

class UnreadableFeedTest : public BadInputTest, public testing::WithParamInterface<Feed> {};

TEST_P(UnreadableFeedTest, isAnEmptyList) {
    write("notifications.xml", GetParam().text);
    load();
    expectEmptyList();
}

INSTANTIATE_TEST_SUITE_P(Feeds, UnreadableFeedTest,
                         testing::Values(Feed{"nothingAtAll", ""},
                                         Feed{"aDictionary", "<plist><dict/></plist>"},
                                         Feed{"aString", "<plist><string>a</string></plist>"},
                                         Feed{"cutOff", "<plist><array><dict><key>date</key>"},
                                         Feed{"garbage", "\x01\xff<<>>"},
                                         Feed{"anEmptyArray", "<plist><array/></plist>"}),
                         [](const auto& listed) { return listed.param.name; });

TEST_F(BadInputTest, aFeedThatIsAFolderIsAnEmptyList) {
    makeFolder("notifications.xml");
    load();
    expectEmptyList();
}

TEST_F(BadInputTest, aRecordWithoutAnAmountIsFatal) {
    writeFeed({exchange::without(exchange::recordOf("plan", tenthOfMarch), "amount")});
    EXPECT_FATAL(load());
}

TEST_F(BadInputTest, aRecordWhoseGlyphIsMissingIsFatal) {
    giveFeedOf(1);
    remove("-/icons/house.png");
    EXPECT_FATAL(load());
}

// If the settings cannot be opened, the list is empty and the feed is not read.
TEST_F(BadInputTest, garbageSettingsShowNone) {
    breakSettings();
    giveFatalFeed();
    load();
    EXPECT_EQ(controller->trCount, Count::None());
    EXPECT_THAT(shown(), ElementsAre("[]"));
    EXPECT_EQ(height(), 50.0);
}

TEST_F(BadInputTest, settingsOfOtherTypesConvert) {
    setSettings({{"show_transactions_count", plist::Value("-3 or so")}});
    load();
    EXPECT_EQ(controller->trCount, Count::None());
    setSettings({{"show_transactions_count", plist::Value(plist::Array())}});
    load();
    EXPECT_EQ(controller->trCount, Count::Custom(5));
}

TEST_F(BadInputTest, datesThatAreNoMomentsAreListed) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    giveFeed({{"not a number", std::nan("")},
              {"past", -infinity},
              {"today", tenthOfMarch},
              {"long ago", -1e300},
              {"never", infinity},
              {"far away", 1e300}});
    load();
    EXPECT_THAT(names(), ElementsAre("past", "long ago", "today", "not a number"));
    EXPECT_EQ(row(0).subtitleLabel->stringValue(), QString());
    EXPECT_FALSE(row(2).subtitleLabel->stringValue().isEmpty());
    EXPECT_EQ(row(3).subtitleLabel->stringValue(), QString());
    EXPECT_EQ(height(), 250.0);
    support::painted(controller->view());
}

TEST_F(BadInputTest, aDateThatIsNoMomentCanBePaid) {
    giveFeed({{"past", -std::numeric_limits<double>::infinity()}, {"today", tenthOfMarch}});
    load();
    act(0, Action::Paid());
    EXPECT_THAT(names(), ElementsAre("today"));
    controller->loadData();
    EXPECT_THAT(names(), ElementsAre("today"));
}

TEST_F(BadInputTest, equalRecordsAreAllListedAndOnePaymentTakesOneRow) {
    giveFeed({{"A"}, {"A"}, {"A"}});
    load();
    act(1, Action::Paid());
    EXPECT_THAT(names(), ElementsAre("A", "A"));
}

TEST_F(BadInputTest, textsOfAnyKindAreShownAsTheyStand) {
    const std::string longName(5000, 'x');
    giveFeed({{longName, tenthOfMarch, true, std::string(5000, '9')},
              {"", tenthOfMarch + 1, true, ""},
              {"<b>%1\n\t\u202e\u05d0", tenthOfMarch + 2, true, "%1 & <i>"}});
    load();
    EXPECT_THAT(names(), ElementsAre(longName, "", "<b>%1\n\t\u202e\u05d0"));
    EXPECT_EQ(controller->maxSumLength, 105.0);
    act(2, Action::Later(0));
    EXPECT_EQ(sheet().titleLabel->stringValue(), QString::fromUtf8("<b>%1\n\t\u202e\u05d0: %1 & <i>"));
    support::painted(controller->view());
}

TEST_F(BadInputTest, tenThousandRecordsAreTenThousandRows) {
    constexpr std::size_t many = 10000;
    std::vector<Occurrence> occurrences;
    for (std::size_t i = 0; i < many; ++i)
        occurrences.push_back({std::to_string(i), tenthOfMarch - static_cast<double>(many - i)});
    giveFeed(occurrences);
    load();
    ASSERT_EQ(controller->cellArray.size(), many);
    EXPECT_EQ(row(many - 1).item->name, QStringLiteral("9999"));
    EXPECT_EQ(transaction(many - 1)->index, static_cast<std::int64_t>(many - 1));
    EXPECT_THAT(shown(), ElementsAre("0", "1", "2", "3", "4", "[ShowAllTitle]"));
    EXPECT_EQ(height(), 300.0);
    // The table contains only the visible rows.
    EXPECT_EQ(table().subviews().size(), 6u);
    act(0, Action::Paid());
    queue.advance(std::chrono::seconds(1));
    EXPECT_THAT(shown(), ElementsAre("1", "2", "3", "4", "5", "[ShowAllTitle]"));
}

} // namespace
} // namespace controller
