#pragma once

#include "platform/plist/Value.h"
#include "platform/storage/PathWatcher.h"

#include <optional>
#include <string>
#include <string_view>

// Where the files of a container lie, and how an array is read from one.
namespace exchange {

// The feed, one for all accounts: CONTAINER/notifications.xml.
[[nodiscard]] std::string feedFile(const std::string& container);

// The folder of an account. The key is one component as it stands: it is not checked for separators or dots,
// and an empty one names the container itself.
[[nodiscard]] std::string accountFolder(const std::string& container, const std::string& accountKey);

// The action log in an account's folder.
[[nodiscard]] std::string actionLogFile(const std::string& accountFolder);

// The icons in an account's folder.
[[nodiscard]] std::string iconsFolder(const std::string& accountFolder);

// What the list is made from: the feed, the shared settings and the icons of the current account, whether or
// not there are any. The container and the account are looked up anew.
[[nodiscard]] platform::PathWatcher::Paths pathsOfList();

// The array that a property list holds. Nothing if the bytes are no property list or it has another root.
[[nodiscard]] std::optional<platform::plist::Array> arrayOf(std::string_view bytes);

// The array that a property-list file holds. Nothing if the file is absent or unreadable, is no property
// list, or has another root.
[[nodiscard]] std::optional<platform::plist::Array> arrayFromFile(const std::string& path);

} // namespace exchange
