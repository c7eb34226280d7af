#include "platform/system/LocaleName.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace platform {

namespace {

constexpr const char* posixLocale = "en_US_POSIX";

// The modifiers of glibc's locales that name a script. Others ("euro") do not bear on dates.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> scripts{{
    {"latin", "Latn"},
    {"cyrillic", "Cyrl"},
    {"devanagari", "Deva"},
    {"iqtelif", "Latn"},
}};

bool isNamePart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
}

bool isName(std::string_view text) {
    for (const char c : text)
        if (!isNamePart(c))
            return false;
    return !text.empty();
}

std::string withScript(std::string_view name, std::string_view script) {
    const std::size_t end = name.find('_');
    std::string result(name.substr(0, end));
    result.append("_").append(script);
    if (end != std::string_view::npos)
        result.append(name.substr(end));
    return result;
}

std::string_view firstSet(std::initializer_list<const char*> variables) {
    for (const char* variable : variables)
        if (const char* value = std::getenv(variable); value && *value)
            return value;
    return {};
}

} // namespace

std::string icuLocaleName(std::string_view posixName) {
    const std::size_t at = posixName.find('@');
    const std::string_view modifier =
        at == std::string_view::npos ? std::string_view{} : posixName.substr(at + 1);
    const std::string_view name = posixName.substr(0, std::min(at, posixName.find('.')));
    if (!isName(name) || name == "C" || name == "POSIX")
        return posixLocale;
    if (modifier.find('=') != std::string_view::npos)
        return std::string(name).append("@").append(modifier);
    if (modifier == "valencia")
        return std::string(name).append("_VALENCIA");
    for (const auto& [posix, script] : scripts)
        if (modifier == posix)
            return withScript(name, script);
    return std::string(name);
}

std::string dateLocaleName() {
    return icuLocaleName(firstSet({"LC_ALL", "LC_TIME", "LANG"}));
}

} // namespace platform
