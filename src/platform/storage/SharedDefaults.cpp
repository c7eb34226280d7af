#include "platform/storage/SharedDefaults.h"

#include "platform/plist/Reader.h"
#include "platform/plist/Writer.h"
#include "platform/storage/Files.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/SettingConversions.h"
#include "platform/storage/StorageError.h"

#include <utility>
#include <variant>

namespace platform {

namespace {

enum class Loaded { Dictionary, Absent, Unreadable, NoDictionary };

struct Load {
    Loaded result;
    plist::Dictionary values;
    std::error_code error; // of reading the file
};

std::string preferencesFolder(const std::string& container) {
    return pathByAppending(container, "Library/Preferences");
}

std::string preferencesFile(const std::string& container, const std::string& identifier) {
    return pathByAppending(preferencesFolder(container), identifier + ".plist");
}

Load load(const std::string& container, const std::string& identifier) {
    std::error_code error;
    const auto bytes = readFile(preferencesFile(container, identifier), &error);
    if (!bytes)
        return {
            error == std::errc::no_such_file_or_directory ? Loaded::Absent : Loaded::Unreadable, {}, error};
    const plist::ReadResult result = plist::read(*bytes);
    const auto* value = std::get_if<plist::Value>(&result);
    const plist::Dictionary* dictionary = value ? value->dictionary() : nullptr;
    return dictionary ? Load{Loaded::Dictionary, *dictionary, {}} : Load{Loaded::NoDictionary, {}, {}};
}

} // namespace

SharedDefaults::SharedDefaults(std::string identifier)
    : identifier_(std::move(identifier)) {}

std::optional<SharedDefaults> SharedDefaults::open(const std::string& identifier) {
    if (identifier.empty())
        return std::nullopt;
    SharedDefaults defaults(identifier);
    if (const auto container = GroupContainers::containerForGroup(identifier)) {
        Load file = load(*container, identifier);
        if (file.result == Loaded::NoDictionary)
            return std::nullopt;
        defaults.values_ = std::move(file.values);
    }
    return defaults;
}

std::string SharedDefaults::file(const std::string& identifier) {
    return preferencesFile(GroupContainers::containerPath(identifier), identifier);
}

std::int64_t SharedDefaults::integerForKey(const std::string& key) const {
    const plist::Value* value = valueForKey(key);
    return value ? settingAsInteger(*value) : 0;
}

std::optional<std::string> SharedDefaults::stringForKey(const std::string& key) const {
    const plist::Value* value = valueForKey(key);
    return value ? settingAsText(*value) : std::nullopt;
}

const plist::Value* SharedDefaults::valueForKey(const std::string& key) const {
    return values_.find(key);
}

void SharedDefaults::setString(const std::string& key, std::string value) {
    set(key, plist::Value(std::move(value)));
}

void SharedDefaults::setDouble(const std::string& key, double value) {
    set(key, plist::Value(value));
}

void SharedDefaults::setInteger(const std::string& key, std::int64_t value) {
    set(key, plist::Value(value));
}

void SharedDefaults::set(const std::string& key, plist::Value value) {
    values_.set(key, value);
    pending_.insert_or_assign(key, std::move(value));
}

bool SharedDefaults::synchronize() {
    return isMade(save());
}

std::error_code SharedDefaults::save() {
    const auto container = GroupContainers::containerForGroup(identifier_);
    if (!container)
        return make_error_code(std::errc::no_such_file_or_directory);
    std::optional<FolderLock> lock;
    if (!pending_.empty())
        lock.emplace(*container);
    if (lock && lock->error())
        return lock->error();
    Load file = load(*container, identifier_);
    if (file.result == Loaded::Unreadable)
        return file.error;
    if (file.result == Loaded::NoDictionary)
        return StorageError::NotADictionary;
    values_ = file.values;
    for (const auto& [key, value] : pending_)
        values_.set(key, value);
    if (values_ == file.values) {
        pending_.clear();
        return {};
    }
    return writePending(*container);
}

std::error_code SharedDefaults::writePending(const std::string& container) {
    const auto bytes = plist::writeXml(plist::Value(values_));
    if (!bytes)
        return StorageError::NoXmlForm;
    const std::error_code folder = makeFolders(preferencesFolder(container));
    if (!isMade(folder))
        return folder;
    const std::error_code result =
        worseOf(replaceFile(preferencesFile(container, identifier_), *bytes), folder);
    if (isMade(result))
        pending_.clear();
    return result;
}

} // namespace platform
