#include "ctl/check/CheckTest.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/plist/Writer.h"

#include <gmock/gmock.h>

#include <csignal>
#include <functional>
#include <limits>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

// Whether check and the panel agree about containers with a few faults at random places.
namespace ctl {
namespace {

namespace plist = platform::plist;

using exchange::day;
using exchange::tenthOfMarch;
using plist::Value;

// Whether some work ends its process by SIGABRT, as the panel ends.
bool ends(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) ? WEXITSTATUS(status) == 0 : WTERMSIG(status) == SIGABRT);
    return WIFSIGNALED(status);
}

// What the panel does when it opens: it reads the list, if it shows one, and loads each row's icon.
void open() {
    if (TodayWidgetLogic::getTransactionsCountToShow().isNone())
        return;
    for (const TodayTransactionPtr& transaction : TodayWidgetLogic::getTodayTransactionsArray())
        static_cast<void>(TodayWidgetLogic::imageByName(transaction->imageName, QRectF(0, 0, 20, 20)));
}

class RandomContainersTest : public CheckTest {
protected:
    unsigned below(unsigned count) { return std::uniform_int_distribution<unsigned>(0, count - 1)(random); }

    Value randomValue() {
        const Value values[] = {Value("text"),
                                Value(""),
                                Value(std::int64_t(3)),
                                Value(2.5),
                                Value(true),
                                Value(plist::Array{}),
                                Value(plist::Dictionary()),
                                Value(plist::Date{1}),
                                Value(plist::Data{"x"})};
        return values[below(std::size(values))];
    }

    Value randomRecord() {
        if (below(60) == 0)
            return randomValue();
        plist::Dictionary record =
            exchange::recordOf("plan " + std::to_string(below(3)), tenthOfMarch + (below(6) - 3.0) * day);
        const char* const keys[] = {"date",   "name",    "image",  "amount",
                                    "income", "expense", "planpk", "single"};
        const char* const key = keys[below(std::size(keys))];
        if (below(12) == 0)
            record.remove(key);
        else if (below(12) == 0)
            record.set(key, randomValue());
        if (below(12) == 0)
            record.set("image", Value(below(2) == 0 ? "absent" : "broken"));
        if (below(12) == 0)
            record.set("image", Value("an absent picture with a long name"));
        return Value(record);
    }

    void makeContainer() {
        plist::Array records;
        for (unsigned count = below(5); count > 0; --count)
            records.push_back(randomRecord());
        feedBytes = plist::writeXml(below(25) == 0 ? randomValue() : Value(records)).value();
        if (below(25) == 0)
            feedBytes.resize(below(static_cast<unsigned>(feedBytes.size())));
        setSettings({{"notification_days_count", Value(std::int64_t(below(3)))},
                     {"show_transactions_count", Value(std::int64_t(below(12)) - 1)}});
        write("notifications.xml", feedBytes);
        write("-/actions.xml", exchange::arrayFile(below(3) == 0 ? "<string>a\x01</string>" : ""));
    }

    [[nodiscard]] static bool isOneOf(const std::string& line, std::initializer_list<const char*> findings) {
        return std::any_of(findings.begin(), findings.end(), [&](const char* finding) {
            return line.starts_with("ends " + std::string(finding) + " ");
        });
    }

    std::mt19937 random;
    std::string feedBytes;
};

TEST_F(RandomContainersTest, theyAgreeAboutWhatEndsThePanel) {
    unsigned opened = 0;
    unsigned endedAtOpening = 0;
    unsigned endedAtAction = 0;
    for (unsigned seed = 0; seed < 200; ++seed) {
        random.seed(seed);
        makeContainer();
        writeIcon("broken", "no picture");
        const std::vector<std::string> lines = findings();
        const bool endsAtOpening = std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return isOneOf(line, {"recordNoDictionary", "keyMissing", "keyOfOtherKind", "glyphMissing",
                                  "glyphBroken", "glyphTooLarge", "dayCountOverflow"});
        });
        ASSERT_EQ(ends(open), endsAtOpening) << "seed " << seed << "\n" << out << feedBytes;
        endedAtOpening += endsAtOpening;
        if (endsAtOpening || TodayWidgetLogic::getTransactionsCountToShow().isNone())
            continue;
        ++opened;
        const bool endsAtAction = std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return isOneOf(line, {"planKeyMissing", "planKeyOfOtherKind", "feedMissing", "feedUnreadable",
                                  "feedNoList", "feedNoArray"});
        });
        const auto act = [] {
            TodayWidgetLogic::performTransactionAction(exchange::transactionOf("plan 0", tenthOfMarch),
                                                       TodayTransactionAction::Delete(true), nullptr);
        };
        ASSERT_EQ(ends(act), endsAtAction) << "seed " << seed << "\n" << out << feedBytes;
        endedAtAction += endsAtAction;
    }
    // The containers are of every sort.
    EXPECT_GT(opened, 30u);
    EXPECT_GT(endedAtOpening, 30u);
    EXPECT_GT(endedAtAction, 5u);
}

} // namespace
} // namespace ctl
