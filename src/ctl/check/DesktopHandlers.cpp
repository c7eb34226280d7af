#include "ctl/check/DesktopHandlers.h"

#include "platform/storage/Files.h"
#include "platform/system/DetachedProcess.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace ctl {

namespace {

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        if (end > start)
            parts.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

std::string environment(const char* variable) {
    const char* value = std::getenv(variable);
    return value ? value : "";
}

// A base folder of the XDG standard, where a relative one counts as unset.
std::string baseFolder(const char* variable, const char* belowHome) {
    std::string value = environment(variable);
    return value.starts_with('/') ? value : platform::pathByAppending(environment("HOME"), belowHome);
}

std::vector<std::string> baseFolders(const std::string& first, const char* variable, const char* otherwise) {
    std::vector<std::string> folders = {first};
    std::string value = environment(variable);
    for (std::string& folder : split(value.empty() ? otherwise : value, ':'))
        if (folder.starts_with('/'))
            folders.push_back(std::move(folder));
    return folders;
}

std::vector<std::string> applicationFolders() {
    std::vector<std::string> folders = baseFolders(baseFolder("XDG_DATA_HOME", ".local/share"),
                                                   "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (std::string& folder : folders)
        folder = platform::pathByAppending(folder, "applications");
    return folders;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blank = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(blank), text.size()));
    return text.substr(0, text.find_last_not_of(blank) + 1);
}

// The value of a key in a group of a file of groups; empty where there is none.
std::string valueIn(const std::string& path, std::string_view group, std::string_view key) {
    const std::optional<std::string> bytes = platform::readFile(path);
    std::string_view rest = bytes ? std::string_view(*bytes) : std::string_view();
    bool isInGroup = false;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = trimmed(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.starts_with('['))
            isInGroup = line.substr(1, line.find(']') - 1) == group;
        const std::size_t equals = line.find('=');
        if (isInGroup && equals != line.npos && trimmed(line.substr(0, equals)) == key)
            return std::string(trimmed(line.substr(equals + 1)));
    }
    return {};
}

std::vector<std::string> associationsIn(const std::string& path, std::string_view group,
                                        const std::string& type) {
    return split(valueIn(path, group, type), ';');
}

// The lists of associations in a folder: those of the current desktops, then that of all.
std::vector<std::string> listsIn(const std::string& folder) {
    std::vector<std::string> lists;
    for (std::string desktop : split(environment("XDG_CURRENT_DESKTOP"), ':')) {
        for (char& character : desktop)
            if (character >= 'A' && character <= 'Z')
                character = static_cast<char>(character - 'A' + 'a');
        lists.push_back(platform::pathByAppending(folder, desktop + "-mimeapps.list"));
    }
    lists.push_back(platform::pathByAppending(folder, "mimeapps.list"));
    return lists;
}

std::optional<DesktopEntry> entryAt(const std::string& path) {
    constexpr std::string_view group = "Desktop Entry";
    const std::string tryExec = valueIn(path, group, "TryExec");
    const bool isThere = platform::fileExists(path) && valueIn(path, group, "Hidden") != "true";
    if (!isThere ||
        (!tryExec.empty() && !platform::findProgram(tryExec) && access(tryExec.c_str(), X_OK) != 0))
        return std::nullopt;
    return DesktopEntry{path, valueIn(path, group, "Exec"),
                        valueIn(path, group, "DBusActivatable") == "true"};
}

// The installed entry of a name. An entry in a folder below has the folder's name and a hyphen before its
// own.
std::optional<DesktopEntry> entryNamed(const std::string& name) {
    for (const std::string& folder : applicationFolders()) {
        std::string relative = name;
        for (std::size_t hyphen = 0; hyphen != std::string::npos; hyphen = relative.find('-', hyphen)) {
            if (hyphen != 0)
                relative[hyphen] = '/';
            const std::string path = platform::pathByAppending(folder, relative);
            if (platform::fileExists(path))
                return entryAt(path);
        }
    }
    return std::nullopt;
}

class Search final {
public:
    explicit Search(std::string type)
        : type_(std::move(type)) {}

    HandlerSearch run() {
        std::vector<std::string> folders =
            baseFolders(baseFolder("XDG_CONFIG_HOME", ".config"), "XDG_CONFIG_DIRS", "/etc/xdg");
        for (std::string& folder : applicationFolders())
            folders.push_back(std::move(folder));
        for (const std::string& folder : folders)
            for (const std::string& list : listsIn(folder))
                if (takeFirst(associationsIn(list, "Default Applications", type_)))
                    return std::move(result_);
        for (const std::string& folder : folders)
            if (searchAssociations(folder))
                break;
        return std::move(result_);
    }

private:
    // A list may take away what lists after it add.
    bool searchAssociations(const std::string& folder) {
        for (const std::string& list : listsIn(folder)) {
            if (takeFirst(associationsIn(list, "Added Associations", type_)))
                return true;
            for (const std::string& name : associationsIn(list, "Removed Associations", type_))
                removed_.insert(name);
        }
        return takeFirst(
            associationsIn(platform::pathByAppending(folder, "mimeinfo.cache"), "MIME Cache", type_));
    }

    bool takeFirst(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            if (removed_.contains(name))
                continue;
            result_.handler = entryNamed(name);
            if (result_.handler)
                return true;
            result_.notInstalled.push_back(name);
        }
        return false;
    }

    std::string type_;
    std::set<std::string> removed_;
    HandlerSearch result_;
};

} // namespace

HandlerSearch findHandler(const std::string& type) {
    return Search(type).run();
}

std::string programOfExec(const std::string& exec) {
    // The line is unescaped twice: as a value of the file, then within its quotes. A program's path seldom
    // needs either.
    if (!exec.starts_with('"'))
        return exec.substr(0, exec.find(' '));
    std::string program;
    for (std::size_t at = 1; at < exec.size() && exec[at] != '"'; ++at) {
        while (exec[at] == '\\' && at + 1 < exec.size())
            ++at;
        program += exec[at];
    }
    return program;
}

bool takesUrl(const std::string& exec) {
    for (const char* code : {"%u", "%U"})
        if (exec.find(code) != std::string::npos)
            return true;
    return false;
}

} // namespace ctl
