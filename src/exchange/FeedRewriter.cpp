#include "exchange/FeedRewriter.h"

#include "exchange/Days.h"
#include "exchange/Text.h"
#include "platform/plist/RecordReader.h"

namespace exchange {

namespace plist = platform::plist;

namespace {

using plist::RecordEdit;

// What becomes of each record, one after the other, until the first fault.
class Rewriter final {
public:
    Rewriter(ActionType type, const TodayTransaction& item, std::int64_t parameter)
        : type_(type)
        , planKey_(utf8FromText(item.planPrimaryKey))
        , itemDate_(item.date)
        , parameter_(parameter) {}

    RecordEdit edit(const plist::Record& element) {
        FeedRecord record(element, index_++);
        const bool isSamePlan = record.string(FeedKey::Planpk) == planKey_;
        const double date = isSamePlan ? record.number(FeedKey::Date) : 0;
        fault_ = record.fault();
        if (fault_)
            return RecordEdit::stop();
        if (!isSamePlan)
            return RecordEdit::keep();
        return date == itemDate_ ? actedOn() : sibling(date);
    }

    [[nodiscard]] const std::optional<FeedFault>& fault() const { return fault_; }

private:
    RecordEdit actedOn() {
        if (type_ != ActionType::Later)
            return RecordEdit::drop();
        const std::optional<double> date = startOfDayFromToday(parameter_);
        if (date)
            return RecordEdit::replace(static_cast<std::size_t>(FeedKey::Date), *date);
        fault_ = FeedFault{FeedFault::What::NoDate, 0, {}};
        return RecordEdit::stop();
    }

    [[nodiscard]] RecordEdit sibling(double date) const {
        const bool dropsLater = type_ == ActionType::Delete && parameter_ == 1;
        return !dropsLater || date < itemDate_ ? RecordEdit::keep() : RecordEdit::drop();
    }

    ActionType type_;
    std::string planKey_;
    double itemDate_;
    std::int64_t parameter_;
    std::size_t index_ = 0;
    std::optional<FeedFault> fault_;
};

} // namespace

FeedRewriting rewriteFeed(std::string_view bytes, ActionType type, const TodayTransaction& item,
                          std::int64_t parameter, const plist::Sink& sink) {
    Rewriter rewriter(type, item, parameter);
    const plist::RecordsRewriting rewriting = plist::rewriteRecords(
        bytes, feedKeys, [&](const plist::Record& element) { return rewriter.edit(element); }, sink);
    if (rewriting.outcome == plist::RecordsOutcome::NoArray)
        return {FeedFault{FeedFault::What::Unreadable, 0, {}}, false};
    return {rewriter.fault(), rewriting.isWritten};
}

} // namespace exchange
