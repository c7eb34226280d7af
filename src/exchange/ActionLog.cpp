#include "exchange/ActionLog.h"

#include "exchange/Text.h"
#include "platform/plist/RecordEditor.h"
#include "platform/plist/Writer.h"
#include "platform/storage/Files.h"
#include "platform/storage/StorageError.h"

#include <optional>
#include <string_view>
#include <utility>

namespace exchange {

namespace plist = platform::plist;

namespace {

plist::Value recordOf(ActionType type, const TodayTransaction& item, std::int64_t parameter) {
    plist::Dictionary record;
    record.set("type", plist::Value(static_cast<std::int64_t>(type)));
    record.set("pk", plist::Value(utf8FromText(item.planPrimaryKey)));
    record.set("date", plist::Value(item.date));
    record.set("param", plist::Value(parameter));
    return plist::Value(std::move(record));
}

// The log's bytes with one record more, or nothing if the log holds what cannot be written.
std::optional<std::string> withRecord(const std::optional<std::string>& log, const plist::Value& record) {
    if (log) {
        plist::RecordEditor editor(*log, {});
        while (editor.next()) {
        }
        if (editor.isSound()) {
            editor.append(record);
            return editor.finish();
        }
    }
    return plist::writeXml(plist::Value(plist::Array{record}));
}

} // namespace

std::error_code appendToActionLog(const std::string& log, ActionType type, const TodayTransaction& item,
                                  std::int64_t parameter, UnreadableLog unreadable) {
    std::error_code error;
    const std::optional<std::string> before = platform::readFile(log, &error);
    const bool isThere = error && error != std::errc::no_such_file_or_directory;
    if (isThere && unreadable == UnreadableLog::Stays)
        return error;
    const std::optional<std::string> bytes = withRecord(before, recordOf(type, item, parameter));
    return bytes ? platform::replaceFile(log, *bytes) : platform::StorageError::NoXmlForm;
}

} // namespace exchange
