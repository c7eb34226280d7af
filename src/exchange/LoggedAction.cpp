#include "exchange/LoggedAction.h"

#include "exchange/FeedRewriter.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/Files.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/StorageError.h"

#include <new>
#include <string>

namespace exchange {

namespace {

const FeedFault unreadable{FeedFault::What::Unreadable, 0, {}};

std::optional<std::string> containerFolder() {
    return platform::GroupContainers::containerForGroup(std::string(fullEditionGroupIdentifier));
}

std::error_code writeLog(const std::string& container, ActionType type, const TodayTransaction& item,
                         std::int64_t parameter, UnreadableLog unreadableLog) {
    const std::string folder = accountFolder(container, accountKey());
    std::error_code madeFolder;
    if (!platform::fileExists(folder))
        madeFolder = platform::makeFolders(folder);
    const std::error_code written =
        appendToActionLog(actionLogFile(folder), type, item, parameter, unreadableLog);
    // A folder that could not be made is why the log could not be written, if it could not.
    if (!platform::isMade(madeFolder))
        return platform::isMade(written) ? written : madeFolder;
    return platform::worseOf(written, madeFolder);
}

void rewriteFeedFile(const std::string& feed, ActionType type, const TodayTransaction& item,
                     std::int64_t parameter, LoggedAction& action) {
    const std::optional<std::string> bytes = platform::readFile(feed);
    const RewrittenFeed rewritten =
        bytes ? rewriteFeed(*bytes, type, item, parameter) : RewrittenFeed{unreadable, std::nullopt};
    action.fault = rewritten.fault;
    if (rewritten.bytes)
        action.feed = platform::replaceFile(feed, *rewritten.bytes);
    else if (!rewritten.fault)
        action.feed = platform::StorageError::NoXmlForm;
}

} // namespace

LoggedAction logAction(ActionType type, const TodayTransaction& item, std::int64_t parameter,
                       UnreadableLog unreadableLog) {
    LoggedAction action;
    const std::optional<std::string> container = containerFolder();
    if (!container)
        return {make_error_code(std::errc::no_such_file_or_directory), {}, unreadable};
    action.log = writeLog(*container, type, item, parameter, unreadableLog);
    // The container is looked up again, as at every use: the log may have taken its time.
    const std::optional<std::string> containerNow = containerFolder();
    if (!containerNow) {
        action.fault = unreadable;
        return action;
    }
    try {
        rewriteFeedFile(feedFile(*containerNow), type, item, parameter, action);
    } catch (const std::bad_alloc&) { // what became of the log is still to be told
        action.feed = make_error_code(std::errc::not_enough_memory);
    }
    return action;
}

} // namespace exchange
