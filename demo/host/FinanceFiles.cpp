#include "host/FinanceFiles.h"

#include "model/GroupIdentifiers.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "exchange/Text.h"
#include "platform/storage/Files.h"
#include "platform/storage/GroupContainers.h"

namespace host {

namespace plist = platform::plist;

namespace {

std::string containerPath() {
    return platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
}

std::string accountPath() {
    return exchange::accountFolder(containerPath(), exchange::accountKey());
}

std::optional<std::string_view> textAt(const plist::Dictionary& record, const char* key) {
    const plist::Value* value = record.find(key);
    return value ? value->string() : std::nullopt;
}

} // namespace

std::optional<NamedTransaction> transactionInSettings() {
    const auto settings = exchange::openSharedSettings();
    if (!settings)
        return std::nullopt;
    const auto plan = settings->stringForKey("edit_transaction_plan_pk");
    const plist::Value* value = settings->valueForKey("edit_transaction_date");
    const auto date = value ? plist::numberOf(*value) : std::nullopt;
    if (!plan || !date)
        return std::nullopt;
    return NamedTransaction{exchange::textFromUtf8(*plan), *date};
}

plist::Array actionLog() {
    return exchange::arrayFromFile(exchange::actionLogFile(accountPath())).value_or(plist::Array());
}

QString actionLogPath() {
    return QString::fromStdString(exchange::actionLogFile(accountPath()));
}

QStringList foldersToWatch() {
    const std::string container = containerPath();
    QStringList folders;
    for (const std::string& folder : {platform::GroupContainers::folder(), container, accountPath(),
                                      platform::pathByAppending(container, "Library/Preferences")})
        if (platform::isFolder(folder))
            folders << QString::fromStdString(folder);
    return folders;
}

void PlanNames::learn(const plist::Array& feed) {
    for (const plist::Value& value : feed) {
        const plist::Dictionary* record = value.dictionary();
        const auto plan = record ? textAt(*record, "planpk") : std::nullopt;
        const auto name = record ? textAt(*record, "name") : std::nullopt;
        if (plan && name)
            names_.insert(exchange::textFromUtf8(*plan), exchange::textFromUtf8(*name));
    }
}

void PlanNames::learnFromFeed() {
    if (const auto feed = exchange::arrayFromFile(exchange::feedFile(containerPath())))
        learn(*feed);
}

} // namespace host
