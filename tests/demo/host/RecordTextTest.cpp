#include "host/RecordText.h"

#include <gtest/gtest.h>

namespace host {
namespace {

namespace plist = platform::plist;

plist::Value record(std::int64_t type, std::int64_t parameter) {
    plist::Dictionary fields;
    fields.set("type", plist::Value(type));
    fields.set("pk", plist::Value("plan-ü"));
    fields.set("date", plist::Value(1773165600.125));
    fields.set("param", plist::Value(parameter));
    return plist::Value(std::move(fields));
}

struct Meaning {
    const char* name;
    std::int64_t type;
    std::int64_t parameter;
    const char* text;
};

class LoggedMeaning : public testing::TestWithParam<Meaning> {};

TEST_P(LoggedMeaning, isSaidInWords) {
    const LoggedAction action = loggedAction(record(GetParam().type, GetParam().parameter));
    EXPECT_EQ(action.meaning.toStdString(), GetParam().text);
    EXPECT_EQ(action.plan, QStringLiteral("plan-ü"));
    EXPECT_EQ(action.date, 1773165600.125);
}

INSTANTIATE_TEST_SUITE_P(Actions, LoggedMeaning,
                         testing::Values(Meaning{"paid", 1, 0, "Paid"},
                                         Meaning{"tomorrow", 2, 1, "Later, in 1 day"},
                                         Meaning{"nextWeek", 2, 7, "Later, in 7 days"},
                                         Meaning{"deleteOne", 3, 0, "Delete"},
                                         Meaning{"deleteAll", 3, 1, "Delete, with all later ones"},
                                         Meaning{"unknown", 4, 0, "Unknown action 4"}),
                         [](const auto& listed) { return std::string(listed.param.name); });

TEST(LoggedAction, thatIsNoneOfTheWidgetsSaysSo) {
    for (const plist::Value& value : {plist::Value("text"), plist::Value(plist::Dictionary())}) {
        const LoggedAction action = loggedAction(value);
        EXPECT_EQ(action.meaning, QStringLiteral("Not one of the widget's"));
        EXPECT_FALSE(action.plan);
        EXPECT_FALSE(action.date);
    }
}

TEST(LoggedAction, keepsWhatItCanReadOfAnOddRecord) {
    plist::Dictionary fields = *record(1, 0).dictionary();
    fields.set("type", plist::Value("1"));
    const LoggedAction action = loggedAction(plist::Value(std::move(fields)));
    EXPECT_EQ(action.meaning, QStringLiteral("Not one of the widget's"));
    EXPECT_EQ(action.plan, QStringLiteral("plan-ü"));
}

TEST(LoggedAction, ofAnIntegerBeyondSixtyFourBitsIsNoneOfTheWidgets) {
    plist::Dictionary fields = *record(1, 0).dictionary();
    fields.set("type", plist::Value(plist::Integer{1, true}));
    EXPECT_EQ(loggedAction(plist::Value(std::move(fields))).meaning,
              QStringLiteral("Not one of the widget's"));
}

TEST(RecordText, hasEachFieldInItsOrder) {
    EXPECT_EQ(recordText(record(2, -3)).toStdString(), "type 2, pk plan-ü, date 1773165600.125, param -3");
}

TEST(RecordText, writesEachKind) {
    plist::Dictionary fields;
    fields.set("b", plist::Value(true));
    fields.set("large", plist::Value(plist::Integer{18446744073709551615ULL, true}));
    fields.set("a", plist::Value(plist::Array{plist::Value(false)}));
    fields.set("d", plist::Value(plist::Dictionary()));
    fields.set("bytes", plist::Value(plist::Data{"xyz"}));
    fields.set("day", plist::Value(plist::Date{0}));
    fields.set("null", plist::Value());
    EXPECT_EQ(recordText(plist::Value(std::move(fields))).toStdString(),
              "b true, large 18446744073709551615, a array, d dictionary, bytes data, day date, null value");
    EXPECT_EQ(recordText(plist::Value("no record")).toStdString(), "no record");
}

TEST(NumberText, isTheShortestThatStandsForTheNumber) {
    EXPECT_EQ(numberText(1773165600).toStdString(), "1773165600");
    EXPECT_EQ(numberText(1773165600.5).toStdString(), "1773165600.5");
    EXPECT_EQ(numberText(0.1).toStdString(), "0.1");
    EXPECT_EQ(numberText(-1e15).toStdString(), "-1000000000000000");
}

TEST(OutputLine, staysOneLineOfFields) {
    EXPECT_EQ(
        outputLine({QStringLiteral("a b"), QStringLiteral("c\td\ne"), QStringLiteral("ü")}).toStdString(),
        "a b\tc d e\tü\n");
}

} // namespace
} // namespace host
