#include "fuzz/SourceTargets.h"

#include "bridge/sources/GnuCash.h"
#include "bridge/sources/Hledger.h"
#include "bridge/sources/HomeBank.h"
#include "bridge/sources/KMyMoney.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>

namespace fuzz {

namespace {

using namespace bridge;

// No reader has a reason to give more for one plan: what it bounds overdue ones by, and a record for each
// day.
constexpr std::size_t mostOccurrences = 600;

void require(bool condition) {
    if (!condition)
        std::abort();
}

void requireOrder(const Plan& plan, const Period& period) {
    require(!plan.key.empty());
    require(plan.occurrences.size() <= mostOccurrences);
    require(std::ranges::is_sorted(plan.occurrences, {}, &Occurrence::day));
    require(plan.occurrences.empty() || plan.occurrences.back().day <= period.last);
    require(!plan.isSingle || plan.occurrences.size() <= 1);
    require(!plan.amount || (plan.amount->number.places >= 0 && plan.amount->number.places <= 18));
}

void requireStart(const Plan& plan, const Plan& longer) {
    require(plan.key == longer.key && plan.amount == longer.amount && plan.isSingle == longer.isSingle);
    require(plan.occurrences.size() <= longer.occurrences.size());
    require(std::ranges::equal(plan.occurrences.begin(), plan.occurrences.end(), longer.occurrences.begin(),
                               longer.occurrences.begin() + static_cast<long>(plan.occurrences.size())));
}

template <class Read>
void requireSound(const Read& read) {
    const Day today = *dayOfText("2026-11-21");
    const Period period{today, today + std::chrono::days(31)};
    const Reading reading = read(period);
    const Reading longer = read(Period{today, today + std::chrono::days(62)});
    require(reading.fault == longer.fault && reading.warnings == longer.warnings);
    require(reading.isSound() || (reading.plans.empty() && reading.warnings.empty()));
    require(reading.plans.size() == longer.plans.size());
    std::set<std::string> keys;
    for (std::size_t at = 0; at < reading.plans.size(); ++at) {
        requireOrder(reading.plans[at], period);
        requireStart(reading.plans[at], longer.plans[at]);
        require(keys.insert(reading.plans[at].key).second);
    }
}

} // namespace

void readGnuCash(std::string_view bytes) {
    requireSound([&](const Period& period) { return bridge::readGnuCash(bytes, period); });
}

void readHledger(std::string_view bytes) {
    const std::size_t at = std::min(bytes.find('['), bytes.size());
    const HledgerAnswer answer{std::string(bytes.substr(at)), std::string(bytes.substr(0, at))};
    const Day first = *dayOfText("2026-09-01");
    requireSound([&](const Period& period) { return bridge::readHledger(answer, first, period); });
}

void readHomeBank(std::string_view bytes) {
    requireSound([&](const Period& period) { return bridge::readHomeBank(bytes, period); });
}

void readKMyMoney(std::string_view bytes) {
    requireSound([&](const Period& period) { return bridge::readKMyMoney(bytes, period); });
}

} // namespace fuzz
