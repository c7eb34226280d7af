#include "ctl/check/FilesCheck.h"

#include "ctl/check/Access.h"
#include "platform/storage/Files.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ctl {

namespace {

// More entries of one folder are not looked at.
constexpr std::size_t mostEntries = 100'000;

std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

// Where a link leads in the end, for a finding.
void checkLink(const CheckedContainer& container, const std::string& path, Findings& findings) {
    struct stat target {};
    if (stat(path.c_str(), &target) != 0) {
        if (errno == ELOOP)
            findings.add(Fault::LinkLoops, {path}, "the links lead round in a circle, or are too many");
        else if (errno == ENOENT || errno == ENOTDIR)
            findings.add(Fault::LinkDangles, {path}, "the link leads to nothing");
        return;
    }
    if (const auto end = placeOutside(container.path, path))
        findings.add(Fault::LinkLeadsOut, {path}, "the link leads out of the container, to " + *end);
}

// Whose the files should be: the user who runs this; for root, whose is the container.
uid_t expectedOwner(const CheckedContainer& container) {
    struct stat folder {};
    const uid_t user = geteuid();
    return user == 0 && stat(container.path.c_str(), &folder) == 0 ? folder.st_uid : user;
}

void checkPath(const CheckedContainer& container, const std::string& path, Findings& findings) {
    struct stat status {};
    if (path.find('\0') != std::string::npos || lstat(path.c_str(), &status) != 0)
        return;
    if (S_ISLNK(status.st_mode)) {
        checkLink(container, path, findings);
        if (stat(path.c_str(), &status) != 0)
            return;
    }
    if ((status.st_mode & S_IWOTH) != 0)
        findings.add(Fault::WritableByOthers, {path}, "everybody may write it");
    if (status.st_uid != expectedOwner(container))
        findings.add(Fault::OwnedByOther, {path}, "it belongs to user " + std::to_string(status.st_uid));
    if (S_ISREG(status.st_mode) && status.st_nlink > 1)
        findings.add(Fault::HardLinked, {path}, "the file has " + std::to_string(status.st_nlink) + " names");
}

std::vector<std::string> entriesOf(const std::string& folder) {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), &closedir);
    if (!open)
        return names;
    while (const dirent* entry = readdir(open.get())) {
        if (names.size() == mostEntries)
            break;
        const std::string name = entry->d_name;
        if (name != "." && name != "..")
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

void checkLeftovers(const std::string& folder, Findings& findings) {
    for (const std::string& name : entriesOf(folder)) {
        const std::string path = platform::pathByAppending(folder, name);
        if (name.starts_with("actions.xml.aside"))
            findings.add(Fault::LeftoverClaim, {path}, "a claimed log is left");
        else if (name.starts_with("actions.xml.too-large"))
            findings.add(Fault::LeftoverTooLarge, {path}, "records are left");
        else if (name.starts_with(".new-") || name.starts_with(".korvel-"))
            findings.add(Fault::LeftoverTemporary, {path}, "a temporary file is left");
    }
}

// The container and each folder in it, and the folders of account and settings, which may be elsewhere.
std::set<std::string> foldersWithLeftovers(const CheckedContainer& container) {
    std::set<std::string> folders = {container.path, container.accountFolder, folderOf(container.settings)};
    for (const std::string& name : entriesOf(container.path)) {
        const std::string path = platform::pathByAppending(container.path, name);
        struct stat status {};
        if (lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
            folders.insert(path);
    }
    return folders;
}

} // namespace

void checkFiles(const CheckedContainer& container, Findings& findings) {
    const std::string preferences = folderOf(container.settings);
    // An account's key may name the container itself.
    std::set<std::string> seen;
    for (const std::string& path :
         {container.path, folderOf(preferences), preferences, container.accountFolder, container.icons,
          container.feed, container.settings, container.log})
        if (seen.insert(path).second)
            checkPath(container, path, findings);
    for (const std::string& folder : foldersWithLeftovers(container))
        if (folder.find('\0') == std::string::npos)
            checkLeftovers(folder, findings);
}

} // namespace ctl
