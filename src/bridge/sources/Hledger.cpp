#include "bridge/sources/Hledger.h"

#include "bridge/sources/HledgerAccounts.h"
#include "bridge/sources/HledgerTransaction.h"
#include "bridge/sources/MoneyFlow.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace bridge {

namespace {

using Kind = HledgerAccounts::Kind;
using Transactions = std::vector<HledgerTransaction>;

// 64-bit FNV-1a in hexadecimal, which is the same in every build: the keys of plans are kept.
std::string checksumOf(std::string_view text) {
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const char byte : text)
        sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    char hexadecimal[17];
    std::snprintf(hexadecimal, sizeof hexadecimal, "%016llx", static_cast<unsigned long long>(sum));
    return hexadecimal;
}

// Expressions with an interval repeat; the others name one day.
bool isSingle(std::string expression) {
    for (char& letter : expression)
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    constexpr std::string_view intervals[] = {"every",   "daily", "week",     "month",
                                              "quarter", "year",  "fortnight"};
    return std::none_of(std::begin(intervals), std::end(intervals),
                        [&](std::string_view word) { return expression.find(word) != std::string::npos; });
}

// The part of the description before a bar is the payee, by hledger's convention.
std::string payeeOf(const std::string& description) {
    const std::string payee = description.substr(0, description.find('|'));
    return payee.substr(0, payee.find_last_not_of(' ') + 1);
}

// A rule, and the transactions that hledger made of it.
struct Rule {
    std::vector<const HledgerTransaction*> transactions;
    int twin = 0; // counts the rules of the file before it that have equal expressions, descriptions and tags

    [[nodiscard]] const HledgerTransaction& first() const { return *transactions.front(); }
};

// Equal rules have transactions on the same days, in the order of the rules.
std::vector<Rule> rulesOf(const Transactions& transactions) {
    using Texts = std::tuple<std::string, std::string, std::string>;
    std::map<std::pair<Texts, int>, Rule> rules;
    std::map<std::pair<Texts, Day>, int> onDay;
    for (const HledgerTransaction& transaction : transactions) {
        if (transaction.rule.empty())
            continue;
        const Texts texts(transaction.rule, transaction.description, transaction.plan);
        const int twin = onDay[{texts, transaction.day}]++;
        Rule& rule = rules[{texts, twin}];
        rule.twin = twin;
        rule.transactions.push_back(&transaction);
    }
    std::vector<Rule> result;
    for (auto& [texts, rule] : rules)
        result.push_back(std::move(rule));
    std::sort(result.begin(), result.end(),
              [](const Rule& a, const Rule& b) { return a.first().index < b.first().index; });
    return result;
}

class Reader final {
public:
    Reader(const HledgerAnswer& answer, Day first, const Period& period)
        : accounts_(answer.accounts)
        , first_(first)
        , last_(period.last) {}

    Reading read(const Transactions& transactions) {
        for (const HledgerTransaction& transaction : transactions)
            readPayment(transaction);
        for (const Rule& rule : rulesOf(transactions))
            readRule(rule);
        return std::move(reading_);
    }

private:
    void readPayment(const HledgerTransaction& transaction) {
        if (!transaction.rule.empty() || transaction.paidOf.empty())
            return;
        if (const auto day = dayOfText(transaction.paidOf); day && !transaction.plan.empty())
            paid_.insert({transaction.plan, *day});
        else
            reading_.warnings.push_back("the payment of " + textOfDay(transaction.day) +
                                        " counts for no plan: its tags are “plan: " + transaction.plan +
                                        "” and “paid-of: " + transaction.paidOf + "”");
    }

    void readRule(const Rule& rule) {
        const HledgerTransaction& transaction = rule.first();
        Plan plan;
        plan.key = uniqueKey(rule);
        plan.name = transaction.description;
        plan.payee = payeeOf(transaction.description);
        plan.isSingle = isSingle(transaction.rule) && rule.transactions.size() == 1;
        MoneyFlow flow = flowOf(movementsOf(transaction));
        plan.direction = flow.direction;
        plan.account = std::move(flow.account);
        plan.category = std::move(flow.category);
        plan.amount = std::move(flow.amount);
        if (!transaction.lines.empty())
            plan.entry = {transaction.description, plan.key, transaction.lines};
        for (const HledgerTransaction* one : rule.transactions)
            if (one->day >= first_ && one->day <= last_ && !paid_.contains({plan.key, one->day}))
                plan.occurrences.push_back({one->day, one->day});
        std::sort(plan.occurrences.begin(), plan.occurrences.end(),
                  [](const Occurrence& a, const Occurrence& b) { return a.day < b.day; });
        reading_.plans.push_back(std::move(plan));
    }

    std::string uniqueKey(const Rule& rule) {
        const HledgerTransaction& transaction = rule.first();
        const std::string checksum = "~" + checksumOf(transaction.rule + '\n' + transaction.description);
        std::string key = transaction.plan.empty() ? checksum : transaction.plan;
        const bool isKnown = keys_.contains(key);
        if (isKnown && !transaction.plan.empty() && rule.twin == 0)
            key += checksum;
        const std::string base = key;
        for (int number = 2; !keys_.insert(key).second; ++number)
            key = base + "-" + std::to_string(number);
        if (isKnown)
            reading_.warnings.push_back(
                "the rule “~ " + transaction.rule + "  " + transaction.description +
                "” cannot be told from another one: give it a tag “plan: NAME” of its own");
        return key;
    }

    std::vector<Movement> movementsOf(const HledgerTransaction& transaction) {
        std::vector<Movement> movements;
        for (const HledgerPosting& posting : transaction.postings)
            for (const auto& amount : posting.amounts)
                if (!amount || amount->number.units != 0)
                    movements.push_back(movementOf(posting.account, amount));
        return movements;
    }

    Movement movementOf(const std::string& account, const std::optional<Amount>& amount) {
        const Kind kind = accounts_.kindOf(account);
        if (!accounts_.hasType(account) && untyped_.insert(account).second)
            reading_.warnings.push_back(
                "hledger knows no type of the account “" + account +
                (kind == Kind::Unknown
                     ? "”, which is taken for a category: declare it with a tag like “type: A”"
                     : "”, which is taken by its name: declare it with a tag like “type: A”"));
        const auto own = kind == Kind::Own      ? Movement::Account::Own
                         : kind == Kind::Equity ? Movement::Account::Neutral
                                                : Movement::Account::Category;
        const bool isIn = amount && amount->number.units > 0;
        return {account, own, isIn ? Movement::Way::In : Movement::Way::Out, amount};
    }

    HledgerAccounts accounts_;
    Day first_;
    Day last_;
    Reading reading_;
    std::set<std::pair<std::string, Day>> paid_; // plan and occurrence
    std::set<std::string> keys_;
    std::set<std::string> untyped_;
};

} // namespace

Reading readHledger(const HledgerAnswer& answer, Day first, const Period& period) {
    const auto transactions = transactionsOfJson(answer.transactions);
    if (const auto* fault = std::get_if<std::string>(&transactions))
        return {{}, {}, "cannot be read: " + *fault};
    return Reader(answer, first, period).read(std::get<Transactions>(transactions));
}

} // namespace bridge
