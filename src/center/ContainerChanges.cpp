#include "center/ContainerChanges.h"

#include "model/GroupIdentifiers.h"
#include "platform/storage/GroupContainers.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

namespace center {

namespace {

constexpr std::size_t mostFolders = 200; // of a container that holds what no host application makes

// The container, the folders in it, and those in these: accounts with their icons, settings.
platform::PathWatcher::Paths watchedPaths() {
    namespace fs = std::filesystem;
    const std::string container =
        platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
    platform::PathWatcher::Paths paths;
    paths.folders.push_back(container);
    std::error_code error;
    for (auto entry = fs::recursive_directory_iterator(container, error);
         !error && entry != fs::end(entry) && paths.folders.size() < mostFolders; entry.increment(error)) {
        std::error_code unknown;
        if (entry->is_directory(unknown))
            paths.folders.push_back(entry->path().string());
        if (entry.depth() == 1)
            entry.disable_recursion_pending();
    }
    return paths;
}

} // namespace

ContainerChanges::ContainerChanges(std::unique_ptr<platform::PathWatcher> watcher)
    : watcher_(std::move(watcher)) {
    watcher_->setChanged([this](platform::PathWatcher::Change) {
        watcher_->watch(watchedPaths()); // a folder may have come
        if (changed_)
            changed_();
    });
}

void ContainerChanges::watch(std::function<void()> handler) {
    changed_ = std::move(handler);
    watcher_->watch(changed_ ? watchedPaths() : platform::PathWatcher::Paths());
}

} // namespace center
