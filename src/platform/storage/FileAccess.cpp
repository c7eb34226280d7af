#include "platform/storage/FileAccess.h"

#include "platform/storage/FileSystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

namespace {

constexpr const char* accessList = "system.posix_acl_access"; // acl(5)

// What a call gives whose answer has any length. It is asked for the length first, which may grow meanwhile.
template <typename Call>
std::optional<std::string> answerOf(Call call) {
    for (;;) {
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
}

bool carryAttributeOver(const std::string& path, const char* name, int file) {
    FileSystemCalls& calls = FileSystemCalls::current();
    const auto value = answerOf(
        [&](char* bytes, std::size_t count) { return calls.attribute(path.c_str(), name, bytes, count); });
    return value && calls.setAttribute(file, name, value->data(), value->size()) == 0;
}

enum class AccessList { None, Same, Lost };

// Carries all attributes over. A list that the new file has from its folder is removed where the old file had
// none.
AccessList carryAttributesOver(const std::string& path, int file) {
    FileSystemCalls& calls = FileSystemCalls::current();
    const auto names = answerOf(
        [&](char* bytes, std::size_t count) { return calls.attributeNames(path.c_str(), bytes, count); });
    if (!names && errno != EOPNOTSUPP)
        return AccessList::Lost;
    AccessList list = AccessList::None;
    for (std::string_view rest = names ? *names : std::string_view(); !rest.empty();) {
        const std::string name(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        const bool isCarried = carryAttributeOver(path, name.c_str(), file);
        // Those of other name spaces say nothing about access and may not be the process's to set.
        if (name.starts_with("system.") && list != AccessList::Lost)
            list = isCarried ? AccessList::Same : AccessList::Lost;
    }
    if (list == AccessList::None && calls.removeAttribute(file, accessList) != 0 && errno != ENODATA &&
        errno != EOPNOTSUPP)
        return AccessList::Lost;
    return list;
}

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
    // A list may give a member of the group less than the mode says.
    if (carried.list == AccessList::Lost || (carried.list == AccessList::Same && !carried.group))
        group = others = 0;
    return special | owner << 6 | group << 3 | others;
}

} // namespace

int carryAccessOver(int folder, const ExistingFile& old, int file) {
    FileSystemCalls& calls = FileSystemCalls::current();
    constexpr auto unchanged = static_cast<uid_t>(-1);
    Carried carried;
    if (calls.changeOwner(file, old.status.st_uid, old.status.st_gid) !=
        0) { // only root may change the owner
        struct stat own {};
        carried.owner = calls.statusOf(file, &own) == 0 && own.st_uid == old.status.st_uid;
        carried.group = calls.changeOwner(file, unchanged, old.status.st_gid) == 0;
    }
    // The folder may have been moved since it was opened.
    const std::string path = "/proc/self/fd/" + std::to_string(folder) + '/' + old.name;
    carried.list = carryAttributesOver(path, file);
    return calls.changeMode(file, modeWithin(old.status.st_mode, carried));
}

} // namespace platform
