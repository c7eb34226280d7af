#include "bridge/sources/HomeBank.h"

#include "bridge/plans/Recurrence.h"
#include "bridge/sources/Gzip.h"
#include "bridge/sources/HomeBankSteps.h"
#include "bridge/sources/Xml.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace bridge {

namespace {

using Key = std::int64_t;

// A file's version is written as a double: 1.3999999999999999 is 1.4. Six places tell versions apart.
constexpr int versionPlaces = 6;
constexpr std::int64_t newestVersion = 1'400'000;
constexpr std::int64_t oldestKnownVersion = 1'300'000;

constexpr std::size_t mostPlans = 10'000;

// Bits of a plan's flags; others are marks that the program leaves behind.
constexpr std::int64_t income = 2, scheduled = 4, transfer = 8, limited = 128, split = 256;
// How files before version 1.4 mark a transfer.
constexpr std::int64_t transferPaymode = 5;

struct Currency {
    std::string code;
    int places = 2;
};

struct Account {
    std::string name;
    Key currency = 0;
};

struct Category {
    std::string name;
    Key parent = 0;
};

struct Favourite {
    Key key = 0;
    Decimal amount;
    Key account = 0;
    Key payee = 0;
    Key category = 0;
    std::int64_t flags = 0;
    std::int64_t paymode = 0;
    std::string memo;
    std::optional<HomeBankSchedule> schedule; // absent where no next day is written
};

struct File {
    std::int64_t version = 0;
    Key baseCurrency = 0;
    std::unordered_map<Key, Currency> currencies;
    std::unordered_map<Key, Account> accounts;
    std::unordered_map<Key, std::string> payees;
    std::unordered_map<Key, Category> categories;
    std::vector<Favourite> favourites;
};

template <class Value>
Value valueOf(const std::unordered_map<Key, Value>& values, Key key) {
    const auto found = values.find(key);
    return found == values.end() ? Value() : found->second;
}

std::string versionText(std::int64_t version) {
    std::string text = textOfDecimal({version, versionPlaces});
    text.erase(text.find_last_not_of('0') + 1);
    return text.ends_with('.') ? text + '0' : text;
}

void readVersion(Xml& xml, File& file) {
    const auto written = decimalOfText(xml.text("v"));
    const auto version = written ? withPlaces(*written, versionPlaces) : std::nullopt;
    if (version)
        file.version = version->units;
    else
        xml.fail("its version is no number");
}

std::optional<HomeBankSchedule> readSchedule(Xml& xml) {
    HomeBankSchedule schedule;
    const std::int64_t number = xml.integer("nextdate");
    schedule.every = xml.integer("every");
    const std::int64_t unit = xml.integer("unit");
    if (unit < 0 || unit > 3)
        xml.fail("\"unit\" is none of the four");
    schedule.unit = static_cast<HomeBankUnit>(unit);
    schedule.skipsWeekends = xml.integer("weekend") == 3;
    schedule.gap = std::clamp<std::int64_t>(xml.integer("gap"), 0, 3);
    const std::int64_t limit = xml.integer("limit");
    if ((xml.integer("flags") & limited) != 0)
        schedule.left = limit;
    if (number == 0)
        return std::nullopt;
    // Day 1 is the first of the year 1.
    const auto next = number > 0 ? plusDays(firstDay, number - 1) : std::nullopt;
    if (!next)
        xml.fail("\"nextdate\" is no day");
    schedule.next = next.value_or(firstDay);
    return schedule;
}

void readFavourite(Xml& xml, File& file) {
    Favourite favourite;
    favourite.flags = xml.integer("flags");
    if ((favourite.flags & scheduled) == 0)
        return;
    favourite.key = xml.integer("key");
    const std::string written = xml.text("amount");
    const auto amount = written.empty() ? Decimal() : decimalOfText(written);
    if (!amount)
        xml.fail("\"amount\" is no number");
    favourite.amount = amount.value_or(Decimal());
    favourite.account = xml.integer("account");
    favourite.payee = xml.integer("payee");
    favourite.category = xml.integer("category");
    favourite.paymode = xml.integer("paymode");
    favourite.memo = xml.text("wording");
    favourite.schedule = readSchedule(xml);
    if (favourite.key <= 0)
        xml.fail("a plan has no key");
    file.favourites.push_back(std::move(favourite));
    if (file.favourites.size() > mostPlans)
        xml.fail("it has more than " + std::to_string(mostPlans) + " plans");
}

Currency readCurrency(Xml& xml) {
    const std::string code = xml.text("iso");
    const int places = static_cast<int>(std::clamp<std::int64_t>(xml.integer("frac"), 0, 6));
    return {code.empty() ? xml.text("symb") : code, places};
}

void readElement(Xml& xml, File& file) {
    const auto key = [&xml] { return xml.integer("key"); };
    if (xml.is("properties"))
        file.baseCurrency = xml.integer("curr");
    else if (xml.is("cur"))
        file.currencies[key()] = readCurrency(xml);
    else if (xml.is("account"))
        file.accounts[key()] = {xml.text("name"), xml.integer("curr")};
    else if (xml.is("pay"))
        file.payees[key()] = xml.text("name");
    else if (xml.is("cat"))
        file.categories[key()] = {xml.text("name"), xml.integer("parent")};
    else if (xml.is("fav"))
        readFavourite(xml, file);
}

std::string readFile(std::string_view bytes, File& file) {
    Xml xml(bytes, "HomeBank");
    if (xml.enterRoot("homebank")) {
        readVersion(xml, file);
        if (file.version > newestVersion)
            return "was saved by a newer version of HomeBank (" + versionText(file.version) + "; " +
                   versionText(newestVersion) + " is the newest that can be read)";
        while (xml.enterNext()) {
            readElement(xml, file);
            xml.skip();
        }
    }
    return xml.finish();
}

std::string categoryOf(const File& file, Key key) {
    const Category category = valueOf(file.categories, key);
    const Category parent = valueOf(file.categories, category.parent);
    return parent.name.empty() ? category.name : parent.name + ':' + category.name;
}

// Nothing for a plan of zero, whose amount the program shows as an empty cell: it is the one for a bill that
// is not known yet.
std::optional<Amount> amountOf(const File& file, const Favourite& favourite) {
    const Key own = valueOf(file.accounts, favourite.account).currency;
    const Currency currency = valueOf(file.currencies, own != 0 ? own : file.baseCurrency);
    const auto number = withPlaces(favourite.amount, currency.places);
    if (!number || number->units == 0)
        return std::nullopt;
    return Amount{*number, currency.code};
}

Direction directionOf(const File& file, const Favourite& favourite) {
    const bool isOldTransfer = file.version < newestVersion && favourite.paymode == transferPaymode;
    if ((favourite.flags & transfer) != 0 || isOldTransfer)
        return Direction::Transfer;
    const std::int64_t units = favourite.amount.units;
    const bool isIncome = units > 0 || (units == 0 && (favourite.flags & income) != 0);
    return isIncome ? Direction::Income : Direction::Expense;
}

Plan planOf(const File& file, const Favourite& favourite, const Period& period) {
    Plan plan;
    plan.key = std::to_string(favourite.key);
    plan.payee = valueOf(file.payees, favourite.payee);
    plan.name = favourite.memo.empty() ? plan.payee : favourite.memo;
    if ((favourite.flags & split) == 0)
        plan.category = categoryOf(file, favourite.category);
    plan.account = valueOf(file.accounts, favourite.account).name;
    plan.amount = amountOf(file, favourite);
    plan.direction = directionOf(file, favourite);
    if (favourite.schedule) {
        plan.isSingle = !advanced(*favourite.schedule);
        plan.occurrences = occurrencesOf(*favourite.schedule, period);
    }
    return plan;
}

} // namespace

Reading readHomeBank(std::string_view bytes, const Period& period) {
    Reading reading;
    if (bytes.size() > largestText) {
        reading.fault = "is larger than " + std::to_string(largestText >> 20) + " MiB";
        return reading;
    }
    File file;
    reading.fault = readFile(bytes, file);
    std::set<Key> keys;
    for (const Favourite& favourite : file.favourites)
        if (reading.isSound() && !keys.insert(favourite.key).second)
            reading.fault = "is damaged: two plans have the key " + std::to_string(favourite.key);
    if (!reading.isSound())
        return reading;
    if (file.version < oldestKnownVersion)
        reading.warnings.push_back("was saved by an old version of HomeBank (" + versionText(file.version) +
                                   "), which may mean something else by what it says of plans");
    for (const Favourite& favourite : file.favourites)
        reading.plans.push_back(planOf(file, favourite, period));
    return reading;
}

} // namespace bridge
