#include "platform/system/CurrentTimeZone.h"

#include "platform/system/Region.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t largestFile = 1024 * 1024;

// What a zone was made from. Two equal ones make the same zone.
struct Source {
    std::string text; // TZ without the colon
    std::string path;
    bool isFile = false;
    dev_t device = 0;
    ino_t node = 0;
    off_t size = 0;
    // The time of the last change of status, which is also set by each change of the content and of the
    // modification time.
    std::int64_t changedSeconds = 0;
    std::int64_t changedNanoseconds = 0;

    bool operator==(const Source&) const = default;
};

std::string pathOf(const std::string& text) {
    if (text.starts_with('/'))
        return text;
    const char* folder = std::getenv("TZDIR");
    return std::string(folder && *folder ? folder : "/usr/share/zoneinfo").append("/").append(text);
}

// A value of TZ without the colon that it may start with.
std::string textOf(const std::string& zone) {
    return zone.substr(zone.starts_with(':') ? 1 : 0);
}

Source sourceOf(const std::string& zone) {
    Source source;
    source.text = textOf(zone);
    source.path = pathOf(source.text);
    struct stat status {};
    if (stat(source.path.c_str(), &status) != 0)
        return source;
    source.isFile = S_ISREG(status.st_mode);
    source.device = status.st_dev;
    source.node = status.st_ino;
    source.size = status.st_size;
    source.changedSeconds = status.st_ctim.tv_sec;
    source.changedNanoseconds = status.st_ctim.tv_nsec;
    return source;
}

// Empty if the file cannot be read or is too large.
std::string bytesOf(const std::string& path) {
    // Opening a pipe that has just replaced the file does not wait.
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return {};
    std::string bytes;
    char buffer[4096];
    ssize_t count = 0;
    do {
        count = read(file, buffer, sizeof buffer);
        if (count > 0)
            bytes.append(buffer, static_cast<std::size_t>(count));
    } while (bytes.size() <= largestFile && (count > 0 || (count < 0 && errno == EINTR)));
    close(file);
    return count == 0 ? bytes : std::string();
}

TimeZone makeZone(const Source& source) {
    if (source.isFile)
        if (auto file = ZoneFile::fromBytes(bytesOf(source.path)))
            return TimeZone(*std::move(file));
    return TimeZone(PosixZoneRule::fromText(source.text).value_or(PosixZoneRule()));
}

} // namespace

const TimeZone& currentTimeZone() {
    static Source known; // at first without a path, so that it equals no other
    static TimeZone zone;
    Source source = sourceOf(Region::current().timeZone);
    if (source != known) {
        known = std::move(source);
        zone = makeZone(known);
    }
    return zone;
}

std::string currentTimeZoneFile() {
    return pathOf(textOf(Region::current().timeZone));
}

} // namespace platform
