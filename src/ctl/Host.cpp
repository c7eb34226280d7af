#include "ctl/Host.h"

#include "ctl/Input.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "model/GroupIdentifiers.h"
#include "platform/plist/Reader.h"
#include "platform/plist/RecordReader.h"
#include "platform/storage/Files.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/SharedDefaults.h"
#include "platform/storage/StorageError.h"

#include <optional>
#include <variant>

namespace ctl {

namespace {

// As the reader of the feed sees it.
bool isList(const std::string& bytes) {
    platform::plist::RecordReader reader(bytes, exchange::feedKeys);
    while (reader.next()) {
    }
    return reader.isSound();
}

} // namespace

std::string containerPath() {
    return platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
}

bool hasContainer() {
    return platform::GroupContainers::containerForGroup(std::string(fullEditionGroupIdentifier)).has_value();
}

int failedWithoutContainer(Streams& streams) {
    std::error_code error;
    (void)platform::readFile(containerPath(), &error);
    const bool isThere = error && error != std::errc::no_such_file_or_directory &&
                         error != std::errc::is_a_directory && error != std::errc::not_a_directory &&
                         error != std::errc::invalid_argument;
    return failed(streams, containerPath(), isThere ? error.message() : "there is no container");
}

exchange::FeedReading readWidgetsList() {
    if (!hasContainer())
        return std::vector<TodayTransactionPtr>();
    return exchange::readFeed(containerPath(), exchange::notificationDayCount());
}

std::variant<std::vector<TodayTransactionPtr>, ListFault> readSoundList() {
    if (const std::error_code error = readingError(settingsFile()))
        return ListFault{settingsFile(), error.message()};
    const exchange::FeedReading reading = readWidgetsList();
    const std::string feed = exchange::feedFile(containerPath());
    if (const auto* fault = std::get_if<exchange::FeedFault>(&reading))
        return ListFault{feed, exchange::describe(*fault)};
    const auto& transactions = std::get<std::vector<TodayTransactionPtr>>(reading);
    if (!transactions.empty())
        return transactions;
    std::error_code error;
    const std::optional<std::string> bytes = platform::readFile(feed, &error);
    if (!bytes && error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory)
        return ListFault{feed, error.message()};
    if (bytes && !isList(*bytes))
        return ListFault{feed, "no array of records can be read"};
    return transactions;
}

std::error_code settingsError() {
    if (const std::error_code error = readingError(settingsFile()))
        return error;
    const auto bytes = platform::readFile(settingsFile());
    if (!bytes)
        return {};
    const platform::plist::ReadResult result = platform::plist::read(*bytes);
    const auto* root = std::get_if<platform::plist::Value>(&result);
    return root && root->dictionary() ? std::error_code{} : platform::StorageError::NotADictionary;
}

std::string settingsFile() {
    return platform::SharedDefaults::file(std::string(fullEditionGroupIdentifier));
}

int reportWrite(Streams& streams, const std::string& file, const std::error_code& result) {
    if (!result)
        return Done;
    const int status = failed(streams, file, result.message());
    return platform::isMade(result) ? Done : status;
}

} // namespace ctl
