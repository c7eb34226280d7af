#include "bridge/sources/KMyMoney.h"

#include "bridge/sources/Gzip.h"
#include "bridge/sources/KMyMoneySteps.h"
#include "bridge/sources/Xml.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace bridge {

namespace {

constexpr std::int64_t newestFormat = 5;
constexpr std::size_t mostPlans = 10'000;
constexpr std::size_t mostPaidAhead = 1'000;
constexpr int deepestCategory = 20;

enum class AccountType : std::int64_t { Income = 12, Expense = 13, Equity = 16 };
enum class ScheduleType : std::int64_t { Deposit = 2, Transfer = 4 };

struct Account {
    std::string name;
    std::string parent;
    std::string currency;
    AccountType type = AccountType::Equity;

    [[nodiscard]] bool isCategory() const {
        return type == AccountType::Income || type == AccountType::Expense;
    }
    [[nodiscard]] bool isAssetOrLiability() const { return !isCategory() && type != AccountType::Equity; }
};

struct Split {
    std::string account;
    std::string payee;
    std::optional<Decimal> shares; // in the account's currency
};

struct Scheduled {
    std::string id;
    std::string name;
    ScheduleType type = {};
    KMyMoneySchedule schedule;
    std::vector<Split> splits;
};

using Texts = std::unordered_map<std::string, std::string>;

struct File {
    std::int64_t format = 0;
    std::string baseCurrency;
    Texts payees;
    std::unordered_map<std::string, Account> accounts;
    std::unordered_map<std::string, int> places; // of each currency
    std::vector<Scheduled> schedules;
};

struct Step {
    std::int64_t code; // in the file
    KMyMoneyUnit unit;
};

// Several codes mean more than one unit, like 256 for a quarter of a year, and KMyMoney reads the unit only:
// how many there are is the multiplier's to tell, on purpose even where the file has none.
constexpr Step steps[] = {
    {1, KMyMoneyUnit::Once},     {2, KMyMoneyUnit::Day},      {4, KMyMoneyUnit::Week},
    {8, KMyMoneyUnit::Week},     {16, KMyMoneyUnit::Week},    {18, KMyMoneyUnit::HalfMonth},
    {20, KMyMoneyUnit::Week},    {30, KMyMoneyUnit::Day},     {32, KMyMoneyUnit::Month},
    {64, KMyMoneyUnit::Week},    {126, KMyMoneyUnit::Week},   {128, KMyMoneyUnit::Month},
    {256, KMyMoneyUnit::Month},  {1024, KMyMoneyUnit::Month}, {2048, KMyMoneyUnit::Year},
    {4096, KMyMoneyUnit::Month}, {8192, KMyMoneyUnit::Month}, {16384, KMyMoneyUnit::Year}};

void readStep(Xml& xml, KMyMoneySchedule& schedule) {
    // Misspelled in the file format.
    const auto* const step = std::ranges::find(steps, xml.integer("occurence"), &Step::code);
    if (step == std::end(steps)) {
        xml.fail("\"occurence\" is none of the known");
        return;
    }
    schedule.unit = step->unit;
    schedule.every = std::clamp<std::int64_t>(xml.integer("occurenceMultiplier"), 1, 1'000'000);
}

WeekendMove weekendMoveOf(std::int64_t option) {
    if (option == 0)
        return WeekendMove::Before;
    return option == 1 ? WeekendMove::After : WeekendMove::None;
}

// Nothing where it is empty, or a fraction that no decimal number is equal to, as the program's sign for an
// amount that it works out when the schedule is entered.
std::optional<Decimal> readFraction(Xml& xml, const char* name) {
    const std::string text = xml.text(name);
    const auto number = decimalOfFraction(text);
    if (!number && text.find_first_not_of("-0123456789/") != text.npos)
        xml.fail(std::string("\"") + name + "\" is no fraction");
    return number;
}

void readTransaction(Xml& xml, Scheduled& scheduled) {
    scheduled.schedule.next = xml.day("postdate");
    while (xml.enterNext()) {
        if (!xml.is("SPLITS")) {
            xml.skip();
            continue;
        }
        while (xml.enterNext()) {
            if (xml.is("SPLIT"))
                scheduled.splits.push_back(
                    {xml.text("account"), xml.text("payee"), readFraction(xml, "shares")});
            xml.skip();
        }
    }
}

void readPaidAhead(Xml& xml, KMyMoneySchedule& schedule) {
    while (xml.enterNext()) {
        const auto day = xml.is("PAYMENT") ? xml.day("date") : std::nullopt;
        if (day && schedule.paidAhead.size() < mostPaidAhead)
            schedule.paidAhead.push_back(*day);
        xml.skip();
    }
}

void readScheduled(Xml& xml, File& file) {
    Scheduled scheduled;
    scheduled.id = xml.text("id");
    scheduled.name = xml.text("name");
    scheduled.type = static_cast<ScheduleType>(xml.integer("type"));
    KMyMoneySchedule& schedule = scheduled.schedule;
    readStep(xml, schedule);
    schedule.start = xml.day("startDate");
    schedule.end = xml.day("endDate");
    schedule.lastPayment = xml.day("lastPayment");
    schedule.weekendMove = weekendMoveOf(xml.integer("weekendOption", -1));
    schedule.isLastDayOfMonth = xml.integer("lastDayInMonth") != 0;
    if (scheduled.id.empty())
        xml.fail("a schedule has no id");
    while (xml.enterNext()) {
        if (xml.is("TRANSACTION"))
            readTransaction(xml, scheduled);
        else if (xml.is("PAYMENTS"))
            readPaidAhead(xml, schedule);
        else
            xml.skip();
    }
    file.schedules.push_back(std::move(scheduled));
    if (file.schedules.size() > mostPlans)
        xml.fail("it has more than " + std::to_string(mostPlans) + " schedules");
}

int placesOf(std::int64_t smallestFraction) {
    int places = 0;
    for (std::int64_t power = 1; power < smallestFraction && places < 6; power *= 10)
        ++places;
    return places;
}

// One of the lists below the root: reads each of its elements.
template <class Read>
void readList(Xml& xml, const char* element, Read read) {
    while (xml.enterNext()) {
        if (xml.is(element))
            read();
        xml.skip();
    }
}

void readPairs(Xml& xml, File& file) {
    readList(xml, "PAIR", [&] {
        if (xml.text("key") == "kmm-baseCurrency")
            file.baseCurrency = xml.text("value");
    });
}

void readSection(Xml& xml, File& file) {
    if (xml.is("FILEINFO"))
        readList(xml, "FIXVERSION", [&] { file.format = xml.integer("id"); });
    else if (xml.is("PAYEES"))
        readList(xml, "PAYEE", [&] { file.payees[xml.text("id")] = xml.text("name"); });
    else if (xml.is("ACCOUNTS"))
        readList(xml, "ACCOUNT", [&] {
            file.accounts[xml.text("id")] = {xml.text("name"), xml.text("parentaccount"),
                                             xml.text("currency"),
                                             static_cast<AccountType>(xml.integer("type"))};
        });
    else if (xml.is("CURRENCIES"))
        readList(xml, "CURRENCY", [&] { file.places[xml.text("id")] = placesOf(xml.integer("saf", 100)); });
    else if (xml.is("KEYVALUEPAIRS"))
        readPairs(xml, file);
    else if (xml.is("SCHEDULES"))
        while (xml.enterNext()) {
            if (xml.is("SCHEDULED_TX"))
                readScheduled(xml, file);
            else
                xml.skip();
        }
    else
        xml.skip();
}

std::string readFile(std::string_view bytes, File& file) {
    Xml xml(bytes, "KMyMoney");
    if (xml.enterRoot("KMYMONEY-FILE"))
        while (xml.enterNext())
            readSection(xml, file);
    return xml.finish();
}

const Account* accountOf(const File& file, const std::string& id) {
    const auto found = file.accounts.find(id);
    return found == file.accounts.end() ? nullptr : &found->second;
}

// Without the account at the top, which is the same for all.
std::string categoryOf(const File& file, const Account* account) {
    std::string path;
    for (int depth = 0; account && !account->parent.empty() && depth < deepestCategory; ++depth) {
        path = path.empty() ? account->name : account->name + ':' + path;
        account = accountOf(file, account->parent);
    }
    return path;
}

std::optional<Amount> amountOf(const File& file, const Split& split, const Account& account) {
    const std::string& currency = account.currency.empty() ? file.baseCurrency : account.currency;
    const auto places = file.places.find(currency);
    const auto number = split.shares && places != file.places.end()
                            ? withPlaces(*split.shares, places->second)
                            : split.shares;
    return number ? std::optional(Amount{*number, currency}) : std::nullopt;
}

Direction directionOf(const Scheduled& scheduled, const std::optional<Amount>& amount) {
    if (scheduled.type == ScheduleType::Transfer)
        return Direction::Transfer;
    const std::int64_t units = amount ? amount->number.units : 0;
    const bool isIncome = units > 0 || (units == 0 && scheduled.type == ScheduleType::Deposit);
    return isIncome ? Direction::Income : Direction::Expense;
}

// What the program's lists show of a transaction is its first split on an account that is no category.
void describeSplits(const File& file, const Scheduled& scheduled, Plan& plan) {
    const Account* own = nullptr;
    std::set<std::string> categories;
    for (const Split& split : scheduled.splits) {
        const Account* const account = accountOf(file, split.account);
        if (account && account->isCategory())
            categories.insert(categoryOf(file, account));
        if (own || !account || !account->isAssetOrLiability())
            continue;
        own = account;
        plan.account = account->name;
        plan.amount = amountOf(file, split, *account);
        const auto payee = file.payees.find(split.payee);
        if (payee != file.payees.end())
            plan.payee = payee->second;
    }
    if (categories.size() == 1)
        plan.category = *categories.begin();
}

Plan planOf(const File& file, const Scheduled& scheduled, const Period& period) {
    Plan plan;
    plan.key = scheduled.id;
    plan.name = scheduled.name;
    describeSplits(file, scheduled, plan);
    plan.direction = directionOf(scheduled, plan.amount);
    plan.occurrences = occurrencesOf(scheduled.schedule, period);
    const auto next = scheduled.schedule.next;
    plan.isSingle = !next || !following(scheduled.schedule, *next);
    return plan;
}

} // namespace

Reading readKMyMoney(std::string_view bytes, const Period& period) {
    Reading reading;
    const Unpacked unpacked = unpack(bytes);
    reading.fault = unpacked.fault;
    File file;
    if (reading.isSound())
        reading.fault = readFile(unpacked.bytes, file);
    std::set<std::string> ids;
    for (const Scheduled& scheduled : file.schedules)
        if (reading.isSound() && !ids.insert(scheduled.id).second)
            reading.fault = "is damaged: two schedules have the id " + scheduled.id;
    if (!reading.isSound())
        return reading;
    if (file.format > newestFormat)
        reading.warnings.push_back("was saved by a newer version of KMyMoney (format " +
                                   std::to_string(file.format) + "; " + std::to_string(newestFormat) +
                                   " is the newest known)");
    for (const Scheduled& scheduled : file.schedules)
        reading.plans.push_back(planOf(file, scheduled, period));
    return reading;
}

} // namespace bridge
