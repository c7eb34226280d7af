#include "exchange/FeedRewriter.h"

#include "exchange/Days.h"
#include "exchange/Text.h"

#include <optional>
#include <string>
#include <utility>

namespace exchange {

namespace plist = platform::plist;

namespace {

std::optional<plist::Value> movedRecord(const plist::Value& record, std::int64_t days) {
    const std::optional<double> date = startOfDayFromToday(days);
    if (!date)
        return std::nullopt;
    plist::Dictionary moved = *record.dictionary();
    moved.set(std::string(feed::date), plist::Value(*date));
    return plist::Value(std::move(moved));
}

} // namespace

std::variant<plist::Array, FeedFault> rewriteRecords(const plist::Array& records, ActionType type,
                                                     const TodayTransaction& item, std::int64_t parameter) {
    const std::string planKey = utf8FromText(item.planPrimaryKey);
    const bool dropsLater = type == ActionType::Delete && parameter == 1;
    plist::Array kept;
    kept.reserve(records.size());
    for (std::size_t index = 0; index < records.size(); ++index) {
        FeedRecord record(records[index], index);
        const bool isSamePlan = record.string(feed::planpk) == planKey;
        const double date = isSamePlan && !record.fault() ? record.number(feed::date) : 0;
        if (record.fault())
            return *record.fault();
        if (isSamePlan && date == item.date) {
            if (type != ActionType::Later)
                continue;
            std::optional<plist::Value> moved = movedRecord(records[index], parameter);
            if (!moved)
                return FeedFault{FeedFault::What::NoDate, 0, {}};
            kept.push_back(std::move(*moved));
        } else if (!isSamePlan || !dropsLater || date < item.date) {
            kept.push_back(records[index]);
        }
    }
    return kept;
}

} // namespace exchange
