#include "bridge/sources/Hledger.h"

#include <gmock/gmock.h>

#include <chrono>

using bridge::Day;
using bridge::Reading;
using namespace std::chrono_literals;
using testing::IsEmpty;

namespace {

constexpr bridge::Period period{Day(2026y / 11 / 21), Day(2026y / 12 / 22)};

const std::string accounts = "assets:bank   ; type: A\nexpenses:a    ; type: X\nodd           ; type: \n";

std::string postingOf(const std::string& account, const std::string& mantissa,
                      const std::string& places = "2") {
    return R"({"paccount":")" + account +
           R"(","ptype":"RegularPosting","pamount":[{"acommodity":"EUR","aquantity":)"
           R"({"decimalMantissa":)" +
           mantissa + R"(,"decimalPlaces":)" + places +
           R"(,"floatingPoint":1},"astyle":{"asprecision":2}}]})";
}

std::string transactionOf(const std::string& date, const std::string& tags,
                          const std::string& mantissa = "-500", const std::string& places = "2") {
    return R"({"tindex":1,"tdate":")" + date + R"(","tdescription":"Shop | food","ttags":)" + tags +
           R"(,"tpostings":[)" + postingOf("assets:bank", mantissa, places) + "]}";
}

const std::string generated = R"([["_generated-transaction","~ monthly"],["plan","p"]])";

Reading readingOf(const std::string& json) {
    return bridge::readHledger({json, accounts}, Day(2026y / 9 / 1), period);
}

} // namespace

TEST(Hledger, readsARuleOfTheHiddenTagAlone) {
    const Reading reading = readingOf("[" + transactionOf("2026-12-01", generated) + "]");
    ASSERT_EQ(reading.plans.size(), 1U);
    EXPECT_EQ(reading.plans[0].key, "p");
    EXPECT_EQ(reading.plans[0].amount, (bridge::Amount{{-500, 2}, "EUR"}));
    EXPECT_EQ(reading.plans[0].account, "assets:bank");
}

TEST(Hledger, leavesOutWhatIsBeforeTheFirstDayOrAfterTheLast) {
    const Reading reading = readingOf("[" + transactionOf("2026-08-31", generated) + "," +
                                      transactionOf("2026-12-23", generated) + "]");
    ASSERT_EQ(reading.plans.size(), 1U);
    EXPECT_THAT(reading.plans[0].occurrences, IsEmpty());
}

TEST(Hledger, warnsOfAPaymentThatCountsForNothing) {
    for (const char* tags : {R"([["plan","p"],["paid-of","soon"]])", R"([["paid-of","2026-12-01"]])",
                             R"([["plan","p"],["paid-of","2026-02-30"]])"}) {
        const Reading reading = readingOf("[" + transactionOf("2026-11-01", tags) + "," +
                                          transactionOf("2026-12-01", generated) + "]");
        ASSERT_EQ(reading.plans.size(), 1U) << tags;
        EXPECT_EQ(reading.plans[0].occurrences.size(), 1U) << tags;
        EXPECT_EQ(reading.warnings.size(), 1U) << tags;
    }
}

TEST(Hledger, hasNoAmountWhereTheNumberIsNone) {
    const std::pair<const char*, const char*> numbers[] = {{"1.5", "2"},
                                                           {"9223372036854775808", "2"},
                                                           {"-9223372036854775808", "2"},
                                                           {"null", "2"},
                                                           {"\"5\"", "2"},
                                                           {"5", "-1"},
                                                           {"5", "11"},
                                                           {"5", "null"},
                                                           {"9223372036854775807", "0"}};
    for (const auto& [mantissa, places] : numbers) {
        const Reading reading =
            readingOf("[" + transactionOf("2026-12-01", generated, mantissa, places) + "]");
        ASSERT_EQ(reading.plans.size(), 1U) << mantissa << ' ' << places << reading.fault;
        EXPECT_FALSE(reading.plans[0].amount) << mantissa << ' ' << places;
    }
}

TEST(Hledger, keepsTheDecimalsThatTheAnswerHas) {
    const Reading reading =
        readingOf("[" + transactionOf("2026-12-01", generated, "-12345678901", "10") + "]");
    EXPECT_EQ(reading.plans.at(0).amount, (bridge::Amount{{-12345678901, 10}, "EUR"}));
}

TEST(Hledger, readsNothingOfAnAnswerThatIsCutOff) {
    const std::string whole = "[" + transactionOf("2026-12-01", generated) + "]";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Reading reading = readingOf(whole.substr(0, length));
        EXPECT_EQ(reading.fault, "cannot be read: hledger's answer is cut off or damaged") << length;
        EXPECT_THAT(reading.plans, IsEmpty()) << length;
    }
}

TEST(Hledger, readsNothingOfAnAnswerOfAnotherForm) {
    const std::string good = transactionOf("2026-12-01", generated);
    const auto without = [&](const std::string& part, const std::string& other) {
        std::string json = good;
        return "[" + good + "," + json.replace(json.find(part), part.size(), other) + "]";
    };
    const std::pair<const char*, std::string> cases[] = {
        {"number instead of a transaction", "[" + good + ",1]"},
        {"index missing", without("tindex", "other")},
        {"date without a day", without("2026-12-01", "2026-12")},
        {"description is a number", without("\"Shop | food\"", "1")},
        {"tags missing", without("ttags", "other")},
        {"tag without a value", without(R"(["plan","p"])", R"(["plan"])")},
        {"tag is a number", without(R"(["plan","p"])", R"(["plan",1])")},
        {"postings missing", without("tpostings", "other")},
        {"posting without account", without("paccount", "other")},
        {"posting without type", without("ptype", "other")},
        {"amounts missing", without("pamount", "other")},
        {"commodity missing", without("acommodity", "other")}};
    for (const auto& [name, json] : cases) {
        const Reading reading = readingOf(json);
        EXPECT_EQ(reading.fault,
                  "cannot be read: hledger's answer has another form than expected (transaction 2)")
            << name;
        EXPECT_THAT(reading.plans, IsEmpty()) << name;
    }
    EXPECT_EQ(readingOf("{}").fault, "cannot be read: hledger's answer is no list of transactions");
    EXPECT_EQ(readingOf("[]").fault, "") << "a journal without rules";
    EXPECT_EQ(readingOf(std::string(1'000'000, '[')).fault,
              "cannot be read: hledger's answer is cut off or damaged");
}
