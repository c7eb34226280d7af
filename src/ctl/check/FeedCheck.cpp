#include "ctl/check/FeedCheck.h"

#include "ctl/check/Access.h"
#include "ctl/check/ListFile.h"
#include "exchange/FeedRecord.h"
#include "exchange/Text.h"
#include "platform/plist/RecordEditor.h"
#include "platform/plist/RecordReader.h"
#include "platform/storage/Files.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <utility>

namespace ctl {

namespace plist = platform::plist;

using exchange::FeedFault;
using exchange::FeedKey;
using exchange::FeedRecord;

namespace {

constexpr ListFaults feedFaults = {Fault::FeedUnreadable, Fault::FeedNoList, Fault::FeedExpands,
                                   Fault::FeedNoXmlForm};

constexpr FeedKey keysOfShown[] = {FeedKey::Name,    FeedKey::Image,  FeedKey::Amount, FeedKey::Income,
                                   FeedKey::Expense, FeedKey::Planpk, FeedKey::Single};

// The fault that the panel's own reader finds under a key of a record.
std::optional<FeedFault> faultAt(const plist::Record& element, std::size_t index, FeedKey key) {
    FeedRecord record(element, index);
    switch (key) {
    case FeedKey::Date:
        static_cast<void>(record.number(key));
        break;
    case FeedKey::Income:
    case FeedKey::Expense:
    case FeedKey::Single:
        static_cast<void>(record.truth(key));
        break;
    default:
        static_cast<void>(record.string(key));
        break;
    }
    return record.fault();
}

std::string sentence(const FeedFault& fault) {
    switch (fault.what) {
    case FeedFault::What::NotADictionary:
        return "the record is no dictionary";
    case FeedFault::What::Missing:
        return "the key is missing";
    case FeedFault::What::NotANumber:
        return "the value is no number";
    case FeedFault::What::NotAString:
        return "the value is no string";
    default:
        return "the value is neither a boolean nor a number";
    }
}

// Checks the records of one feed.
class RecordsCheck final {
public:
    RecordsCheck(const CheckedContainer& container, Findings& findings)
        : container_(container)
        , findings_(findings)
        , limit_(container.limit.value_or(std::numeric_limits<double>::infinity())) {}

    void check(const plist::Record& record, std::size_t index) {
        if (!record.isDictionary()) {
            add(Fault::RecordNoDictionary, index, {}, "the record is no dictionary");
            return;
        }
        const std::optional<FeedFault> ofDate = faultAt(record, index, FeedKey::Date);
        if (ofDate)
            addAtOpening(*ofDate);
        const double date = record.number(static_cast<std::size_t>(FeedKey::Date)).value_or(-limit_);
        const bool isShown = !(limit_ < date);
        for (const FeedKey key : keysOfShown)
            if (const std::optional<FeedFault> fault = faultAt(record, index, key)) {
                if (isShown)
                    addAtOpening(*fault);
                else
                    addBeforeDue(*fault, key);
            }
        if (!ofDate)
            checkDate(date, index);
        checkPlanKey(record, date, index);
        noteIcon(record, isShown, index);
    }

    [[nodiscard]] IconUses takeIcons() { return std::move(icons_); }

private:
    void add(Fault fault, std::size_t index, std::string_view key, std::string wrong) {
        findings_.add(fault, {container_.feed, index + 1, std::string(key)}, std::move(wrong));
    }

    void addAtOpening(const FeedFault& fault) {
        add(fault.what == FeedFault::What::Missing ? Fault::KeyMissing : Fault::KeyOfOtherKind, fault.record,
            fault.key, sentence(fault));
    }

    // Of a record that is not shown yet, only the plan's key is looked up, by every action.
    void addBeforeDue(const FeedFault& fault, FeedKey key) {
        const bool isMissing = fault.what == FeedFault::What::Missing;
        const Fault ofPlanKey = isMissing ? Fault::PlanKeyMissing : Fault::PlanKeyOfOtherKind;
        add(key == FeedKey::Planpk ? ofPlanKey : Fault::KeyNotReady, fault.record, fault.key,
            sentence(fault));
    }

    void checkDate(double date, std::size_t index) {
        if (std::isnan(date))
            add(Fault::DateNotANumber, index, "date", "the date is nan");
    }

    void checkPlanKey(const plist::Record& record, double date, std::size_t index) {
        const auto plan = record.string(static_cast<std::size_t>(FeedKey::Planpk));
        if (!plan)
            return;
        if (exchange::hasLoneSurrogate(*plan))
            add(Fault::PlanKeySurrogate, index, "planpk", "the plan's key holds a lone surrogate");
        // Equal doubles have equal bits, but for the two zeros.
        const auto bits = std::bit_cast<std::uint64_t>(date == 0 ? 0.0 : date);
        if (!std::isnan(date) && !occurrences_.emplace(std::string(*plan), bits).second)
            add(Fault::DuplicateRecord, index, "planpk", "an earlier record has the same plan and date");
    }

    void noteIcon(const plist::Record& record, bool isShown, std::size_t index) {
        const auto name = record.string(static_cast<std::size_t>(FeedKey::Image));
        if (!name)
            return;
        const auto [use, isFirst] = icons_.try_emplace(std::string(*name), IconUse{index + 1, isShown});
        if (isShown && !use->second.isShown)
            use->second = {index + 1, true};
    }

    const CheckedContainer& container_;
    Findings& findings_;
    double limit_;
    std::set<std::pair<std::string, std::uint64_t>> occurrences_;
    IconUses icons_;
};

bool canBeRead(std::string_view bytes) {
    plist::RecordReader reader(bytes, exchange::feedKeys);
    while (reader.next()) {
    }
    return reader.isSound();
}

bool canBeRewritten(std::string_view bytes) {
    plist::RecordEditor editor(bytes, exchange::feedKeys);
    while (editor.next()) {
    }
    return editor.isSound() && editor.finish();
}

} // namespace

IconUses checkFeed(const CheckedContainer& container, Findings& findings) {
    if (const std::optional<std::string> refusal = refusalToReplace(container.feed))
        findings.add(Fault::FeedNotReplaceable, {container.feed}, "the file cannot be replaced: " + *refusal);
    const std::optional<ListFile> file = readListFile(container.feed, feedFaults, findings);
    if (!file) {
        if (!platform::fileExists(container.feed))
            findings.add(Fault::FeedMissing, {container.feed}, "there is no feed");
        return {};
    }
    if (!file->root.array()) {
        findings.add(Fault::FeedNoArray, {container.feed},
                     "the root is " + std::string(nameOfKind(file->root)) + " and no array");
        return {};
    }
    RecordsCheck check(container, findings);
    // The panel reads none of the records where it cannot read all of them.
    if (canBeRead(file->bytes)) {
        plist::RecordReader reader(file->bytes, exchange::feedKeys);
        for (std::size_t index = 0; const plist::Record* record = reader.next(); ++index)
            check.check(*record, index);
    }
    checkValues(*file, canBeRewritten(file->bytes) ? Writable::Yes : Writable::No, feedFaults, findings);
    return check.takeIcons();
}

} // namespace ctl
