#include "bridge/TakenLog.h"

#include "bridge/Feed.h"
#include "bridge/LocalDays.h"
#include "exchange/SharedFiles.h"
#include "platform/plist/Writer.h"
#include "platform/storage/ClaimedFile.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/StorageError.h"
#include "platform/system/Calendar.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

namespace bridge {

namespace plist = platform::plist;

using exchange::ActionType;

namespace {

constexpr std::string_view keptEnding = ".not-understood";

std::string logFile(const std::string& container) {
    return exchange::actionLogFile(exchange::accountFolder(container, accountName));
}

std::optional<std::int64_t> integerOf(const plist::Dictionary& record, std::string_view key) {
    const plist::Value* value = record.find(key);
    const plist::Integer* integer = value ? value->integer() : nullptr;
    return integer && !integer->isLarge ? std::optional(static_cast<std::int64_t>(integer->bits))
                                        : std::nullopt;
}

std::optional<LoggedRecord> recordOf(const plist::Value& value) {
    const plist::Dictionary* record = value.dictionary();
    if (!record)
        return std::nullopt;
    const auto type = integerOf(*record, "type");
    const auto parameter = integerOf(*record, "param");
    const plist::Value* plan = record->find("pk");
    const plist::Value* date = record->find("date");
    if (!type || *type < static_cast<std::int64_t>(ActionType::Paid) ||
        *type > static_cast<std::int64_t>(ActionType::Delete) || !parameter || !plan || !plan->string() ||
        !date || !date->real() || !std::isfinite(*date->real()))
        return std::nullopt;
    return LoggedRecord{static_cast<ActionType>(*type), std::string(*plan->string()), *date->real(),
                        *parameter};
}

// The date that the widget gives a record that it postpones: it counts within the month.
std::optional<double> postponedDate(const Action& action) {
    const auto date =
        platform::Calendar::dateByAddingDaysWrapping(endOfDay(action.done), action.record.parameter);
    return date ? platform::Calendar::startOfDay(*date) : std::nullopt;
}

// The occurrence that a record of the log is about. One that the widget had postponed before has a date that
// was never published: it is that of the plan's action which leads to this date, or nearest to it where the
// time zone has changed meanwhile.
PublishedRecord occurrenceOf(const LoggedRecord& record, Database& database) {
    if (auto published = database.published(record.plan, record.date))
        return *published;
    const Day day = dayOfMoment(record.date);
    PublishedRecord result{record.plan, record.date, day, day};
    double nearest = std::numeric_limits<double>::infinity();
    for (const Action& action : database.openActions()) {
        const bool isCandidate = action.record.type == ActionType::Later && action.record.plan == record.plan;
        const std::optional<double> date = isCandidate ? postponedDate(action) : std::nullopt;
        if (!date || std::abs(*date - record.date) > nearest)
            continue;
        nearest = std::abs(*date - record.date);
        result.nominal = action.nominal;
        result.day = action.day;
    }
    return result;
}

struct LogContent {
    std::vector<LoggedRecord> records;
    std::string doubt; // a sentence on what is no action
};

LogContent contentOf(const std::string& bytes) {
    LogContent content;
    const auto array = exchange::arrayOf(bytes);
    if (!array)
        return {{}, "the log is no array of records; it is kept here"};
    for (std::size_t index = 0; index < array->size(); ++index) {
        if (const auto record = recordOf((*array)[index]))
            content.records.push_back(*record);
        else if (content.doubt.empty())
            content.doubt =
                "record " + std::to_string(index + 1) + " is no action; it is kept here, the others count";
    }
    return content;
}

// When the user acted, as well as the log tells: on the day of its last change.
Day dayOfChange(const std::string& path) {
    struct stat status {};
    if (platform::FileSystemCalls::current().status(path.c_str(), &status) != 0)
        return today();
    return std::min(today(), dayOfMoment(static_cast<double>(status.st_mtim.tv_sec)));
}

// One transaction.
std::string keep(const std::vector<LoggedRecord>& records, Day done, Database& database, std::size_t& taken) {
    std::size_t added = 0;
    database.begin();
    for (const LoggedRecord& record : records) {
        const PublishedRecord occurrence = occurrenceOf(record, database);
        added += database.addAction(record, occurrence.nominal, occurrence.day, done) ? 1 : 0;
    }
    const std::string fault = database.commit();
    if (fault.empty())
        taken += added;
    return fault;
}

// Puts an empty log in place of the claimed one, unless another process has changed that: then `isChanged`.
std::error_code endClaim(const std::string& container, platform::ClaimedFile& claim, const std::string& bytes,
                         bool keepsIt, std::string& kept, bool& isChanged) {
    const platform::FolderLock lock(container);
    if (lock.error())
        return lock.error();
    isChanged = claim.read() != bytes;
    if (isChanged)
        return {};
    const std::string empty = *plist::writeXml(plist::Value(plist::Array()));
    return keepsIt ? claim.replaceAndKeep(empty, keptEnding, kept) : claim.replace(empty);
}

// Takes the actions of a claimed log, which this process or an earlier one has claimed. False if no log is
// claimed.
bool takeClaim(const std::string& container, platform::ClaimedFile& claim, Database& database,
               LogTaking& taking) {
    const std::error_code resumed = claim.resume();
    if (resumed == std::errc::no_such_file_or_directory)
        return false;
    if (resumed) {
        taking.fault = claim.path() + ": " + resumed.message();
        return true;
    }
    std::error_code error;
    const auto bytes = claim.read(&error);
    if (!bytes) {
        taking.fault = claim.path() + ": " + error.message();
        return true;
    }
    const LogContent content = contentOf(*bytes);
    taking.fault = keep(content.records, dayOfChange(claim.path()), database, taking.taken);
    if (!taking.fault.empty())
        return true;
    std::string kept;
    bool isChanged = false;
    error = endClaim(container, claim, *bytes, !content.doubt.empty(), kept, isChanged);
    if (!platform::isMade(error) && error != std::errc::no_such_file_or_directory)
        taking.fault =
            claim.path() + ": the actions are kept, but the log cannot be ended: " + error.message();
    else if (!kept.empty())
        taking.notices.push_back(kept + ": " + content.doubt);
    return true;
}

// Renames a log that holds anything. A sentence where that is not possible.
std::string claimLog(const std::string& container, const std::string& log, platform::ClaimedFile& claim) {
    const platform::FolderLock lock(container);
    if (lock.error())
        return container + ": " + lock.error().message();
    if (!hasLog(container))
        return {};
    const std::error_code error = claim.claim();
    if (platform::isMade(error) || error == std::errc::file_exists ||
        error == std::errc::no_such_file_or_directory)
        return {};
    return log + ": the log cannot be claimed: " + error.message();
}

} // namespace

bool hasLog(const std::string& container) {
    const std::string log = logFile(container);
    if (platform::fileExists(log + ".aside"))
        return true;
    std::error_code error;
    const auto bytes = platform::readFile(log, &error);
    if (!bytes)
        return error != std::errc::no_such_file_or_directory;
    const auto records = exchange::arrayOf(*bytes);
    return !records || !records->empty();
}

LogTaking takeLog(const std::string& container, Database& database) {
    LogTaking taking;
    const std::string log = logFile(container);
    platform::ClaimedFile claim;
    if (const std::error_code error = claim.find(log)) {
        if (error != std::errc::no_such_file_or_directory)
            taking.fault = log + ": " + error.message();
        return taking;
    }
    // Each round ends a claim or finds that there is nothing more; a process that changes a claimed log does
    // so once.
    constexpr int mostRounds = 100;
    for (int round = 0; round < mostRounds && taking.fault.empty(); ++round) {
        if (takeClaim(container, claim, database, taking))
            continue;
        if (!hasLog(container))
            return taking;
        taking.fault = claimLog(container, log, claim);
    }
    if (taking.fault.empty())
        taking.fault = log + ": other programs change the log all the time";
    return taking;
}

} // namespace bridge
