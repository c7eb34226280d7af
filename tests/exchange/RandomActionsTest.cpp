#include "exchange/ExchangeTest.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/plist/Reader.h"
#include "platform/storage/FileSystemCalls.h"

#include <algorithm>
#include <random>

// Random feeds and actions, through the files, against a model that knows feeds as tuples.
namespace exchange {
namespace {

using Action = TodayTransactionAction;

struct ModelRecord {
    std::string plan;
    double date;
    std::int64_t note; // in a further key

    bool operator==(const ModelRecord&) const = default;
};

struct ModelEntry {
    std::int64_t type;
    std::string plan;
    double date;
    std::int64_t parameter;

    bool operator==(const ModelEntry&) const = default;
};

// What is written is not forced to the disk, which would take the test minutes.
class WithoutSync final : public platform::FileSystemCalls {
public:
    WithoutSync() { setCurrent(this); }
    ~WithoutSync() override { setCurrent(nullptr); }

    int sync(int /*file*/) override { return 0; }
};

class RandomActionsTest : public ExchangeTest {
protected:
    double anyDate() { return dates_[random_() % dates_.size()]; }
    std::string anyPlan() { return plans_[random_() % plans_.size()]; }

    std::vector<ModelRecord> anyFeed() {
        std::vector<ModelRecord> records(random_() % 12);
        for (ModelRecord& record : records)
            record = {anyPlan(), anyDate(), static_cast<std::int64_t>(random_())};
        return records;
    }

    Action anyAction() {
        switch (random_() % 4) {
        case 0:
            return Action::Paid();
        case 1:
            return Action::Delete(false);
        case 2:
            return Action::Delete(true);
        default:
            return Action::Later(static_cast<std::int64_t>(random_() % 9) - 1);
        }
    }

    void writeModel(const std::vector<ModelRecord>& records) {
        std::vector<plist::Value> values;
        for (const ModelRecord& record : records) {
            plist::Dictionary whole = recordOf(record.plan, record.date);
            whole.set("note", plist::Value(record.note));
            const bool isWhole = record.date == static_cast<double>(static_cast<std::int64_t>(record.date));
            if (isWhole && random_() % 2 == 0)
                whole.set("date", plist::Value(static_cast<std::int64_t>(record.date)));
            values.emplace_back(std::move(whole));
        }
        writeFeed(values);
    }

    [[nodiscard]] plist::Array arrayIn(const std::string& file) const {
        return *std::get<plist::Value>(plist::read(read(file).value_or("()"))).array();
    }

    [[nodiscard]] std::vector<ModelRecord> readModel() const {
        std::vector<ModelRecord> records;
        for (const plist::Value& value : arrayIn("notifications.xml")) {
            const plist::Dictionary& record = *value.dictionary();
            EXPECT_EQ(record.size(), 9u);
            records.push_back({std::string(*record.find("planpk")->string()),
                               plist::numberOf(*record.find("date")).value(),
                               static_cast<std::int64_t>(record.find("note")->integer()->bits)});
        }
        return records;
    }

    [[nodiscard]] std::vector<ModelEntry> readLog() const {
        std::vector<ModelEntry> entries;
        for (const plist::Value& value : arrayIn("-/actions.xml")) {
            const plist::Dictionary& entry = *value.dictionary();
            EXPECT_EQ(entry.size(), 4u);
            entries.push_back({static_cast<std::int64_t>(entry.find("type")->integer()->bits),
                               std::string(*entry.find("pk")->string()), *entry.find("date")->real(),
                               static_cast<std::int64_t>(entry.find("param")->integer()->bits)});
        }
        return entries;
    }

    std::mt19937_64 random_{20260310};

private:
    const WithoutSync quick_;
    const std::vector<std::string> plans_{"a", "b", "ž <&>"};
    const std::vector<double> dates_{0,    20, 20.001,       19.999999999999996,
                                     1e10, -5, tenthOfMarch, tenthOfMarch + 2 * day};
};

ModelEntry entryOf(Action action, const std::string& plan, double date) {
    if (action.isPaid())
        return {1, plan, date, 0};
    return {action.isLater() ? 2 : 3, plan, date, action.value()};
}

// What the feed must be afterwards, said in another way than the code says it: first what leaves, then what
// moves. Today is 10 March, far from the month's ends.
void apply(std::vector<ModelRecord>& records, Action action, const std::string& plan, double date) {
    const bool future = action == Action::Delete(true);
    if (!action.isLater())
        std::erase_if(records, [&](const ModelRecord& record) {
            return record.plan == plan && (future ? record.date >= date : record.date == date);
        });
    else
        for (ModelRecord& record : records)
            if (record.plan == plan && record.date == date)
                record.date = tenthOfMarch + static_cast<double>(action.value()) * day;
}

TEST_F(RandomActionsTest, doWhatAModelDoes) {
    constexpr int feeds = 1000;
    constexpr int actionsPerFeed = 5;
    std::size_t changes = 0;
    for (int round = 0; round < feeds; ++round) {
        std::vector<ModelRecord> records = anyFeed();
        std::vector<ModelEntry> entries;
        writeModel(records);
        remove("-");
        for (int step = 0; step < actionsPerFeed; ++step) {
            const std::vector<ModelRecord> before = records;
            const Action action = anyAction();
            const std::string plan = anyPlan();
            const double date = anyDate();
            TodayWidgetLogic::performTransactionAction(transactionOf(plan, date), action, nullptr);
            apply(records, action, plan, date);
            entries.push_back(entryOf(action, plan, date));
            ASSERT_EQ(readModel(), records) << "round " << round << ", step " << step;
            changes += records != before;
        }
        ASSERT_EQ(readLog(), entries) << "round " << round;
    }
    EXPECT_GT(changes, 1000u) << "the rounds must meet records to act on";
}

} // namespace
} // namespace exchange
