#include "exchange/FeedRewriter.h"

#include "exchange/Days.h"
#include "exchange/Text.h"
#include "platform/plist/RecordEditor.h"

#include <cstddef>

namespace exchange {

namespace plist = platform::plist;

RewrittenFeed rewriteFeed(std::string_view bytes, ActionType type, const TodayTransaction& item,
                          std::int64_t parameter) {
    const std::string planKey = utf8FromText(item.planPrimaryKey);
    const bool dropsLater = type == ActionType::Delete && parameter == 1;
    std::optional<FeedFault> fault;
    bool isWritable = true;
    plist::RecordEditor editor(bytes, feedKeys);
    // After a fault the rest is read all the same: bytes that are no list have no record that could be at
    // fault.
    for (std::size_t index = 0; const plist::Record* element = editor.next(); ++index) {
        if (fault)
            continue;
        FeedRecord record(*element, index);
        const std::string_view plan = record.string(FeedKey::Planpk);
        const bool isSamePlan = plan == planKey;
        const double date = isSamePlan ? record.number(FeedKey::Date) : 0;
        fault = record.fault();
        if (fault)
            continue;
        const bool isActedOn = isSamePlan && date == item.date;
        const bool isLaterOne = isSamePlan && !isActedOn && !(date < item.date);
        if (isActedOn ? type != ActionType::Later : isLaterOne && dropsLater) {
            editor.drop();
            continue;
        }
        // Written without its surrogate, the key could become another plan's.
        isWritable = isWritable && !hasLoneSurrogate(plan);
        if (!isActedOn)
            continue;
        if (const std::optional<double> newDate = startOfDayFromToday(parameter))
            editor.setNumber(static_cast<std::size_t>(FeedKey::Date), *newDate);
        else
            fault = FeedFault{FeedFault::What::NoDate, 0, {}};
    }
    if (!editor.isSound())
        return {FeedFault{FeedFault::What::Unreadable, 0, {}}, std::nullopt};
    if (fault || !isWritable)
        return {fault, std::nullopt};
    return {std::nullopt, editor.finish()};
}

} // namespace exchange
