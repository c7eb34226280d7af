#include "bridge/Feed.h"

#include "bridge/AmountText.h"
#include "bridge/LocalDays.h"
#include "exchange/FeedRecord.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "model/GroupIdentifiers.h"
#include "platform/plist/Writer.h"
#include "platform/storage/Files.h"
#include "platform/storage/SharedDefaults.h"

#include <QString>

#include <algorithm>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

namespace bridge {

namespace plist = platform::plist;

using exchange::FeedKey;

namespace {

struct DatedOccurrence {
    double date = 0;
    const ShownOccurrence* occurrence = nullptr;
};

// The latest of a plan's occurrences that are shown on one day is due at its end, the one before it a second
// earlier.
std::vector<DatedOccurrence> dated(const std::vector<ShownOccurrence>& occurrences) {
    std::vector<DatedOccurrence> result;
    std::map<std::pair<std::string_view, Day>, int> earlier;
    for (auto occurrence = occurrences.rbegin(); occurrence != occurrences.rend(); ++occurrence) {
        const int seconds = earlier[{occurrence->plan, occurrence->shown}]++;
        result.push_back({endOfDay(occurrence->shown) - seconds, &*occurrence});
    }
    std::reverse(result.begin(), result.end());
    std::stable_sort(result.begin(), result.end(),
                     [](const DatedOccurrence& a, const DatedOccurrence& b) { return a.date < b.date; });
    return result;
}

plist::Dictionary recordOf(const DatedOccurrence& dated, const std::string& icon, const std::string& locale) {
    const Plan& plan = *dated.occurrence->details;
    plist::Dictionary record;
    const auto set = [&](FeedKey key, plist::Value value) {
        record.set(exchange::feedKeys[static_cast<std::size_t>(key)], std::move(value));
    };
    set(FeedKey::Date, plist::Value(dated.date));
    set(FeedKey::Name, plist::Value(shownName(plan)));
    set(FeedKey::Image, plist::Value(icon));
    set(FeedKey::Amount, plist::Value(amountText(plan, locale)));
    set(FeedKey::Income, plist::Value(plan.direction == Direction::Income));
    set(FeedKey::Expense, plist::Value(plan.direction == Direction::Expense));
    set(FeedKey::Planpk, plist::Value(dated.occurrence->plan));
    set(FeedKey::Single, plist::Value(plan.isSingle));
    record.set(sourceKey, plist::Value(sourceName));
    return record;
}

bool isOurs(const plist::Value& value) {
    const plist::Dictionary* record = value.dictionary();
    const plist::Value* source = record ? record->find(sourceKey) : nullptr;
    return source && source->string() == sourceName;
}

// The account that the settings name, if they do.
std::optional<std::string> namedAccount(const platform::SharedDefaults& settings) {
    return settings.stringForKey("account_pk");
}

} // namespace

Feed feedOf(const std::vector<ShownOccurrence>& occurrences, const Icons& icons, const std::string& locale) {
    Feed feed;
    plist::Array records;
    for (const DatedOccurrence& each : dated(occurrences)) {
        const ShownOccurrence& occurrence = *each.occurrence;
        const std::string icon(icons.nameFor(*occurrence.details));
        records.emplace_back(recordOf(each, icon, locale));
        feed.records.push_back(
            {occurrence.plan, each.date, occurrence.occurrence.nominal, occurrence.occurrence.day});
        feed.icons.insert(icon);
    }
    feed.bytes = *plist::writeXml(plist::Value(std::move(records)));
    return feed;
}

std::string shownName(const Plan& plan) {
    const std::string& name = !plan.name.empty()    ? plan.name
                              : !plan.payee.empty() ? plan.payee
                                                    : plan.account;
    QString text = QString::fromStdString(name);
    for (QChar& unit : text)
        if (unit.category() == QChar::Other_Control || unit.isNonCharacter())
            unit = u' ';
    return text.trimmed().toStdString();
}

std::string portableKey(std::string_view key) {
    const bool isUtf8 = QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())).toUtf8() ==
                        QByteArray(key.data(), static_cast<qsizetype>(key.size()));
    std::string result;
    for (const char unit : key) {
        const auto byte = static_cast<unsigned char>(unit);
        if (byte >= 0x20 && byte != 0x7f && byte != '%' && (isUtf8 || byte < 0x80)) {
            result += unit;
            continue;
        }
        constexpr std::string_view digits = "0123456789ABCDEF";
        result += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return result;
}

std::string whyForeign(const std::string& container) {
    const std::string file = exchange::feedFile(container);
    const std::string settingsFile = platform::SharedDefaults::file(std::string(fullEditionGroupIdentifier));
    const auto settings = exchange::openSharedSettings();
    if (!settings)
        return settingsFile + ": the settings cannot be read";
    std::error_code error;
    const auto bytes = platform::readFile(file, &error);
    if (!bytes)
        return error == std::errc::no_such_file_or_directory ? "" : file + ": " + error.message();
    const auto records = exchange::arrayOf(*bytes);
    if (!records)
        return file + ": the feed cannot be read, so that it may be another program's";
    const auto foreign =
        std::find_if(records->begin(), records->end(), [](const auto& record) { return !isOurs(record); });
    if (foreign != records->end())
        return file + ": the feed is another program's, which has written record " +
               std::to_string(foreign - records->begin() + 1);
    const auto account = namedAccount(*settings);
    if (records->empty() && account && *account != accountName)
        return file + ": the feed is another program's, whose account \"" + *account + "\" the settings name";
    return {};
}

} // namespace bridge
