#include "platform/system/TimeZoneName.h"

#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace platform {

namespace {

constexpr const char* utc = "Etc/UTC";
constexpr const char* localTimePath = "/etc/localtime";

// ICU's own readings of "GMT+3" and the like do not count: to the C library that is three hours west.
bool isKnownToIcu(const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    UBool isSystemName = false;
    icu::UnicodeString canonical;
    icu::TimeZone::getCanonicalID(icu::UnicodeString::fromUTF8(name), canonical, isSystemName, status);
    return U_SUCCESS(status) && isSystemName;
}

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

// The zone of a path such as /usr/share/zoneinfo/Europe/Paris; none where it names no zone.
std::optional<std::string> zoneOfPath(const std::string& path) {
    char real[PATH_MAX];
    const std::string_view found = realpath(path.c_str(), real) ? real : path.c_str();
    constexpr std::string_view marker = "/zoneinfo/";
    const std::size_t at = found.find(marker);
    if (at == std::string_view::npos)
        return std::nullopt;
    std::string_view name = found.substr(at + marker.size());
    for (const std::string_view flavour : {"posix/", "right/"})
        if (startsWith(name, flavour))
            name.remove_prefix(flavour.size());
    if (!isKnownToIcu(std::string(name)))
        return std::nullopt;
    return std::string(name);
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Reads a number of hours, minutes or seconds; -1 where none stands there.
int readNumber(std::string_view& text) {
    int number = -1;
    while (!text.empty() && isDigit(text.front()) && number < 1000) {
        number = std::max(number, 0) * 10 + (text.front() - '0');
        text.remove_prefix(1);
    }
    return number;
}

// Takes the abbreviation off a POSIX rule: three letters or more, or any text in angle brackets.
bool skipAbbreviation(std::string_view& rule) {
    if (startsWith(rule, "<")) {
        const std::size_t end = rule.find('>');
        if (end == std::string_view::npos)
            return false;
        rule.remove_prefix(end + 1);
        return true;
    }
    std::size_t letters = 0;
    while (letters < rule.size() && ((rule[letters] | 0x20) >= 'a' && (rule[letters] | 0x20) <= 'z'))
        ++letters;
    rule.remove_prefix(letters);
    return letters >= 3;
}

// The standard offset of a POSIX rule ("<-03>3", "EST5EDT,M3.2.0,M11.1.0"), as ICU writes a fixed zone. The
// rule counts hours to the west, ICU to the east.
std::optional<std::string> zoneOfRule(std::string_view rule) {
    if (!skipAbbreviation(rule))
        return std::nullopt;
    const bool east = startsWith(rule, "-");
    if (east || startsWith(rule, "+"))
        rule.remove_prefix(1);
    const int hours = readNumber(rule);
    int minutes = 0;
    if (startsWith(rule, ":")) {
        rule.remove_prefix(1);
        minutes = readNumber(rule);
    }
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59)
        return std::nullopt;
    char name[16];
    std::snprintf(name, sizeof name, "GMT%c%02d:%02d", east ? '+' : '-', hours, minutes);
    return std::string(name);
}

// Where /etc/localtime is no link but a copy, ICU looks for the zone file of the same content.
std::string findSystemZone() {
    if (const auto name = zoneOfPath(localTimePath))
        return *name;
    const std::unique_ptr<icu::TimeZone> host(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString id;
    std::string name;
    if (host)
        host->getID(id).toUTF8String(name);
    return isKnownToIcu(name) ? name : utc;
}

// What tells one file behind /etc/localtime from another.
struct Identity {
    dev_t device = 0;
    ino_t node = 0;
    time_t changed = 0;
    long changedNanoseconds = 0;
    bool operator==(const Identity&) const = default;
};

Identity identityOfLocalTime() {
    struct stat file {};
    if (stat(localTimePath, &file) != 0)
        return {};
    return {file.st_dev, file.st_ino, file.st_ctim.tv_sec, file.st_ctim.tv_nsec};
}

// Whether a twentieth of a second has passed since this was last true. The clock costs no system call.
bool isTimeToLook() {
    static std::int64_t last = -1;
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
    const std::int64_t now = std::int64_t{time.tv_sec} * 20 + time.tv_nsec / 50'000'000;
    return std::exchange(last, now) != now;
}

// A list of rows asks for the zone once for each; the file is looked at once for them all. The walk through
// links, or through all zone files, is made again only when another file stands there.
std::string systemZone() {
    static Identity known;
    static std::string zone;
    if (!zone.empty() && !isTimeToLook())
        return zone;
    const Identity identity = identityOfLocalTime();
    if (zone.empty() || identity != known) {
        known = identity;
        zone = findSystemZone();
    }
    return zone;
}

} // namespace

std::string timeZoneNameOf(const std::string& tz) {
    std::string name = tz;
    if (startsWith(name, ":"))
        name.erase(0, 1);
    if (startsWith(name, "/"))
        return zoneOfPath(name).value_or(utc);
    for (const std::string_view flavour : {"posix/", "right/"})
        if (startsWith(name, flavour))
            name.erase(0, flavour.size());
    if (isKnownToIcu(name))
        return name;
    const std::string withoutDates = name.substr(0, name.find(','));
    if (isKnownToIcu(withoutDates))
        return withoutDates;
    return zoneOfRule(name).value_or(utc);
}

std::string timeZoneName() {
    const char* tz = std::getenv("TZ");
    const std::string_view text = tz ? tz : ":/etc/localtime";
    if (text == localTimePath || text == ":/etc/localtime")
        return systemZone();
    static std::string knownText;
    static std::string zone;
    if (zone.empty() || knownText != text) {
        knownText = text;
        zone = timeZoneNameOf(knownText);
    }
    return zone;
}

} // namespace platform
