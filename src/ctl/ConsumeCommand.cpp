#include "ctl/ConsumeCommand.h"

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

// Ends the claim with an empty log. Where there are records that were not printed, the claimed log is kept,
// and no later run looks at it again.
HandedOut endClaim(Streams& streams, platform::ClaimedFile& claim, const std::vector<std::size_t>& tooLarge) {
    const std::string claimed = claim.path();
    const std::string empty = *plist::writeXml(plist::Value(plist::Array()));
    if (tooLarge.empty())
        return reportWrite(streams, claimed, claim.replace(empty)) == Done ? HandedOut::All
                                                                           : HandedOut::Failed;
    std::string kept;
    if (reportWrite(streams, claimed, claim.replaceAndKeep(empty, ".too-large", kept)) != Done)
        return HandedOut::Failed;
    for (const std::size_t record : tooLarge)
        (void)failed(streams, kept,
                     "record " + std::to_string(record) +
                         " is too large to be printed; it is kept here, the others are printed");
    return HandedOut::AllThatFit;
}

// Prints the records of a claimed log, then ends the claim with an empty log. The claim ends after the output
// has left this process, so that a process that is killed in between prints a record twice rather than never.
// Meanwhile the container is not locked: whoever reads the output may take any time.
HandedOut printAndRemove(const Options& options, Streams& streams, platform::ClaimedFile& claim) {
    const auto fail = [&](const std::string& place, const std::string& sentence) {
        (void)failed(streams, place, sentence);
        return HandedOut::Failed;
    };
    const std::string claimed = claim.path();
    const std::optional<std::string> bytes = platform::readFile(claimed);
    const std::optional<plist::Array> records = bytes ? exchange::arrayOf(*bytes) : std::nullopt;
    if (!records)
        return fail(claimed, "no array of records can be read");
    const std::vector<std::size_t> tooLarge = printRecords(options, *records, streams.out);
    if (!streams.out)
        return fail("standard output", "it cannot be written; the records are kept in " + claimed);
    const platform::FolderLock lock(containerPath());
    if (lock.error())
        return fail(claimed, "the records are kept: " + lock.error().message());
    if (platform::readFile(claimed) != bytes)
        return fail(claimed, "another process has changed the records; they are kept");
    return endClaim(streams, claim, tooLarge);
}

// Hands out what is claimed: by this run, or by one that was interrupted.
HandedOut handOutClaim(const Options& options, Streams& streams, platform::ClaimedFile& claim) {
    const std::error_code error = claim.resume();
    if (!error)
        return printAndRemove(options, streams, claim);
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
    return true;
}

} // namespace

int consume(const Options& options, Streams& streams) {
    if (options.words.size() != 1)
        return misused(streams, "consume takes no operand");
    if (!hasContainer())
        return failed(streams, containerPath(), "there is no container");
    if (const std::error_code error = settingsError())
        return failed(streams, settingsFile(), error.message());
    const std::string log =
        exchange::actionLogFile(exchange::accountFolder(containerPath(), exchange::accountKey()));
    platform::ClaimedFile claim;
    if (const std::error_code error = claim.find(log))
        return error == std::errc::no_such_file_or_directory
                   ? Done
                   : failed(streams, log, "the log's folder cannot be opened");
    // An interrupted run has left its records, or another is at work on them.
    const HandedOut earlier = handOutClaim(options, streams, claim);
    if (earlier == HandedOut::Failed)
        return Failed;
    const std::optional<bool> isClaimed = claimLog(streams, log, claim);
    if (!isClaimed)
        return Failed;
    const HandedOut latest = *isClaimed ? handOutClaim(options, streams, claim) : HandedOut::Nothing;
    const bool isAll = earlier != HandedOut::AllThatFit && latest != HandedOut::AllThatFit;
    return isAll && latest != HandedOut::Failed ? Done : Failed;
}

} // namespace ctl
