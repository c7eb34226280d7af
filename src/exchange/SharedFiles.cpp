#include "exchange/SharedFiles.h"

#include "exchange/SharedSettings.h"
#include "model/GroupIdentifiers.h"
#include "platform/plist/Reader.h"
#include "platform/storage/Files.h"
#include "platform/storage/GroupContainers.h"

namespace exchange {

namespace plist = platform::plist;

std::string feedFile(const std::string& container) {
    return platform::pathByAppending(container, "notifications.xml");
}

std::string accountFolder(const std::string& container, const std::string& accountKey) {
    return platform::pathByAppending(container, accountKey);
}

std::string actionLogFile(const std::string& accountFolder) {
    return platform::pathByAppending(accountFolder, "actions.xml");
}

std::string iconsFolder(const std::string& accountFolder) {
    return platform::pathByAppending(accountFolder, "icons");
}

platform::PathWatcher::Paths pathsOfList() {
    const std::string group(fullEditionGroupIdentifier);
    const std::string container = platform::GroupContainers::containerPath(group);
    return {{feedFile(container), platform::SharedDefaults::file(group)},
            {iconsFolder(accountFolder(container, accountKey()))}};
}

std::optional<plist::Array> arrayOf(std::string_view bytes) {
    const plist::ReadResult result = plist::read(bytes);
    const auto* root = std::get_if<plist::Value>(&result);
    if (!root || !root->array())
        return std::nullopt;
    return *root->array();
}

std::optional<plist::Array> arrayFromFile(const std::string& path) {
    const std::optional<std::string> bytes = platform::readFile(path);
    return bytes ? arrayOf(*bytes) : std::nullopt;
}

} // namespace exchange
