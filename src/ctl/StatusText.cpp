#include "ctl/StatusText.h"

#include "exchange/TodayWidgetLogic.h"
#include "platform/confinement/FileConfinement.h"
#include "platform/confinement/SystemCallConfinement.h"

#include <algorithm>

namespace ctl {

namespace {

std::string offerText(int version, bool filters) {
    if (version == 0)
        return std::string("this kernel has no Landlock: the panel may read all that its user may; ") +
               (filters ? "system calls filtered" : "system calls are not filtered");
    std::string text = "files by Landlock (version " + std::to_string(version);
    if (version < platform::newestUsedLandlockVersion)
        text += "; version " + std::to_string(platform::newestUsedLandlockVersion) + " forbids more";
    return text + (filters ? "), system calls filtered" : "); this kernel filters no system calls");
}

} // namespace

CountsReading readCounts() {
    const auto reading = readSoundList();
    if (const auto* fault = std::get_if<ListFault>(&reading))
        return {std::nullopt, *fault, {}};
    const auto& transactions = std::get<std::vector<TodayTransactionPtr>>(reading);
    if (TodayWidgetLogic::getTransactionsCountToShow().isNone())
        return {TransactionCounts(), std::nullopt, {}};
    return {countsOf(transactions), std::nullopt, transactions};
}

StatusText::StatusText(bool isJson)
    : isJson_(isJson)
    , landlockVersion_(platform::landlockVersion())
    , filtersSystemCalls_(platform::canConfineSystemCalls()) {}

std::string StatusText::line(const std::optional<TransactionCounts>& counts) const {
    if (isJson_)
        return jsonLine(counts);
    if (!counts)
        return "transactions: unknown";
    return "transactions: " + std::to_string(counts->overdue) + " overdue, " +
           std::to_string(counts->dueToday) + " due today, " + std::to_string(counts->due) + " due";
}

std::string StatusText::lastLine() const {
    return isJson_ ? "" : "confinement: " + offerText(landlockVersion_, filtersSystemCalls_) + '\n';
}

std::string StatusText::jsonLine(const std::optional<TransactionCounts>& counts) const {
    const auto number = [&](int TransactionCounts::*count) {
        return counts ? std::to_string((*counts).*count) : std::string("null");
    };
    return "{\"overdue\": " + number(&TransactionCounts::overdue) +
           ", \"dueToday\": " + number(&TransactionCounts::dueToday) +
           ", \"due\": " + number(&TransactionCounts::due) +
           ", \"confinement\": {\"landlockVersion\": " + std::to_string(landlockVersion_) +
           ", \"usedLandlockVersion\": " +
           std::to_string(std::min(landlockVersion_, platform::newestUsedLandlockVersion)) +
           ", \"filtersSystemCalls\": " + (filtersSystemCalls_ ? "true" : "false") + "}}";
}

} // namespace ctl
