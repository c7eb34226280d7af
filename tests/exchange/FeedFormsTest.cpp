#include "exchange/ExchangeTest.h"
#include "exchange/FeedReader.h"
#include "exchange/Text.h"
#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

// The feed is read record by record; here the same is read from a tree of values, and the two must agree on
// random feeds, sound, faulty and damaged.
namespace exchange {
namespace {

using What = FeedFault::What;

// Gives the fault of the first lookup that fails.
class TreeRecord final {
public:
    TreeRecord(const plist::Value& value, std::size_t index)
        : record_(value.dictionary())
        , index_(index) {
        if (!record_)
            fault = FeedFault{What::NotADictionary, index, {}};
    }

    template <class Read>
    auto look(std::string_view key, What what, Read read) {
        const plist::Value* value = record_ ? record_->find(key) : nullptr;
        using Result = decltype(read(*value));
        const Result result = value ? read(*value) : Result();
        if (!result && !fault)
            fault = FeedFault{value ? what : What::Missing, index_, key};
        return result.value_or(typename Result::value_type());
    }

    double number(std::string_view key) { return look(key, What::NotANumber, plist::numberOf); }
    bool truth(std::string_view key) { return look(key, What::NotATruthValue, plist::truthOf); }
    QString text(std::string_view key) {
        return look(key, What::NotAString, [](const plist::Value& value) {
            return value.string() ? std::optional(textFromUtf8(*value.string())) : std::nullopt;
        });
    }

    std::optional<FeedFault> fault;

private:
    const plist::Dictionary* record_;
    std::size_t index_;
};

FeedReading readFromTree(const std::string& bytes, double limit) {
    std::vector<TodayTransactionPtr> transactions;
    const plist::ReadResult list = plist::read(bytes);
    const auto* root = std::get_if<plist::Value>(&list);
    if (!root || !root->array())
        return transactions;
    for (std::size_t index = 0; index < root->array()->size(); ++index) {
        TreeRecord record(root->array()->at(index), index);
        const double due = record.number("date");
        if (!record.fault && limit < due)
            continue;
        TodayTransaction::Values values;
        values.name = record.text("name");
        values.date = due;
        values.imageName = record.text("image");
        values.amount = record.text("amount");
        values.isIncome = record.truth("income");
        values.isExpense = record.truth("expense");
        values.planPK = record.text("planpk");
        values.isSinglePlan = record.truth("single");
        if (record.fault)
            return *record.fault;
        transactions.push_back(std::make_shared<TodayTransaction>(values));
    }
    std::stable_sort(transactions.begin(), transactions.end(), [](const auto& a, const auto& b) {
        return std::isnan(b->date) ? !std::isnan(a->date) : a->date < b->date;
    });
    return transactions;
}

std::string described(const FeedReading& reading) {
    if (const auto* fault = std::get_if<FeedFault>(&reading))
        return describe(*fault);
    std::string text;
    for (const TodayTransactionPtr& item : std::get<std::vector<TodayTransactionPtr>>(reading))
        text += item->name.toStdString() + '|' + std::to_string(item->date) + '|' +
                item->imageName.toStdString() + '|' + item->amount.toStdString() + '|' +
                item->planPrimaryKey.toStdString() + '|' + std::to_string(item->isIncome) +
                std::to_string(item->isExpense) + std::to_string(item->isSinglePlan) + '\n';
    return text;
}

class FeedFormsTest : public ExchangeTest {
protected:
    plist::Value anyOddValue() {
        switch (random_() % 8) {
        case 0:
            return plist::Value(true);
        case 1:
            return plist::Value(static_cast<std::int64_t>(random_()));
        case 2:
            return plist::Value(std::numeric_limits<double>::quiet_NaN());
        case 3:
            return plist::Value("<&> ž");
        case 4:
            return plist::Value(plist::Data{"x"});
        case 5:
            return plist::Value(plist::Array{plist::Value(recordOf("inner", 1))});
        case 6:
            return plist::Value(recordOf("inner", 2));
        default:
            return plist::Value(plist::Date{5});
        }
    }

    plist::Value anyRecord() {
        plist::Dictionary record =
            recordOf("plan " + std::to_string(random_() % 3), static_cast<double>(random_() % 9));
        const auto key = std::string(feedKeys[random_() % feedKeys.size()]);
        switch (random_() % 12) {
        case 0:
            return with(record, key, anyOddValue());
        case 1:
            return without(record, key);
        case 2:
            return random_() % 4 == 0 ? anyOddValue() : plist::Value(record);
        case 3:
            return with(record, "further", anyOddValue());
        default:
            return plist::Value(record);
        }
    }

    std::string anyFeed() {
        plist::Array records;
        for (std::size_t count = random_() % 6; count > 0; --count)
            records.push_back(anyRecord());
        std::string bytes = plist::writeXml(plist::Value(records)).value();
        if (random_() % 4 == 0)
            bytes[random_() % bytes.size()] = "<>/k\xFF"[random_() % 5];
        if (random_() % 16 == 0)
            bytes.resize(random_() % bytes.size());
        return bytes;
    }

private:
    std::mt19937_64 random_{3};
};

TEST_F(FeedFormsTest, readsRecordsAsATreeWould) {
    int faults = 0;
    int lists = 0;
    for (int round = 0; round < 5000; ++round) {
        const std::string bytes = anyFeed();
        const FeedReading reading = transactionsOfFeed(bytes, 5);
        const std::string seen = described(reading);
        ASSERT_EQ(seen, described(readFromTree(bytes, 5))) << bytes;
        const bool isFault = std::holds_alternative<FeedFault>(reading);
        faults += isFault;
        lists += !isFault && !seen.empty();
    }
    EXPECT_GT(faults, 500);
    EXPECT_GT(lists, 1000);
}

} // namespace
} // namespace exchange
