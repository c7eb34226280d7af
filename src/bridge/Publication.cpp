#include "bridge/Publication.h"

#include "bridge/LocalDays.h"
#include "bridge/TakenLog.h"
#include "exchange/Days.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/Files.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/SharedDefaults.h"
#include "platform/storage/StorageError.h"

#include <optional>
#include <system_error>

namespace bridge {

namespace {

constexpr const char* accountKey = "account_pk";
constexpr const char* dayCountKey = "notification_days_count";

std::string sentenceOf(const std::string& path, const std::error_code& error) {
    return platform::isMade(error) ? "" : path + ": " + error.message();
}

// A sentence where that failed, otherwise an empty text.
std::string writeIfDifferent(const std::string& path, std::string_view bytes) {
    if (platform::readFile(path) == bytes)
        return {};
    return sentenceOf(path, platform::replaceFile(path, bytes));
}

std::string writeIcons(const std::string& container, const Feed& feed, const Icons& icons) {
    const std::string folder = exchange::iconsFolder(exchange::accountFolder(container, accountName));
    if (std::string fault = sentenceOf(folder, platform::makeFolders(folder)); !fault.empty())
        return fault;
    for (const std::string& name : feed.icons) {
        const std::string path = platform::pathByAppending(folder, name + ".png");
        if (std::string fault = writeIfDifferent(path, icons.file(name)); !fault.empty())
            return fault;
    }
    return {};
}

std::string writeSettings(std::int64_t dayCount) {
    const std::string file = platform::SharedDefaults::file(std::string(fullEditionGroupIdentifier));
    auto settings = exchange::openSharedSettings();
    if (!settings)
        return file + ": the settings cannot be read";
    if (settings->stringForKey(accountKey) != accountName)
        settings->setString(accountKey, accountName);
    if (!settings->valueForKey(dayCountKey) || settings->integerForKey(dayCountKey) != dayCount)
        settings->setInteger(dayCountKey, dayCount);
    return sentenceOf(file, settings->save());
}

Publication failure(std::string fault) {
    return {Published::Failed, std::move(fault)};
}

} // namespace

std::string containerPath() {
    return platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
}

std::int64_t uncutDayCount(std::int64_t wanted) {
    std::int64_t days = -1;
    std::optional<double> here = exchange::startOfDayFromToday(0);
    while (days < wanted) {
        const std::optional<double> next = exchange::startOfDayFromToday(days + 2);
        if (!here || !next || *next <= *here)
            break;
        here = next;
        ++days;
    }
    return days;
}

Publication publish(const std::string& container, const Feed& feed, const Icons& icons, std::int64_t dayCount,
                    Database& database) {
    std::string fault = writeIcons(container, feed, icons);
    if (fault.empty())
        fault = writeSettings(dayCount);
    if (!fault.empty())
        return failure(std::move(fault));
    const platform::FolderLock lock(container);
    if (lock.error())
        return failure(container + ": " + lock.error().message());
    if (fault = whyForeign(container); !fault.empty())
        return failure(std::move(fault));
    if (hasLog(container))
        return {Published::LogHasMore, {}};
    database.begin();
    database.publish(feed.records, today());
    fault = database.commit();
    if (fault.empty())
        fault = writeIfDifferent(exchange::feedFile(container), feed.bytes);
    return fault.empty() ? Publication() : failure(std::move(fault));
}

} // namespace bridge
