#include "ctl/ConsumeCommand.h"

#include "ctl/Confinement.h"
#include "ctl/Host.h"
#include "ctl/Json.h"
#include "ctl/Moments.h"
#include "ctl/PrintBudget.h"
#include "ctl/Terminal.h"
#include "exchange/ActionLog.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "platform/plist/Writer.h"
#include "platform/storage/ClaimedFile.h"
#include "platform/storage/Files.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/StorageError.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace ctl {

namespace plist = platform::plist;

using exchange::ActionType;

namespace {

const plist::Value* find(const plist::Dictionary& record, std::string_view key, plist::Kind kind) {
    const plist::Value* value = record.find(key);
    return value && value->kind() == kind ? value : nullptr;
}

std::optional<ActionType> actionTypeOf(const plist::Value& code) {
    for (const ActionType type : {ActionType::Paid, ActionType::Later, ActionType::Delete})
        if (code == plist::Value(static_cast<std::int64_t>(type)))
            return type;
    return std::nullopt;
}

// The action in the words of the act command.
std::string actionText(ActionType type, const plist::Value& parameter) {
    switch (type) {
    case ActionType::Paid:
        return "paid";
    case ActionType::Later:
        return "later " + jsonValue(parameter);
    case ActionType::Delete:
        break;
    }
    return parameter == plist::Value(std::int64_t(1)) ? "delete-future" : "delete";
}

// A record of the widget as a line of text; any other value, and every one with --json, as JSON.
void printRecord(const Options& options, const plist::Value& value, std::ostream& out) {
    const plist::Dictionary* record = options.json ? nullptr : value.dictionary();
    const auto* code = record ? find(*record, "type", plist::Kind::Integer) : nullptr;
    const auto* key = record ? find(*record, "pk", plist::Kind::String) : nullptr;
    const auto* date = record ? find(*record, "date", plist::Kind::Real) : nullptr;
    const auto* parameter = record ? find(*record, "param", plist::Kind::Integer) : nullptr;
    const std::optional<ActionType> type = code ? actionTypeOf(*code) : std::nullopt;
    if (!type || !key || !date || !parameter)
        writeJson(out, value);
    else
        out << padded(textOfMoment(*date->real()), 16) << "  " << padded(actionText(*type, *parameter), 13)
            << "  " << terminalText(*key->string());
    out << '\n';
}

// Prints the records, save those that are too large to be printed, whose numbers (from 1) are returned.
std::vector<std::size_t> printRecords(const Options& options, const plist::Array& records,
                                      std::ostream& out) {
    std::vector<std::size_t> tooLarge;
    PrintBudget budget;
    for (std::size_t index = 0; index < records.size(); ++index) {
        if (budget.grants(records[index]))
            printRecord(options, records[index], out);
        else
            tooLarge.push_back(index + 1);
    }
    out.flush();
    return tooLarge;
}

// The outcome of one claim. After a failure the claim stands as it was.
enum class HandedOut { Nothing, All, AllThatFit, Failed };

// The records are printed, and a later run prints them again.
HandedOut failToEnd(Streams& streams, const platform::ClaimedFile& claim, const std::string& why) {
    (void)failed(streams, claim.path(),
                 "the records are printed, but they are kept and will be printed again: " + why);
    return HandedOut::Failed;
}

// Ends the claim with an empty log. Where there are records that were not printed, the claimed log is kept,
// and no later run looks at it again.
HandedOut endClaim(Streams& streams, const std::string& log, platform::ClaimedFile& claim,
                   const std::vector<std::size_t>& tooLarge) {
    const std::string empty = *plist::writeXml(plist::Value(plist::Array()));
    std::string kept;
    const std::error_code error =
        tooLarge.empty() ? claim.replace(empty) : claim.replaceAndKeep(empty, ".too-large", kept);
    if (error == std::errc::no_such_file_or_directory)
        return HandedOut::All; // another program, which took no lock, has handed out the same records
    if (!platform::isMade(error))
        return failToEnd(streams, claim, error.message());
    (void)reportWrite(streams, log, error); // if it is not safe yet
    for (const std::size_t record : tooLarge)
        (void)failed(streams, kept,
                     "record " + std::to_string(record) +
                         " is too large to be printed; it is kept here, the others are printed");
    return tooLarge.empty() ? HandedOut::All : HandedOut::AllThatFit;
}

// Prints the records of a claimed log, then ends the claim with an empty log. The claim ends after the output
// has left this process, so that a process that is killed in between prints a record twice rather than never.
// Meanwhile the container is not locked: whoever reads the output may take any time.
HandedOut printAndRemove(const Options& options, Streams& streams, const std::string& log,
                         platform::ClaimedFile& claim) {
    const std::string claimed = claim.path();
    std::error_code error;
    const std::optional<std::string> bytes = claim.read(&error);
    const std::optional<plist::Array> records = bytes ? exchange::arrayOf(*bytes) : std::nullopt;
    if (!records) {
        (void)failed(streams, claimed, error ? error.message() : "no array of records can be read");
        return HandedOut::Failed;
    }
    const std::vector<std::size_t> tooLarge = printRecords(options, *records, streams.out);
    if (!streams.out) {
        (void)failed(streams, "standard output", "it cannot be written; the records are kept in " + claimed);
        return HandedOut::Failed;
    }
    const platform::FolderLock lock(containerPath());
    if (lock.error())
        return failToEnd(streams, claim, lock.error().message());
    if (claim.read() != bytes)
        return failToEnd(streams, claim, "another process has changed them");
    return endClaim(streams, log, claim, tooLarge);
}

// Hands out what is claimed: by this run, or by one that was interrupted.
HandedOut handOutClaim(const Options& options, Streams& streams, const std::string& log,
                       platform::ClaimedFile& claim) {
    const std::error_code error = claim.resume();
    if (!error)
        return printAndRemove(options, streams, log, claim);
    if (error == std::errc::no_such_file_or_directory)
        return HandedOut::Nothing;
    (void)failed(streams, claim.path(),
                 error == platform::StorageError::LockHeld ? "another program is consuming the log"
                                                           : error.message());
    return HandedOut::Failed;
}

// Claims the log if it holds a record. After that the widget appends to a new file, so that no action is
// lost. A program that takes no lock, has read the log before and writes it afterwards has those records
// printed twice. Returns whether there is a claim to hand out, or says why not and returns nothing.
std::optional<bool> claimLog(Streams& streams, const std::string& log, platform::ClaimedFile& claim) {
    const auto refuse = [&](const std::string& sentence) {
        (void)failed(streams, log, sentence);
        return std::nullopt;
    };
    const platform::FolderLock lock(containerPath());
    if (lock.error())
        return refuse(lock.error().message());
    std::error_code error;
    const std::optional<std::string> bytes = platform::readFile(log, &error);
    if (!bytes)
        return error == std::errc::no_such_file_or_directory ? std::optional(false) : refuse(error.message());
    const std::optional<plist::Array> records = exchange::arrayOf(*bytes);
    if (!records)
        return refuse("no array of records can be read");
    if (records->empty())
        return false;
    error = claim.claim();
    // Another consumer may have claimed the log just before, and this run hands out what that one leaves.
    if (!platform::isMade(error) && error != std::errc::file_exists)
        return refuse("the log cannot be claimed: " + error.message());
    if (platform::isMade(error))
        (void)reportWrite(streams, claim.path(), error); // if it is not safe yet
    return true;
}

} // namespace

int consume(const Options& options, Streams& streams) {
    if (!confine(streams, {{}, {containerPath()}}))
        return Failed;
    if (!hasContainer())
        return failedWithoutContainer(streams);
    if (const std::error_code error = settingsError())
        return failed(streams, settingsFile(), error.message());
    const std::string log =
        exchange::actionLogFile(exchange::accountFolder(containerPath(), exchange::accountKey()));
    platform::ClaimedFile claim;
    if (const std::error_code error = claim.find(log))
        return error == std::errc::no_such_file_or_directory
                   ? Done
                   : failed(streams, log, "the log's folder cannot be opened: " + error.message());
    // An interrupted run has left its records, or another is at work on them.
    const HandedOut earlier = handOutClaim(options, streams, log, claim);
    if (earlier == HandedOut::Failed)
        return Failed;
    const std::optional<bool> isClaimed = claimLog(streams, log, claim);
    if (!isClaimed)
        return Failed;
    const HandedOut latest = *isClaimed ? handOutClaim(options, streams, log, claim) : HandedOut::Nothing;
    const bool isAll = earlier != HandedOut::AllThatFit && latest != HandedOut::AllThatFit;
    return isAll && latest != HandedOut::Failed ? Done : Failed;
}

} // namespace ctl
