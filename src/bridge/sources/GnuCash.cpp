#include "bridge/sources/GnuCash.h"

#include "bridge/sources/GnuCashBook.h"
#include "bridge/sources/GnuCashFormula.h"
#include "bridge/sources/Gzip.h"
#include "bridge/sources/MoneyFlow.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace bridge {

namespace {

// "Every day" for eleven years. A file with more in all is read with a warning.
constexpr std::size_t mostOccurrences = 4000;
constexpr std::size_t mostParents = 32;

constexpr std::string_view neutralTypes[] = {"EQUITY", "TRADING"};
constexpr std::string_view categoryTypes[] = {"INCOME", "EXPENSE"};

template <class Names>
bool contains(const Names& names, const std::string& name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

Movement::Account kindOf(const GnuCashAccount& account) {
    return contains(categoryTypes, account.type)  ? Movement::Account::Category
           : contains(neutralTypes, account.type) ? Movement::Account::Neutral
                                                  : Movement::Account::Own;
}

// The decimals of a currency of so many parts a unit.
int placesOf(std::int64_t smallest) {
    int places = 0;
    for (; smallest > 1 && places < 18; smallest /= 10)
        ++places;
    return places;
}

bool isEmpty(const GnuCashSplit::Side& side) {
    const auto stored = decimalOfFraction(side.fraction);
    return side.formula.empty() && (side.fraction.empty() || (stored && stored->units == 0));
}

// What is known of a side's value: the stored number first, since a formula is in the language of its user.
std::optional<Decimal> valueOf(const GnuCashSplit::Side& side, int places) {
    const auto stored = decimalOfFraction(side.fraction);
    if (stored && stored->units != 0)
        return withPlaces(*stored, places);
    if (isEmpty(side))
        return Decimal{0, places};
    return valueOfFormula(side.formula, places);
}

class Reader final {
public:
    Reader(const GnuCashBook& book, const Period& period)
        : book_(book)
        , period_(period) {}

    Reading read() {
        for (const std::string& feature : book_.features)
            reading_.warnings.push_back("uses a feature that is not known here and was ignored: “" + feature +
                                        "”");
        for (const GnuCashPlan& plan : book_.plans)
            if (plan.isEnabled && reading_.isSound())
                readPlan(plan);
        return reading_.isSound() ? std::move(reading_) : Reading{{}, {}, reading_.fault};
    }

private:
    void readPlan(const GnuCashPlan& read) {
        Plan plan;
        plan.key = read.id;
        plan.name = read.name;
        if (const auto known = book_.templates.find(read.account); known != book_.templates.end()) {
            plan.payee = known->second.description;
            readFlow(known->second, plan);
        }
        GnuCashOccurrences occurrences = occurrencesOf(read.schedule, period_.last, mostOccurrences);
        if (!occurrences.isComplete)
            reading_.warnings.push_back("the plan “" + read.name + "” is due more than " +
                                        std::to_string(mostOccurrences) +
                                        " times: only the first are listed");
        plan.isSingle = occurrences.isSingle;
        plan.occurrences = std::move(occurrences.all);
        reading_.plans.push_back(std::move(plan));
    }

    void readFlow(const GnuCashTemplate& known, Plan& plan) {
        std::vector<Movement> movements;
        for (const GnuCashSplit& split : known.splits) {
            const auto account = book_.accounts.find(split.account);
            if (account == book_.accounts.end()) {
                reading_.fault =
                    "is damaged: the plan “" + plan.name + "” has an account that is not in the file";
                return;
            }
            if (!isEmpty(split.debit) || !isEmpty(split.credit))
                movements.push_back(movementOf(split, account->second));
        }
        MoneyFlow flow = flowOf(movements);
        plan.direction = flow.direction;
        plan.account = std::move(flow.account);
        plan.category = std::move(flow.category);
        plan.amount = std::move(flow.amount);
    }

    Movement movementOf(const GnuCashSplit& split, const GnuCashAccount& account) {
        Movement movement;
        movement.account = kindOf(account);
        movement.name = movement.account == Movement::Account::Category ? fullName(account) : account.name;
        movement.way = isEmpty(split.debit) ? Movement::Way::Out : Movement::Way::In;
        // An amount in another currency than the account's has the usual two decimals.
        const int places = account.currency == split.currency ? placesOf(account.smallest) : 2;
        const auto in = valueOf(split.debit, places);
        const auto out = valueOf(split.credit, places);
        std::int64_t units = 0;
        if (!in || !out || __builtin_sub_overflow(in->units, out->units, &units))
            return movement;
        movement.way = units < 0 ? Movement::Way::Out : units > 0 ? Movement::Way::In : movement.way;
        movement.amount = Amount{{units, places}, split.currency};
        return movement;
    }

    // With its parents below the root.
    [[nodiscard]] std::string fullName(const GnuCashAccount& account) const {
        std::string name = account.name;
        const GnuCashAccount* at = &account;
        for (std::size_t parents = 0; parents < mostParents; ++parents) {
            const auto parent = book_.accounts.find(at->parent);
            if (parent == book_.accounts.end() || parent->second.type == "ROOT")
                break;
            at = &parent->second;
            name = at->name + ":" + name;
        }
        return name;
    }

    const GnuCashBook& book_;
    const Period& period_;
    Reading reading_;
};

} // namespace

Reading readGnuCash(std::string_view bytes, const Period& period) {
    if (bytes.empty())
        return {{}, {}, "is empty"};
    if (bytes.starts_with("SQLite format 3"))
        return {{}, {}, "is a database of another kind (SQLite): only XML files of GnuCash can be read"};
    const Unpacked unpacked = unpack(bytes);
    if (!unpacked.fault.empty())
        return {{}, {}, unpacked.fault};
    const std::size_t start = unpacked.bytes.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    if (start == std::string::npos || unpacked.bytes[start] != '<')
        return {{}, {}, "is no book of GnuCash"};
    const GnuCashBook book = readGnuCashBook(unpacked.bytes);
    if (!book.fault.empty())
        return {{}, {}, book.fault};
    return Reader(book, period).read();
}

} // namespace bridge
