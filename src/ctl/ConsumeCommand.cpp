#include "ctl/Commands.h"
#include "ctl/Host.h"
#include "ctl/Json.h"
#include "ctl/Moments.h"
#include "ctl/Terminal.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "platform/storage/Files.h"

#include <algorithm>
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

bool startsWith(const plist::Array& array, const plist::Array& start) {
    return array.size() >= start.size() && std::equal(start.begin(), start.end(), array.begin());
}

} // namespace

int consume(const Options& options, Streams& streams) {
    if (options.words.size() != 1)
        return misused(streams, "consume takes no operand");
    if (!hasContainer())
        return failed(streams, containerPath(), "there is no container");
    const std::string log =
        exchange::actionLogFile(exchange::accountFolder(containerPath(), exchange::accountKey()));
    if (!platform::fileExists(log))
        return Done;
    const std::optional<plist::Array> records = exchange::arrayFromFile(log);
    if (!records)
        return failed(streams, log, "no array of records can be read");
    if (records->empty())
        return Done;

    for (const plist::Value& record : *records)
        streams.out << (options.json ? jsonValue(record) : recordText(record)) << '\n';
    // Only what has left this process is taken: a kill before the log is written hands a record out twice
    // rather than never.
    streams.out.flush();
    if (!streams.out)
        return failed(streams, "standard output", "it cannot be written; the log stays");
    // What the widget has logged meanwhile stays.
    plist::Array now = exchange::arrayFromFile(log).value_or(plist::Array());
    if (!startsWith(now, *records))
        return failed(streams, log, "the log was changed by another; it stays");
    now.erase(now.begin(), now.begin() + static_cast<std::ptrdiff_t>(records->size()));
    if (!exchange::writeArray(log, std::move(now)))
        return failed(streams, log, "the log could not be emptied");
    return Done;
}

} // namespace ctl
