#include "platform/storage/FileAccess.h"

#include "platform/storage/FileSystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

namespace {

constexpr const char* accessList = "system.posix_acl_access"; // acl(5)

// What a call gives whose answer has any length. It is asked for the length first, which may grow meanwhile.
template <typename Call>
std::optional<std::string> answerOf(Call call) {
    constexpr int attempts = 8;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const ssize_t length = call(nullptr, 0);
        if (length <= 0)
            return length == 0 ? std::optional(std::string()) : std::nullopt;
        std::string bytes(static_cast<std::size_t>(length), '\0');
        const ssize_t count = call(bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.resize(static_cast<std::size_t>(count));
            return bytes;
        }
        if (errno != ERANGE)
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> attributeOf(const std::string& path, const char* name) {
    return answerOf([&](char* bytes, std::size_t count) {
        return FileSystemCalls::current().attribute(path.c_str(), name, bytes, count);
    });
}

// The names of a file's attributes. Nothing if they cannot be known.
std::optional<std::vector<std::string>> attributesOf(const std::string& path) {
    const auto answer = answerOf([&](char* bytes, std::size_t count) {
        return FileSystemCalls::current().attributeNames(path.c_str(), bytes, count);
    });
    if (!answer && errno != EOPNOTSUPP)
        return std::nullopt;
    std::vector<std::string> names;
    for (std::string_view rest = answer ? *answer : std::string_view(); !rest.empty();) {
        names.emplace_back(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(rest.size(), names.back().size() + 1));
    }
    return names;
}

enum class AccessList { None, Same, Lost };

struct Carried {
    bool owner = true;
    bool group = true;
    AccessList list = AccessList::None;
};

// Whoever loses his place as owner or member of the group has the rights of a later class, which are limited
// to those that he had.
mode_t modeWithin(mode_t old, const Carried& carried) {
    const mode_t owner = old >> 6 & 7;
    mode_t group = old >> 3 & 7;
    mode_t others = old & 7;
    mode_t special = old & 07000;
    if (carried.list == AccessList::Lost)
        group = others = 0;
    if (!carried.owner) {
        group &= owner;
        others &= owner;
        special &= ~static_cast<mode_t>(S_ISUID);
    }
    if (!carried.group) {
        others &= group;
        group = 0;
        special &= ~static_cast<mode_t>(S_ISGID);
    }
    return special | owner << 6 | group << 3 | others;
}

// The list takes effect as soon as it is set, so it is set only where it gives nobody more than before: not
// to another group, and not with rights that the old owner did not have.
bool mayCarryList(mode_t old, const Carried& carried) {
    return carried.group && (modeWithin(old, carried) & 0777) == (old & 0777);
}

// A list that the new file has from its folder is removed where the old file had none.
AccessList carryListOver(const std::string& path, bool hasList, const struct stat& old,
                         const Carried& carried, int file) {
    FileSystemCalls& calls = FileSystemCalls::current();
    if (!hasList) {
        const bool isWithout =
            calls.removeAttribute(file, accessList) == 0 || errno == ENODATA || errno == EOPNOTSUPP;
        return isWithout ? AccessList::None : AccessList::Lost;
    }
    const auto list = mayCarryList(old.st_mode, carried) ? attributeOf(path, accessList) : std::nullopt;
    const bool isSet = list && calls.setAttribute(file, accessList, list->data(), list->size()) == 0;
    return isSet ? AccessList::Same : AccessList::Lost;
}

// Signatures of the bytes, which are others now.
bool isOfTheBytes(const std::string& name) {
    return name == "security.ima" || name == "security.evm";
}

// Of the attributes beside the list only those of the system say who has access.
AccessList carryAttributesOver(const std::string& path, const struct stat& old, const Carried& carried,
                               int file) {
    const auto names = attributesOf(path);
    if (!names)
        return AccessList::Lost;
    const bool hasList = std::ranges::find(*names, accessList) != names->end();
    AccessList list = carryListOver(path, hasList, old, carried, file);
    for (const std::string& name : *names) {
        if (name == accessList || isOfTheBytes(name))
            continue;
        const auto value = attributeOf(path, name.c_str());
        const bool isCarried = value && FileSystemCalls::current().setAttribute(
                                            file, name.c_str(), value->data(), value->size()) == 0;
        if (!isCarried && name.starts_with("system."))
            list = AccessList::Lost;
    }
    return list;
}

} // namespace

int carryAccessOver(const ExistingFile& old, int file) {
    FileSystemCalls& calls = FileSystemCalls::current();
    constexpr auto unchanged = static_cast<uid_t>(-1);
    Carried carried;
    if (calls.changeOwner(file, old.status.st_uid, old.status.st_gid) !=
        0) { // only root may change the owner
        struct stat own {};
        carried.owner = calls.statusOf(file, &own) == 0 && own.st_uid == old.status.st_uid;
        carried.group = calls.changeOwner(file, unchanged, old.status.st_gid) == 0;
    }
    // A handle has no calls for attributes of its own.
    const std::string path = "/proc/self/fd/" + std::to_string(old.handle->number());
    carried.list = carryAttributesOver(path, old.status, carried, file);
    return calls.changeMode(file, modeWithin(old.status.st_mode, carried));
}

} // namespace platform
