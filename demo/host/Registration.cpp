#include "host/Registration.h"

#include "platform/storage/Files.h"
#include "platform/storage/StorageError.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace host {

namespace {

constexpr const char* entryName = "korvel-demo-host.desktop";
constexpr std::array schemes{"x-scheme-handler/korvelWidget", "x-scheme-handler/korvelwidget"};

bool isSafe(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') ||
           std::string_view("_-./,:@+=%").find(character) != std::string_view::npos;
}

// Every string of a desktop entry is escaped so, an Exec line too, and after its own quoting.
std::string escaped(const std::string& value) {
    std::string result;
    for (const char character : value) {
        if (character == '\\')
            result += "\\\\";
        else if (character == '\n')
            result += "\\n";
        else if (character == '\t')
            result += "\\t";
        else if (character == '\r')
            result += "\\r";
        else
            result += character;
    }
    return result;
}

// Unset, empty and relative base directories count as absent.
std::string baseFolder(const char* variable, const char* belowHome) {
    const char* value = std::getenv(variable);
    if (value && value[0] == '/')
        return value;
    const char* home = std::getenv("HOME");
    return platform::pathByAppending(home ? home : "", belowHome);
}

std::string searchPath(const std::string& first, const char* variable, const char* otherwise) {
    const char* value = std::getenv(variable);
    return first + ":" + (value && value[0] ? value : otherwise);
}

} // namespace

std::string execWord(const std::string& word) {
    const bool isBare = !word.empty() && std::all_of(word.begin(), word.end(), isSafe);
    std::string result(isBare ? "" : "\"");
    for (const char character : word) {
        if (character == '%')
            result += '%';
        else if (std::string_view("\"`$\\").find(character) != std::string_view::npos)
            result += '\\';
        result += character;
    }
    return isBare ? result : result + '"';
}

std::string desktopEntry(const std::vector<std::string>& command) {
    std::string exec;
    for (const std::string& word : command)
        exec += execWord(word) + ' ';
    std::string types;
    for (const char* scheme : schemes)
        types += std::string(scheme) + ';';
    return "[Desktop Entry]\nType=Application\nName=Demo host application\nNoDisplay=true\nExec=" +
           escaped(exec) + "%u\nMimeType=" + types + "\n";
}

std::string associations() {
    std::string text = "[Default Applications]\n";
    for (const char* scheme : schemes)
        text += std::string(scheme) + '=' + entryName + '\n';
    return text;
}

bool writeRegistration(const std::string& folder, const std::vector<std::string>& command) {
    const std::string applications = folder + "/data/applications";
    const std::string config = folder + "/config";
    using platform::isMade;
    return isMade(platform::makeFolders(applications)) && isMade(platform::makeFolders(config)) &&
           isMade(platform::replaceFile(applications + '/' + entryName, desktopEntry(command))) &&
           isMade(platform::replaceFile(config + "/mimeapps.list", associations()));
}

Variables environmentFor(const std::string& folder) {
    const std::string data = baseFolder("XDG_DATA_HOME", ".local/share");
    const std::string config = baseFolder("XDG_CONFIG_HOME", ".config");
    return {{"XDG_DATA_HOME", folder + "/data"},
            {"XDG_CONFIG_HOME", folder + "/config"},
            {"XDG_DATA_DIRS", searchPath(data, "XDG_DATA_DIRS", "/usr/local/share:/usr/share")},
            {"XDG_CONFIG_DIRS", searchPath(config, "XDG_CONFIG_DIRS", "/etc/xdg")}};
}

} // namespace host
