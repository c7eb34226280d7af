#include "platform/confinement/SystemFiles.h"

#include "platform/storage/Files.h"
#include "platform/system/CurrentTimeZone.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace platform {

namespace {

std::string environment(const char* variable) {
    const char* value = std::getenv(variable);
    return value ? value : "";
}

// The absolute paths of a variable that holds several, with colons between them.
std::vector<std::string> pathsIn(const std::string& value) {
    std::vector<std::string> paths;
    std::string_view rest = value;
    while (!rest.empty()) {
        const std::string_view path = rest.substr(0, rest.find(':'));
        if (path.starts_with('/'))
            paths.emplace_back(path);
        rest.remove_prefix(std::min(path.size() + 1, rest.size()));
    }
    return paths;
}

std::string inHome(const char* path) {
    const std::string home = environment("HOME");
    return home.empty() ? home : pathByAppending(home, path);
}

// A base folder of the user's, where a relative one counts as unset.
std::string baseFolder(const char* variable, const char* otherwise) {
    std::string folder = environment(variable);
    return folder.starts_with('/') ? folder : inHome(otherwise);
}

void addBelow(std::vector<std::string>& paths, const std::string& folder,
              std::initializer_list<const char*> names) {
    for (const char* name : names)
        paths.push_back(pathByAppending(folder, name));
}

void addOf(std::vector<std::string>& paths, const char* variable) {
    for (std::string& path : pathsIn(environment(variable)))
        paths.push_back(std::move(path));
}

} // namespace

// The C library looks up the home folder in /etc/passwd where HOME is not set.
AllowedFiles systemFiles() {
    AllowedFiles files;
    files.readable = {"/usr",
                      "/lib",
                      "/lib64",
                      "/app",
                      "/etc/ld.so.cache",
                      "/etc/localtime",
                      "/etc/locale.alias",
                      "/etc/timezone",
                      "/etc/nsswitch.conf",
                      "/etc/passwd",
                      "/dev/urandom",
                      "/proc/self",
                      "/proc/sys/vm",
                      "/sys/devices/system/cpu"};
    for (const char* variable : {"LOCPATH", "TZDIR"})
        addOf(files.readable, variable);
    std::error_code unknown;
    if (const std::string zone = currentTimeZoneFile(); std::filesystem::is_regular_file(zone, unknown))
        files.readable.push_back(zone); // no folder, which would be all that is in it
    files.writable = {"/dev/null"};
    return files;
}

// The library of the bus ends a process that cannot read the identifier of the machine.
AllowedFiles desktopFiles() {
    AllowedFiles files;
    std::vector<std::string>& paths = files.readable;
    paths = {"/etc/fonts",
             "/etc/machine-id",
             "/var/lib/dbus/machine-id",
             "/etc/X11",
             "/etc/xdg",
             "/etc/gtk-3.0",
             "/var/cache/fontconfig",
             "/run/host/fonts",
             "/run/host/user-fonts",
             "/run/host/fonts-cache",
             "/run/host/share"};
    std::vector<std::string> dataFolders = pathsIn(environment("XDG_DATA_DIRS"));
    dataFolders.push_back(baseFolder("XDG_DATA_HOME", ".local/share"));
    for (const std::string& folder : dataFolders)
        addBelow(paths, folder, {"fonts", "icons", "themes"});
    addBelow(paths, baseFolder("XDG_CONFIG_HOME", ".config"),
             {"fontconfig", "kdeglobals", "kcmfonts", "gtk-3.0", "gtk-4.0", "qt6ct"});
    addBelow(paths, baseFolder("XDG_CACHE_HOME", ".cache"), {"fontconfig"});
    for (const char* name : {".fonts", ".fonts.conf", ".fonts.conf.d", ".fontconfig", ".icons", ".themes",
                             ".Xdefaults", ".Xauthority"})
        paths.push_back(inHome(name));
    for (const char* variable : {"XCURSOR_PATH", "FONTCONFIG_PATH"})
        addOf(paths, variable);
    std::erase_if(paths, [](const std::string& path) { return !path.starts_with('/'); });
    for (const char* variable : {"XAUTHORITY", "FONTCONFIG_FILE"}) // one path, as it stands
        if (std::string path = environment(variable); !path.empty())
            paths.push_back(std::move(path));
    return files;
}

void add(AllowedFiles& files, const AllowedFiles& others) {
    files.readable.insert(files.readable.end(), others.readable.begin(), others.readable.end());
    files.writable.insert(files.writable.end(), others.writable.begin(), others.writable.end());
}

} // namespace platform
