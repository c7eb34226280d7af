#include "ctl/Commands.h"
#include "ctl/Host.h"
#include "ctl/Json.h"
#include "ctl/Moments.h"
#include "ctl/Terminal.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "platform/plist/Writer.h"
#include "platform/storage/Files.h"

#include <optional>
#include <ostream>

namespace ctl {

namespace plist = platform::plist;

namespace {

const plist::Value* find(const plist::Dictionary& record, std::string_view key, plist::Kind kind) {
    const plist::Value* value = record.find(key);
    return value && value->kind() == kind ? value : nullptr;
}

std::optional<std::string> actionText(const plist::Value& type, const plist::Value& parameter) {
    if (type == plist::Value(std::int64_t(1)))
        return "paid";
    if (type == plist::Value(std::int64_t(2)))
        return "later " + jsonValue(parameter);
    if (type == plist::Value(std::int64_t(3)))
        return parameter == plist::Value(std::int64_t(1)) ? "delete-future" : "delete";
    return std::nullopt;
}

// One record in the words of the act command; what is none of the widget's records as JSON.
std::string recordText(const plist::Value& value) {
    const plist::Dictionary* record = value.dictionary();
    const auto* type = record ? find(*record, "type", plist::Kind::Integer) : nullptr;
    const auto* key = record ? find(*record, "pk", plist::Kind::String) : nullptr;
    const auto* date = record ? find(*record, "date", plist::Kind::Real) : nullptr;
    const auto* parameter = record ? find(*record, "param", plist::Kind::Integer) : nullptr;
    if (!type || !key || !date || !parameter)
        return jsonValue(value);
    const std::optional<std::string> action = actionText(*type, *parameter);
    if (!action)
        return jsonValue(value);
    return padded(textOfMoment(*date->real()), 16) + "  " + padded(*action, 13) + "  " +
           terminalText(*key->string());
}

// Prints the records that are set aside, then removes them and leaves an empty log. Only what has left this
// process is removed: a kill before hands a record out twice rather than never.
int handOut(const Options& options, Streams& streams, const std::string& log, const std::string& aside) {
    const std::optional<plist::Array> records = exchange::arrayFromFile(aside);
    if (!records)
        return failed(streams, aside, "no array of records can be read");
    for (const plist::Value& record : *records)
        streams.out << (options.json ? jsonValue(record) : recordText(record)) << '\n';
    streams.out.flush();
    if (!streams.out)
        return failed(streams, "standard output", "it cannot be written; the records wait in " + aside);
    if (exchange::arrayFromFile(aside) != records)
        return failed(streams, aside, "the records were changed by another; they stay");
    if (platform::replaceAside(log, *plist::writeXml(plist::Value(plist::Array()))))
        return failed(streams, aside, "the records cannot be removed");
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
    const std::optional<std::string> aside = platform::pathAside(log);
    if (!aside)
        return platform::fileExists(log) ? failed(streams, log, "the log's folder cannot be opened") : Done;
    // Taken by a run that was ended before it could remove them.
    if (platform::fileExists(*aside))
        if (const int status = handOut(options, streams, log, *aside); status != Done)
            return status;
    if (!platform::fileExists(log))
        return Done;
    const std::optional<plist::Array> records = exchange::arrayFromFile(log);
    if (!records)
        return failed(streams, log, "no array of records can be read");
    if (records->empty())
        return Done;
    // From here on the widget logs into a new file: nothing that it logs can be lost. What it read before
    // this and writes back after it is handed out twice.
    if (platform::setAside(log))
        return failed(streams, log, "the log could not be taken");
    return handOut(options, streams, log, *aside);
}

} // namespace ctl
