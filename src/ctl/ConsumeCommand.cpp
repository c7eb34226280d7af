#include "ctl/ConsumeCommand.h"

#include "ctl/Host.h"
#include "ctl/Json.h"
#include "ctl/Moments.h"
#include "ctl/Terminal.h"
#include "exchange/FeedRewriter.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "platform/plist/Writer.h"
#include "platform/storage/ClaimedFile.h"
#include "platform/storage/Files.h"

#include <cstdint>
#include <optional>
#include <ostream>

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

// A record of the widget as a line of text. Any other value is printed as JSON.
std::string recordText(const plist::Value& value) {
    const plist::Dictionary* record = value.dictionary();
    const auto* code = record ? find(*record, "type", plist::Kind::Integer) : nullptr;
    const auto* key = record ? find(*record, "pk", plist::Kind::String) : nullptr;
    const auto* date = record ? find(*record, "date", plist::Kind::Real) : nullptr;
    const auto* parameter = record ? find(*record, "param", plist::Kind::Integer) : nullptr;
    const std::optional<ActionType> type = code ? actionTypeOf(*code) : std::nullopt;
    if (!type || !key || !date || !parameter)
        return jsonValue(value);
    return padded(textOfMoment(*date->real()), 16) + "  " + padded(actionText(*type, *parameter), 13) + "  " +
           terminalText(*key->string());
}

// Prints the records of a claimed log, then removes that file and leaves an empty log. The file is removed
// after the output has left this process, so that a process that is killed in between prints a record twice
// rather than never.
int printAndRemove(const Options& options, Streams& streams, const std::string& log,
                   const std::string& claimed) {
    const std::optional<plist::Array> records = exchange::arrayFromFile(claimed);
    if (!records)
        return failed(streams, claimed, "no array of records can be read");
    for (const plist::Value& record : *records)
        streams.out << (options.json ? jsonValue(record) : recordText(record)) << '\n';
    streams.out.flush();
    if (!streams.out)
        return failed(streams, "standard output", "it cannot be written; the records are kept in " + claimed);
    if (exchange::arrayFromFile(claimed) != records)
        return failed(streams, claimed, "another process has changed the records; they are kept");
    if (platform::replaceClaimedFile(log, *plist::writeXml(plist::Value(plist::Array()))))
        return failed(streams, claimed, "the records cannot be removed");
    return Done;
}

} // namespace

int consume(const Options& options, Streams& streams) {
    if (options.words.size() != 1)
        return misused(streams, "consume takes no operand");
    if (!hasContainer())
        return failed(streams, containerPath(), "there is no container");
    const std::string log =
        exchange::actionLogFile(exchange::accountFolder(containerPath(), exchange::accountKey()));
    const std::optional<std::string> claimed = platform::claimedPath(log);
    if (!claimed)
        return platform::fileExists(log) ? failed(streams, log, "the log's folder cannot be opened") : Done;
    // An interrupted run has left its records.
    if (platform::fileExists(*claimed))
        if (const int status = printAndRemove(options, streams, log, *claimed); status != Done)
            return status;
    if (!platform::fileExists(log))
        return Done;
    const std::optional<plist::Array> records = exchange::arrayFromFile(log);
    if (!records)
        return failed(streams, log, "no array of records can be read");
    if (records->empty())
        return Done;
    // After the renaming the widget appends to a new file, so that no action is lost. If it has read the log
    // before and writes it afterwards, those records are printed twice.
    if (platform::claimFile(log))
        return failed(streams, log, "the log cannot be claimed");
    return printAndRemove(options, streams, log, *claimed);
}

} // namespace ctl
