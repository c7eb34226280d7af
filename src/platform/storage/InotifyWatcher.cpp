#include "platform/storage/InotifyWatcher.h"

#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/Files.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

constexpr std::uint32_t itself = IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t appearing = IN_CREATE | IN_MOVED_TO | IN_ATTRIB; // or becoming readable
constexpr std::uint32_t changing = appearing | IN_MOVED_FROM | IN_DELETE | IN_CLOSE_WRITE;

constexpr int mostLinks = 40; // that of the kernel

// The components of a path, the last one first, so that the next one is at the end.
void pushComponents(std::vector<std::string>& components, std::string_view path) {
    while (!path.empty()) {
        const std::size_t slash = path.rfind('/');
        const std::size_t start = slash == std::string_view::npos ? 0 : slash + 1;
        if (start < path.size())
            components.emplace_back(path.substr(start));
        path = path.substr(0, start == 0 ? 0 : slash);
    }
}

std::string absolute(const std::string& path) {
    char folder[PATH_MAX];
    if (path.starts_with('/') || !getcwd(folder, sizeof folder))
        return path;
    return pathByAppending(folder, path);
}

std::string parentOf(const std::string& path) {
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

std::optional<mode_t> kindOf(const std::string& path) {
    struct stat status {};
    if (FileSystemCalls::current().statusAt(AT_FDCWD, path.c_str(), &status) != 0)
        return std::nullopt;
    return status.st_mode & S_IFMT;
}

std::optional<std::string> targetOf(const std::string& link) {
    char bytes[PATH_MAX];
    const ssize_t length = FileSystemCalls::current().readLink(link.c_str(), bytes, sizeof bytes);
    if (length < 0)
        return std::nullopt;
    return std::string(bytes, static_cast<std::size_t>(length));
}

} // namespace

InotifyWatcher::InotifyWatcher()
    : queue_(FileSystemCalls::current().makeWatchQueue()) {
    if (!queue_.isOpen())
        return;
    notifier_ = std::make_unique<QSocketNotifier>(queue_.number(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { readEvents(); });
}

InotifyWatcher::~InotifyWatcher() = default;

// A place that stays watched keeps its watch, with the mask that it is given now.
void InotifyWatcher::watch(const Paths& paths) {
    if (!queue_.isOpen())
        return;
    const std::map<int, Place> before = std::exchange(places_, {});
    for (const std::string& path : paths.files)
        follow(absolute(path), false);
    for (const std::string& path : paths.folders)
        follow(absolute(path), true);
    for (const auto& [watch, place] : before)
        if (!places_.contains(watch))
            FileSystemCalls::current().removeWatch(queue_.number(), watch);
}

// Each place is watched before it is looked at, so that no change falls in between.
void InotifyWatcher::follow(const std::string& path, bool withEntries) {
    if (holdsNul(path))
        return; // it names no file
    std::vector<std::string> rest;
    pushComponents(rest, path);
    std::string folder = "/";
    add(folder, itself);
    for (int links = 0; !rest.empty() && links < mostLinks;) {
        const std::string name = std::exchange(rest.back(), {});
        rest.pop_back();
        if (name == "." || name == "..") {
            folder = name == "." ? folder : parentOf(folder);
            continue;
        }
        const std::string next = pathByAppending(folder, name);
        if (rest.empty() && !withEntries)
            add(folder, changing, name);
        bool isWatched = add(next, itself);
        auto kind = kindOf(next);
        if (!isWatched || !kind) {
            // The second look finds what has appeared before the folder was watched.
            add(folder, appearing, name);
            isWatched = add(next, itself);
            kind = kindOf(next);
        }
        if (!kind)
            return;
        if (kind == S_IFLNK) {
            const std::string target = targetOf(next).value_or("");
            folder = target.starts_with('/') ? "/" : folder;
            pushComponents(rest, target);
            ++links;
        } else if (kind == S_IFDIR) {
            folder = next;
        } else {
            if (!rest.empty())
                add(folder, appearing, name); // a folder may take the file's place
            return;
        }
    }
    if (withEntries)
        add(folder, changing);
}

// Watches a place, for the entry of a name or, without one, for all that the mask says. False if that is not
// possible.
bool InotifyWatcher::add(const std::string& path, std::uint32_t mask, std::string_view name) {
    FileSystemCalls& calls = FileSystemCalls::current();
    const auto known = std::ranges::find(places_, path, [](const auto& entry) { return entry.second.path; });
    std::uint32_t wanted = mask | itself;
    if (known != places_.end())
        wanted |= known->second.mask;
    const int watch = calls.addWatch(queue_.number(), path.c_str(), wanted | IN_DONT_FOLLOW);
    if (watch < 0)
        return false;
    Place& place = places_[watch];
    if (!place.path.empty() && place.path != path) // the same folder by another path, as a bind mount has
        calls.addWatch(queue_.number(), path.c_str(), wanted | place.mask | IN_DONT_FOLLOW);
    place.path = path;
    place.mask |= wanted;
    if (!name.empty())
        place.names.emplace_back(name);
    else if (mask == changing)
        place.allEntries = true;
    return true;
}

void InotifyWatcher::readEvents() {
    alignas(inotify_event) char bytes[16 * 1024];
    for (;;) {
        const ssize_t count = retryInterrupted(
            [&] { return FileSystemCalls::current().read(queue_.number(), bytes, sizeof bytes); });
        if (count <= 0)
            return;
        for (const char* at = bytes; at < bytes + count;) {
            inotify_event event;
            std::memcpy(&event, at, sizeof event);
            const char* name = at + sizeof event; // with zeros behind it
            tellEvent(event.wd, event.mask, event.len > 0 ? name : std::string_view());
            at += sizeof event + event.len;
        }
    }
}

void InotifyWatcher::tellEvent(int watch, std::uint32_t mask, std::string_view name) {
    if (mask & IN_Q_OVERFLOW)
        return tell(Change::Entry);
    const auto found = places_.find(watch);
    if (found == places_.end() || (mask & IN_IGNORED))
        return;
    const Place& place = found->second;
    if (place.allEntries && !name.empty())
        tell(Change::Entry);
    else if (name.empty() || std::ranges::find(place.names, name) != place.names.end())
        tell(Change::Path);
}

} // namespace platform
