#pragma once

#include "platform/storage/OpenFile.h"
#include "platform/storage/PathWatcher.h"

#include <QSocketNotifier>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// The watcher on Linux's inotify. It follows each path from the root, through symbolic links, and watches
// each folder and link on the way, but only whether it is removed or moved: other entries of a busy folder do
// not wake the process. The folder that holds a file is watched for what happens to that entry. Where the
// next component of a path is missing, its folder is watched until it appears.
//
// A file counts as written when its writer closes it. All failures are soft: what cannot be watched (no
// inotify, no room for another watch, a folder that may not be read, a file of a network that another
// computer changes) is not told.
class InotifyWatcher final : public PathWatcher {
public:
    InotifyWatcher();
    ~InotifyWatcher() override;
    InotifyWatcher(const InotifyWatcher&) = delete;
    InotifyWatcher& operator=(const InotifyWatcher&) = delete;

    void watch(const Paths& paths) override;

    // Reads what the kernel has to tell. The event loop calls it.
    void readEvents();

private:
    // What is watched at one place, which is a folder or a link.
    struct Place {
        std::string path;
        std::uint32_t mask = 0;
        std::vector<std::string> names; // the entries that matter
        bool allEntries = false;
    };

    void follow(const std::string& path, bool withEntries);
    bool add(const std::string& path, std::uint32_t mask, std::string_view name = {});
    void tellEvent(int watch, std::uint32_t mask, std::string_view name);

    OpenFile queue_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::map<int, Place> places_; // by the number of the watch
};

} // namespace platform
