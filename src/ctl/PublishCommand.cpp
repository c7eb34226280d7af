#include "ctl/PublishCommand.h"

#include "ctl/Host.h"
#include "ctl/Input.h"
#include "ctl/JsonReader.h"
#include "ctl/Moments.h"
#include "ctl/Portability.h"
#include "exchange/FeedReader.h"
#include "exchange/SharedFiles.h"
#include "platform/plist/Writer.h"
#include "platform/storage/Files.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/StorageError.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

namespace ctl {

namespace plist = platform::plist;

namespace {

std::string recordName(std::size_t index) {
    return "record " + std::to_string(index + 1);
}

constexpr std::string_view dateKey = exchange::feedKeys[static_cast<std::size_t>(exchange::FeedKey::Date)];

// Replaces each date that is a string by the number that the feed holds. Returns an error message where a
// string is not a date, otherwise an empty string.
std::string readDates(plist::Array& records) {
    for (std::size_t index = 0; index < records.size(); ++index) {
        const plist::Dictionary* object = records[index].dictionary();
        const plist::Value* date = object ? object->find(dateKey) : nullptr;
        if (!date || !date->string())
            continue;
        const std::optional<double> moment = momentOfText(*date->string());
        if (!moment || std::isnan(*moment))
            return recordName(index) + ": \"date\" is no date: " + std::string(*date->string());
        plist::Dictionary record = *object;
        record.set(std::string(dateKey), plist::Value(*moment));
        records[index] = plist::Value(std::move(record));
    }
    return {};
}

// Names the first date that other programs could not show. The widget takes any number.
std::string describeOutOfCalendar(const plist::Array& records) {
    for (std::size_t index = 0; index < records.size(); ++index) {
        const plist::Dictionary* record = records[index].dictionary();
        const plist::Value* date = record ? record->find(dateKey) : nullptr;
        const std::optional<double> moment = date ? plist::numberOf(*date) : std::nullopt;
        if (moment && !isInCalendar(*moment))
            return recordName(index) + ": \"date\" is outside the years 1 to 9999";
    }
    return {};
}

// The fault at which the widget would end when it reads a feed with these bytes.
std::optional<exchange::FeedFault> faultIn(const std::string& bytes) {
    constexpr double noLimit = std::numeric_limits<double>::infinity();
    const exchange::FeedReading reading = exchange::transactionsOfFeed(bytes, noLimit);
    const auto* fault = std::get_if<exchange::FeedFault>(&reading);
    return fault ? std::optional(*fault) : std::nullopt;
}

// Says where the null is because of which the records have no XML form.
std::string describeUnwritable(const plist::Array& records) {
    const auto isUnwritable = [](const plist::Value& value) { return !plist::writeXml(value); };
    const auto found = std::find_if(records.begin(), records.end(), isUnwritable);
    const std::string record = recordName(static_cast<std::size_t>(found - records.begin()));
    const plist::Dictionary* object = found->dictionary();
    if (!object)
        return record + " is not a dictionary";
    const auto entry = std::find_if(object->begin(), object->end(),
                                    [&](const auto& candidate) { return isUnwritable(candidate.second); });
    return record + ": \"" + (*entry).first + "\" holds a null, which a property list cannot";
}

int writeFeed(const std::string& bytes, Streams& streams) {
    const std::string container = containerPath();
    const std::error_code made = platform::makeFolders(container);
    if (!platform::isMade(made))
        return failed(streams, container, made.message());
    const platform::FolderLock lock(container);
    if (lock.error())
        return failed(streams, container, lock.error().message());
    const std::string feed = exchange::feedFile(container);
    return reportWrite(streams, feed, platform::worseOf(platform::replaceFile(feed, bytes), made));
}

} // namespace

int publish(const Options& options, Streams& streams) {
    const std::string& file = options.line.operands[1];
    const std::string place = file == "-" ? "standard input" : file;
    std::error_code unreadable;
    const std::optional<std::string> text = readInput(file, streams.in, unreadable);
    if (!text)
        return failed(streams, place, unreadable.message());

    const auto json = readJson(*text);
    if (const auto* fault = std::get_if<JsonError>(&json)) {
        const std::string where = std::to_string(fault->line) + ":" + std::to_string(fault->column);
        return failed(streams, place + ":" + where, fault->message);
    }
    const plist::Array* array = std::get<plist::Value>(json).array();
    if (!array)
        return failed(streams, place, "it is no array");
    plist::Array records = *array;
    if (const std::string fault = readDates(records); !fault.empty())
        return failed(streams, place, fault);
    const plist::Value list(records);
    const std::optional<std::string> bytes = plist::writeXml(list);
    if (!bytes)
        return failed(streams, place, describeUnwritable(records));
    if (const auto fault = faultIn(*bytes))
        return failed(streams, place, exchange::describe(*fault));
    if (const std::string fault = describeOutOfCalendar(records); !fault.empty())
        return failed(streams, place, fault);
    if (const auto fault = describeUnportable(list))
        return failed(streams, place, *fault);
    return writeFeed(*bytes, streams);
}

} // namespace ctl
